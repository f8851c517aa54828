// The COG language checker, through tessary-cli lint: every tests/cases/lint/NAME.cog is linted
// and its output compared with NAME.expected (and with NAME.json, where there is one, for
// --json); the shipped verb table against the shipped reference. (The options: tests/cases/cli/lint,
// the verb table reader: tests/cases/verbs.)
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

CliRun lint(const QStringList& args) {
    return runTessaryCli(QStringList{"lint"} + args, kCases);
}

} // namespace

class tst_Lint : public QObject {
    Q_OBJECT
private slots:
    void golden_data();
    void golden();
    void wholeFolderInOrder();
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

// The shipped table reads without a warning, and every entry of the shipped reference names a verb
// of the table, with as many arguments.
void tst_Lint::referenceNamesVerbs() {
    std::vector<language::VerbTableWarning> warnings;
    const auto verbs =
        language::VerbTable::read(readAll(TESSARY_SOURCE_DIR "/data/verbs.dat").toStdString(), &warnings);
    QVERIFY(warnings.empty());
    QCOMPARE(verbs.size(), std::size_t(414));
    const language::Verb* flags = verbs.find("SetActorFlags");
    QVERIFY(flags && flags->name == "settypeflags" && flags->parameters.size() == 2);
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
