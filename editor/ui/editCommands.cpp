// Find, replace and brace matching: not available yet.
#include "app/ui/frmMain.h"
#include "editor/ui/frmTessary.h"

void frmMain::mnuEdit_Click(int) {}
void frmTessary::MatchBrace() {}
void frmTessary::FindWord() {}
void frmTessary::Replace(bool, bool) {}
