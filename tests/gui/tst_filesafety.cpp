// The user's text is never lost: saves onto a full disk or into a locked folder, files changed on
// disk behind a window's back, files that cannot be opened, and recovery copies after a crash.
#include "harness.h"

#include "app/ui/MRU.h"
#include "app/ui/diskfile.h"
#include "editor/recovery.h"
#include "editor/ui/NoticeBar.h"

#include <QDir>
#include <QLabel>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void typeAtStart(frmTessary* w, const char* text) {
    w->txtMain->setFocus();
    w->txtMain->setSelStart(0);
    QTest::keyClicks(w->txtMain, text);
}

QString reason(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

// Runs f as an ordinary user would: root passes every permission check.
template <typename F> void asOrdinaryUser(F f) {
    const bool root = ::geteuid() == 0;
    if (root) QVERIFY(::seteuid(65534) == 0);
    f();
    if (root) QVERIFY(::seteuid(0) == 0);
}

// Runs f with room for only `bytes` bytes in any file this process writes: a full disk.
template <typename F> void onAFullDisk(rlim_t bytes, F f) {
    std::signal(SIGXFSZ, SIG_IGN); // the write fails with EFBIG instead of ending the program
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &small);
    f();
    setrlimit(RLIMIT_FSIZE, &old);
}

QString recoveryRoot() {
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QStringLiteral("/recovery");
}

// The folders of recovery copies: this program's own, or those of other programs.
QStringList recoveryFolders(bool own) {
    const QString mine = QString::number(QCoreApplication::applicationPid()) + QLatin1Char('-');
    QStringList found;
    for (const QString& name : QDir(recoveryRoot()).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (name.startsWith(mine) == own) found << recoveryRoot() + QLatin1Char('/') + name;
    return found;
}

// The copy of the window holding strFile (a path, or "blank"), written by this program.
std::optional<editor::RecoveryRecord> copyOf(const QString& strFile) {
    for (const QString& folder : recoveryFolders(true))
        for (const QString& name : QDir(folder).entryList({QStringLiteral("*.rec")}, QDir::Files)) {
            const QByteArray bytes = readFile(folder + QLatin1Char('/') + name);
            auto record = editor::decodeRecovery(std::string_view(bytes.constData(), bytes.size()));
            if (record && record->path == strFile.toStdString()) return record;
        }
    return std::nullopt;
}

} // namespace

class tst_FileSafety : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;

    QString path(const QString& name) const { return dir_->filePath(name); }
    void start(const QString& commandLine = {}) {
        frame_ = startTessary(dialogs_, commandLine);
        QVERIFY(frame_);
    }
    frmTessary* open(const QString& file) {
        mdlTessary::OpenCogFile(file);
        return mdlTessary::currentCog();
    }
    void save(frmTessary* w) {
        mdlTessary::strCurCog = w->Tag;
        frame_->mnuFileSave_Click();
    }

private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        dir_ = std::make_unique<QTemporaryDir>();
    }
    void cleanup() {
        stopTessary();
        mdlTessary::setProgramDirectory(QStringLiteral(TESSARY_BIN_DIR));
    }

    void fullDiskKeepsTheOldFile_data();
    void fullDiskKeepsTheOldFile();
    void changedOnDiskAsksBeforeSaving_data();
    void changedOnDiskAsksBeforeSaving();
    void lockedFolderWritesTheFileInPlace_data();
    void lockedFolderWritesTheFileInPlace();
    void refusedFilesLeaveAnUnboundWindow_data();
    void refusedFilesLeaveAnUnboundWindow();
    void refusedDataFilesAreReported_data();
    void refusedDataFilesAreReported();
    void changedOnDiskBar_data();
    void changedOnDiskBar();
    void recoveryCopyFollowsTheText_data();
    void recoveryCopyFollowsTheText();
    void startUpOffersCopiesOfEndedPrograms_data();
    void startUpOffersCopiesOfEndedPrograms();
};

void tst_FileSafety::fullDiskKeepsTheOldFile_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("atExit"); // saved by Yes to the close prompt at Exit, or by File Save
    QTest::newRow("a few bytes") << 100 << 50 << false;
    QTest::newRow("no room at all") << 3000 << 0 << false;
    QTest::newRow("less than one write buffer") << 10000 << 4096 << false;
    QTest::newRow("more than one write buffer") << 20000 << 4096 << false;
    QTest::newRow("Exit, Yes: the program keeps running") << 10000 << 4096 << true;
}

