// The CogExplorer on the frame: rebuilding the tree from the window chosen in cmbCog, switching
// between the two trees, and jumping from a node to its place in the text; and the entry point
// of the syntax check.
#include "app/ui/KeyedTreeView.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "cog/explorer.h"
#include "cog/ui/frmChkSyn.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace {

const QString kDuplicateMessage = QStringLiteral(
    "You have 2 comment/symbol lines that are exactly the same.  In order for CogExplorer to work "
    "correctly, you MUST have each commented/symbol line be unique.  The line that caused the errors "
    "has been selected.  Change it then reselect the cog.");

// The window chosen in cmbCog: the one at the position its selected item holds.
frmTessary* chosenWindow(const frmMain& f) {
    const int selected = f.cmbCog->currentIndex();
    if (selected < 0) return nullptr;
    return mdlTessary::colCogs.item(f.cmbCog->itemData(selected).toInt());
}

} // namespace

void mdlTessary::BuildCogExplorer() {
    frmMain* f = frame();
    frmTessary* w = f ? chosenWindow(*f) : nullptr;
    if (!w) return;
    const QString remembered = strCurCog;
    strCurCog = w->Tag;

    const QString caption = w->Caption();
    const QByteArray captionBytes = caption.toLatin1();
    const cog::ExplorerResult result = cog::buildExplorer(
        w->txtMain->bytes(), std::string_view(captionBytes.constData(), captionBytes.size()), colVarTypes);
    KeyedTreeView* tree = f->tvwCogE;
    tree->setModel(result.tree);
    tree->Tag = w->Tag;
    if (QTreeWidgetItem* root = tree->itemFor("root"); root && QString::fromLatin1(captionBytes) != caption) {
        const QSignalBlocker quiet(tree); // a caption beyond Latin-1 is shown as it is, not as an edit
        root->setText(0, caption);
    }

    switch (result.stop) {
    case cog::ExplorerResult::Stop::None:
        f->nLCE = tree->nodeAt(1).key;
        strCurCog = remembered;
        return;
    case cog::ExplorerResult::Stop::DuplicateKey:
        w->txtMain->setSelStart(result.selStart);
        w->txtMain->setSelLength(result.selLength);
        ui::MsgBox(kDuplicateMessage, ui::vbOKOnly, ui::vbCritical);
        return;
    case cog::ExplorerResult::Stop::Failure:
        return; // silently, with the nodes added so far
    }
}

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

void frmMain::tvwCogE_DblClick() {
    if (!nLCE) return;
    const cog::KeyedTree::Node* node = tvwCogE->node(*nLCE);
    if (!node || cog::equalText(node->tag, "parent")) return;
    frmTessary* w = mdlTessary::currentCog();
    if (!w) return;
    const cog::Pos q = cog::find(1, w->txtMain->bytes(), node->key);
    if (q > 0) w->txtMain->setSelStart(q - 1);
}

void frmMain::mnuEditChkSyn_Click() {
    frmChkSyn::showWindow();
}
