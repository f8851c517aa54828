// Two real Tessary processes: a second start with a path hands it to the running one and ends.
// The running program is watched through what it logs in the category "tessary.ui".
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

class tst_SingleInstance : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> home_;
    std::vector<std::unique_ptr<QProcess>> processes_;
    QString logged_;

    QString socketPath() const { return home_->filePath(QStringLiteral("runtime/tessary-execute")); }
    // The running program's log lines, without the category's name.
    QStringList log() {
        logged_ += QString::fromUtf8(processes_.front()->readAllStandardError());
        return logged_.split('\n')
            .filter(QRegularExpression("^tessary.ui: "))
            .replaceInStrings("tessary.ui: ", "");
    }

    QProcess* start(const QStringList& args, const QString& workingDirectory = {}) {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home_->filePath(QStringLiteral("runtime")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home_->filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("tessary.ui.info=true"));
        env.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{category}: %{message}"));
        process->setProcessEnvironment(env);
        if (!workingDirectory.isEmpty()) process->setWorkingDirectory(workingDirectory);
        process->start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), args);
        processes_.push_back(std::move(process));
        return processes_.back().get();
    }

    // A first program, answering on its socket once it has started up.
    bool startListening() {
        processes_.clear();
        logged_.clear();
        QProcess* p = start({});
        for (int i = 0; i < 300 && p->state() != QProcess::NotRunning; ++i, QTest::qWait(100)) {
            QLocalSocket probe;
            probe.connectToServer(socketPath());
            if (!log().isEmpty() && probe.waitForConnected(200)) return true;
        }
        return false;
    }

    // A second start that hands its arguments over and ends at once, successfully.
    void handOver(const QStringList& args, const QString& workingDirectory = {}) {
        QProcess* second = start(args, workingDirectory);
        QVERIFY(second->waitForFinished(15000));
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QCOMPARE(second->exitCode(), 0);
    }

private slots:
    void init() {
        home_ = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(home_->path()).mkpath(QStringLiteral("runtime")));
        QVERIFY(QFile::setPermissions(home_->filePath(QStringLiteral("runtime")),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    void cleanup() {
        for (auto& p : processes_)
            if (p->state() != QProcess::NotRunning) p->kill(), p->waitForFinished(5000);
        processes_.clear();
    }

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
        const QString dir = home_->filePath(QStringLiteral("cogs")), file = dir + "/my old cog.cog";
        QVERIFY(QDir().mkpath(dir));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("symbols\r\nend\r\n") > 0);
        f.close();
        QVERIFY2(startListening(), "the first Tessary did not start listening");
        QCOMPARE(log(), QStringList{"windows: Cog 1"});
        if (!relative) args.first().prepend(dir + '/');
        handOver(args, relative ? dir : QString());
        // The running one first shows the path, then opens it.
        QTRY_COMPARE_WITH_TIMEOUT(
            log(), (QStringList{"windows: Cog 1", "message: " + file, "windows: Cog 1 | my old cog.cog"}),
            15000);
        QCOMPARE(processes_.front()->state(), QProcess::Running);
    }

    void socketLeftByAKilledProgramIsTakenOver() {
        QVERIFY(startListening());
        processes_.front()->kill();
        QVERIFY(processes_.front()->waitForFinished(5000));
        QVERIFY(QFileInfo::exists(socketPath())); // left behind
        QVERIFY2(startListening(), "a new Tessary did not take the socket over");
        const QString none = home_->filePath(QStringLiteral("none.cog"));
        handOver({none});
        QTRY_VERIFY_WITH_TIMEOUT(log().contains("message: " + none), 15000);
    }
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
