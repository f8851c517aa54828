// The fast rules must give exactly what the rules say when read literally. Each reference reading
// below is written as plainly as the rule is stated (whole-text searches from the start, one
// byte at a time, one replacement per step), and both are run on thousands of scripts: generated
// ones, damaged ones (braces in every order, duplicated lines, missing or broken section lines,
// CR without LF, truncated or empty texts) and soups of the few bytes the rules look at.
#include "bench/cogtext.h"
#include "cog/layout.h"
#include "editor/findreplace.h"
#include "editor/firstoccurrence.h"

#include <QtTest>

#include <optional>
#include <string>

using cog::Pos;

namespace reading {

// find(start, hay, needle, mode): compare at every position from start on, byte by byte.
Pos find(Pos start, std::string_view hay, std::string_view needle, cog::Mode mode = cog::Mode::Text) {
    if (start < 1) start = 1;
    const auto n = static_cast<Pos>(hay.size());
    const auto m = static_cast<Pos>(needle.size());
    if (m == 0) return start <= n ? start : 0;
    for (Pos p = start; p + m - 1 <= n; ++p) {
        bool same = true;
        for (Pos k = 0; k < m && same; ++k) {
            const auto a = static_cast<unsigned char>(hay[static_cast<std::size_t>(p - 1 + k)]);
            const auto b = static_cast<unsigned char>(needle[static_cast<std::size_t>(k)]);
            same = mode == cog::Mode::Exact ? a == b : cog::foldCase(a) == cog::foldCase(b);
        }
        if (same) return p;
    }
    return 0;
}

// Match Brace: select the character at the caret; unless it is "{", stop. Then the lock-step
// loop of whole-text searches for "{" and "}".
editor::Selection matchBrace(std::string_view text, Pos p) {
    if (p < 0) p = 0;
    if (p >= static_cast<Pos>(text.size())) return {p, 0};
    if (text[static_cast<std::size_t>(p)] != '{') return {p, 1};
    Pos o = p + 1, c = p + 1;
    do {
        o = find(o + 1, text, "{");
        c = find(c + 1, text, "}");
    } while (!(o > c || o == 0 || c == 0));
    return c != 0 ? editor::Selection{p, c - p} : editor::Selection{p, 0};
}

struct Series {
    std::string text;
    Pos ipos = 0;
    std::optional<editor::Selection> selection;
    long replaced = 0;
    bool ended = true; // false when the step limit was reached
};

// Replace / Replace All as a series of single steps on a text box: search from ipos, select,
// replace the selection, search again from one after the occurrence's start.
Series replace(std::string text, Pos ipos, std::string_view word, std::string_view replacement, bool all,
               bool checkEdges, long stepLimit) {
    Series s;
    for (long step = 0;; ++step) {
        if (step == stepLimit) {
            s.ended = false;
            break;
        }
        const Pos r = find(ipos, text, word);
        ipos = r;
        if (r == 0 || (checkEdges && r == 1)) break;
        const auto at = static_cast<std::size_t>(r - 1);
        if (!checkEdges) {
            text.replace(at, word.size(), replacement);
            s.selection = editor::Selection{r - 1 + static_cast<Pos>(replacement.size()), 0};
            ++s.replaced;
        } else {
            // The selection of the occurrence with one character on each side, cut at the text's end.
            const std::string sel = text.substr(at - 1, word.size() + 2);
            if (cog::isBlank(sel.front()) && cog::isBlank(sel.back()) && sel.size() == word.size() + 2) {
                text.replace(at - 1, sel.size(), sel.front() + std::string(replacement) + sel.back());
                s.selection = editor::Selection{r + static_cast<Pos>(replacement.size()), 0};
                ++s.replaced;
            } else {
                s.selection = editor::Selection{r - 2, static_cast<Pos>(sel.size())};
            }
        }
        ipos = r + 1;
        if (!all) break;
    }
    s.text = std::move(text);
    s.ipos = ipos;
    return s;
}

} // namespace reading

