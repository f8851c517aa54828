// Brace matching, word search and the replace series of the Edit menu.
#include "editor/findreplace.h"

#include <QtTest>

#include <optional>
#include <random>
#include <string>

using cog::Pos;
using editor::Selection;
using S = std::string;

namespace {

// The series read literally: search, change the whole text, search again one byte after the
// start of the occurrence (or after the insertion). Gives up after maxSteps steps: ended = false.
struct Literal {
    S text;
    Pos ipos = 0;
    std::optional<Selection> selection;
    bool ended = true;
};

Literal literalSeries(S t, Pos ipos, const S& word, const S& repl, bool all, bool edges,
                      bool restartAfterInsert = false, long maxSteps = -1) {
    Literal l{std::move(t), ipos, std::nullopt};
    const Pos w = static_cast<Pos>(word.size());
    for (long step = 0; (l.ended = maxSteps < 0 || step <= maxSteps); ++step) {
        const Pos r = l.ipos = word.empty() ? 0 : cog::find(l.ipos, l.text, word);
        if (r == 0 || (edges && r == 1)) break;
        const Pos s = edges ? r - 2 : r - 1, len = edges ? std::min<Pos>(w + 2, Pos(l.text.size()) - s) : w;
        const char before = l.text[s], after = l.text[s + len - 1];
        if (!edges || (len == w + 2 && cog::isBlank(before) && cog::isBlank(after))) {
            const S ins = edges ? before + repl + after : repl;
            l.text.replace(std::size_t(s), std::size_t(len), ins);
            l.selection = Selection{s + Pos(ins.size()), 0};
        } else {
            l.selection = Selection{s, len};
        }
        l.ipos = all && restartAfterInsert && l.selection->length == 0 ? r + Pos(repl.size()) : r + 1;
        if (!all) break;
    }
    return l;
}

struct ReplaceCase {
    const char* name;
    S text, word, repl, expected;
    QByteArray mode;                                   // "one" or "all", "edges", "bounded"
    int caret, ipos = 1, selLength = 0, iposAfter = 0; // caret -1: no selection set
};

} // namespace

Q_DECLARE_METATYPE(ReplaceCase)

class tst_FindReplace : public QObject {
    Q_OBJECT
private slots:

