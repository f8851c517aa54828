// tessary-cli reference, run as a program.
#include "runcli.h"

#include <QtTest>

class tst_CliReference : public QObject {
    Q_OBJECT
private slots:
    void exitStatusAndOutput_data();
    void exitStatusAndOutput();
    void jsonListsNodesInIndexOrder();
    void errorsGiveStatus2();
};

namespace {

// Runs tessary-cli reference on a file holding `bytes` (none when null); "FILE" in args is its path.
CliRun runReference(const QByteArray& bytes, QStringList args, QString* path = nullptr) {
    QTemporaryDir dir;
    const QString file = dir.filePath("ref.dat");
    QFile f(file);
    if (!bytes.isNull() && f.open(QIODevice::WriteOnly)) f.write(bytes);
    f.close();
    args.replaceInStrings("FILE", file);
    if (path) *path = file;
    return runTessaryCli(QStringList{"reference"} + args);
}

} // namespace

void tst_CliReference::exitStatusAndOutput_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("tree");
    QTest::addColumn<QList<int>>("warnedLines"); // FILE:LINE: reason on the error output
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
    QString path;
    const CliRun r = runReference(file, {"FILE"}, &path);
    QCOMPARE(r.status, status);
    QCOMPARE(r.out, tree);
    const QList<QByteArray> lines = r.err.split('\n');
    QCOMPARE(lines.size(), warnedLines.size() + 1); // the last line end leaves an empty piece
    for (int i = 0; i < warnedLines.size(); ++i) {
        const QByteArray prefix = path.toUtf8() + ":" + QByteArray::number(warnedLines[i]) + ": ";
        QVERIFY2(lines[i].startsWith(prefix) && lines[i].size() > prefix.size(), lines[i].constData());
    }
}

void tst_CliReference::jsonListsNodesInIndexOrder() {
    QString path;
    const CliRun r =
        runReference("t\r\n.G\r\nFoo(a)|Does | foo\r\n.H\r\nBar()|b\r\nEOF\r\n", {"--json", "FILE"}, &path);
    QCOMPARE(r.status, 0);
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(doc["file"].toString(), path);
    const QJsonArray nodes = doc["nodes"].toArray();
    QCOMPARE(nodes.size(), 4);
    QVERIFY(nodes[0]["parent"].isNull());
    QCOMPARE(nodes[1]["key"].toString(), QStringLiteral("Foo(a)|Does | foo"));
    QCOMPARE(nodes[1]["text"].toString(), QStringLiteral("Foo"));
    QCOMPARE(nodes[1]["tag"].toString(), QStringLiteral("Foo(a)|Does | foo"));
    QCOMPARE(nodes[1]["parent"].toString(), QStringLiteral("G"));
    QCOMPARE(nodes[3]["parent"].toString(), QStringLiteral("H"));
}

void tst_CliReference::errorsGiveStatus2() {
    QString path;
    const CliRun unreadable = runReference(QByteArray(), {"FILE"}, &path);
    QCOMPARE(unreadable.status, 2);
    QVERIFY(unreadable.out.isEmpty());
    QVERIFY(unreadable.err.contains(path.toUtf8()));
    for (const QStringList& args : {QStringList{}, {"FILE", "FILE"}, {"--bogus", "FILE"}})
        QCOMPARE(runReference("t\r\n.G\r\nEOF\r\n", args).status, 2);
}

QTEST_GUILESS_MAIN(tst_CliReference)
#include "tst_cli_reference.moc"
