#include "app/ui/diskfile.h"

#include <QCryptographicHash>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace diskfile {

namespace {

QString systemReason(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

editor::FileKind kindOf(const struct stat& st) {
    if (S_ISREG(st.st_mode)) return editor::FileKind::Regular;
    if (S_ISDIR(st.st_mode)) return editor::FileKind::Directory;
    return editor::FileKind::Other;
}

editor::DiskState stateOf(const struct stat& st) {
    editor::DiskState state;
    state.exists = true;
    state.size = static_cast<std::uint64_t>(st.st_size);
    state.mtimeNs = std::int64_t{st.st_mtim.tv_sec} * 1'000'000'000 + st.st_mtim.tv_nsec;
    return state;
}

std::uint64_t currentOpenLimit() {
    QFile meminfo(QStringLiteral("/proc/meminfo"));
    if (!meminfo.open(QIODevice::ReadOnly)) return editor::openLimit(0);
    return editor::openLimit(editor::memAvailable(meminfo.readAll().toStdString()));
}

// Refuses what is no regular file or too large; "" when path may be opened.
QString refusal(editor::FileKind kind, std::uint64_t size) {
    return QString::fromStdString(editor::refusalReason(kind, size, currentOpenLimit()));
}

} // namespace

Opened openForReading(const QString& path) {
    Opened opened;
    const QByteArray name = QFile::encodeName(path);
    struct stat st {};
    if (::stat(name.constData(), &st) != 0) {
        opened.error = systemReason(errno);
        return opened;
    }
    opened.kind = kindOf(st);
    opened.state = stateOf(st);
    if (QString why = refusal(opened.kind, opened.state.size); !why.isEmpty()) {
        opened.error = why;
        return opened;
    }
    // Without O_NONBLOCK a pipe put in the file's place since the check would hold the program
    // until someone writes to it; what was opened is checked again.
    const int fd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        opened.error = systemReason(errno);
        return opened;
    }
    if (::fstat(fd, &st) != 0 || kindOf(st) != editor::FileKind::Regular) {
        opened.kind = editor::FileKind::Other;
        opened.error = refusal(opened.kind, 0);
        ::close(fd);
        return opened;
    }
    opened.state = stateOf(st);
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    auto file = std::make_unique<QFile>();
    if (!file->open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        opened.error = file->errorString();
        ::close(fd);
        return opened;
    }
    opened.file = std::move(file);
    return opened;
}

bool readAll(const QString& path, QByteArray& bytes, QString& error, editor::DiskState* state) {
    Opened opened = openForReading(path);
    if (!opened.file) {
        error = opened.error;
        return false;
    }
    try {
        bytes = opened.file->readAll();
    } catch (const std::bad_alloc&) {
        error = QStringLiteral("there is not enough memory to read it");
        return false;
    }
    if (opened.file->error() != QFileDevice::NoError) {
        error = opened.file->errorString();
        return false;
    }
    if (state) {
        *state = opened.state;
        state->hash = digest({bytes});
    }
    return true;
}

editor::DiskState currentState(const QString& path) {
    Opened opened = openForReading(path);
    if (!opened.file) {
        // Missing: nothing there. Anything else is there, but its bytes cannot be compared.
        if (opened.kind == editor::FileKind::Missing) return {};
        return opened.state;
    }
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!hash.addData(opened.file.get())) return opened.state;
    opened.state.hash = hash.result().toHex().toStdString();
    return opened.state;
}

std::string digest(std::initializer_list<QByteArrayView> parts) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QByteArrayView part : parts) hash.addData(part);
    return hash.result().toHex().toStdString();
}

bool write(const QString& path, std::initializer_list<QByteArrayView> parts, QString& error,
           editor::DiskState* written) {
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    // Unbuffered: with a buffer, a failure to write the last block shows only when the buffer is
    // flushed inside commit(), which does not report it and replaces the old file anyway.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        error = file.errorString();
        return false;
    }
    for (const QByteArrayView part : parts) {
        // A write cut short (a full disk) is tried again for the rest, which then fails with the
        // system's reason.
        for (qsizetype done = 0; done < part.size();) {
            const qint64 n = file.write(part.data() + done, part.size() - done);
            if (n <= 0) {
                error = file.errorString();
                file.cancelWriting();
                return false;
            }
            done += n;
        }
    }
    // Some file systems report a full disk only when the data reaches it.
    if (::fsync(file.handle()) != 0 && errno != EINVAL && errno != ENOTSUP) {
        error = systemReason(errno);
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        error = file.errorString();
        return false;
    }
    if (written) {
        struct stat st {};
        if (::stat(QFile::encodeName(path).constData(), &st) == 0) {
            *written = stateOf(st);
            written->hash = digest(parts);
        } else {
            *written = {};
        }
    }
    return true;
}

} // namespace diskfile
