#include "app/ui/recovery.h"

#include "app/ui/dialogs.h"
#include "app/ui/diskfile.h"
#include "app/ui/mdlTessary.h"
#include "editor/recovery.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <memory>
#include <vector>

namespace {

const QString kSuffix = QStringLiteral(".rec");

QString recoveryRoot() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return data.isEmpty() ? QString() : data + QStringLiteral("/recovery");
}

QStringList copiesIn(const QString& folder) {
    return QDir(folder).entryList({QLatin1Char('*') + kSuffix}, QDir::Files);
}

// This program's folder, named by its process and start time, and locked while it runs: a folder
// whose lock no running program holds belongs to a program that has ended.
struct Session {
    QString folder;
    std::unique_ptr<QLockFile> lock;
    int copies = 0;

    Session() {
        const QString root = recoveryRoot();
        const QString name = QStringLiteral("%1-%2")
                                 .arg(QCoreApplication::applicationPid())
                                 .arg(QDateTime::currentMSecsSinceEpoch());
        if (root.isEmpty() || !QDir().mkpath(root + QLatin1Char('/') + name)) {
            qWarning("No folder for recovery copies under %s: unsaved text is not copied", qPrintable(root));
            return;
        }
        QFile::setPermissions(root, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        lock = std::make_unique<QLockFile>(root + QLatin1Char('/') + name + QStringLiteral("/lock"));
        lock->setStaleLockTime(0);
        if (!lock->tryLock(0)) {
            qWarning("Cannot lock the folder of recovery copies %s", qPrintable(name));
            lock.reset();
            return;
        }
        folder = root + QLatin1Char('/') + name;
    }
    ~Session() {
        if (folder.isEmpty()) return;
        lock->unlock();
        // Copies kept by windows closed unsaved stay for the next start.
        if (copiesIn(folder).isEmpty()) QDir(folder).removeRecursively();
    }
};

std::unique_ptr<Session> gSession;

// Started with the first window; ended with the application object, while its folder is still
// there to clean up.
Session& session() {
    if (!gSession) {
        gSession = std::make_unique<Session>();
        qAddPostRoutine([] { gSession.reset(); });
    }
    return *gSession;
}

// Restores one copy into a new window, marked modified.
void restore(const editor::RecoveryRecord& record) {
    const QString path = QString::fromStdString(record.path);
    frmTessary* w = mdlTessary::NewCogWindow(path, QString::fromStdString(record.title));
    QByteArray text = QByteArray::fromStdString(record.text);
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    w->txtMain->loadFrom(buffer); // nothing to undo; the change marks the window modified
    w->setDiskState(record.disk);
    w->checkDisk();
    if (auto* copy = w->findChild<RecoveryCopy*>()) copy->writeNow();
}

} // namespace

RecoveryCopy::RecoveryCopy(frmTessary* w) : QObject(w), w_(w) {
    setObjectName(QStringLiteral("recoveryCopy"));
    pause_.setObjectName(QStringLiteral("recoveryPause"));
    pause_.setSingleShot(true);
    pause_.setInterval(kPauseMs);
    longest_.setObjectName(QStringLiteral("recoveryLongest"));
    longest_.setSingleShot(true);
    longest_.setInterval(kLongestMs);
    pause_.setParent(this);
    longest_.setParent(this);
    connect(&pause_, &QTimer::timeout, this, &RecoveryCopy::writeNow);
    connect(&longest_, &QTimer::timeout, this, &RecoveryCopy::writeNow);
    // The keystroke only restarts a timer; the copy is written once typing pauses.
    connect(w->txtMain, &CogTextBox::textEdited, this, [this] {
        pause_.start();
        if (!longest_.isActive()) longest_.start();
    });
    connect(w, &frmTessary::discarded, this, [this] {
        discarded_ = true;
        remove();
    });
    // A window closed with its changes neither saved nor discarded (its Save As was cancelled)
    // leaves its copy for the next start.
    connect(w, &frmTessary::closed, this, &RecoveryCopy::writeNow);
}

void RecoveryCopy::writeNow() {
    pause_.stop();
    longest_.stop();
    if (!w_->bMod || discarded_) {
        remove();
        return;
    }
    if (file_.isEmpty()) {
        const QString folder = session().folder;
        if (folder.isEmpty()) return;
        file_ = folder + QStringLiteral("/%1").arg(++session().copies) + kSuffix;
    }
    editor::RecoveryRecord record;
    record.path = w_->strFile.toStdString();
    record.title = w_->strFileTitle.toStdString();
    record.disk = w_->diskState;
    const std::string header = editor::encodeRecoveryHeader(record, w_->txtMain->bytes().size());
    const std::string_view text = w_->txtMain->bytes();
    QString error;
    if (!diskfile::write(file_, {QByteArrayView(header), QByteArrayView(text)}, error))
        qWarning("Cannot write the recovery copy %s: %s", qPrintable(file_), qPrintable(error));
}

void RecoveryCopy::remove() {
    pause_.stop();
    longest_.stop();
    if (!file_.isEmpty()) QFile::remove(file_);
}

namespace recovery {

void startSession() {
    session();
}

void attach(frmTessary* w) {
    new RecoveryCopy(w);
}

void forget(frmTessary* w) {
    if (auto* copy = w->findChild<RecoveryCopy*>()) copy->remove();
}

void offer() {
    const QString own = session().folder;
    const QString root = recoveryRoot();
    if (root.isEmpty()) return;
    struct Left {
        QString folder;
        std::unique_ptr<QLockFile> lock; // held until the question is answered
        QStringList files;               // the copies offered
    };
    std::vector<Left> left;
    std::vector<editor::RecoveryRecord> records;
    for (const QString& name : QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString folder = root + QLatin1Char('/') + name;
        if (folder == own) continue;
        auto lock = std::make_unique<QLockFile>(folder + QStringLiteral("/lock"));
        lock->setStaleLockTime(0); // only a program that has ended lets go of its folder
        if (!lock->tryLock(0)) continue;
        Left entry{folder, std::move(lock), {}};
        for (const QString& file : copiesIn(folder)) {
            QByteArray bytes;
            QString error;
            if (!diskfile::readAll(folder + QLatin1Char('/') + file, bytes, error)) continue;
            auto record = editor::decodeRecovery(std::string_view(bytes.constData(), bytes.size()));
            if (!record) continue; // damaged: left where it is
            records.push_back(std::move(*record));
            entry.files << file;
        }
        left.push_back(std::move(entry));
    }
    int answer = ui::vbCancel;
    if (!records.empty())
        answer = ui::MsgBox(QString::fromStdString(editor::recoveryOffer(records)), ui::vbYesNoCancel,
                            ui::vbExclamation);
    if (answer == ui::vbYes)
        for (const auto& record : records) restore(record);
    for (Left& entry : left) {
        if (answer == ui::vbYes || answer == ui::vbNo)
            for (const QString& file : entry.files) QFile::remove(entry.folder + QLatin1Char('/') + file);
        entry.lock->unlock();
        if (copiesIn(entry.folder).isEmpty()) QDir(entry.folder).removeRecursively();
    }
}

} // namespace recovery
