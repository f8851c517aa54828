// tessary-cli's outline and check commands, run as the real program on files of tests/data/cli.
#include <QtTest>

namespace {

struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;
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
    void initTestCase();
    void plainOutput_data();
    void plainOutput();
    void outlineJson_data();
    void outlineJson();
    void outlineJsonEscapes();
    void checkJson();
    void usageErrors_data();
    void usageErrors();
    void helpDescribesEverything_data();
    void helpDescribesEverything();
};

void tst_Cli::initTestCase() {
    QVERIFY2(QFileInfo(TESSARY_BIN_DIR "/tessary-cli").isExecutable(), "tessary-cli is not built");
}

void tst_Cli::plainOutput_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::newRow("outline: the whole tree, indented") << QStringList{"outline", "door.cog"} << 0
                                                       << QByteArray("door.cog\n"
                                                                     "  symbols\n"
                                                                     "    flex\n"
                                                                     "      speed=2.0\n"
                                                                     "    message\n"
                                                                     "      touched\n"
                                                                     "      startup\n"
                                                                     "    sound\n"
                                                                     "      creak=creak01.wav\n"
                                                                     "    thing\n"
                                                                     "      door\n"
                                                                     "  code\n"
                                                                     "    touched\n"
                                                                     "      // open it\n"
                                                                     "      // to the top\n"
                                                                     "    startup\n"
                                                                     "      // remember nothing yet\n")
                                                       << QByteArray();
    QTest::newRow("outline: a duplicate comment stops the tree, its place on stderr")
        << QStringList{"outline", "twice.cog"} << 1
        << QByteArray("twice.cog\n"
                      "  symbols\n"
                      "    message\n"
                      "      activated\n"
                      "      pulse\n"
                      "  code\n"
                      "    activated\n"
                      "      // same\n"
                      "    pulse\n")
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
    QTest::newRow("check: --caret=N") << QStringList{"check", "upside.cog", "--caret=3"} << 1
                                      << QByteArray("upside.cog:1:4: no code section\n") << QByteArray();
    QTest::newRow("check: a caret past the end of the text counts on in the last line")
        << QStringList{"check", "--caret", "1000", "upside.cog"} << 1
        << QByteArray("upside.cog:5:966: no code section\n") << QByteArray();
    QTest::newRow("check: a directory is no file")
        << QStringList{"check", "."} << 2 << QByteArray() << QByteArray(".: it is a directory");
    QTest::newRow("check: an unreadable file wins over findings")
        << QStringList{"check", "twice.cog", "nowhere/x.cog"} << 2
        << QByteArray("twice.cog:12:11: { not matched\n") << QByteArray("nowhere/x.cog");
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
        if (seen.isEmpty())
            QVERIFY(n.value("parent").isNull());
        else
            QVERIFY(seen.contains(n.value("parent").toString()));
        seen.insert(n.value("key").toString());
    }
    if (nodes) QCOMPARE(list.at(0).toObject().value("text").toString(), file);
}

void tst_Cli::outlineJsonEscapes() {
    const Run r = runCli({"outline", "--json", "accents.cog", "door.cog"});
    QCOMPARE(r.status, 0);
    const QList<QByteArray> lines = r.out.split('\n');
    QCOMPARE(lines.size(), 3); // two objects, then the final newline
    QVERIFY(lines[2].isEmpty());
    // Tab and CR are escaped, not written raw; the byte 0xE9 is the character U+00E9.
    QVERIFY(lines[0].contains("\"key\": \"int\\tcaf"));
    QVERIFY(!lines[0].contains('\t') && !lines[0].contains('\r'));
    const QJsonArray nodes = jsonLine(lines[0]).value("nodes").toArray();
    QCOMPARE(nodes.at(4).toObject().value("key").toString(), QString("int\tcaf\u00e9\r"));
    QCOMPARE(nodes.at(4).toObject().value("text").toString(), QString("caf\u00e9"));
    QCOMPARE(nodes.at(8).toObject().value("text").toString(), QString("// d\u00e9j\u00e0 vu"));
    QCOMPARE(jsonLine(lines[1]).value("file").toString(), QString("door.cog"));
}

void tst_Cli::checkJson() {
    const Run r = runCli({"check", "--json", "--caret", "7", "twice.cog", "upside.cog", "door.cog"});
    QCOMPARE(r.status, 1);
    const QList<QByteArray> lines = r.out.trimmed().split('\n');
    QCOMPARE(lines.size(), 3);
    auto findings = [](const QJsonObject& o) {
        QStringList out;
        for (const QJsonValue& v : o.value("findings").toArray())
            out << v.toObject().value("text").toString() + " @" +
                       QString::number(v.toObject().value("caret").toInt());
        return out;
    };
    QCOMPARE(jsonLine(lines[0]).value("file").toString(), QString("twice.cog"));
    QCOMPARE(findings(jsonLine(lines[0])), QStringList{"{ not matched @146"});
    QCOMPARE(findings(jsonLine(lines[1])), QStringList{"no code section @7"});
    QCOMPARE(findings(jsonLine(lines[2])), QStringList{});
    QVERIFY(jsonLine(lines[2]).value("findings").isArray());
}

void tst_Cli::usageErrors_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("err");
    QTest::newRow("outline without a file") << QStringList{"outline"} << QByteArray("no file");
    QTest::newRow("outline, unknown option")
        << QStringList{"outline", "-x", "door.cog"} << QByteArray("'-x'");
    QTest::newRow("check without a file") << QStringList{"check", "--json"} << QByteArray("no file");
    QTest::newRow("check, --caret without a number")
        << QStringList{"check", "door.cog", "--caret"} << QByteArray("--caret");
    QTest::newRow("check, negative caret")
        << QStringList{"check", "--caret", "-1", "door.cog"} << QByteArray("'-1'");
    QTest::newRow("check, caret not a number")
        << QStringList{"check", "--caret=7x", "door.cog"} << QByteArray("'7x'");
    QTest::newRow("check, option past --") << QStringList{"check", "--", "--json"} << QByteArray("--json");
}

void tst_Cli::usageErrors() {
    QFETCH(QStringList, args);
    QFETCH(QByteArray, err);
    const Run r = runCli(args);
    QCOMPARE(r.status, 2);
    QCOMPARE(r.out, QByteArray());
    QVERIFY2(r.err.contains(err), r.err.constData());
}

void tst_Cli::helpDescribesEverything_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QStringList>("mentions");
    QTest::newRow("outline") << QStringList{"outline", "--help"}
                             << QStringList{"--json",  "\"stop\"", "duplicate",
                                            "failure", "U+0080",   "Exit status"};
    QTest::newRow("check") << QStringList{"check", "--help"}
                           << QStringList{"--caret N", "FILE:LINE:COLUMN: TEXT", "\"findings\"",
                                          "Exit status"};
}

void tst_Cli::helpDescribesEverything() {
    QFETCH(QStringList, args);
    QFETCH(QStringList, mentions);
    const Run r = runCli(args);
    QCOMPARE(r.status, 0);
    for (const QString& m : mentions) QVERIFY2(r.out.contains(m.toUtf8()), qPrintable(m));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
