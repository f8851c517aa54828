// Every command of tessary-cli ends with status 2 and says why when its output cannot be written,
// or when a file it is given is not one that can be read to its end.
#include <QtTest>

#include <sys/stat.h>

class tst_CliOutput : public QObject {
    Q_OBJECT
private slots:
    void fullOutputIsAnError_data();
    void fullOutputIsAnError();
    void refusesFilesWithoutEnd();
};

void tst_CliOutput::fullOutputIsAnError_data() {
    QTest::addColumn<QString>("args");
    QTest::addColumn<int>("status"); // with the output written to /dev/null
    const auto row = [](const char* args, int status) { QTest::newRow(args) << QString(args) << status; };
    row("--help", 0);
    row("outline --help", 0);
    row("outline door.cog twice.cog", 1); // the plain tree is flushed after each file
    row("outline --json door.cog", 0);
    row("check twice.cog", 1);
    row("check --json door.cog", 0);
    row("reference " TESSARY_BIN_DIR "/cogref.dat", 0);
    row("reference --json " TESSARY_BIN_DIR "/cogref.dat", 0);
    row("generate " TESSARY_BIN_DIR "/templates/door.cgt", 0);
    row("generate --list " TESSARY_BIN_DIR "/templates/door.cgt", 0);
}

void tst_CliOutput::fullOutputIsAnError() {
    QFETCH(QString, args);
    QFETCH(int, status);
    for (const char* output : {"/dev/null", "/dev/full"}) {
        QProcess p;
        p.setWorkingDirectory(TESSARY_SOURCE_DIR "/tests/cases/cli");
        p.setStandardOutputFile(QString::fromLatin1(output));
        p.start(TESSARY_BIN_DIR "/tessary-cli", args.split(' '));
        QVERIFY(p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit);
        const QByteArray err = p.readAllStandardError();
        const bool full = output == QByteArrayView("/dev/full");
        QCOMPARE(p.exitCode(), full ? 2 : status);
        QCOMPARE(err.contains("tessary-cli: cannot write the output: No space left on device\n"), full);
    }
}

void tst_CliOutput::refusesFilesWithoutEnd() {
    QTemporaryDir dir;
    const QByteArray fifo = QFile::encodeName(dir.filePath("pipe.cog"));
    QCOMPARE(::mkfifo(fifo.constData(), 0600), 0); // nobody ever writes to it
    for (const QString& file : {QString::fromLocal8Bit(fifo), QStringLiteral("/dev/zero")}) {
        QProcess p;
        p.start(TESSARY_BIN_DIR "/tessary-cli", {"outline", file, TESSARY_SOURCE_DIR "/tests/cases/cli/door.cog"});
        QVERIFY(p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 2);
        QCOMPARE(p.readAllStandardError(),
                 "tessary-cli: cannot read " + file.toLocal8Bit() + ": it is not a regular file\n");
        QVERIFY(p.readAllStandardOutput().startsWith("door.cog\n")); // the other files are still read
    }
}

QTEST_GUILESS_MAIN(tst_CliOutput)
#include "tst_cli_output.moc"
