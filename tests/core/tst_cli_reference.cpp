// tessary-cli reference, run as a program.
#include <QtTest>

class tst_CliReference : public QObject {
    Q_OBJECT
private slots:
    void exitStatusAndOutput_data();
    void exitStatusAndOutput();
    void jsonListsNodesInIndexOrder();
    void unreadableFile();
    void usageErrors();
};

namespace {

struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

Run runCli(const QStringList& args) {
    QProcess p;
    p.start(TESSARY_BIN_DIR "/tessary-cli", args);
    Run r;
    if (!p.waitForStarted() || !p.waitForFinished(30000)) return r;
    r.status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = p.readAllStandardOutput();
    r.err = p.readAllStandardError();
    return r;
}

QString writeFile(const QTemporaryDir& dir, const QByteArray& bytes) {
    const QString path = dir.filePath("ref.dat");
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(bytes);
    return path;
}

} // namespace

void tst_CliReference::exitStatusAndOutput_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("tree");
    QTest::addColumn<QList<int>>("warnedLines");
    QTest::newRow("clean file") << QByteArray("t\r\n.G\r\nA(x)|d\r\n.H\r\nEOF\r\n") << 0
                                << QByteArray("G\n  A\nH\n") << QList<int>{};
    QTest::newRow("skipped lines are warned and give 1")
        << QByteArray("t\r\nB(y)|e\r\n.G\r\nA|d\r\n\r\nA(x)|d\r\nA(x)|d\r\n") << 1 << QByteArray("G\n  A\n")
        << QList<int>{2, 4, 5, 7};
    QTest::newRow("lines after eof are not read")
        << QByteArray("t\r\n.G\r\neof\r\nbad\r\n") << 0 << QByteArray("G\n") << QList<int>{};
}

void tst_CliReference::exitStatusAndOutput() {
    QFETCH(QByteArray, file);
    QFETCH(int, status);
    QFETCH(QByteArray, tree);
    QFETCH(QList<int>, warnedLines);
    QTemporaryDir dir;
    const QString path = writeFile(dir, file);
    const Run r = runCli({"reference", path});
    QCOMPARE(r.status, status);
    QCOMPARE(r.out, tree);
    const QList<QByteArray> lines = r.err.split('\n');
    QCOMPARE(lines.size(), warnedLines.size() + 1); // the last line end leaves an empty piece
    for (int i = 0; i < warnedLines.size(); ++i) {
        const QByteArray prefix = path.toUtf8() + ":" + QByteArray::number(warnedLines[i]) + ": ";
        QVERIFY2(lines[i].startsWith(prefix), lines[i].constData());
        QVERIFY(lines[i].size() > prefix.size());
    }
}

void tst_CliReference::jsonListsNodesInIndexOrder() {
    QTemporaryDir dir;
    const QString path = writeFile(dir, "t\r\n.G\r\nFoo(a)|Does | foo\r\n.H\r\nBar()|b\r\nEOF\r\n");
    const Run r = runCli({"reference", "--json", path});
    QCOMPARE(r.status, 0);
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(doc["file"].toString(), path);
    const QJsonArray nodes = doc["nodes"].toArray();
    QCOMPARE(nodes.size(), 4);
    QCOMPARE(nodes[0]["key"].toString(), QStringLiteral("G"));
    QCOMPARE(nodes[0]["tag"].toString(), QStringLiteral("parent"));
    QVERIFY(nodes[0]["parent"].isNull());
    QCOMPARE(nodes[1]["key"].toString(), QStringLiteral("Foo(a)|Does | foo"));
    QCOMPARE(nodes[1]["text"].toString(), QStringLiteral("Foo"));
    QCOMPARE(nodes[1]["tag"].toString(), QStringLiteral("Foo(a)|Does | foo"));
    QCOMPARE(nodes[1]["parent"].toString(), QStringLiteral("G"));
    QCOMPARE(nodes[2]["key"].toString(), QStringLiteral("H"));
    QCOMPARE(nodes[3]["parent"].toString(), QStringLiteral("H"));
}

void tst_CliReference::unreadableFile() {
    QTemporaryDir dir;
    const Run r = runCli({"reference", dir.filePath("missing.dat")});
    QCOMPARE(r.status, 2);
    QVERIFY(r.out.isEmpty());
    QVERIFY(r.err.contains("missing.dat"));
}

void tst_CliReference::usageErrors() {
    QCOMPARE(runCli({"reference"}).status, 2);
    QTemporaryDir dir;
    const QString path = writeFile(dir, "t\r\n.G\r\nEOF\r\n");
    QCOMPARE(runCli({"reference", path, path}).status, 2);
    QCOMPARE(runCli({"reference", "--bogus", path}).status, 2);
    QCOMPARE(runCli({"reference", "--help"}).status, 0);
}

QTEST_GUILESS_MAIN(tst_CliReference)
#include "tst_cli_reference.moc"
