// The explorer tree's commands. The explorer is not built yet: these keep the frame working.
#include "app/ui/KeyedTreeView.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"

#include <QComboBox>

void mdlTessary::BuildCogExplorer() {} // not available yet

void frmMain::cmbCog_Click() {
    mdlTessary::BuildCogExplorer();
}

void frmMain::mnuViewRefresh_Click() {
    mdlTessary::BuildCogExplorer();
}

void frmMain::cmbTvwSel_Click() {
    const bool explorer =
        cmbTvwSel->currentText().compare(QStringLiteral("CogExplorer"), Qt::CaseInsensitive) == 0;
    tvwCog->setVisible(!explorer);
    tvwCogE->setVisible(explorer);
    cmbCog->setVisible(explorer);
}

void frmMain::tvwCogE_NodeClick(const std::string& key) {
    nLCE = key;
}

void frmMain::tvwCogE_DblClick() {}    // not available yet
void frmMain::mnuEditChkSyn_Click() {} // not available yet
