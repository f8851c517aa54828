// The fast rules must give exactly what the rules say when read literally. Each reference reading
// below is written as plainly as the rule is stated (whole-text searches from the start, one
// byte at a time, one replacement per step), and both are run on thousands of scripts: generated
// ones, damaged ones (braces in every order, duplicated lines, missing or broken section lines,
// CR without LF, truncated or empty texts) and soups of the few bytes the rules look at. The
// colouring of a text equals the colouring of its lines started afresh at any line start.
#include "bench/cogtext.h"
#include "cog/explorer.h"
#include "cog/layout.h"
#include "cog/syntaxcheck.h"
#include "editor/coglexer.h"
#include "editor/findreplace.h"
#include "editor/firstoccurrence.h"
#include "editor/typingaids.h"
#include "templates/template.h"

#include <QtTest>

#include <algorithm>
#include <optional>
#include <string>

using cog::Pos;

namespace reading {

// find(start, hay, needle, mode): compare at every position from start on, byte by byte.
Pos find(Pos start, std::string_view hay, std::string_view needle, cog::Mode mode = cog::Mode::Text) {
    start = std::max<Pos>(start, 1);
    const auto n = static_cast<Pos>(hay.size()), m = static_cast<Pos>(needle.size());
    if (m == 0) return start <= n ? start : 0;
    const auto same = [mode](unsigned char a, unsigned char b) {
        return mode == cog::Mode::Exact ? a == b : cog::foldCase(a) == cog::foldCase(b);
    };
    for (Pos p = start; p + m - 1 <= n; ++p)
        if (std::equal(needle.begin(), needle.end(), hay.begin() + (p - 1), same)) return p;
    return 0;
}

// The lock-step loop of whole-text searches for "{" and "}" after the brace at 1-based at.
std::pair<Pos, Pos> lockStep(std::string_view t, Pos at) {
    Pos o = at, c = at;
    do {
        o = find(o + 1, t, "{");
        c = find(c + 1, t, "}");
    } while (!(o > c || o == 0 || c == 0));
    return {o, c};
}

// Match Brace: select the character at the caret; unless it is "{", stop; else the lock step.
editor::Selection matchBrace(std::string_view text, Pos p) {
    p = std::max<Pos>(p, 0);
    if (p >= static_cast<Pos>(text.size())) return {p, 0};
    if (text[static_cast<std::size_t>(p)] != '{') return {p, 1};
    const Pos c = lockStep(text, p + 1).second;
    return {p, c != 0 ? c - p : 0};
}

// MatchChar: the lock step after the brace at lpos.
bool matchChar(std::string_view t, Pos lpos) {
    const auto [o, c] = lockStep(t, lpos);
    return (o != 0 && c != 0) || o < c;
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
Series replace(std::string text, Pos ipos, std::string_view word, std::string_view by, bool all, bool edges,
               long stepLimit) {
    Series s;
    const auto w = static_cast<Pos>(word.size()), b = static_cast<Pos>(by.size());
    for (long step = 0; (s.ended = step < stepLimit); ++step) {
        const Pos r = ipos = find(ipos, text, word);
        if (r == 0 || (edges && r == 1)) break;
        const auto at = static_cast<std::size_t>(r - 1);
        if (!edges) {
            text.replace(at, word.size(), by);
            s.selection = editor::Selection{r - 1 + b, 0};
            ++s.replaced;
        } else { // the occurrence with one character on each side, cut at the text's end
            const std::string sel = text.substr(at - 1, word.size() + 2);
            if (cog::isBlank(sel.front()) && cog::isBlank(sel.back()) &&
                static_cast<Pos>(sel.size()) == w + 2) {
                text.replace(at - 1, sel.size(), sel.front() + std::string(by) + sel.back());
                s.selection = editor::Selection{r + b, 0};
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

// Substring by 1-based start and length; a negative length is an error (nullopt).
std::optional<std::string> mid(std::string_view s, Pos start, Pos length) {
    if (length < 0) return std::nullopt;
    return std::string(cog::mid(s, start, length));
}

// The explorer's rebuild step by step: every search from the start of the symbols body, of the
// whole text or of the message body, every message body cut out of the text.
cog::ExplorerResult explorer(std::string_view t, std::string_view caption) {
    using Stop = cog::ExplorerResult::Stop;
    cog::ExplorerResult res;
    cog::KeyedTree& tree = res.tree;
    auto add = [&](std::string_view parent, const std::string& key, const std::string& text,
                   const std::string& tag) {
        const auto r = tree.add(parent, key, text, tag);
        if (r == cog::KeyedTree::AddResult::DuplicateKey) res.offendingKey = key;
        res.stop = r == cog::KeyedTree::AddResult::Added          ? Stop::None
                   : r == cog::KeyedTree::AddResult::DuplicateKey ? Stop::DuplicateKey
                                                                  : Stop::Failure;
        return res.stop == Stop::None;
    };
    auto failed = [&] {
        res.stop = Stop::Failure;
        return res;
    };
    const Pos S = find(1, t, "\nsymbols"), E = find(1, t, "\nend");
    std::vector<std::string> colMessages;
    if (S > 0 && E > 0) {
        const auto B = mid(t, S + 8, E - S);
        if (!B) return failed();
        tree.add(std::nullopt, "root", std::string(caption), "parent");
        tree.at(1).expanded = true;
        tree.add("root", "symbols", "symbols", "parent");
        tree.add("root", "code", "code", "parent");
        for (const std::string& K : cog::symbolTypes()) {
            bool groupAdded = false;
            for (Pos p = find(1, *B, "\n" + K), e = find(p + 1, *B, "\r"); p > 0;
                 p = find(e + 1, *B, "\n" + K), e = find(p + 1, *B, "\r")) {
                const auto L = mid(*B, p + 1, e - p);
                if (!L) return failed();
                if (cog::equalText(K, "message")) {
                    const std::string N = cog::GetSymbolName(*L, 7);
                    if (!add("code", N + ":", N, "message")) return res;
                    colMessages.push_back(N + ":");
                }
                if (!groupAdded && !add("symbols", K, K, "parent")) return res;
                groupAdded = true;
                if (!add(K, *L, cog::GetSymbolName(*L, K.size()), "")) return res;
            }
        }
        for (const std::string& M : colMessages) {
            const Pos p = find(1, t, M), r = find(p + 1, t, "return;");
            const auto body = mid(t, p + static_cast<Pos>(M.size()) + 2, r - p);
            if (!body) return failed();
            for (Pos k = find(1, *body, "//"), e = find(k + 1, *body, "\r"); k != 0;
                 k = find(e + 1, *body, "//"), e = find(k + 1, *body, "\r")) {
                const auto comment = mid(*body, k, e - k);
                if (!comment) return failed();
                if (!add(M, *comment, *comment, "")) return res;
            }
        }
    }
    return tree.empty() ? failed() : res;
}

// CheckCog: every "{" in turn through MatchChar, then the section lines.
std::vector<cog::Finding> checkCog(std::string_view t, Pos K) {
    std::vector<cog::Finding> f;
    for (Pos b = find(1, t, "{"); b > 0; b = find(b + 1, t, "{"))
        if (!matchChar(t, b)) f.push_back({"{ not matched", b - 1});
    const Pos S = find(1, t, "\nsymbols"), E = find(1, t, "\nend"), cm = find(1, t, "\ncode");
    const Pos E2 = find(E + 1, t, "\nend");
    if (S == 0) f.push_back({"no symbols section", K});
    if (E == 0 || (S > 0 && cm > 0 && E > cm)) f.push_back({"no end for symbols section", K});
    if (cm == 0) f.push_back({"no code section", K});
    if (E < cm && E2 == 0) f.push_back({"no end for code section", K});
    return f;
}

// Generation: the header cut off as a selection, then for each row every placeholder selected
// and replaced in the text, the next search starting after the inserted value.
std::string generate(std::string_view bytes, long ilen, const std::vector<templates::Assignment>& rows) {
    std::string text(bytes);
    text.erase(0, static_cast<std::size_t>(std::clamp<long>(ilen, 0, static_cast<long>(text.size()))));
    for (const auto& [key, value] : rows) {
        const std::string P = "<%" + key + "%>";
        for (Pos p = find(1, text, P); p > 0; p = find(p + static_cast<Pos>(value.size()), text, P))
            text.replace(static_cast<std::size_t>(p - 1), P.size(), value);
    }
    return text;
}

} // namespace reading

namespace {

// Script families the cases are drawn from.
enum class Family { Generated, Mutated, HeavilyMutated, Soup, LineEnds };

std::string makeText(Family f, cogtext::Rng& rng, std::uint64_t seed) {
    std::string t = cogtext::generateSmall(f == Family::HeavilyMutated ? seed % 17 : seed);
    if (f == Family::Mutated || f == Family::HeavilyMutated)
        return cogtext::mutateMany(t, rng, f == Family::Mutated ? 3 : 25);
    if (f == Family::Soup) {
        static const std::string alphabet = "{}{}\r\n\n\r endENDsymbolscode:;x\t\xC4\xE4";
        t.clear();
        for (std::size_t i = rng.below(80); i > 0; --i) t += alphabet[rng.below(alphabet.size())];
    }
    if (f == Family::LineEnds) { // CR without LF, LF without CR, nothing at all
        for (char& c : t)
            if (c == '\n' && rng.chance(50)) c = 'x';
        if (rng.chance(20)) t.clear();
    }
    return t;
}

// A word to look for: a piece of the text itself (so it occurs), recased, or a keyword piece.
std::string pickWord(const std::string& text, cogtext::Rng& rng) {
    if (!text.empty() && rng.chance(70)) {
        std::string w = text.substr(rng.below(text.size()), 1 + rng.below(4));
        if (rng.chance(50))
            for (char& c : w) c = static_cast<char>(rng.chance(50) ? std::toupper(c) : std::tolower(c));
        return w;
    }
    return cogtext::keywordPieces()[rng.below(cogtext::keywordPieces().size())];
}

std::string describe(const cog::KeyedTree& tree) {
    std::string s;
    for (const auto& n : tree.nodes())
        s += n.parentKey + ">" + n.key + "|" + n.text + "|" + n.tag + (n.expanded ? "+\n" : "\n");
    return s;
}

// Fails the test, naming the rule and the text, when the fast rule and the reading differ.
#define SAME(fast, plain, what, text)                                                                        \
    if (!((fast) == (plain)))                                                                                \
    QFAIL(qPrintable(QString(what) + " differs on " +                                                        \
                     QByteArray::fromStdString(text).toPercentEncoding(" {}:;")))

// Runs fn on every text of the row's family, stopping at the first failure.
template <typename Fn> void forEachText(int seed, Fn fn) {
    QFETCH_GLOBAL(int, family);
    QFETCH_GLOBAL(int, cases);
    cogtext::Rng rng(static_cast<std::uint64_t>(seed + family));
    for (int i = 0; i < cases && !QTest::currentTestFailed(); ++i)
        fn(makeText(Family(family), rng, rng.next()), rng);
}

} // namespace

class tst_Differential : public QObject {
    Q_OBJECT
private slots:
    // Every comparison runs on each family of scripts.
    void initTestCase_data() {
        QTest::addColumn<int>("family");
        QTest::addColumn<int>("cases");
        QTest::newRow("generated scripts") << int(Family::Generated) << 600;
        QTest::newRow("scripts with a few damages") << int(Family::Mutated) << 1500;
        QTest::newRow("scripts with many damages") << int(Family::HeavilyMutated) << 800;
        QTest::newRow("soups of braces, line ends and keywords") << int(Family::Soup) << 3000;
        QTest::newRow("CR without LF and empty texts") << int(Family::LineEnds) << 400;
    }
    void findEqualsBytewiseSearch() {
        forEachText(1000, [](const std::string& text, cogtext::Rng& rng) {
            for (int q = 0; q < 8; ++q) {
                const std::string needle = pickWord(text, rng);
                const Pos start = static_cast<Pos>(rng.below(text.size() + 3)) - 1;
                const auto mode = rng.chance(50) ? cog::Mode::Text : cog::Mode::Exact;
                SAME(cog::find(start, text, needle, mode), reading::find(start, text, needle, mode), "find",
                     text);
                // The forward finder, asked again from later places, answers as a fresh search.
                editor::ForwardFinder finder(text, needle);
                for (std::size_t from = 0; from <= text.size() + 1; from += 1 + rng.below(40)) {
                    const std::size_t got = finder.next(from);
                    SAME(got == editor::ForwardFinder::npos ? Pos(0) : Pos(got) + 1,
                         reading::find(Pos(from) + 1, text, needle), "forward finder", text);
                }
            }
        });
    }

    void markersFollowEveryEdit() {
        forEachText(2000, [](std::string text, cogtext::Rng& rng) {
            static const std::string needles[3] = {"\nsymbols", "\nend", "\ncode"};
            Pos tracked[3];
            for (int k = 0; k < 3; ++k) tracked[k] = reading::find(1, text, needles[k]);
            // A run of typing, deleting and pasting, each edit followed by the change handler.
            for (int step = 0; step < 12; ++step) {
                const auto pos = rng.below(text.size() + 1);
                const auto del = rng.below(std::min<std::size_t>(text.size() - pos, 12) + 1);
                std::string ins;
                if (rng.chance(70))
                    for (std::size_t k = rng.below(3); k > 0; --k) ins += pickWord(text, rng);
                text.replace(pos, del, ins);
                const editor::Edit edit{Pos(pos), Pos(del), Pos(ins.size())};
                const auto read = [&](Pos s, Pos n) {
                    return std::string_view(text).substr(std::size_t(s), std::size_t(n));
                };
                for (int k = 0; k < 3; ++k) {
                    tracked[k] =
                        editor::updateFirstOccurrence(tracked[k], needles[k], Pos(text.size()), edit, read);
                    SAME(tracked[k], reading::find(1, text, needles[k]), "marker " + QString::number(k),
                         text);
                }
            }
        });
    }

    void matchBraceEqualsLockStepLoop() {
        forEachText(3000, [](const std::string& text, cogtext::Rng& rng) {
            // Every opening brace, and a few other carets (on other bytes, at and past the end).
            for (Pos caret = -1; caret <= Pos(text.size()) + 1; ++caret) {
                const bool onBrace =
                    caret >= 0 && caret < Pos(text.size()) && text[std::size_t(caret)] == '{';
                if (onBrace || rng.chance(3))
                    SAME(editor::matchBrace(text, caret), reading::matchBrace(text, caret),
                         "match brace at " + QString::number(caret), text);
            }
        });
    }

    void replaceEqualsStepByStepSeries() {
        int compared = 0, all = 0;
        forEachText(4000, [&](const std::string& text, cogtext::Rng& rng) {
            ++all;
            const std::string word = pickWord(text, rng);
            std::string by = rng.chance(20) ? std::string() : pickWord(text, rng);
            if (rng.chance(15)) by = word + by;             // holds the word at its start: ends
            if (rng.chance(10)) by = " " + by + word + " "; // holds it later: never ends
            const bool every = rng.chance(75), edges = rng.chance(40);
            const Pos ipos = rng.chance(70) ? 1 : Pos(rng.below(text.size() + 2));
            const editor::ReplaceResult fast = editor::replaceSeries(text, ipos, word, by, every, edges);
            const long limit = long(text.size()) * 2 + 16;
            const reading::Series plain = reading::replace(text, ipos, word, by, every, edges, limit);
            // A series the reading cannot finish is exactly one the fast rule calls never-ending.
            QCOMPARE(!plain.ended, every && editor::replacementRecurs(word, by, edges) && plain.replaced > 0);
            if (!plain.ended) {
                QVERIFY(fast.bounded);
                return;
            }
            ++compared;
            const std::string got = editor::applyEdit(text, fast.edit);
            SAME(std::tie(got, fast.ipos, fast.replaced, fast.selection),
                 std::tie(plain.text, plain.ipos, plain.replaced, plain.selection),
                 QString("replacing %1 by %2 from %3 (all %4, edges %5)")
                     .arg(word.c_str(), by.c_str())
                     .arg(ipos)
                     .arg(every)
                     .arg(edges),
                 text);
        });
        QVERIFY(compared > all / 2);
    }

    void explorerEqualsStepByStepRebuild() {
        QFETCH_GLOBAL(int, family);
        int stopped = 0;
        forEachText(5000, [&](std::string text, cogtext::Rng& rng) {
            const bool moreLabels = rng.chance(20);
            if (moreLabels) { // labels that are also found elsewhere: in comments, inside other labels
                const auto colon = text.find(":\r\n", rng.below(text.size() + 1));
                if (colon != std::string::npos) {
                    const auto start = text.rfind('\n', colon);
                    const std::string label = text.substr(start + 1, colon - start);
                    text.insert(rng.below(text.size() + 1), rng.chance(50) ? "// " + label : "x" + label);
                }
            }
            const cog::ExplorerResult fast = cog::buildExplorer(text, "Cog 1", cog::symbolTypes());
            const cog::ExplorerResult plain = reading::explorer(text, "Cog 1");
            SAME(std::tie(fast.stop, fast.offendingKey), std::tie(plain.stop, plain.offendingKey),
                 "explorer stop", text);
            SAME(describe(fast.tree), describe(plain.tree), "explorer tree", text);
            if (!moreLabels && !fast.complete()) ++stopped;
        });
        if (Family(family) == Family::Generated) QCOMPARE(stopped, 0); // generated scripts are well formed
    }

    void checkEqualsMatchCharPerBrace() {
        forEachText(6000, [](const std::string& text, cogtext::Rng& rng) {
            const Pos caret = Pos(rng.below(text.size() + 1));
            SAME(cog::checkCog(text, caret), reading::checkCog(text, caret), "check", text);
            // The one-brace rule, the all-braces rule and the backward rule on the mirrored text agree.
            std::string mirror(text.rbegin(), text.rend());
            for (char& c : mirror) c = c == '{' ? '}' : c == '}' ? '{' : c;
            const auto all = cog::matchOpeningBraces(text);
            std::size_t i = 0;
            for (Pos p = reading::find(1, text, "{"); p > 0; p = reading::find(p + 1, text, "{"), ++i) {
                const bool want = reading::matchChar(text, p);
                SAME(cog::matchChar(text, p), want, "matchChar", text);
                SAME(cog::matchChar(mirror, Pos(text.size()) + 1 - p, '}', '{', -1), want,
                     "backward matchChar", text);
                SAME(i < all.size() && all[i].position == p && all[i].closed == want, true, "all braces",
                     text);
            }
            SAME(all.size(), i, "all braces", text);
        });
    }

    void wordFromTheCaretsLineEqualsWholeText() {
        forEachText(8000, [](const std::string& text, cogtext::Rng& rng) {
            for (int q = 0; q < 6; ++q) {
                const long caret = long(rng.below(text.size() + 1));
                // The window begins at the line feed before the caret's line (or the text's start) and
                // ends anywhere at or after the caret.
                const auto lf = caret > 0 ? text.rfind('\n', std::size_t(caret - 1)) : std::string::npos;
                const std::size_t start = lf == std::string::npos ? 0 : lf;
                const std::size_t end = std::min(text.size(), std::size_t(caret) + rng.below(40));
                SAME(editor::selectWordRangeIn(std::string_view(text).substr(start, end - start), long(start),
                                               caret),
                     editor::selectWordRange(text, caret), "word at " + QString::number(caret), text);
            }
        });
    }

    void generationEqualsReplacementBySelection() {
        forEachText(7000, [](std::string body, cogtext::Rng& rng) {
            static const std::vector<std::string> names{"door", "Door", "speed", "a", "x",
                                                        "<%",   "%>",   "",      "sp"};
            const auto name = [&] { return names[rng.below(names.size())]; };
            // Placeholders of the rows, of other rows, of unknown names, broken and adjacent ones.
            for (std::size_t k = rng.below(12); k > 0; --k) {
                std::string ph = "<%" + name() + "%>";
                if (rng.chance(20)) ph.erase(rng.below(ph.size()), 1);
                if (rng.chance(30)) ph += ph;
                body.insert(rng.below(body.size() + 1), ph);
            }
            std::vector<templates::Assignment> rows;
            for (std::size_t k = rng.below(5); k > 0; --k) {
                std::string value = rng.chance(30) ? std::string() : pickWord(body, rng);
                if (rng.chance(20)) value += "<%" + name() + "%>"; // holds a placeholder
                rows.emplace_back(name(), value);
            }
            const std::string header = "2\r\nValue,Name\r\nend\r\n", bytes = header + body;
            const long ilen = rng.chance(80) ? long(header.size()) : long(rng.below(bytes.size() + 3)) - 1;
            SAME(templates::generate(bytes, ilen, rows), reading::generate(bytes, ilen, rows), "generation",
                 bytes);
        });
    }

    // What makes a restyle from the start of the changed line safe.
    void colouringFromAnyLineStartEqualsWholeText() {
        editor::CogWords words;
        words.setVerbs({"Sleep", "MoveToFrame", "code"});
        const auto styles = [&](std::string_view t) {
            std::string out(t.size(), '\0');
            editor::styleCogText(t, words, reinterpret_cast<unsigned char*>(out.data()));
            return out;
        };
        forEachText(9000, [&](const std::string& text, cogtext::Rng&) {
            const std::string whole = styles(text);
            for (std::size_t at = 0; at < text.size();
                 at += editor::lineLength(std::string_view(text).substr(at)))
                SAME(styles(std::string_view(text).substr(at)), whole.substr(at),
                     "colouring from " + QString::number(at), text);
        });
    }

    // The lock-step walk would take billions of searches here; only the outermost brace is open.
    void deepBracesStayFast() {
        const std::string text =
            "# c\r\nsymbols\r\nend\r\ncode\r\nend\r\n" + std::string(200000, '{') + std::string(199999, '}');
        QCOMPARE(cog::checkCog(text, 0), (std::vector<cog::Finding>{{"{ not matched", 30}}));
    }
};

QTEST_APPLESS_MAIN(tst_Differential)
#include "tst_differential.moc"