namespace {

// Script families the cases are drawn from.
enum class Family { Generated, Mutated, HeavilyMutated, Soup, LineEnds };

std::string makeText(Family f, cogtext::Rng& rng, std::uint64_t seed) {
    switch (f) {
    case Family::Generated:
        return cogtext::generateSmall(seed);
    case Family::Mutated:
        return cogtext::mutateMany(cogtext::generateSmall(seed), rng, 3);
    case Family::HeavilyMutated:
        return cogtext::mutateMany(cogtext::generateSmall(seed % 17), rng, 25);
    case Family::Soup: {
        static const std::string alphabet = "{}{}\r\n\n\r endENDsymbolscode:;x\t\xC4\xE4";
        std::string t;
        for (std::size_t i = rng.below(80); i > 0; --i) t += alphabet[rng.below(alphabet.size())];
        return t;
    }
    case Family::LineEnds: { // CR without LF, LF without CR, nothing at all
        std::string t = cogtext::generateSmall(seed);
        for (char& c : t)
            if (c == '\n' && rng.chance(50)) c = 'x';
        if (rng.chance(20)) t.clear();
        return t;
    }
    }
    return {};
}

// A word to look for: a piece of the text itself (so it occurs), recased, or a keyword piece.
std::string pickWord(const std::string& text, cogtext::Rng& rng) {
    if (!text.empty() && rng.chance(70)) {
        const std::size_t at = rng.below(text.size());
        std::string w = text.substr(at, 1 + rng.below(4));
        if (rng.chance(50))
            for (char& c : w) c = static_cast<char>(rng.chance(50) ? std::toupper(c) : std::tolower(c));
        return w;
    }
    return cogtext::keywordPieces()[rng.below(cogtext::keywordPieces().size())];
}

QString shown(const std::string& s) {
    return QString::fromLatin1(QByteArray::fromStdString(s).toPercentEncoding(" {}:;"));
}

void families() {
    QTest::addColumn<int>("family");
    QTest::addColumn<int>("cases");
    QTest::newRow("generated scripts") << int(Family::Generated) << 600;
    QTest::newRow("scripts with a few damages") << int(Family::Mutated) << 1500;
    QTest::newRow("scripts with many damages") << int(Family::HeavilyMutated) << 800;
    QTest::newRow("soups of braces, line ends and keywords") << int(Family::Soup) << 3000;
    QTest::newRow("CR without LF and empty texts") << int(Family::LineEnds) << 400;
}

} // namespace

class tst_Differential : public QObject {
    Q_OBJECT
private slots:
    void findEqualsBytewiseSearch_data() { families(); }
    void findEqualsBytewiseSearch();
    void markersFollowEveryEdit_data() { families(); }
    void markersFollowEveryEdit();
    void matchBraceEqualsLockStepLoop_data() { families(); }
    void matchBraceEqualsLockStepLoop();
    void replaceEqualsStepByStepSeries_data() { families(); }
    void replaceEqualsStepByStepSeries();
};

void tst_Differential::findEqualsBytewiseSearch() {
    QFETCH(int, family);
    QFETCH(int, cases);
    cogtext::Rng rng(1000 + family);
    for (int i = 0; i < cases; ++i) {
        const std::string text = makeText(Family(family), rng, rng.next());
        for (int q = 0; q < 8; ++q) {
            const std::string needle = pickWord(text, rng);
            const Pos start = static_cast<Pos>(rng.below(text.size() + 3)) - 1;
            const auto mode = rng.chance(50) ? cog::Mode::Text : cog::Mode::Exact;
            const Pos fast = cog::find(start, text, needle, mode);
            const Pos plain = reading::find(start, text, needle, mode);
            if (fast != plain)
                QFAIL(qPrintable(QString("find(%1, %2, %3) gave %4, the reading %5")
                                     .arg(start)
                                     .arg(shown(text), shown(needle))
                                     .arg(fast)
                                     .arg(plain)));
        }
    }
}

void tst_Differential::markersFollowEveryEdit() {
    QFETCH(int, family);
    QFETCH(int, cases);
    cogtext::Rng rng(2000 + family);
    for (int i = 0; i < cases; ++i) {
        std::string text = makeText(Family(family), rng, rng.next());
        Pos tracked[3] = {reading::find(1, text, "\nsymbols"), reading::find(1, text, "\nend"),
                          reading::find(1, text, "\ncode")};
        static const char* const needles[3] = {"\nsymbols", "\nend", "\ncode"};
        // A run of typing, deleting and pasting, each edit followed by the change handler.
        for (int step = 0; step < 12; ++step) {
            const Pos pos = static_cast<Pos>(rng.below(text.size() + 1));
            const Pos del = static_cast<Pos>(rng.below(std::min<std::size_t>(text.size() - pos, 12) + 1));
            std::string ins;
            if (rng.chance(70))
                for (std::size_t k = rng.below(3); k > 0; --k) ins += pickWord(text, rng);
            text.replace(static_cast<std::size_t>(pos), static_cast<std::size_t>(del), ins);
            const editor::Edit edit{pos, del, static_cast<Pos>(ins.size())};
            const auto read = [&](Pos s, Pos n) {
                return std::string_view(text).substr(static_cast<std::size_t>(s),
                                                     static_cast<std::size_t>(n));
            };
            for (int k = 0; k < 3; ++k) {
                tracked[k] = editor::updateFirstOccurrence(tracked[k], needles[k],
                                                           static_cast<Pos>(text.size()), edit, read);
                const Pos plain = reading::find(1, text, needles[k]);
                if (tracked[k] != plain)
                    QFAIL(qPrintable(QString("marker %1 tracked at %2, the reading finds %3 in %4")
                                         .arg(shown(needles[k]))
                                         .arg(tracked[k])
                                         .arg(plain)
                                         .arg(shown(text))));
            }
        }
    }
}

