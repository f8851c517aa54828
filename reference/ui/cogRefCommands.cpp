// The reference tree and the Tree menu: not available yet.
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"

bool mdlTessary::LoadCogRef() {
    return true;
} // no reference loaded yet
void frmMain::tvwCog_NodeClick(const std::string& key) {
    nLC = key;
}
void frmMain::tvwCog_DblClick() {}
void frmMain::mnuCFCollapse_Click() {}
void frmMain::mnuCFExpand_Click() {}
void frmMain::mnuCFFind_Click() {}
void frmMain::mnuCFFindNext_Click() {}
