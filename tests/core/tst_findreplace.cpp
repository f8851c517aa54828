// Brace matching, word search and the replace series of the Edit menu.
#include "editor/findreplace.h"

#include <QtTest>

#include <optional>
#include <random>
#include <string>

using cog::Pos;
using editor::Selection;

Q_DECLARE_METATYPE(std::string)

class tst_FindReplace : public QObject {
    Q_OBJECT
private slots:
    void matchBrace_data();
    void matchBrace();
    void findWord_data();
    void findWord();
    void findNextWalksOverlappingOccurrences();
    void replace_data();
    void replace();
    void nonEndingReplaceAll_data();
    void nonEndingReplaceAll();
    void replaceAllEqualsTheStepByStepSeries();
    void editsCompose();
};

namespace {

// The series read literally: search, change the whole text, search again one byte after the
// start of the occurrence. Gives up after maxSteps steps and reports that it did not end.
struct Literal {
    std::string text;
    std::optional<Selection> selection;
    Pos ipos = 0;
    bool ended = true;
};

Literal literalSeries(std::string text, Pos ipos, const std::string& word, const std::string& repl, bool all,
                      bool edges, bool restartAfterInsert = false, long maxSteps = -1) {
    Literal l;
    const auto w = static_cast<Pos>(word.size());
    const auto rl = static_cast<Pos>(repl.size());
    for (long step = 0;; ++step) {
        if (maxSteps >= 0 && step > maxSteps) {
            l.ended = false;
            break;
        }
        const Pos r = word.empty() ? 0 : cog::find(ipos, text, word);
        ipos = r;
        if (r == 0 || (edges && r == 1)) break;
        Pos restart = r + 1;
        if (!edges) {
            text.replace(static_cast<std::size_t>(r - 1), word.size(), repl);
            l.selection = Selection{r - 1 + rl, 0};
            if (restartAfterInsert) restart = r + rl;
        } else {
            const Pos start = r - 2;
            const Pos len = std::min<Pos>(w + 2, static_cast<Pos>(text.size()) - start);
            const std::string sel =
                text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(len));
            if (len == w + 2 && cog::isBlank(sel.front()) && cog::isBlank(sel.back())) {
                text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(len),
                             sel.front() + repl + sel.back());
                l.selection = Selection{start + rl + 2, 0};
                if (restartAfterInsert) restart = r + rl;
            } else {
                l.selection = Selection{start, len};
            }
        }
        ipos = restart;
        if (!all) {
            ipos = r + 1;
            break;
        }
    }
    l.text = std::move(text);
    l.ipos = ipos;
    return l;
}

editor::ReplaceResult fast(const std::string& text, Pos ipos, const std::string& word,
                           const std::string& repl, bool all, bool edges) {
    return editor::replaceSeries(text, ipos, word, repl, all, edges);
}

QString show(const std::string& s) {
    QString out;
    for (char c : s)
        out += c == '\r' ? QStringLiteral("\\r") : c == '\n' ? QStringLiteral("\\n") : QString(QChar(c));
    return out;
}

} // namespace

void tst_FindReplace::matchBrace_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<int>("selLength");
    QTest::newRow("outer pair of nested braces") << QByteArray("{a{b}c}d") << 0 << 0 << 7;
    QTest::newRow("inner pair of nested braces") << QByteArray("{a{b}c}d") << 2 << 2 << 3;
    QTest::newRow("unbalanced: caret stays, nothing selected") << QByteArray("{a{b}c") << 0 << 0 << 0;
    QTest::newRow("not on a brace: the character is selected") << QByteArray("x{}") << 0 << 0 << 1;
    QTest::newRow("closing brace is not matched backwards") << QByteArray("{}") << 1 << 1 << 1;
    QTest::newRow("caret at the end selects nothing") << QByteArray("ab{") << 3 << 3 << 0;
    QTest::newRow("brace closed by the next character") << QByteArray("{}") << 0 << 0 << 2;
    QTest::newRow("a later opening brace after the match") << QByteArray("{}{") << 0 << 0 << 2;
    QTest::newRow("braces in a comment count") << QByteArray("{ // }\r\n}") << 0 << 0 << 6;
    QTest::newRow("deep nesting") << QByteArray("x{{{{}}}}}") << 1 << 1 << 8;
    QTest::newRow("lone opening brace") << QByteArray("{abc") << 0 << 0 << 0;
    QTest::newRow("empty text") << QByteArray("") << 0 << 0 << 0;
}

