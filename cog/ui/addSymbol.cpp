// Add Symbol: not available yet.
#include "app/ui/frmMain.h"

void frmMain::cmdAddVar_Click() {}
