// The shallow syntax check: unmatched opening braces and missing or misplaced section lines.
#include "cog/syntaxcheck.h"

#include <QtTest>

#include <random>

using cog::Finding;
using cog::Pos;

namespace {

QStringList describe(const std::vector<Finding>& findings) {
    QStringList out;
    for (const Finding& f : findings) out << QString::fromStdString(f.text) + " @" + QString::number(f.caret);
    return out;
}

// The lock-step walk, one search at a time, for the brace at text position lpos.
bool matchCharStepByStep(const std::string& t, Pos lpos) {
    Pos op = lpos, cl = lpos;
    do {
        op = cog::find(op + 1, t, "{");
        cl = cog::find(cl + 1, t, "}");
    } while (!(op > cl || op == 0 || cl == 0));
    return (op != 0 && cl != 0) || op < cl;
}

// The text read from its end, "{" and "}" swapped.
std::string mirror(const std::string& t) {
    std::string m(t.rbegin(), t.rend());
    for (char& c : m) c = c == '{' ? '}' : c == '}' ? '{' : c;
    return m;
}

const char* const kSections = "# c\r\nsymbols\r\nend\r\ncode\r\nend\r\n";

} // namespace

class tst_SyntaxCheck : public QObject {
    Q_OBJECT
private slots:
    void findings_data();
    void findings();
    void bracesAgreeWithStepByStepWalk();
    void deepNestingIsLinear();
};

void tst_SyntaxCheck::findings_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QStringList>("expected");
    const QByteArray ok(kSections);
    QTest::newRow("all four section lines in order, balanced braces: nothing") << ok + "{ a { b } c }\r\n"
                                                                               << 3 << QStringList{};
    QTest::newRow("{} counts as closed") << ok + "{}" << 0 << QStringList{};
    QTest::newRow("{{} leaves the first brace unmatched")
        << "{{}" + ok << 5 << QStringList{"{ not matched @0"};
    QTest::newRow("}{ reports the opening brace only") << ok + "}{" << 0 << QStringList{"{ not matched @31"};
    QTest::newRow("a closing brace after the last opening one closes it")
        << ok + "}}{}" << 0 << QStringList{};
    QTest::newRow("each unmatched brace in text order")
        << "{" + ok + "{{" << 0 << QStringList{"{ not matched @0", "{ not matched @31", "{ not matched @32"};
    QTest::newRow("braces in comments count like any other") << ok + "// {\r\n"
                                                             << 0 << QStringList{"{ not matched @33"};
    QTest::newRow("symbols on the first line: no symbols section")
        << QByteArray("symbols\r\nend\r\ncode\r\nend\r\n") << 7 << QStringList{"no symbols section @7"};
    QTest::newRow("no end line at all")
        << QByteArray("#\r\nsymbols\r\ncode\r\n") << 2
        << QStringList{"no end for symbols section @2", "no end for code section @2"};
    QTest::newRow("the only end line after code")
        << QByteArray("#\r\nsymbols\r\ncode\r\nend\r\n") << 4 << QStringList{"no end for symbols section @4"};
    QTest::newRow("no code line") << QByteArray("#\r\nsymbols\r\nend\r\n") << 1
                                  << QStringList{"no code section @1"};
    QTest::newRow("no code line and no end line")
        << QByteArray("#\r\nsymbols\r\n") << 1
        << QStringList{"no end for symbols section @1", "no code section @1"};
    QTest::newRow("code without a second end")
        << QByteArray("#\r\nsymbols\r\nend\r\ncode\r\n") << 9 << QStringList{"no end for code section @9"};
    QTest::newRow("empty text: every section finding")
        << QByteArray() << 0
        << QStringList{"no symbols section @0", "no end for symbols section @0", "no code section @0"};
    QTest::newRow("indented and upper-case section lines")
        << QByteArray("#\r\n symbols\r\nEND\r\nCode\r\nend\r\n") << 0 << QStringList{"no symbols section @0"};
    QTest::newRow("braces first, then sections")
        << QByteArray("#\r\nsymbols\r\n{\r\n") << 6
        << QStringList{"{ not matched @12", "no end for symbols section @6", "no code section @6"};
}

void tst_SyntaxCheck::findings() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QStringList, expected);
    QCOMPARE(describe(cog::checkCog(text.toStdString(), caret)), expected);
}

void tst_SyntaxCheck::bracesAgreeWithStepByStepWalk() {
    std::mt19937 rng(5);
    const char alphabet[] = "{{}}x";
    int closed = 0, open = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string t;
        for (int i = static_cast<int>(rng() % 30); i > 0; --i) t += alphabet[rng() % 5];
        std::vector<bool> want;
        for (Pos b = cog::find(1, t, "{"); b > 0; b = cog::find(b + 1, t, "{"))
            want.push_back(matchCharStepByStep(t, b));
        const auto got = cog::matchOpeningBraces(t);
        QCOMPARE(got.size(), want.size());
        for (std::size_t i = 0; i < got.size(); ++i) {
            if (got[i].closed != want[i])
                QFAIL(qPrintable(QString::fromStdString(t + " brace " + std::to_string(i))));
            QCOMPARE(t[std::size_t(got[i].position - 1)], '{');
            QCOMPARE(cog::matchChar(t, got[i].position), want[i]);
            // Walking backward from a "}" is the forward walk on the mirrored text.
            const Pos mirrored = Pos(t.size()) + 1 - got[i].position;
            QCOMPARE(cog::matchChar(mirror(t), mirrored, '}', '{', -1), want[i]);
            (want[i] ? closed : open)++;
        }
    }
    QVERIFY(closed > 10000 && open > 10000);
}

void tst_SyntaxCheck::deepNestingIsLinear() {
    // 200,000 nested braces with one closing brace missing: the step-by-step walk would take
    // billions of searches; the check answers at once and names only the outermost brace.
    const std::size_t depth = 200000;
    const std::string t = std::string(depth, '{') + std::string(depth - 1, '}');
    const auto findings = cog::checkCog(std::string(kSections) + t, 0);
    QCOMPARE(findings.size(), std::size_t(1));
    QCOMPARE(findings[0], (Finding{"{ not matched", 30}));
}

QTEST_APPLESS_MAIN(tst_SyntaxCheck)
#include "tst_syntaxcheck.moc"
