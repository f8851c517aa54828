// tessary-cli's outline and check commands, run as the real program on files of tests/data/cli.
#include "runcli.h"

#include <QtTest>

namespace {

CliRun runCli(const QStringList& args) {
    return runTessaryCli(args, QStringLiteral(TESSARY_TEST_DATA "/cli"));
}

QJsonObject jsonLine(const QByteArray& line) {
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError) qWarning() << error.errorString() << line;
    return doc.object();
}

} // namespace

class tst_Cli : public QObject {
    Q_OBJECT
private slots:
    void plainOutput_data();
    void plainOutput();
    void outlineJson_data();
    void outlineJson();
    void outlineJsonEscapes();
    void checkJson();
};

void tst_Cli::plainOutput_data() {
    QTest::addColumn<QString>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err"); // contained in stderr; empty: stderr is empty
    const auto row = [](const char* args, int status, const QByteArray& out, const QByteArray& err = {}) {
        QTest::newRow(args) << QString(args) << status << out << err;
    };
    row("outline door.cog", 0,
        "door.cog\n  symbols\n    flex\n      speed=2.0\n    message\n      touched\n      startup\n    "
        "sound\n"
        "      creak=creak01.wav\n    thing\n      door\n  code\n    touched\n      // open it\n      // to "
        "the top\n"
        "    startup\n      // remember nothing yet\n");
    // A duplicate comment stops the tree, its place on stderr.
    row("outline twice.cog", 1,
        "twice.cog\n  symbols\n    message\n      activated\n      pulse\n  code\n    activated\n      // "
        "same\n"
        "    pulse\n",
        "twice.cog:13:4: ");
    row("outline upside.cog", 1, {},
        "upside.cog:2:1: the first \"end\" line comes before the \"symbols\" line");
    row("outline missing.cog upside.cog", 2, {}, "missing.cog"); // the others are still read
    row("check door.cog", 0, {});
    row("check twice.cog door.cog", 1, "twice.cog:12:11: { not matched\n");
    row("check --caret 20 upside.cog", 1, "upside.cog:3:2: no code section\n");
    row("check --caret=1000 upside.cog", 1, "upside.cog:5:966: no code section\n"); // past the end
    row("check twice.cog nowhere/x.cog", 2, "twice.cog:12:11: { not matched\n", "nowhere/x.cog");
    row("outline", 2, {}, "no file");
    row("outline -x door.cog", 2, {}, "'-x'");
    row("check --caret=7x door.cog", 2, {}, "'7x'");
    row("check -- --json", 2, {}, "--json");
}

void tst_Cli::plainOutput() {
    QFETCH(QString, args);
    QFETCH(int, status);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const CliRun r = runCli(args.split(QLatin1Char(' ')));
    QCOMPARE(r.out, out);
    QCOMPARE(r.status, status);
    if (err.isEmpty())
        QCOMPARE(r.err, QByteArray());
    else
        QVERIFY2(r.err.contains(err), r.err.constData());
}

void tst_Cli::outlineJson_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<QString>("stop");
    QTest::newRow("complete tree") << "door.cog" << 0 << 17 << "null";
    QTest::newRow("duplicate") << "twice.cog" << 1 << 9 << "{\"key\":\"// same\",\"reason\":\"duplicate\"}";
    QTest::newRow("failure") << "upside.cog" << 1 << 0 << "{\"reason\":\"failure\"}";
}

void tst_Cli::outlineJson() {
    QFETCH(QString, file);
    QFETCH(int, status);
    QFETCH(int, nodes);
    QFETCH(QString, stop);
    const CliRun r = runCli({"outline", "--json", file});
    QCOMPARE(r.status, status);
    QCOMPARE(r.err, QByteArray());
    QCOMPARE(r.out.count('\n'), 1);
    const QJsonObject o = jsonLine(r.out);
    QCOMPARE(o.value("file").toString(), file);
    const QJsonArray list = o.value("nodes").toArray();
    QCOMPARE(list.size(), nodes);
    const QJsonValue s = o.value("stop");
    QCOMPARE(s.isNull() ? QString("null")
                        : QString(QJsonDocument(s.toObject()).toJson(QJsonDocument::Compact)),
             stop);
    // Nodes in index order: every parent is named before its children; only the root has none.
    QSet<QString> seen;
    for (const QJsonValue& v : list) {
        const QJsonObject n = v.toObject();
        QCOMPARE(n.keys(), (QStringList{"key", "parent", "tag", "text"}));
        QVERIFY(seen.isEmpty() ? n.value("parent").isNull() : seen.contains(n.value("parent").toString()));
        seen.insert(n.value("key").toString());
    }
    if (nodes) QCOMPARE(list.at(0).toObject().value("text").toString(), file);
}

void tst_Cli::outlineJsonEscapes() {
    const CliRun r = runCli({"outline", "--json", "accents.cog", "door.cog"});
    QCOMPARE(r.status, 0);
    const QList<QByteArray> lines = r.out.split('\n');
    QCOMPARE(lines.size(), 3); // two objects, then the final newline
    // Tab and CR are escaped, not written raw; the byte 0xE9 is the character U+00E9.
    QVERIFY(lines[0].contains("\"key\": \"int\\tcaf"));
    QVERIFY(!lines[0].contains('\t') && !lines[0].contains('\r'));
    const QJsonArray nodes = jsonLine(lines[0]).value("nodes").toArray();
    QCOMPARE(nodes.at(4).toObject().value("key").toString(), QString("int\tcaf\u00e9\r"));
    QCOMPARE(nodes.at(8).toObject().value("text").toString(), QString("// d\u00e9j\u00e0 vu"));
    QCOMPARE(jsonLine(lines[1]).value("file").toString(), QString("door.cog"));
}

void tst_Cli::checkJson() {
    const CliRun r = runCli({"check", "--json", "--caret", "7", "twice.cog", "upside.cog", "door.cog"});
    QCOMPARE(r.status, 1);
    QStringList got;
    for (const QByteArray& line : r.out.trimmed().split('\n')) {
        const QJsonObject o = jsonLine(line);
        QVERIFY(o.value("findings").isArray());
        got << o.value("file").toString() + ":";
        for (const QJsonValue& v : o.value("findings").toArray())
            got << v.toObject().value("text").toString() + " @" +
                       QString::number(v.toObject().value("caret").toInt());
    }
    QCOMPARE(got, (QStringList{"twice.cog:", "{ not matched @146", "upside.cog:", "no code section @7",
                               "door.cog:"}));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
