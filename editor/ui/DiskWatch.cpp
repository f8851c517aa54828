#include "editor/ui/DiskWatch.h"

#include <QFileInfo>

namespace {

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

} // namespace

DiskWatch& DiskWatch::instance() {
    static DiskWatch* watch = new DiskWatch; // lives as long as the program
    return *watch;
}

DiskWatch::DiskWatch() {
    timer_.setSingleShot(true);
    timer_.setInterval(100); // a program saving a file often writes it in several steps
    connect(&timer_, &QTimer::timeout, this, &DiskWatch::flush);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &DiskWatch::schedule);
    // The folder tells when a file is replaced (saved through a temporary file and renamed), which
    // ends the watch on the old file, and when a deleted file comes back.
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this](const QString& folder) {
        for (auto it = counts_.cbegin(); it != counts_.cend(); ++it)
            if (folderOf(it.key()) == folder) schedule(it.key());
    });
}

void DiskWatch::add(const QString& path) {
    if (counts_[path]++ > 0) return;
    if (QFileInfo::exists(path)) watcher_.addPath(path);
    if (!watcher_.directories().contains(folderOf(path))) watcher_.addPath(folderOf(path));
}

void DiskWatch::remove(const QString& path) {
    auto it = counts_.find(path);
    if (it == counts_.end() || --it.value() > 0) return;
    counts_.erase(it);
    pending_.remove(path);
    watcher_.removePath(path);
    const QString folder = folderOf(path);
    for (auto other = counts_.cbegin(); other != counts_.cend(); ++other)
        if (folderOf(other.key()) == folder) return;
    watcher_.removePath(folder);
}

void DiskWatch::schedule(const QString& path) {
    if (!counts_.contains(path)) return;
    pending_.insert(path);
    timer_.start();
}

void DiskWatch::flush() {
    const QSet<QString> paths = std::exchange(pending_, {});
    for (const QString& path : paths) {
        if (!counts_.contains(path)) continue;
        // A replaced file is a new file: watch it again.
        if (!watcher_.files().contains(path) && QFileInfo::exists(path)) watcher_.addPath(path);
        emit changed(path);
    }
}
