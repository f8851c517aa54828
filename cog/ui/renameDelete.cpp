// Renaming and deleting through the explorer tree: not available yet.
#include "app/ui/frmMain.h"

void frmMain::tvwCogE_AfterLabelEdit(const std::string&, const QString&) {}
void frmMain::tvwCogE_KeyDown(int, int) {}
