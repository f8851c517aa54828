// The shallow syntax check: unmatched opening braces and missing or misplaced section lines.
#include "cog/syntaxcheck.h"

#include <QtTest>

#include <random>

using cog::Finding;
using cog::Pos;

namespace {

const QByteArray kSections = "# c\r\nsymbols\r\nend\r\ncode\r\nend\r\n";

// The plain reading: opening and closing braces searched in lock step from the brace at lpos.
bool matchCharStepByStep(const std::string& t, Pos lpos) {
    Pos op = lpos, cl = lpos;
    do {
        op = cog::find(op + 1, t, "{");
        cl = cog::find(cl + 1, t, "}");
    } while (!(op > cl || op == 0 || cl == 0));
    return (op != 0 && cl != 0) || op < cl;
}

} // namespace

class tst_SyntaxCheck : public QObject {
    Q_OBJECT
private slots:
    void findings_data();
    void findings();
    void bracesAgreeWithStepByStepWalk();
};

void tst_SyntaxCheck::findings_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QString>("expected"); // the findings as "text @caret", joined by " | "
    const auto row = [](const char* name, const QByteArray& text, int caret, const char* expected) {
        QTest::newRow(name) << text << caret << QString(expected);
    };
    row("sections in order, balanced braces, {} closed: nothing", kSections + "{ a { b } c }{}", 3, "");
    row("{{} leaves the first brace unmatched", "{{}" + kSections, 5, "{ not matched @0");
    row("}{ reports the opening brace only", kSections + "}{", 0, "{ not matched @31");
    row("symbols on the first line", "symbols\r\nend\r\ncode\r\nend\r\n", 7, "no symbols section @7");
    row("no end line at all", "#\r\nsymbols\r\ncode\r\n", 2,
        "no end for symbols section @2 | no end for code section @2");
    row("the only end line after code", "#\r\nsymbols\r\ncode\r\nend\r\n", 4,
        "no end for symbols section @4");
    row("no code line", "#\r\nsymbols\r\nend\r\n", 1, "no code section @1");
    row("code without a second end", "#\r\nsymbols\r\nend\r\ncode\r\n", 9, "no end for code section @9");
    row("indented and upper-case section lines", "#\r\n symbols\r\nEND\r\nCode\r\nend\r\n", 0,
        "no symbols section @0");
    row("braces first, then sections", "#\r\nsymbols\r\n{\r\n", 6,
        "{ not matched @12 | no end for symbols section @6 | no code section @6");
    // The lock-step walk would take billions of searches here; only the outermost brace is open.
    row("200,000 nested braces, one closing brace missing",
        kSections + QByteArray(200000, '{') + QByteArray(199999, '}'), 0, "{ not matched @30");
}

void tst_SyntaxCheck::findings() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QString, expected);
    QStringList got;
    for (const Finding& f : cog::checkCog(text.toStdString(), caret))
        got << QString::fromStdString(f.text) + " @" + QString::number(f.caret);
    QCOMPARE(got.join(" | "), expected);
}

void tst_SyntaxCheck::bracesAgreeWithStepByStepWalk() {
    std::mt19937 rng(5);
    int outcomes[2] = {0, 0};
    for (int round = 0; round < 20000; ++round) {
        std::string t;
        for (int i = static_cast<int>(rng() % 30); i > 0; --i) t += "{{}}x"[rng() % 5];
        // The text read from its end with the braces swapped: walking backward from a "}".
        std::string mirror(t.rbegin(), t.rend());
        for (char& c : mirror) c = c == '{' ? '}' : c == '}' ? '{' : c;
        const auto got = cog::matchOpeningBraces(t);
        std::size_t i = 0;
        for (Pos b = cog::find(1, t, "{"); b > 0; b = cog::find(b + 1, t, "{"), ++i) {
            const bool want = matchCharStepByStep(t, b);
            QVERIFY2(i < got.size() && got[i].position == b && got[i].closed == want, t.c_str());
            QCOMPARE(cog::matchChar(t, b), want);
            QCOMPARE(cog::matchChar(mirror, Pos(t.size()) + 1 - b, '}', '{', -1), want);
            ++outcomes[want];
        }
        QCOMPARE(got.size(), i);
    }
    QVERIFY(outcomes[0] > 10000 && outcomes[1] > 10000);
}

QTEST_APPLESS_MAIN(tst_SyntaxCheck)
#include "tst_syntaxcheck.moc"