void tst_FileSafety::fullDiskKeepsTheOldFile() {
    QFETCH(int, size);
    QFETCH(int, room);
    QFETCH(bool, atExit);
    const QString file = path(QStringLiteral("full.cog"));
    const QByteArray original("symbols\r\nend\r\n");
    writeFile(file, original);
    start();
    frmTessary* w = open(file);
    w->txtMain->setTextBytes(QByteArray(size, 'x'));
    dialogs_.answers << ui::vbYes;
    onAFullDisk(room, [&] { atExit ? frame_->mnuFileExit_Click() : frame_->mnuFileSave_Click(); });

    QCOMPARE(readFile(file), original);
    QCOMPARE(QDir(dir_->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("full.cog")});
    const QString shown = dialogs_.texts().value(atExit ? 1 : 0);
    QVERIFY2(shown.contains(file) && shown.contains(reason(EFBIG)), qPrintable(shown));
    QVERIFY(w->bMod);
    QCOMPARE(textOf(w), QByteArray(size, 'x'));
    QCOMPARE(mdlTessary::frame(), frame_);
    QCOMPARE(mdlTessary::colCogs.count(), atExit ? 1 : 2); // at Exit, the unmodified "Cog 1" has closed
}

void tst_FileSafety::changedOnDiskAsksBeforeSaving_data() {
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("asks");
    QTest::newRow("another program wrote it; No keeps its text") << "other program" << int(ui::vbNo) << true;
    QTest::newRow("another program wrote it; Yes saves") << "other program" << int(ui::vbYes) << true;
    QTest::newRow("another window of the file saved first") << "other window" << int(ui::vbNo) << true;
    QTest::newRow("rewritten with the same bytes: no question") << "same bytes" << int(ui::vbNo) << false;
    QTest::newRow("deleted: written again without a question") << "deleted" << int(ui::vbNo) << false;
}

void tst_FileSafety::changedOnDiskAsksBeforeSaving() {
    QFETCH(QString, change);
    QFETCH(int, answer);
    QFETCH(bool, asks);
    const QString file = path(QStringLiteral("shared.cog"));
    const QByteArray original("symbols\r\nend\r\n");
    writeFile(file, original);
    start();
    frmTessary* w = open(file);
    typeAtStart(w, "mine ");
    if (change == QLatin1String("other program")) writeFile(file, "theirs\r\n");
    if (change == QLatin1String("same bytes")) writeFile(file, original);
    if (change == QLatin1String("deleted")) QFile::remove(file);
    if (change == QLatin1String("other window")) {
        frmTessary* other = open(file);
        typeAtStart(other, "theirs ");
        save(other);
        QVERIFY(dialogs_.messages.isEmpty() && !other->bMod);
    }
    const QByteArray theirs = readFile(file);
    dialogs_.answers << answer;
    save(w);

    QCOMPARE(dialogs_.messages.size(), asks ? 1 : 0);
    if (asks) {
        QCOMPARE(dialogs_.messages[0].text,
                 file +
                     QStringLiteral(" has changed on disk since you opened it.\r\nSave anyway, replacing it "
                                    "with the text of this window?"));
        QCOMPARE(dialogs_.messages[0].buttons, int(ui::vbYesNo | ui::vbDefaultButton2));
        QCOMPARE(dialogs_.messages[0].icon, int(ui::vbExclamation));
    }
    const bool saved = !asks || answer == ui::vbYes;
    QCOMPARE(readFile(file), saved ? textOf(w) + "\r\n" : theirs);
    QCOMPARE(w->bMod, !saved);
}

void tst_FileSafety::lockedFolderWritesTheFileInPlace_data() {
    QTest::addColumn<bool>("fileWritable");
    QTest::newRow("the file may be written: written in place") << true;
    QTest::newRow("neither: reported, the file kept") << false;
}

