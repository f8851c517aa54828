// The COG language checker, through tessary-cli lint: every tests/cases/lint/NAME.cog is linted
// and its output compared with NAME.expected (and with NAME.json, where there is one, for
// --json); the command's options and exit status; the verb table reader.
#include "language/verbs.h"
#include "reference/cogref.h"
#include "runcli.h"

#include <QtTest>

namespace {

const QString kCases = QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/lint");

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(missing " + path.toUtf8() + ")");
}

QStringList caseFiles() {
    return QDir(kCases).entryList({"*.cog"}, QDir::Files, QDir::Name);
}

CliRun lint(const QStringList& args, const QByteArray& input = {}) {
    if (input.isEmpty()) return runTessaryCli(QStringList{"lint"} + args, kCases);
    QProcess p;
    p.setWorkingDirectory(kCases);
    p.start(QStringLiteral(TESSARY_BIN_DIR "/tessary-cli"), QStringList{"lint"} + args);
    p.write(input);
    p.closeWriteChannel();
    CliRun r;
    if (p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit) {
        r.status = p.exitCode();
        r.out = p.readAllStandardOutput();
        r.err = p.readAllStandardError();
    }
    return r;
}

} // namespace

class tst_Lint : public QObject {
    Q_OBJECT
private slots:
    void golden_data();
    void golden();
    void wholeFolderInOrder();
    void options_data();
    void options();
    void verbTable_data();
    void verbTable();
    void referenceNamesVerbs();
};

void tst_Lint::golden_data() {
    QTest::addColumn<QString>("name");
    for (const QString& f : caseFiles()) QTest::newRow(qPrintable(f)) << f;
    QVERIFY(caseFiles().size() > 30);
}

void tst_Lint::golden() {
    QFETCH(QString, name);
    const CliRun r = lint({name});
    const QByteArray expected = readAll(kCases + "/" + QFileInfo(name).completeBaseName() + ".expected");
    QCOMPARE(QString::fromUtf8(r.out), QString::fromUtf8(expected));
    QCOMPARE(r.err, QByteArray());
    QCOMPARE(r.status, expected.contains(": error: ") ? 1 : 0);
    // Where the ends of the spans matter, NAME.json holds the --json output too.
    const QString json = kCases + "/" + QFileInfo(name).completeBaseName() + ".json";
    if (QFile::exists(json))
        QCOMPARE(QString::fromUtf8(lint({"--json", name}).out), QString::fromUtf8(readAll(json)));
}

// A folder is every *.cog below it in sorted order, checked in parallel, printed in that order.
void tst_Lint::wholeFolderInOrder() {
    QByteArray expected;
    for (const QString& f : caseFiles())
        expected += readAll(kCases + "/" + QFileInfo(f).completeBaseName() + ".expected");
    const CliRun r = lint({"."});
    QCOMPARE(QString::fromUtf8(r.out), QString::fromUtf8(expected));
    QCOMPARE(r.status, 1);
}

void tst_Lint::options_data() {
    QTest::addColumn<QString>("args");
    QTest::addColumn<QByteArray>("input"); // standard input
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("out"); // the whole output
    QTest::addColumn<QByteArray>("err"); // contained in stderr; empty: stderr is empty
    const auto row = [](const char* name, const char* args, const QByteArray& input, int status,
                        const QByteArray& out, const QByteArray& err = {}) {
        QTest::newRow(name) << QString(args) << input << status << out << err;
    };
    const QByteArray warnOnly = "symbols\nmessage startup\nend\ncode\nstartup: x = 1; return;\nend\n";
    const QByteArray semanticError = "symbols\nmessage startup\nend\ncode\nstartup: Nope(); return;\nend\n";
    row("warnings alone pass", "-", warnOnly, 0, "<stdin>:5:10: warning: 'x' is not declared\n");
    row("--werror fails on a warning", "--werror -", warnOnly, 1,
        "<stdin>:5:10: warning: 'x' is not declared\n");
    row("--syntax-only leaves out the checks", "--syntax-only -", semanticError, 0, "");
    row("--syntax-only keeps syntax errors", "--syntax-only -", "symbols\nend\ncode\nx = ;\nend\n", 1,
        "<stdin>:4:5: error: expected an expression but found ';'\n");
    row("--json", "--json -", semanticError, 1,
        "{\"file\": \"<stdin>\", \"diagnostics\": [{\"line\": 5, \"column\": 10, \"endLine\": 5, "
        "\"endColumn\": 14, "
        "\"severity\": \"error\", \"code\": \"unknown-verb\", \"text\": \"there is no verb named "
        "'Nope'\"}]}\n");
    row("--json of a clean file", "--json -", "symbols\nend\ncode\nend\n", 0,
        "{\"file\": \"<stdin>\", \"diagnostics\": []}\n");
    row("unreadable path: 2, the others still checked", "nowhere.cog -", semanticError, 2,
        "<stdin>:5:10: error: there is no verb named 'Nope'\n", "nowhere.cog");
    row("help", "--help", {}, 0, {}, {});
    row("no path", "", {}, 2, {}, "no file given");
    row("unknown option", "--fast x.cog", {}, 2, {}, "'--fast'");
}

