// tessary-cli's outline and check commands, run as the real program on files of tests/data/cli.
#include <QtTest>

namespace {

struct Run {
    int status = -1;
    QByteArray out, err;
};

Run runCli(const QStringList& args) {
    QProcess p;
    p.setWorkingDirectory(TESSARY_TEST_DATA "/cli");
    p.start(TESSARY_BIN_DIR "/tessary-cli", args);
    Run r;
    if (!p.waitForFinished(30000)) return r;
    r.status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = p.readAllStandardOutput();
    r.err = p.readAllStandardError();
    return r;
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
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err"); // contained in stderr; empty: stderr is empty
    QTest::newRow("outline: the whole tree, indented")
        << QStringList{"outline", "door.cog"} << 0
        << QByteArray(
               "door.cog\n  symbols\n    flex\n      speed=2.0\n    message\n      touched\n      startup\n"
               "    sound\n      creak=creak01.wav\n    thing\n      door\n  code\n    touched\n"
               "      // open it\n      // to the top\n    startup\n      // remember nothing yet\n")
        << QByteArray();
    QTest::newRow("outline: a duplicate comment stops the tree, its place on stderr")
        << QStringList{"outline", "twice.cog"} << 1
        << QByteArray(
               "twice.cog\n  symbols\n    message\n      activated\n      pulse\n  code\n    activated\n"
               "      // same\n    pulse\n")
        << QByteArray("twice.cog:13:4: ");
    QTest::newRow("outline: an unreadable layout gives no tree")
        << QStringList{"outline", "upside.cog"} << 1 << QByteArray()
        << QByteArray("upside.cog:2:1: the first \"end\" line comes before the \"symbols\" line");
    QTest::newRow("outline: a missing file is named, the others are still read")
        << QStringList{"outline", "missing.cog", "upside.cog"} << 2 << QByteArray()
        << QByteArray("missing.cog");
    QTest::newRow("check: a clean file prints nothing")
        << QStringList{"check", "door.cog"} << 0 << QByteArray() << QByteArray();
    QTest::newRow("check: FILE:LINE:COLUMN: TEXT")
        << QStringList{"check", "twice.cog", "door.cog"} << 1
        << QByteArray("twice.cog:12:11: { not matched\n") << QByteArray();
    QTest::newRow("check: section findings at the given caret")
        << QStringList{"check", "--caret", "20", "upside.cog"} << 1
        << QByteArray("upside.cog:3:2: no code section\n") << QByteArray();
    QTest::newRow("check: a caret past the end of the text counts on in the last line")
        << QStringList{"check", "--caret=1000", "upside.cog"} << 1
        << QByteArray("upside.cog:5:966: no code section\n") << QByteArray();
    QTest::newRow("check: an unreadable file wins over findings")
        << QStringList{"check", "twice.cog", "nowhere/x.cog"} << 2
        << QByteArray("twice.cog:12:11: { not matched\n") << QByteArray("nowhere/x.cog");
    QTest::newRow("usage: no file") << QStringList{"outline"} << 2 << QByteArray() << QByteArray("no file");
    QTest::newRow("usage: unknown option")
        << QStringList{"outline", "-x", "door.cog"} << 2 << QByteArray() << QByteArray("'-x'");
    QTest::newRow("usage: caret not a number")
        << QStringList{"check", "--caret=7x", "door.cog"} << 2 << QByteArray() << QByteArray("'7x'");
    QTest::newRow("usage: option past --")
        << QStringList{"check", "--", "--json"} << 2 << QByteArray() << QByteArray("--json");
}

void tst_Cli::plainOutput() {
    QFETCH(QStringList, args);
    QFETCH(int, status);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const Run r = runCli(args);
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
    const Run r = runCli({"outline", "--json", file});
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
    const Run r = runCli({"outline", "--json", "accents.cog", "door.cog"});
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
    const Run r = runCli({"check", "--json", "--caret", "7", "twice.cog", "upside.cog", "door.cog"});
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