void tst_FileSafety::lockedFolderWritesTheFileInPlace() {
    QFETCH(bool, fileWritable);
    const QString folder = path(QStringLiteral("locked"));
    const QString file = folder + QStringLiteral("/door.cog");
    const QByteArray original("symbols\r\nend\r\n");
    QVERIFY(QDir().mkpath(folder));
    writeFile(file, original);
    ::chmod(QFile::encodeName(dir_->path()).constData(), 0755);
    ::chmod(QFile::encodeName(file).constData(), fileWritable ? 0666 : 0444);
    ::chmod(QFile::encodeName(folder).constData(), 0555);
    start();
    frmTessary* w = open(file);
    typeAtStart(w, "opened ");
    asOrdinaryUser([&] { save(w); });
    ::chmod(QFile::encodeName(folder).constData(), 0755);

    QCOMPARE(readFile(file), fileWritable ? textOf(w) + "\r\n" : original);
    QCOMPARE(w->bMod, !fileWritable);
    QCOMPARE(dialogs_.messages.size(), fileWritable ? 0 : 1);
    if (!fileWritable)
        QVERIFY(dialogs_.messages[0].text.contains(file + QStringLiteral(": ") + reason(EACCES)));
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("door.cog")});
}

void tst_FileSafety::refusedFilesLeaveAnUnboundWindow_data() {
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("shown"); // the message's end; empty: no message
    const QString notRegular = QStringLiteral(": it is not a regular file (a pipe, a device or a socket)");
    for (const char* source : {"command line", "execute request", "drop"})
        QTest::newRow(qPrintable(QStringLiteral("%1: a pipe").arg(source))) << source << "pipe" << notRegular;
    QTest::newRow("command line: a device") << "command line"
                                            << "device" << notRegular;
    QTest::newRow("command line: a directory") << "command line"
                                               << "directory"
                                               << ": it is a directory";
    QTest::newRow("command line: too large") << "command line"
                                             << "too large"
                                             << ": it is too large (1.0 GB; this editor opens files up to ";
    QTest::newRow("command line: vanished") << "command line"
                                            << "vanished"
                                            << ": " + reason(ENOENT);
    QTest::newRow("execute request: may be written, not read") << "execute request"
                                                               << "unreadable"
                                                               << ": " + reason(EACCES);
    QTest::newRow("File Open: a pipe, silently") << "File Open"
                                                 << "pipe"
                                                 << "";
    QTest::newRow("recent files: a pipe") << "recent files"
                                          << "pipe"
                                          << "File does not exist.";
    QTest::newRow("a template that is a pipe")
        << "command line"
        << "template"
        << ": it is not a regular file (a pipe, a device or a socket).";
}