void tst_Differential::matchBraceEqualsLockStepLoop() {
    QFETCH(int, family);
    QFETCH(int, cases);
    cogtext::Rng rng(3000 + family);
    for (int i = 0; i < cases; ++i) {
        const std::string text = makeText(Family(family), rng, rng.next());
        // Every opening brace, and a few other carets (on other bytes, at and past the end).
        for (Pos caret = -1; caret <= static_cast<Pos>(text.size()) + 1; ++caret) {
            const bool onBrace = caret >= 0 && caret < static_cast<Pos>(text.size()) &&
                                 text[static_cast<std::size_t>(caret)] == '{';
            if (!onBrace && !rng.chance(3)) continue;
            const editor::Selection fast = editor::matchBrace(text, caret);
            const editor::Selection plain = reading::matchBrace(text, caret);
            if (!(fast == plain))
                QFAIL(qPrintable(QString("caret %1: selection %2+%3, the reading %4+%5 in %6")
                                     .arg(caret)
                                     .arg(fast.start)
                                     .arg(fast.length)
                                     .arg(plain.start)
                                     .arg(plain.length)
                                     .arg(shown(text))));
        }
    }
}

void tst_Differential::replaceEqualsStepByStepSeries() {
    QFETCH(int, family);
    QFETCH(int, cases);
    cogtext::Rng rng(4000 + family);
    int compared = 0;
    for (int i = 0; i < cases; ++i) {
        const std::string text = makeText(Family(family), rng, rng.next());
        const std::string word = pickWord(text, rng);
        std::string replacement = rng.chance(20) ? std::string() : pickWord(text, rng);
        if (rng.chance(15)) replacement = word + replacement;             // holds the word at its start: ends
        if (rng.chance(10)) replacement = " " + replacement + word + " "; // holds it later: never ends
        const bool all = rng.chance(75);
        const bool edges = rng.chance(40);
        const Pos ipos = rng.chance(70) ? 1 : static_cast<Pos>(rng.below(text.size() + 2));
        const editor::ReplaceResult fast = editor::replaceSeries(text, ipos, word, replacement, all, edges);
        const long limit = static_cast<long>(text.size()) * 2 + 16;
        const reading::Series plain = reading::replace(text, ipos, word, replacement, all, edges, limit);
        const bool recurs = editor::replacementRecurs(word, replacement, edges);
        // A series the reading cannot finish is exactly one the fast rule calls never-ending.
        QCOMPARE(!plain.ended, all && recurs && plain.replaced > 0);
        if (!plain.ended) {
            QVERIFY(fast.bounded);
            continue;
        }
        ++compared;
        const std::string got = editor::applyEdit(text, fast.edit);
        if (got != plain.text || fast.ipos != plain.ipos || fast.replaced != plain.replaced ||
            fast.selection != plain.selection)
            QFAIL(qPrintable(QString("replace %1 by %2 from %3 (all %4, edges %5) in %6:\n got %7 (ipos %8, "
                                     "%9 replaced)\n reading %10 (ipos %11, %12 replaced)")
                                 .arg(shown(word), shown(replacement))
                                 .arg(ipos)
                                 .arg(all)
                                 .arg(edges)
                                 .arg(shown(text), shown(got))
                                 .arg(fast.ipos)
                                 .arg(fast.replaced)
                                 .arg(shown(plain.text))
                                 .arg(plain.ipos)
                                 .arg(plain.replaced)));
    }
    QVERIFY(compared > cases / 2);
}

QTEST_APPLESS_MAIN(tst_Differential)
#include "tst_differential.moc"
