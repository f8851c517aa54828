// tessary-cli generate: the shipped templates generate well-formed COG files, values given on the
// command line replace the defaults, and bad input ends with status 2 and a message.
#include "cog/layout.h"
#include "runcli.h"
#include "templates/template.h"

#include <QtTest>

class tst_CliGenerate : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void shippedTemplateGeneratesACog_data();
    void shippedTemplateGeneratesACog();
    void valuesFromTheCommandLine_data();
    void valuesFromTheCommandLine();
    void writesBytesUnchanged();
    void listsParameters();
    void refusesBadInput_data();
    void refusesBadInput();

private:
    QTemporaryDir dir_;
    QString write(const QString& name, const QByteArray& bytes);
};

namespace {

CliRun generate(const QStringList& args) {
    return runTessaryCli(QStringList{"generate"} + args);
}

} // namespace

void tst_CliGenerate::initTestCase() {
    QVERIFY(dir_.isValid());
    QVERIFY(QFile::exists(QStringLiteral(TESSARY_BIN_DIR "/tessary-cli")));
}

QString tst_CliGenerate::write(const QString& name, const QByteArray& bytes) {
    QFile f(dir_.filePath(name));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) return {};
    return f.fileName();
}

void tst_CliGenerate::shippedTemplateGeneratesACog_data() {
    QTest::addColumn<QString>("path");
    const QDir dir(QStringLiteral(TESSARY_SOURCE_DIR "/data/templates"));
    const QStringList names = dir.entryList({"*.cgt"}, QDir::Files, QDir::Name);
    QVERIFY2(names.size() >= 4, "at least four templates are shipped");
    for (const QString& name : names) QTest::newRow(qPrintable(name)) << dir.filePath(name);
}

void tst_CliGenerate::shippedTemplateGeneratesACog() {
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY2(bytes.count('\n') == bytes.count("\r\n"), "lines end in CR LF");

    const CliRun r = generate({path});
    QCOMPARE(r.status, 0);
    QVERIFY(r.err.isEmpty());
    const QByteArray& cog = r.out;
    QVERIFY2(!cog.contains("<%"), "every placeholder is replaced");
    QVERIFY2(cog.startsWith('#'), "a comment line first");
    int depth = 0; // every "{" closed by a later "}" and no "}" before its "{"
    for (char c : cog) QVERIFY2((depth += c == '{' ? 1 : c == '}' ? -1 : 0) >= 0, "braces balanced");
    QCOMPARE(depth, 0);

    const std::string text = cog.toStdString();
    const auto m = cog::findMarkers(text);
    QVERIFY2(m.symbols > 0 && m.end > m.symbols, "symbols section");
    QVERIFY2(m.code > m.end && m.secondEnd > m.code, "code section");
    // Every declared message has its handler, and each handler ends with return.
    const std::string_view symbols = *cog::symbolsBody(text);
    int messages = 0;
    for (auto at = symbols.find("\nmessage"); at != std::string_view::npos;
         at = symbols.find("\nmessage", at + 1)) {
        const std::string name =
            cog::GetSymbolName(symbols.substr(at + 1, symbols.find('\r', at + 1) - at), 7);
        const cog::Pos label = cog::find(m.code, text, "\n" + name + ":");
        QVERIFY2(label > 0 && cog::messageBody(text, name + ":", label + 1), name.c_str());
        ++messages;
    }
    QVERIFY(messages >= 1);
}

void tst_CliGenerate::valuesFromTheCommandLine_data() {
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("defaults") << QStringList{} << QByteArray("# Door at 2.0 (2.0)\r\n");
    QTest::newRow("one value given") << QStringList{"speed=9"} << QByteArray("# Door at 9 (9)\r\n");
    QTest::newRow("name in other letter case")
        << QStringList{"SPEED=1.5", "Title=Gate"} << QByteArray("# Gate at 1.5 (1.5)\r\n");
    QTest::newRow("value with = and blanks")
        << QStringList{"title=a = b"} << QByteArray("# a = b at 2.0 (2.0)\r\n");
    QTest::newRow("empty value") << QStringList{"speed="} << QByteArray("# Door at  ()\r\n");
}