void tst_FileSafety::refusedFilesLeaveAnUnboundWindow() {
    QFETCH(QString, source);
    QFETCH(QString, kind);
    QFETCH(QString, shown);
    QString target = path(kind + QStringLiteral(".cog"));
    const QByteArray secret("not to be overwritten\r\n");
    if (kind == QLatin1String("pipe") || kind == QLatin1String("template")) {
        if (kind == QLatin1String("template")) target = path(QStringLiteral("pipe.cgt"));
        QCOMPARE(::mkfifo(QFile::encodeName(target).constData(), 0644), 0);
    } else if (kind == QLatin1String("device")) {
        target = QStringLiteral("/dev/zero");
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkpath(target));
    } else if (kind == QLatin1String("too large")) {
        QFile huge(target);
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(editor::kMaxOpenBytes) + 1)); // sparse
    } else if (kind == QLatin1String("unreadable")) {
        writeFile(target, secret);
        ::chmod(QFile::encodeName(dir_->path()).constData(), 0755);
        ::chmod(QFile::encodeName(target).constData(), 0222);
    }
    start(source == QLatin1String("command line") ? target : QString());
    const int windows = mdlTessary::colCogs.count();
    if (source == QLatin1String("execute request")) {
        if (kind == QLatin1String("unreadable"))
            asOrdinaryUser([&] { frame_->MDIForm_LinkExecute(target); });
        else
            frame_->MDIForm_LinkExecute(target);
    }
    if (source == QLatin1String("File Open")) {
        dialogs_.openAnswers << target;
        frame_->mnuFileOpen_Click();
    }
    if (source == QLatin1String("recent files")) {
        mdlTessary::objMRU->AddFile(frame_->mnuFileMRU, target, QStringLiteral("pipe.cog"),
                                    frame_->mnuFileBar6);
        frame_->mnuFileMRU_Click(0);
    }
    if (source == QLatin1String("drop")) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(target)});
        QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(frame_, &enter);
        QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(frame_, &drop);
        QTRY_COMPARE(mdlTessary::colCogs.count(), windows + 1);
    }

    QStringList texts = dialogs_.texts();
    if (source == QLatin1String("execute request")) QCOMPARE(texts.takeFirst(), target);
    QCOMPARE(texts.size(), shown.isEmpty() ? 0 : 1);
    if (!shown.isEmpty())
        QVERIFY2(texts[0].endsWith(shown) || texts[0].contains(target + shown), qPrintable(texts[0]));
    if (kind == QLatin1String("template") || source == QLatin1String("recent files")) {
        QCOMPARE(mdlTessary::colCogs.count(), windows); // no window for either
        return;
    }
    // The window stays, bound to no file: Save asks where to write, and the file is left alone.
    frmTessary* w = mdlTessary::currentCog();
    QCOMPARE(w->strFile, QStringLiteral("blank"));
    QCOMPARE(w->Caption(), QStringLiteral("Cog ") + w->Tag.mid(3));
    QVERIFY(!w->bMod);
    const QString elsewhere = path(QStringLiteral("elsewhere.cog"));
    dialogs_.saveAnswers << elsewhere;
    typeAtStart(w, "x");
    save(w);
    QCOMPARE(readFile(elsewhere), textOf(w) + "\r\n");
    if (kind == QLatin1String("unreadable")) QCOMPARE(readFile(target), secret);
}

void tst_FileSafety::refusedDataFilesAreReported_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("pipe"); // or a directory
    for (const char* name : {"default.cog", "messages.dat", "cogref.dat"}) {
        QTest::newRow(qPrintable(QStringLiteral("%1 is a pipe").arg(name))) << name << true;
        QTest::newRow(qPrintable(QStringLiteral("%1 is a directory").arg(name))) << name << false;
    }
}

void tst_FileSafety::refusedDataFilesAreReported() {
    QFETCH(QString, name);
    QFETCH(bool, pipe);
    for (const char* file : {"default.cog", "messages.dat", "cogref.dat"})
        QVERIFY(QFile::copy(QStringLiteral(TESSARY_BIN_DIR "/") + file, path(file)));
    QFile::remove(path(name));
    if (pipe)
        QCOMPARE(::mkfifo(QFile::encodeName(path(name)).constData(), 0644), 0);
    else
        QVERIFY(QDir().mkpath(path(name)));
    mdlTessary::setProgramDirectory(dir_->path());
    start();
    QCOMPARE(mdlTessary::colCogs.count(), 1);
    const QString expected =
        QStringLiteral("Could not open ") + path(name) +
        (pipe ? QStringLiteral(": it is not a regular file (a pipe, a device or a socket)")
              : QStringLiteral(": it is a directory"));
    QCOMPARE(dialogs_.texts(), QStringList{expected});
}

void tst_FileSafety::changedOnDiskBar_data() {
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("modified");
    QTest::addColumn<int>("answer");  // to the question before reloading a modified window
    QTest::addColumn<QString>("bar"); // "changed", "deleted" or "" for none
    QTest::newRow("changed: Reload reads it") << "rewrite" << false << 0 << "changed";
    QTest::newRow("changed, window modified: Reload, No") << "rewrite" << true << int(ui::vbNo) << "changed";
    QTest::newRow("changed, window modified: Reload, Yes; Undo")
        << "rewrite" << true << int(ui::vbYes) << "changed";
    QTest::newRow("replaced through a temporary file, watched again") << "replace" << false << 0 << "changed";
    QTest::newRow("deleted") << "delete" << false << 0 << "deleted";
    QTest::newRow("the same bytes written again: no bar") << "same bytes" << false << 0 << "";
    QTest::newRow("saved by this window: no bar") << "own save" << true << 0 << "";
}