    // Match Brace (word "{") from the caret, Find Word from ipos: the selection left, -1 when nothing is
    // found.
    void selection_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("word");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("selStart");
        QTest::addColumn<int>("selLength");
        const QByteArray nested("{a{b}c}d"), cogs("my cog and Cog"), brace("{");
        QTest::newRow("brace: outer pair of nested braces") << nested << brace << 0 << 0 << 7;
        QTest::newRow("brace: inner pair of nested braces") << nested << brace << 2 << 2 << 3;
        QTest::newRow("brace: unbalanced, caret stays") << QByteArray("{a{b}c") << brace << 0 << 0 << 0;
        QTest::newRow("brace: not on a brace, the character") << QByteArray("x{}") << brace << 0 << 0 << 1;
        QTest::newRow("brace: closing brace not matched backwards")
            << QByteArray("{}") << brace << 1 << 1 << 1;
        QTest::newRow("brace: caret at the end") << QByteArray("ab{") << brace << 3 << 3 << 0;
        QTest::newRow("brace: braces in a comment count")
            << QByteArray("{ // }\r\n}") << brace << 0 << 0 << 6;
        QTest::newRow("brace: deep nesting") << QByteArray("x{{{{}}}}}") << brace << 1 << 1 << 8;
        QTest::newRow("find: case is ignored") << cogs << QByteArray("COG") << 1 << 3 << 3;
        QTest::newRow("find: next one from after the start") << cogs << QByteArray("COG") << 5 << 11 << 3;
        QTest::newRow("find: none after the last") << cogs << QByteArray("COG") << 13 << -1 << 0;
        QTest::newRow("find: inside a longer word")
            << QByteArray("recount") << QByteArray("count") << 1 << 2 << 5;
        QTest::newRow("find: overlapping, first at 1")
            << QByteArray("aaa") << QByteArray("aa") << 1 << 0 << 2;
        QTest::newRow("find: overlapping, then at 2") << QByteArray("aaa") << QByteArray("aa") << 2 << 1 << 2;
        QTest::newRow("find: overlapping, then none")
            << QByteArray("aaa") << QByteArray("aa") << 3 << -1 << 0;
        QTest::newRow("find: empty word never found") << QByteArray("abc") << QByteArray("") << 1 << -1 << 0;
        QTest::newRow("find: start past the end") << QByteArray("abc") << QByteArray("c") << 9 << -1 << 0;
    }

    void selection() {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, word);
        QFETCH(int, from);
        QFETCH(int, selStart);
        QFETCH(int, selLength);
        if (word == "{") {
            QCOMPARE(editor::matchBrace(text.toStdString(), from), (Selection{selStart, selLength}));
            return;
        }
        const auto r = editor::findWord(text.toStdString(), from, word.toStdString());
        QCOMPARE(r.found, Pos(selStart + 1));
        QCOMPARE(r.ipos,
                 selStart < 0 ? Pos(0) : Pos(selStart + 2)); // Find Next goes on one byte after the start
        if (selStart >= 0) QCOMPARE(r.selection, (Selection{selStart, selLength}));
    }

    void replace_data() {
        QTest::addColumn<ReplaceCase>("c");
        const ReplaceCase rows[] = {
            {"replace changes the first only", "aXa", "a", "b", "bXa", "one", 1, 1, 0, 2},
            {"replace all changes every one", "aXa", "a", "b", "bXb", "all", 3},
            {"replace all, caret after the last", "abab ab", "ab", "x", "xx x", "all", 4},
            {"overlapping occurrences, changed text searched again", "aaa", "aa", "b", "ba", "all", 1},
            {"replacement ending in the word's start joins the next", "abb", "ab", "xa", "xxa", "all", 3},
            {"replacement holding the word at its start ends", "aXa", "a", "ab", "abXab", "all", 5},
            {"text ending in the word", "x ax", "x", "yy", "yy ayy", "all", 6},
            {"nothing found: text and selection stay", "abc", "z", "y", "abc", "all", -1},
            {"edge mode skips parts of longer words", "a x bx x\r\n", "x", "y", "a y bx y\r\n", "all edges",
             9, 2},
            {"edge mode: word ending the text stays", "a x x", "x", "y", "a y x", "all edges", 3, 2, 2},
            {"edge mode: occurrence at position 1 ends the series", "x x ", "x", "y", "x x ", "all edges", -1,
             1, 0, 1},
            {"edge mode keeps tabs and line breaks beside it", "\tcount\r\nn = count;\r\nrecount count\t",
             "count", "total", "\ttotal\r\nn = count;\r\nrecount total\t", "all edges", 34, 2},
            {"edge mode: one step that does not qualify selects the sides", "a bx c", "x", "y", "a bx c",
             "one edges", 2, 1, 3, 5},
            {"bounded: replacement ends with the word", "aXa", "a", "ba", "baXba", "all bounded", 5},
            {"bounded: replacement doubles the word", "aXa", "a", "aa", "aaXaa", "all bounded", 5},
            {"bounded: word in another case in it", "cog Cog", "cog", "my COG", "my COG my COG",
             "all bounded", 13},
            {"bounded: overlapping originals once, left to right", "aaa", "aa", "xaa", "xaaa", "all bounded",
             3},
            {"bounded: free-standing word in it", " x bx x\r\n", "x", "y x", " y x bx y x\r\n",
             "all edges bounded", 12},
        };
        for (const auto& c : rows) QTest::newRow(c.name) << c;
    }

    // Bounded rows read literally never end: Replace All stops and changes each original once.
    void replace() {
        QFETCH(ReplaceCase, c);
        const bool all = c.mode.contains("all"), edges = c.mode.contains("edges"),
                   bounded = c.mode.contains("bounded");
        if (bounded) {
            QVERIFY(editor::replacementRecurs(c.word, c.repl, edges));
            QVERIFY(!literalSeries(c.text, c.ipos, c.word, c.repl, true, edges, false, 1000).ended);
        }
        const auto r = editor::replaceSeries(c.text, c.ipos, c.word, c.repl, all, edges);
        QCOMPARE(editor::applyEdit(c.text, r.edit), c.expected);
        QCOMPARE(r.selection, c.caret < 0 ? std::nullopt : std::optional(Selection{c.caret, c.selLength}));
        QCOMPARE(r.ipos, Pos(c.iposAfter));
        QCOMPARE(r.bounded, bounded);
    }

    // Generated texts over a small alphabet, so that occurrences overlap, touch, differ in case and
    // meet the text's ends: the fast series gives exactly what the literal series gives wherever that
    // one ends, and says `bounded` exactly where it does not.
    void replaceAllEqualsTheStepByStepSeries() {
        std::mt19937 rng(11);
        auto pick = [&](unsigned maxLen, unsigned minLen) {
            S s(minLen + rng() % (maxLen - minLen + 1), ' ');
            for (auto& c : s) c = "aAb \n"[rng() % 5];
            return s;
        };
        int nonEnding = 0, changed = 0;
        for (int round = 0; round < 30000; ++round) {
            const S text = pick(18, 0), word = pick(3, 1), repl = pick(5, 0);
            const bool edges = rng() % 2, all = rng() % 4 != 0;
            const Pos ipos = static_cast<Pos>(rng() % (text.size() + 2));
            const long limit = static_cast<long>((text.size() + 2) * (repl.size() + 2) * 4);
            const Literal lit = literalSeries(text, ipos, word, repl, all, edges, false, limit);
            const Literal want = lit.ended ? lit : literalSeries(text, ipos, word, repl, all, edges, true);
            const auto got = editor::replaceSeries(text, ipos, word, repl, all, edges);
            const S result = editor::applyEdit(text, got.edit);
            const bool same = got.bounded != lit.ended && result == want.text &&
                              got.selection == want.selection && got.ipos == want.ipos;
            QVERIFY2(same,
                     qPrintable(QString::fromLatin1(text + " | " + word + " | " + repl).replace("\n", "\\n") +
                                QStringLiteral(" ipos %1 all %2 edges %3").arg(ipos).arg(all).arg(edges)));
            nonEnding += !lit.ended;
            changed += result != text;
        }
        // The generator must reach the interesting cases, or the comparison proves little.
        QVERIFY(nonEnding > 500);
        QVERIFY(changed > 5000);
    }

    // The forward finder, asked again and again from later places, answers as a fresh search would,
    // for both cases of ASCII and Latin-1 letters.
    void forwardSearchAgreesWithFind() {
        std::mt19937 rng(5);
        const S alphabet = "aAb\xC0\xE0\xD7\xF7 ";
        for (int round = 0; round < 5000; ++round) {
            S hay(rng() % 40, ' '), needle(1 + rng() % 3, ' ');
            for (auto* s : {&hay, &needle})
                for (auto& c : *s) c = alphabet[rng() % alphabet.size()];
            editor::ForwardFinder finder(hay, needle);
            for (std::size_t from = 0; from <= hay.size() + 1; from += 1 + rng() % 3) {
                const std::size_t got = finder.next(from);
                QCOMPARE(got == editor::ForwardFinder::npos ? Pos(0) : Pos(got) + 1,
                         cog::find(Pos(from) + 1, hay, needle));
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_FindReplace)
#include "tst_findreplace.moc"
