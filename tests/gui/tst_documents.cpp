// The editor windows' files: opening, editing and saving byte for byte, the modified mark, the
// close prompt, Save All, failed saves, printing, and the commands with no window open.
#include "harness.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

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

// Opens path through File Open, as the user does.
frmTessary* openThroughMenu(ScriptedDialogs& dialogs, const QString& path) {
    dialogs.openAnswers << path;
    mdlTessary::frame()->mnuFileOpen_Click();
    return mdlTessary::currentCog();
}

void typeAtStart(frmTessary* w, const char* text) {
    w->txtMain->setFocus();
    w->txtMain->setSelStart(0);
    QTest::keyClicks(w->txtMain, text);
}

} // namespace

class tst_Documents : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    QString path(const QString& name) const { return dir_.filePath(name); }

private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void roundTripKeepsEveryByte_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("CR LF lines") << QByteArray("# a cog\r\nsymbols\r\nint x\r\nend\r\ncode\r\nend\r\n");
        QTest::newRow("bare LF kept") << QByteArray("symbols\nend\ncode\nend\n");
        QTest::newRow("lone CR kept") << QByteArray("a\rb\r\nc");
        QTest::newRow("NUL byte kept") << QByteArray("sym\0bols\r\nend", 14);
        QTest::newRow("8-bit bytes kept") << QByteArray("# caf\xe9 \x80 \xff\r\nend");
        QTest::newRow("empty file") << QByteArray();
        // 17-byte lines put a CR as the last byte of the first MB and its LF as the first of the next.
        QTest::newRow("CR LF across a MB boundary") << QByteArray("abcdefghijklmno\r\n").repeated(70000);
    }
    void roundTripKeepsEveryByte() {
        QFETCH(QByteArray, bytes);
        const QString file = path(QStringLiteral("round.cog"));
        writeFile(file, bytes);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frmTessary* w = openThroughMenu(dialogs, file);
        QVERIFY(w);
        QCOMPARE(textOf(w), bytes);
        // One line per line end (CR LF, lone CR or lone LF), plus the last.
        const long lineEnds =
            bytes.count("\r\n") + bytes.count('\r') + bytes.count('\n') - 2 * bytes.count("\r\n");
        QCOMPARE(w->txtMain->lines(), int(lineEnds + 1));
        QCOMPARE(w->Caption(), QStringLiteral("round.cog"));
        QCOMPARE(w->Tag, QStringLiteral("cog2"));
        QCOMPARE(frame->cmbCog->itemText(1), QStringLiteral("round.cog"));
        QVERIFY(!w->bMod);

        // Saved unchanged: the text plus CR LF.
        frame->mnuFileSave_Click();
        QCOMPARE(readFile(file), bytes + "\r\n");

        // Edited: one star however much is typed; saved: the edit, the rest untouched, one more CR LF.
        typeAtStart(w, "x");
        QVERIFY(w->bMod);
        QTest::keyClicks(w->txtMain, "y");
        QCOMPARE(w->Caption(), QStringLiteral("round.cog*"));
        QCOMPARE(w->subWindow()->windowTitle(), QStringLiteral("round.cog*"));
        QCOMPARE(textOf(w), "xy" + bytes);
        frame->mnuFileSave_Click();
        QCOMPARE(readFile(file), "xy" + bytes + "\r\n");
        QVERIFY(!w->bMod);
        QCOMPARE(w->Caption(), QStringLiteral("round.cog"));
        QVERIFY(dialogs.messages.isEmpty());
    }
    void closePrompt_data() {
        QTest::addColumn<bool>("saved"); // the window belongs to a file, or was never saved
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("saveAsChoosesFile");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QByteArray>("onDisk"); // "typed": the window's text plus CR LF
        QTest::newRow("Yes saves, then closes")
            << true << int(ui::vbYes) << false << true << QByteArray("typed");
        QTest::newRow("No discards, then closes")
            << true << int(ui::vbNo) << false << true << QByteArray("end\r\n");
        QTest::newRow("Cancel keeps the window")
            << true << int(ui::vbCancel) << false << false << QByteArray("end\r\n");
        QTest::newRow("never saved: Yes, then a file in Save As")
            << false << int(ui::vbYes) << true << true << QByteArray("typed");
        QTest::newRow("never saved: Yes, then Save As cancelled keeps the window")
            << false << int(ui::vbYes) << false << false << QByteArray("<missing>");
    }
    void closePrompt() {
        QFETCH(bool, saved);
        QFETCH(int, answer);
        QFETCH(bool, saveAsChoosesFile);
        QFETCH(bool, closes);
        QFETCH(QByteArray, onDisk);
        const QString file = path(QStringLiteral("prompt.cog"));
        QFile::remove(file);
        if (saved) writeFile(file, "end\r\n");
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frmTessary* w = saved ? openThroughMenu(dialogs, file) : cogWindow(1);
        typeAtStart(w, "x");
        const QByteArray typed = textOf(w) + "\r\n";
        const int windows = mdlTessary::colCogs.count();
        dialogs.answers << answer;
        if (saveAsChoosesFile) dialogs.saveAnswers << file;
        frame->mnuFileClose_Click();

        QCOMPARE(dialogs.messages.size(), 1);
        QCOMPARE(dialogs.messages[0].text, saved ? QStringLiteral("Save changes to prompt.cog?")
                                                 : QStringLiteral("Save changes to Cog 1*?"));
        QCOMPARE(dialogs.messages[0].buttons, int(ui::vbYesNoCancel));
        QCOMPARE(dialogs.messages[0].icon, int(ui::vbExclamation));
        QCOMPARE(dialogs.messages[0].title, QStringLiteral("Tessary"));
        QCOMPARE(readFile(file), onDisk == "typed" ? typed : onDisk);
        QCOMPARE(mdlTessary::colCogs.count(), closes ? windows - 1 : windows);
        QCOMPARE(frame->cmbCog->count(), mdlTessary::colCogs.count());
        if (saved)
            QCOMPARE(frame->windowTitle(),
                     closes ? QStringLiteral("Tessary by Varnell") : QStringLiteral("Tessary - by Varnell"));
        if (!closes) QCOMPARE(w->Caption(), saved ? QStringLiteral("prompt.cog*") : QStringLiteral("Cog 1*"));
    }
    void cancelInThePromptStopsExit() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frame->mnuFileNew_Click();
        typeAtStart(cogWindow(1), "a");
        typeAtStart(cogWindow(2), "b");
        dialogs.answers << ui::vbNo << ui::vbCancel;
        frame->mnuFileExit_Click();
        QCOMPARE(dialogs.texts(), (QStringList{QStringLiteral("Save changes to Cog 1*?"),
                                               QStringLiteral("Save changes to Cog 2*?")}));
        // The first window stays closed; the program keeps running with the second.
        QCOMPARE(mdlTessary::frame(), frame);
        QVERIFY(frame->isVisible());
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        QCOMPARE(cogWindow(1)->Caption(), QStringLiteral("Cog 2*"));
    }
    void saveAllAnnouncesThenSavesEveryWindow() {
        const QString a = path(QStringLiteral("a.cog")), b = path(QStringLiteral("b.cog")),
                      c = path(QStringLiteral("c.cog"));
        writeFile(a, "aaa");
        writeFile(b, "bbb");
        QFile::remove(c);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        openThroughMenu(dialogs, a);
        typeAtStart(openThroughMenu(dialogs, b), "B");
        mdlTessary::strCurCog = QStringLiteral("cog2");
        dialogs.saveAnswers << c; // the never-saved "Cog 1" asks where to go
        frame->mnuFileSaveAll_Click();

        QCOMPARE(dialogs.texts(), (QStringList{QStringLiteral("3"), QStringLiteral("blank Cog 1"),
                                               a + QStringLiteral(" a.cog"), b + QStringLiteral(" b.cog*")}));
        for (const auto& m : dialogs.messages) {
            QCOMPARE(m.buttons, int(ui::vbOKOnly));
            QCOMPARE(m.icon, 0);
            QCOMPARE(m.title, QStringLiteral("Tessary"));
        }
        QCOMPARE(readFile(a), QByteArray("aaa\r\n"));
        QCOMPARE(readFile(b), QByteArray("Bbbb\r\n"));
        QCOMPARE(readFile(c), textOf(cogWindow(1)) + "\r\n");
        QCOMPARE(cogWindow(1)->Caption(), QStringLiteral("c.cog"));
        QCOMPARE(cogWindow(3)->Caption(), QStringLiteral("b.cog"));
        QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog2"));
    }
    void failedSaveKeepsTheWindowModified_data() {
        QTest::addColumn<bool>("diskFull");
        QTest::newRow("Save As into a path under a regular file") << false;
        QTest::newRow("Save when the disk fills up") << true;
    }
    void failedSaveKeepsTheWindowModified() {
        QFETCH(bool, diskFull);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("keep.cog"));
        const QByteArray original("symbols\r\nend\r\n");
        writeFile(file, original);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frmTessary* w = openThroughMenu(dialogs, file);
        typeAtStart(w, "edit ");
        const QString failing = diskFull ? file : file + QStringLiteral("/inside.cog");
        if (diskFull) {
            // Only 4 KiB may be written by this process: the 64 KiB text cannot be.
            w->txtMain->setTextBytes(QByteArray(64 * 1024, 'x'));
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit oldLimit{};
            getrlimit(RLIMIT_FSIZE, &oldLimit);
            rlimit small = oldLimit;
            small.rlim_cur = 4096;
            setrlimit(RLIMIT_FSIZE, &small);
            frame->mnuFileSave_Click();
            setrlimit(RLIMIT_FSIZE, &oldLimit);
        } else {
            dialogs.saveAnswers << failing;
            frame->mnuFileSaveAs_Click();
        }
        QCOMPARE(dialogs.messages.size(), 1);
        QVERIFY2(dialogs.messages[0].text.contains(failing), qPrintable(dialogs.messages[0].text));
        QVERIFY(w->bMod);
        QCOMPARE(w->Caption(), QStringLiteral("keep.cog*"));
        QCOMPARE(w->strFile, file); // the window still belongs to its file
        QCOMPARE(readFile(file), original);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("keep.cog")});
    }
    void failedWriteAfterYesKeepsTheWindowOpen() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frmTessary* w = cogWindow(1);
        typeAtStart(w, "keep me");
        const QByteArray text = textOf(w);
        w->strFile = QStringLiteral("/proc/tessary-cannot-write-here.cog");
        w->strFileTitle = QStringLiteral("tessary-cannot-write-here.cog");
        dialogs.answers << ui::vbYes;
        frame->mnuFileExit_Click();
        QCOMPARE(dialogs.messages.size(), 2);
        QVERIFY(dialogs.messages[1].text.contains(w->strFile));
        QCOMPARE(mdlTessary::frame(), frame);
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        QCOMPARE(textOf(w), text);
        QVERIFY(w->bMod);
    }
    void fileCommandsWithNoWindowDoNothing_data() {
        QTest::addColumn<QString>("command");
        for (const char* name : {"Close", "Save", "Save As", "Save All", "Print"})
            QTest::newRow(name) << QString(name);
    }
    void fileCommandsWithNoWindowDoNothing() {
        QFETCH(QString, command);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frame->mnuFileClose_Click();
        QCOMPARE(mdlTessary::colCogs.count(), 0);
        const QString target = path(QStringLiteral("nothing.cog")), pdf = path(QStringLiteral("nothing.pdf"));
        dialogs.saveAnswers << target;
        dialogs.printToPdf = pdf;
        const QMap<QString, QAction*> actions{{"Close", frame->mnuFileClose},
                                              {"Save", frame->mnuFileSave},
                                              {"Save As", frame->mnuFileSaveAs},
                                              {"Save All", frame->mnuFileSaveAll},
                                              {"Print", frame->mnuFilePrint}};
        actions.value(command)->trigger();
        QVERIFY(dialogs.messages.isEmpty());
        QCOMPARE(dialogs.saveAnswers.size(), 1); // no Save As dialog was shown
        QVERIFY(!QFile::exists(target) && !QFile::exists(pdf));
        frame->mnuFileNew_Click(); // and the frame still works
        QCOMPARE(cogWindow(1)->Caption(), QStringLiteral("Cog 1"));
    }
    void printsTheTextToPdf() {
        const QString file = path(QStringLiteral("print.cog")), pdf = path(QStringLiteral("print.pdf"));
        writeFile(file, "symbols\r\nthing doorway linkid=1\r\nend\r\ncode\r\nend\r\n");
        QFile::remove(pdf);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        openThroughMenu(dialogs, file);
        frame->mnuFilePrint_Click(); // printToPdf is empty: the dialog is cancelled, nothing happens
        QVERIFY(!QFile::exists(pdf));
        dialogs.printToPdf = pdf;
        frame->mnuFilePrint_Click();
        QVERIFY(dialogs.messages.isEmpty());
        QVERIFY(readFile(pdf).startsWith("%PDF"));

        const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (pdftotext.isEmpty())
            QSKIP("pdftotext (poppler-utils) is not installed: the text was not checked");
        QProcess convert;
        convert.start(pdftotext, {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QVERIFY(convert.waitForFinished(20000));
        const QString printed = QString::fromUtf8(convert.readAllStandardOutput());
        QVERIFY2(printed.contains(QStringLiteral("thing doorway linkid=1")), qPrintable(printed));
        const QStringList lines = printed.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.first().trimmed(), QStringLiteral("symbols"));
        QCOMPARE(lines.filter(QStringLiteral("end")).size(), 2);
    }
};

TESSARY_TEST_MAIN(tst_Documents)
#include "tst_documents.moc"
