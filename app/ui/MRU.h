// The recent-files list at the end of the File menu. It keeps nothing of its own: the four menu
// items hold each slot's caption ("&1 " + title) and path (the item's data).
#pragma once

#include <QString>

#include <array>

class QAction;

class MRU {
public:
    // Fills the items from the settings store (group "MRU", keys "1" to "4", title + ":" + path).
    void LoadMRU(std::array<QAction*, 4>& mnuFileMRU, QAction* mnuFileBar6);
    // Writes the four slots back, an empty one as ":".
    void SaveMRU(std::array<QAction*, 4>& mnuFileMRU);
    // Puts a file at the top of the list (titles compared exactly).
    void AddFile(std::array<QAction*, 4>& mnuFileMRU, const QString& path, const QString& title,
                 QAction* mnuFileBar6);
};
