// Reading and writing the user's files safely: every file the program reads goes through
// openForReading, which never blocks on a pipe or a device and refuses what it cannot hold, and
// every file it writes goes through write, which replaces the old file only once the new one is
// wholly on disk.
#pragma once

#include "editor/diskstate.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <initializer_list>
#include <memory>
#include <string>

namespace diskfile {

struct Opened {
    std::unique_ptr<QFile> file; // open for reading; null when refused or failed
    editor::FileKind kind = editor::FileKind::Missing;
    editor::DiskState state; // size and time of what was opened; no digest yet
    QString error;           // why file is null: the system's reason or the program's refusal
};

// Opens a regular file that the program can hold. Pipes, devices, sockets and directories are
// refused without waiting on them, and so is a file larger than openLimit.
Opened openForReading(const QString& path);

// The whole file, and its state (digest included) when state is given. False, with the reason in
// error, when it cannot be read.
bool readAll(const QString& path, QByteArray& bytes, QString& error, editor::DiskState* state = nullptr);

// The file as it is now, its bytes' digest included when it can be read.
editor::DiskState currentState(const QString& path);

// The digest that DiskState::hash holds, of the bytes of all parts in turn.
std::string digest(std::initializer_list<QByteArrayView> parts);

// Writes the parts, in turn, as the whole new content of path. The old file is replaced only
// when every byte is written and flushed; a folder that allows no new file but holds a writable
// file gets the file rewritten in place. False, with the system's reason in error, when it
// fails. On success, written (when given) is the new file's state.
bool write(const QString& path, std::initializer_list<QByteArrayView> parts, QString& error,
           editor::DiskState* written = nullptr);

} // namespace diskfile
