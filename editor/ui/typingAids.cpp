// The typing aids of the editor windows: not available yet.
#include "app/ui/mdlTessary.h"
#include "editor/ui/frmTessary.h"

void mdlTessary::LoadMessages() {}
void mdlTessary::PlaceAtCaret(QWidget*) {}
bool frmTessary::txtMain_KeyEvent(QKeyEvent*) {
    return false;
}
void frmTessary::lvwCogParams_DblClick() {}
bool frmTessary::lvwCogParams_KeyEvent(QKeyEvent*) {
    return false;
}
void frmTessary::SelectWord() {}
void frmTessary::InsertParam(bool) {}
void frmTessary::FindParam(int) {}
