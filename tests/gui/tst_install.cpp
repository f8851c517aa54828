// An installed Tessary, under any prefix, finds its data files: it starts with its reference
// loaded and one blank window, and shows no message.
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class tst_Install : public QObject {
    Q_OBJECT
private slots:
    void installedProgramFindsItsData() {
        const QString cmake = QStandardPaths::findExecutable(QStringLiteral("cmake"));
        if (cmake.isEmpty()) QSKIP("cmake is not on the PATH");
        QTemporaryDir prefix, home;
        QProcess install;
        install.setProcessChannelMode(QProcess::MergedChannels);
        install.start(cmake, {"--install", TESSARY_BIN_DIR "/..", "--prefix", prefix.path()});
        QVERIFY(install.waitForFinished(120000));
        QVERIFY2(install.exitCode() == 0, install.readAll().constData());
        for (const char* file : {"bin/tessary", "bin/tessary-cli", "share/tessary/default.cog"})
            QVERIFY2(QFileInfo::exists(prefix.filePath(QString::fromLatin1(file))), file);

        QVERIFY(QDir(home.path()).mkpath(QStringLiteral("runtime")));
        QFile::setPermissions(home.filePath("runtime"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("XDG_RUNTIME_DIR", home.filePath("runtime"));
        env.insert("XDG_CONFIG_HOME", home.filePath("config"));
        env.insert("QT_LOGGING_RULES", "tessary.ui.info=true");
        env.insert("QT_MESSAGE_PATTERN", "%{category}: %{message}");
        QProcess tessary;
        tessary.setProcessEnvironment(env);
        tessary.setWorkingDirectory(home.path()); // nowhere near the build tree
        tessary.start(prefix.filePath(QStringLiteral("bin/tessary")), {});
        QString logged;
        QTRY_VERIFY_WITH_TIMEOUT((logged += tessary.readAllStandardError()).contains("windows: Cog 1") ||
                                     tessary.state() == QProcess::NotRunning,
                                 30000);
        const bool running = tessary.state() == QProcess::Running;
        if (running) tessary.kill(), tessary.waitForFinished(5000);
        QVERIFY2(running, qPrintable(logged));
        // And no message about missing files.
        QCOMPARE(logged.split('\n').filter("tessary.ui: "), QStringList{"tessary.ui: windows: Cog 1"});
    }
};

QTEST_GUILESS_MAIN(tst_Install)
#include "tst_install.moc"
