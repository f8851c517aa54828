// The recent-files list: not available yet.
#include "app/ui/MRU.h"

#include "app/ui/frmMain.h"

void MRU::LoadMRU(std::array<QAction*, 4>&, QAction*) {}
void MRU::SaveMRU(std::array<QAction*, 4>&) {}
void MRU::AddFile(std::array<QAction*, 4>&, const QString&, const QString&, QAction*) {}
void frmMain::mnuFileMRU_Click(int) {}
