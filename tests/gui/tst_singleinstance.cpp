// A second start with a path hands it to the running Tessary and ends: here the running one is
// this test's own frame, listening as the program does, and the second start is the real program.
#include "harness.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>

class tst_SingleInstance : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

    // Starts the real program with args; true when it ended at once, successfully.
    static bool secondStart(const QStringList& args, const QString& workingDirectory = {}) {
        QProcess second;
        second.setWorkingDirectory(workingDirectory);
        second.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), args);
        // The frame answers from this event loop, so the wait must keep it running.
        if (!QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, 15000)) {
            second.kill();
            second.waitForFinished(5000);
            return false;
        }
        return second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0;
    }

    // The frame shows the path (the scripted box answers OK), then opens it.
    static void shownThenOpened(ScriptedDialogs& dialogs, const QString& path) {
        QTRY_COMPARE_WITH_TIMEOUT(mdlTessary::colCogs.count(), 2, 15000);
        QCOMPARE(dialogs.texts(), QStringList{path});
        QCOMPARE(dialogs.messages[0].windows, 1);
        QCOMPARE(cogWindow(2)->strFile, path);
    }

private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void secondStartHandsThePathOver_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("relative");
        QTest::newRow("one argument with blanks") << QStringList{"my old cog.cog"} << false;
        QTest::newRow("blanks between arguments kept") << QStringList{"my", "old", "cog.cog"} << false;
        QTest::newRow("relative to the second start") << QStringList{"my old cog.cog"} << true;
    }
    void secondStartHandsThePathOver() {
        QFETCH(QStringList, args);
        QFETCH(bool, relative);
        const QString file = dir_.filePath(QStringLiteral("my old cog.cog"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("symbols\r\nend\r\n") > 0);
        f.close();
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        QVERIFY(frame && frame->listenForExecuteRequests());
        if (!relative) args.first().prepend(dir_.path() + '/');
        QVERIFY(secondStart(args, relative ? dir_.path() : QString()));
        shownThenOpened(dialogs, file);
        QCOMPARE(textOf(cogWindow(2)), QByteArray("symbols\r\nend\r\n"));
    }

    // A program that was killed leaves its socket behind; the next one takes it over. The killed
    // one is the real program, watched through what it logs: it shows no box at start.
    void socketLeftByAKilledProgramIsTakenOver() {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("tessary.ui.info=true"));
        QProcess first;
        first.setProcessEnvironment(env);
        first.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), {});
        QLocalSocket probe;
        QVERIFY(QTest::qWaitFor(
            [&] {
                probe.connectToServer(frmMain::executeServerName());
                return probe.waitForConnected(100) || first.state() == QProcess::NotRunning;
            },
            30000));
        first.kill();
        QVERIFY(first.waitForFinished(5000));
        QVERIFY2(first.readAllStandardError().contains("windows: Cog 1"), "the first start did not start");
        QVERIFY(QFileInfo::exists(frmMain::executeServerName())); // left behind

        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        QVERIFY2(frame && frame->listenForExecuteRequests(), "the socket was not taken over");
        const QString none = dir_.filePath(QStringLiteral("none.cog"));
        QVERIFY(secondStart({none}));
        QTRY_COMPARE_WITH_TIMEOUT(dialogs.texts().value(0), none, 15000);
    }
};

TESSARY_TEST_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
