// The recent-files list at the end of the File menu.
#pragma once

#include <QString>

#include <array>

class QAction;

class MRU {
public:
    void LoadMRU(std::array<QAction*, 4>& mnuFileMRU, QAction* mnuFileBar6);
    void SaveMRU(std::array<QAction*, 4>& mnuFileMRU);
    void AddFile(std::array<QAction*, 4>& mnuFileMRU, const QString& path, const QString& title,
                 QAction* mnuFileBar6);
};