void tst_CliGenerate::valuesFromTheCommandLine() {
    QFETCH(QStringList, settings);
    QFETCH(QByteArray, expected);
    const QString path = write(
        "values.cgt",
        "2\r\nValue,Name\r\nDoor,title\r\n2.0,speed\r\nend\r\n# <%title%> at <%speed%> (<%Speed%>)\r\n");
    const CliRun r = generate(QStringList{path} + settings);
    QCOMPARE(r.status, 0);
    QCOMPARE(r.out, expected);
}

void tst_CliGenerate::writesBytesUnchanged() {
    QByteArray body("\xFF\xE9 lone\rCR, lone\nLF, tab\t", 25);
    body += QByteArray(1, '\0');
    body += "<%x%>no final line end";
    const QString path = write("bytes.cgt", "2\r\nV,N\r\n\x80\x81,x\r\nEND\r\n" + body);
    const CliRun r = generate({path});
    QCOMPARE(r.status, 0);
    QByteArray expected = body;
    expected.replace("<%x%>", "\x80\x81");
    QCOMPARE(r.out, expected);
}

void tst_CliGenerate::listsParameters() {
    const QString path = write("list.cgt", "3\r\nValue,Name,Description\r\n8,speed,How fast, in frames\r\n"
                                           "door.wav,sound,What it plays\r\nend\r\nbody");
    const CliRun r = generate({"--list", path});
    QCOMPARE(r.status, 0);
    QCOMPARE(r.out, QByteArray("Value     Name   Description\n"
                               "8         speed  How fast, in frames\n"
                               "door.wav  sound  What it plays\n"));
}

void tst_CliGenerate::refusesBadInput_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const QByteArray good("2\r\nV,N\r\n1,speed\r\nend\r\nx");
    QTest::newRow("unknown parameter")
        << good << QStringList{"sped=2"} << "has no parameter 'sped' (its parameters: speed)";
    QTest::newRow("setting without =") << good << QStringList{"speed"} << "expected NAME=VALUE, got 'speed'";
    QTest::newRow("parameter given twice")
        << good << QStringList{"speed=1", "SPEED=2"} << "the parameter 'speed' is given twice";
    QTest::newRow("column count below 2")
        << QByteArray("1\r\nV\r\nend\r\n") << QStringList{} << "bad.cgt:1: the column count 1 is below 2";
    QTest::newRow("no end line") << QByteArray("2\r\nV,N\r\n1,a\r\n") << QStringList{}
                                 << "bad.cgt:4: the file ends without an end line";
    QTest::newRow("row with too few fields")
        << QByteArray("3\r\nV,N,D\r\n1,a\r\nend\r\n") << QStringList{} << "bad.cgt:3: 2 fields, 3 needed";
    QTest::newRow("repeated name") << QByteArray("2\r\nV,N\r\n1,a\r\n2,A\r\nend\r\n") << QStringList{}
                                   << "bad.cgt:4: the parameter name \"A\" repeats line 3";
    QTest::newRow("malformed template listed")
        << QByteArray("x\r\n") << QStringList{"--list"}
        << "bad.cgt:1: the column count \"x\" is not a bare whole number";
}

void tst_CliGenerate::refusesBadInput() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const QString path = write("bad.cgt", file);
    const CliRun r = generate(QStringList{path} + args);
    QCOMPARE(r.status, 2);
    QVERIFY(r.out.isEmpty());
    QVERIFY2(QString::fromLatin1(r.err).contains(message), r.err.constData());
}

QTEST_GUILESS_MAIN(tst_CliGenerate)
#include "tst_cli_generate.moc"
