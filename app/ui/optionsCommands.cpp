// Fonts, options and the About box: not available yet.
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"

void frmMain::mnuViewFont_Click() {}
void frmMain::mnuViewOptions_Click() {}
void frmMain::showAbout() {}
void mdlTessary::OpenLink(QWidget*, const QString&) {}
