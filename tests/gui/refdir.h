// A program directory of its own for a test: a small reference, a small message list and the
// shipped default.cog.
#pragma once

#include "app/ui/mdlTessary.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

inline std::unique_ptr<QTemporaryDir> makeProgramDirectory(const QByteArray& cogref,
                                                           const QByteArray& messages) {
    auto dir = std::make_unique<QTemporaryDir>();
    auto write = [&](const QString& name, const QByteArray& bytes) {
        if (bytes.isNull()) return;
        QFile f(dir->filePath(name));
        if (f.open(QIODevice::WriteOnly)) f.write(bytes);
    };
    write(QStringLiteral("cogref.dat"), cogref);
    write(QStringLiteral("messages.dat"), messages);
    QFile::copy(QStringLiteral(TESSARY_BIN_DIR "/default.cog"), dir->filePath(QStringLiteral("default.cog")));
    mdlTessary::setProgramDirectory(dir->path());
    return dir;
}