void tst_FindReplace::matchBrace() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(int, selStart);
    QFETCH(int, selLength);
    const Selection s = editor::matchBrace(text.toStdString(), caret);
    QCOMPARE(s.start, Pos(selStart));
    QCOMPARE(s.length, Pos(selLength));
}

void tst_FindReplace::findWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("ipos");
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("found");
    QTest::newRow("case is ignored") << QByteArray("my cog and Cog") << 1 << QByteArray("COG") << 4;
    QTest::newRow("next one from after the start")
        << QByteArray("my cog and Cog") << 5 << QByteArray("COG") << 12;
    QTest::newRow("none after the last") << QByteArray("my cog and Cog") << 13 << QByteArray("COG") << 0;
    QTest::newRow("word at the very start") << QByteArray("cog x") << 1 << QByteArray("cog") << 1;
    QTest::newRow("inside a longer word") << QByteArray("recount") << 1 << QByteArray("count") << 3;
    QTest::newRow("absent word") << QByteArray("abc") << 1 << QByteArray("z") << 0;
    QTest::newRow("empty word is never found") << QByteArray("abc") << 1 << QByteArray("") << 0;
    QTest::newRow("start past the end") << QByteArray("abc") << 9 << QByteArray("c") << 0;
}

void tst_FindReplace::findWord() {
    QFETCH(QByteArray, text);
    QFETCH(int, ipos);
    QFETCH(QByteArray, word);
    QFETCH(int, found);
    const auto r = editor::findWord(text.toStdString(), ipos, word.toStdString());
    QCOMPARE(r.found, Pos(found));
    QCOMPARE(r.ipos, found ? Pos(found + 1) : Pos(0));
    if (found) QCOMPARE(r.selection, (Selection{found - 1, Pos(word.size())}));
}

void tst_FindReplace::findNextWalksOverlappingOccurrences() {
    const std::string text = "aaa";
    auto r = editor::findWord(text, 1, "aa");
    QCOMPARE(r.found, Pos(1));
    r = editor::findWord(text, r.ipos, "aa");
    QCOMPARE(r.found, Pos(2));
    r = editor::findWord(text, r.ipos, "aa");
    QCOMPARE(r.found, Pos(0));
}