void tst_FileSafety::changedOnDiskBar() {
    QFETCH(QString, change);
    QFETCH(bool, modified);
    QFETCH(int, answer);
    QFETCH(QString, bar);
    const QString file = path(QStringLiteral("watched.cog"));
    const QByteArray original("symbols\r\nend\r\n"), theirs("# changed elsewhere\r\n");
    writeFile(file, original);
    start();
    frmTessary* w = open(file);
    if (modified) typeAtStart(w, "mine ");
    const QByteArray mine = textOf(w);
    if (change == QLatin1String("rewrite")) writeFile(file, theirs);
    if (change == QLatin1String("same bytes")) writeFile(file, original);
    if (change == QLatin1String("delete")) QFile::remove(file);
    if (change == QLatin1String("own save")) save(w);
    if (change == QLatin1String("replace")) {
        writeFile(file + QStringLiteral(".new"), theirs);
        QVERIFY(::rename(QFile::encodeName(file + QStringLiteral(".new")).constData(),
                         QFile::encodeName(file).constData()) == 0);
    }
    if (bar.isEmpty()) {
        QTest::qWait(500);
        QVERIFY(w->diskBar->isHidden());
        QVERIFY(dialogs_.messages.isEmpty());
        return;
    }
    QTRY_VERIFY(!w->diskBar->isHidden());
    QCOMPARE(w->lblDisk->text(),
             bar == QLatin1String("changed")
                 ? QStringLiteral("The file on disk has changed since this window read or saved it.")
                 : QStringLiteral("The file has been deleted from disk. Save writes it again."));
    QCOMPARE(w->cmdReload->isHidden(), bar == QLatin1String("deleted"));
    QCOMPARE(textOf(w), mine); // nothing read without the user's word
    if (bar == QLatin1String("deleted")) return;
    if (change == QLatin1String("replace")) {
        // Dismissed, the bar comes back when the new file changes too.
        QTest::mouseClick(w->cmdDismiss, Qt::LeftButton);
        QVERIFY(w->diskBar->isHidden());
        writeFile(file, "# and again\r\n");
        QTRY_VERIFY(!w->diskBar->isHidden());
    }
    const QByteArray onDisk = readFile(file);
    dialogs_.answers << answer;
    QTest::mouseClick(w->cmdReload, Qt::LeftButton);
    QCOMPARE(dialogs_.messages.size(), modified ? 1 : 0);
    const bool reloaded = !modified || answer == ui::vbYes;
    QCOMPARE(textOf(w), reloaded ? onDisk : mine);
    QCOMPARE(w->bMod, !reloaded);
    QCOMPARE(w->diskBar->isHidden(), reloaded);
    if (modified && reloaded) {
        w->txtMain->undo();
        QCOMPARE(textOf(w), mine);
    }
}

void tst_FileSafety::recoveryCopyFollowsTheText_data() {
    QTest::addColumn<QString>("end"); // how the changes end
    QTest::addColumn<bool>("kept");
    QTest::newRow("saved") << "save" << false;
    QTest::newRow("closed, changes discarded") << "No" << false;
    QTest::newRow("Yes and a cancelled Save As keep the window") << "Yes" << true;
}

void tst_FileSafety::recoveryCopyFollowsTheText() {
    QFETCH(QString, end);
    QFETCH(bool, kept);
    const QString file = path(QStringLiteral("kept.cog"));
    writeFile(file, "symbols\r\nend\r\n");
    start();
    frmTessary* w = end == QLatin1String("Yes") ? cogWindow(1) : open(file);
    w->findChild<QTimer*>(QStringLiteral("recoveryPause"))->setInterval(10);
    typeAtStart(w, "typed ");
    QTRY_VERIFY(copyOf(w->strFile));
    QCOMPARE(QByteArray::fromStdString(copyOf(w->strFile)->text), textOf(w));
    QCOMPARE(copyOf(w->strFile)->disk, w->diskState);
    typeAtStart(w, "more ");
    const QByteArray text = textOf(w);
    const QString strFile = w->strFile;
    if (end == QLatin1String("save")) {
        save(w);
        QVERIFY(!copyOf(strFile));
        return;
    }
    dialogs_.answers << (end == QLatin1String("Yes") ? ui::vbYes : ui::vbNo);
    w->subWindow()->close();                  // the Save As dialog is cancelled
    QCOMPARE(mdlTessary::colCogs.count(), 1); // No closes the file's window; Yes keeps the blank one
    QCOMPARE(copyOf(strFile).has_value(), kept);
    if (kept) QTRY_COMPARE(QByteArray::fromStdString(copyOf(strFile)->text), text); // once typing has paused
    for (const QString& folder : recoveryFolders(true))
        for (const QString& name : QDir(folder).entryList({QStringLiteral("*.rec")}))
            QDir(folder).remove(name);
}

