// Watches the files of the open windows for changes made by other programs (or by another window
// of the same file), and tells which path to look at again.
#pragma once

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

class DiskWatch : public QObject {
    Q_OBJECT
public:
    static DiskWatch& instance();

    // Counted: two windows of one file add it twice and remove it twice.
    void add(const QString& path);
    void remove(const QString& path);

signals:
    // The file at path may have changed, been replaced or deleted, or come back. Sent once for a
    // burst of changes.
    void changed(const QString& path);

private:
    DiskWatch();
    void schedule(const QString& path);
    void flush();

    QFileSystemWatcher watcher_;
    QHash<QString, int> counts_; // watched files and how many windows hold each
    QSet<QString> pending_;
    QTimer timer_;
};