void tst_Lint::options() {
    QFETCH(QString, args);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const CliRun r = lint(args.split(' ', Qt::SkipEmptyParts), input);
    if (args == "--help")
        QVERIFY(r.out.contains("--syntax-only") && r.out.contains("Exit status"));
    else
        QCOMPARE(QString::fromUtf8(r.out), QString::fromUtf8(out));
    QCOMPARE(r.status, status);
    if (err.isEmpty())
        QCOMPARE(r.err, QByteArray());
    else
        QVERIFY2(r.err.contains(err), r.err.constData());
}

void tst_Lint::verbTable_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("warning"); // empty: read
    QTest::newRow("verb") << QByteArray("vector getthingvel(thing)") << "";
    QTest::newRow("no arguments, deprecated") << QByteArray("nothing heapfree() deprecated") << "";
    QTest::newRow("alias") << QByteArray("alias gethealth getthinghealth") << "";
    QTest::newRow("blanks and CR around")
        << QByteArray(" \tvector getthinglvec( thing )\t deprecated \t\r") << "";
    QTest::newRow("alias of nothing")
        << QByteArray("alias x nothere") << "2: alias of an unknown verb 'nothere'";
    QTest::newRow("bad return") << QByteArray("real sin(flex)") << "2: unknown return type 'real'";
    QTest::newRow("bad argument") << QByteArray("int f(flex, real)") << "2: unknown argument type 'real'";
    QTest::newRow("no parentheses") << QByteArray("int f") << "2: expected NAME(ARGUMENTS)";
    QTest::newRow("trailing comma") << QByteArray("int f(int,)")
                                    << "2: an argument type is missing after ','";
    QTest::newRow("extra word") << QByteArray("int f() old") << "2: unexpected 'old' after the arguments";
    QTest::newRow("twice") << QByteArray("int GetThingHealth()") << "2: 'GetThingHealth' is listed twice";
}

// Each line read after a first verb line; the shipped table reads without a warning.
void tst_Lint::verbTable() {
    QFETCH(QByteArray, line);
    QFETCH(QString, warning);
    std::vector<language::VerbTableWarning> warnings;
    language::VerbTable::read(("flex getthinghealth(thing)\n" + line).toStdString(), &warnings);
    QStringList got;
    for (const auto& w : warnings) got << QString("%1: %2").arg(w.line).arg(QString::fromStdString(w.reason));
    QCOMPARE(got.join('\n'), warning);

    const auto shipped =
        language::VerbTable::read(readAll(TESSARY_SOURCE_DIR "/data/verbs.dat").toStdString(), &warnings);
    QCOMPARE(warnings.size(), std::size_t(warning.isEmpty() ? 0 : 1));
    QCOMPARE(shipped.size(), std::size_t(414));
    const language::Verb* flags = shipped.find("SetActorFlags");
    QVERIFY(flags && flags->name == "settypeflags" && flags->parameters.size() == 2);
}

// Every entry of the shipped reference names a verb of the table, with as many arguments.
void tst_Lint::referenceNamesVerbs() {
    const auto verbs = language::VerbTable::read(readAll(TESSARY_SOURCE_DIR "/data/verbs.dat").toStdString());
    const auto ref = reference::readCogRef(readAll(TESSARY_SOURCE_DIR "/data/cogref.dat").toStdString());
    std::size_t entries = 0;
    for (const auto& node : ref.tree.nodes()) {
        if (reference::isGroupTag(node.tag)) continue;
        ++entries;
        const std::string_view call = reference::splitTag(node.tag).callText;
        const auto open = call.find('('), close = call.rfind(')');
        QVERIFY2(open != call.npos && close > open, node.tag.c_str());
        const std::string_view args = call.substr(open + 1, close - open - 1);
        const auto count =
            args.find_first_not_of(' ') == args.npos ? 0 : std::count(args.begin(), args.end(), ',') + 1;
        const language::Verb* verb = verbs.find(node.text);
        QVERIFY2(verb, node.text.c_str());
        QVERIFY2(std::size_t(count) == verb->parameters.size(), node.tag.c_str());
    }
    QVERIFY(entries >= verbs.size());
}

QTEST_GUILESS_MAIN(tst_Lint)
#include "tst_lint.moc"