void tst_FindReplace::replace_data() {
    QTest::addColumn<std::string>("text");
    QTest::addColumn<int>("ipos");
    QTest::addColumn<std::string>("word");
    QTest::addColumn<std::string>("repl");
    QTest::addColumn<bool>("all");
    QTest::addColumn<bool>("edges");
    QTest::addColumn<std::string>("expected");
    QTest::addColumn<int>("caret"); // selection start afterwards, -1: unchanged
    QTest::addColumn<int>("selLength");
    QTest::addColumn<int>("iposAfter");
    QTest::newRow("replace changes the first only")
        << std::string("aXa") << 1 << std::string("a") << std::string("b") << false << false
        << std::string("bXa") << 1 << 0 << 2;
    QTest::newRow("replace all changes every one")
        << std::string("aXa") << 1 << std::string("a") << std::string("b") << true << false
        << std::string("bXb") << 3 << 0 << 0;
    QTest::newRow("replace all, caret after the last")
        << std::string("abab ab") << 1 << std::string("ab") << std::string("x") << true << false
        << std::string("xx x") << 4 << 0 << 0;
    QTest::newRow("case is ignored") << std::string("Ab aB") << 1 << std::string("ab") << std::string("c")
                                     << true << false << std::string("c c") << 3 << 0 << 0;
    QTest::newRow("overlapping occurrences, changed text searched again")
        << std::string("aaa") << 1 << std::string("aa") << std::string("b") << true << false
        << std::string("ba") << 1 << 0 << 0;
    QTest::newRow("replacement ending in the word's start joins the next")
        << std::string("abb") << 1 << std::string("ab") << std::string("xa") << true << false
        << std::string("xxa") << 3 << 0 << 0;
    QTest::newRow("replacement holding the word at its start ends")
        << std::string("aXa") << 1 << std::string("a") << std::string("ab") << true << false
        << std::string("abXab") << 5 << 0 << 0;
    QTest::newRow("text ending in the word")
        << std::string("x ax") << 1 << std::string("x") << std::string("yy") << true << false
        << std::string("yy ayy") << 6 << 0 << 0;
    QTest::newRow("nothing found: text and selection stay")
        << std::string("abc") << 1 << std::string("z") << std::string("y") << true << false
        << std::string("abc") << -1 << 0 << 0;
    QTest::newRow("edge mode skips parts of longer words")
        << std::string("a x bx x\r\n") << 2 << std::string("x") << std::string("y") << true << true
        << std::string("a y bx y\r\n") << 9 << 0 << 0;
    QTest::newRow("edge mode: word ending the text stays")
        << std::string("a x x") << 2 << std::string("x") << std::string("y") << true << true
        << std::string("a y x") << 3 << 2 << 0;
    QTest::newRow("edge mode: occurrence at position 1 ends the series")
        << std::string("x x ") << 1 << std::string("x") << std::string("y") << true << true
        << std::string("x x ") << -1 << 0 << 1;
    QTest::newRow("edge mode keeps tabs and line breaks beside it")
        << std::string("\tcount\r\nn = count;\r\nrecount count\t") << 2 << std::string("count")
        << std::string("total") << true << true << std::string("\ttotal\r\nn = count;\r\nrecount total\t")
        << 34 << 0 << 0;
    QTest::newRow("edge mode: single step that does not qualify selects the sides")
        << std::string("a bx c") << 1 << std::string("x") << std::string("y") << false << true
        << std::string("a bx c") << 2 << 3 << 5;
    QTest::newRow("start in the middle skips earlier ones")
        << std::string("a a a") << 2 << std::string("a") << std::string("b") << true << false
        << std::string("a b b") << 5 << 0 << 0;
    QTest::newRow("empty replacement deletes")
        << std::string("a x b x") << 1 << std::string(" x") << std::string("") << true << false
        << std::string("a b") << 3 << 0 << 0;
}

void tst_FindReplace::replace() {
    QFETCH(std::string, text);
    QFETCH(int, ipos);
    QFETCH(std::string, word);
    QFETCH(std::string, repl);
    QFETCH(bool, all);
    QFETCH(bool, edges);
    QFETCH(std::string, expected);
    QFETCH(int, caret);
    QFETCH(int, selLength);
    QFETCH(int, iposAfter);
    const auto r = fast(text, ipos, word, repl, all, edges);
    QCOMPARE(editor::applyEdit(text, r.edit), expected);
    if (caret < 0) {
        QVERIFY(!r.selection);
    } else {
        QVERIFY(r.selection);
        QCOMPARE(*r.selection, (Selection{caret, selLength}));
    }
    QCOMPARE(r.ipos, Pos(iposAfter));
    QVERIFY(!r.bounded);
}

void tst_FindReplace::nonEndingReplaceAll_data() {
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("word");
    QTest::addColumn<std::string>("repl");
    QTest::addColumn<bool>("edges");
    QTest::addColumn<std::string>("expected");
    QTest::newRow("replacement ends with the word")
        << std::string("aXa") << std::string("a") << std::string("ba") << false << std::string("baXba");
    QTest::newRow("replacement doubles the word")
        << std::string("aXa") << std::string("a") << std::string("aa") << false << std::string("aaXaa");
    QTest::newRow("word in another case inside the replacement")
        << std::string("cog Cog") << std::string("cog") << std::string("my COG") << false
        << std::string("my COG my COG");
    QTest::newRow("overlapping originals replaced once, left to right")
        << std::string("aaa") << std::string("aa") << std::string("xaa") << false << std::string("xaaa");
    QTest::newRow("edge mode, free-standing word inside the replacement")
        << std::string(" x bx x\r\n") << std::string("x") << std::string("y x") << true
        << std::string(" y x bx y x\r\n");
}