void tst_FileSafety::startUpOffersCopiesOfEndedPrograms_data() {
    QTest::addColumn<bool>("ended"); // the program that wrote the copies has ended, or still runs
    QTest::addColumn<int>("answer");
    QTest::newRow("Yes restores them into modified windows") << true << int(ui::vbYes);
    QTest::newRow("No discards them") << true << int(ui::vbNo);
    QTest::newRow("Cancel keeps them for the next start") << true << int(ui::vbCancel);
    QTest::newRow("their program still runs: not offered") << false << int(ui::vbYes);
}

void tst_FileSafety::startUpOffersCopiesOfEndedPrograms() {
    QFETCH(bool, ended);
    QFETCH(int, answer);
    // A real program starts and is killed, leaving its folder of copies behind.
    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSARY_TEST_LOG"), path(QStringLiteral("log.txt")));
    program.setProcessEnvironment(env);
    program.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), {});
    QTRY_VERIFY_WITH_TIMEOUT(recoveryFolders(false).size() == 1, 20000);
    const QString folder = recoveryFolders(false).first();
    QTRY_VERIFY(QFile::exists(folder + QStringLiteral("/lock")));
    if (ended) {
        program.kill();
        program.waitForFinished(10000);
    }
    const QString file = path(QStringLiteral("door.cog"));
    writeFile(file, "symbols\r\nend\r\n");
    const std::vector<editor::RecoveryRecord> records{
        {file.toStdString(), "door.cog", diskfile::currentState(file), "symbols\r\nthing door\r\nend\r\n"},
        {"blank", "", {}, "# a new script\r\n"}};
    for (std::size_t i = 0; i < records.size(); ++i)
        writeFile(folder + QStringLiteral("/%1.rec").arg(i + 1),
                  QByteArray::fromStdString(encodeRecovery(records[i])));

    dialogs_.answers << answer;
    start();
    if (!ended) {
        QVERIFY(dialogs_.messages.isEmpty());
        QCOMPARE(QDir(folder).entryList({QStringLiteral("*.rec")}).size(), 2);
        program.kill();
        program.waitForFinished(10000);
        QDir(folder).removeRecursively();
        return;
    }
    QCOMPARE(dialogs_.texts(), QStringList{QString::fromStdString(editor::recoveryOffer(records))});
    QCOMPARE(dialogs_.messages[0].buttons, int(ui::vbYesNoCancel));
    QCOMPARE(QDir(folder).exists(), answer == ui::vbCancel);
    QCOMPARE(mdlTessary::colCogs.count(), answer == ui::vbYes ? 3 : 1);
    QDir(folder).removeRecursively();
    if (answer != ui::vbYes) return;
    const QStringList captions{QStringLiteral("door.cog*"), QStringLiteral("Cog 3*")};
    for (int i = 0; i < 2; ++i) {
        frmTessary* w = cogWindow(i + 2);
        QCOMPARE(w->Caption(), captions[i]);
        QCOMPARE(textOf(w), QByteArray::fromStdString(records[std::size_t(i)].text));
        QVERIFY(w->bMod);
        QCOMPARE(w->strFile, QString::fromStdString(records[std::size_t(i)].path));
        QVERIFY(copyOf(w->strFile)); // copied again at once, now by this program
    }
    // The restored window knows the file as the ended program last read it: it saves without a question.
    save(cogWindow(2));
    QVERIFY(dialogs_.messages.size() == 1 && !cogWindow(2)->bMod);
    QCOMPARE(readFile(file), QByteArray("symbols\r\nthing door\r\nend\r\n\r\n"));
}

TESSARY_TEST_MAIN(tst_FileSafety)
#include "tst_filesafety.moc"
