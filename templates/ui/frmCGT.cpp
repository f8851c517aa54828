// Templates: not available yet.
#include "templates/ui/frmCGT.h"

#include "app/ui/frmMain.h"

frmCGT::frmCGT(QWidget* parent) : QDialog(parent) {}
void frmCGT::openFromCommand(const QString&) {}
void frmMain::mnuOpenTemp_Click() {}