void tst_FindReplace::nonEndingReplaceAll() {
    QFETCH(std::string, text);
    QFETCH(std::string, word);
    QFETCH(std::string, repl);
    QFETCH(bool, edges);
    QFETCH(std::string, expected);
    QVERIFY(editor::replacementRecurs(word, repl, edges));
    QVERIFY(!literalSeries(text, 1, word, repl, true, edges, false, 1000).ended);
    const auto r = fast(text, 1, word, repl, true, edges);
    QVERIFY(r.bounded);
    QCOMPARE(editor::applyEdit(text, r.edit), expected);
    QCOMPARE(r.ipos, Pos(0));
    QCOMPARE(r.selection->start, Pos(expected.rfind(repl) + repl.size() + (edges ? 1 : 0)));
}

// Generated texts over a small alphabet, so that occurrences overlap, touch, differ in case and
// meet the text's ends: the fast series must give exactly what the literal series gives wherever
// that one ends, and must say `bounded` exactly where it does not.
void tst_FindReplace::replaceAllEqualsTheStepByStepSeries() {
    std::mt19937 rng(11);
    const std::string alphabet = "aAb \n";
    auto pick = [&](int maxLen, int minLen) {
        std::string s;
        const int len = minLen + static_cast<int>(rng() % static_cast<unsigned>(maxLen - minLen + 1));
        for (int i = 0; i < len; ++i) s += alphabet[rng() % alphabet.size()];
        return s;
    };
    int compared = 0, nonEnding = 0, changed = 0;
    for (int round = 0; round < 30000; ++round) {
        const std::string text = pick(18, 0);
        const std::string word = pick(3, 1);
        const std::string repl = pick(5, 0);
        const bool edges = rng() % 2;
        const bool all = rng() % 4 != 0;
        const Pos ipos = static_cast<Pos>(rng() % (text.size() + 2));
        const long limit = static_cast<long>((text.size() + 2) * (repl.size() + 2) * 4);
        const Literal lit = literalSeries(text, ipos, word, repl, all, edges, false, limit);
        const auto got = fast(text, ipos, word, repl, all, edges);
        const Literal want = lit.ended ? lit : literalSeries(text, ipos, word, repl, all, edges, true);
        const QString where = QStringLiteral("text \"%1\" word \"%2\" repl \"%3\" ipos %4 all %5 edges %6")
                                  .arg(show(text), show(word), show(repl))
                                  .arg(ipos)
                                  .arg(all)
                                  .arg(edges);
        if (got.bounded == lit.ended) QFAIL(qPrintable("bounded mismatch: " + where));
        const std::string result = editor::applyEdit(text, got.edit);
        if (result != want.text)
            QFAIL(qPrintable(where + " got \"" + show(result) + "\" want \"" + show(want.text) + "\""));
        if (got.selection != want.selection) QFAIL(qPrintable("selection: " + where));
        if (got.ipos != want.ipos) QFAIL(qPrintable("ipos: " + where));
        ++compared;
        nonEnding += !lit.ended;
        changed += result != text;
    }
    // The generator must reach the interesting cases, or the comparison proves little.
    QVERIFY(nonEnding > 500);
    QVERIFY(changed > 5000);
    QCOMPARE(compared, 30000);
}

void tst_FindReplace::editsCompose() {
    std::mt19937 rng(3);
    for (int round = 0; round < 5000; ++round) {
        std::string text(rng() % 12, 'a');
        for (auto& c : text) c = static_cast<char>('a' + rng() % 5);
        auto randomEdit = [&](const std::string& t) {
            editor::TextEdit e;
            e.start = static_cast<Pos>(rng() % (t.size() + 1));
            e.removed = static_cast<Pos>(rng() % (t.size() - static_cast<std::size_t>(e.start) + 1));
            e.inserted = std::string(rng() % 4, 'X');
            return e;
        };
        const auto first = randomEdit(text);
        const std::string middle = editor::applyEdit(text, first);
        const auto second = randomEdit(middle);
        const auto both = editor::composeEdits(text, first, second);
        QCOMPARE(editor::applyEdit(text, both), editor::applyEdit(middle, second));
    }
}

QTEST_APPLESS_MAIN(tst_FindReplace)
#include "tst_findreplace.moc"
