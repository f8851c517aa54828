// Brace matching, word search and the replace series of the Edit menu, as pure functions of the
// text's bytes. Each returns what the editor has to do (an edit of one range and the selection
// that follows), so the editor applies a whole Replace All as one change and one undo step.
//
// Positions: `ipos` and search results are 1-based text positions (0 = nothing found); caret
// indexes, selections and edit ranges are 0-based byte offsets, like the editor's selection start.
#pragma once

#include "cog/layout.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace editor {

using cog::Pos;

struct Selection {
    Pos start = 0; // 0-based caret index
    Pos length = 0;
    friend bool operator==(const Selection&, const Selection&) = default;
};

// The bytes [start, start + removed) of the text are replaced by `inserted`.
struct TextEdit {
    Pos start = 0;
    Pos removed = 0;
    std::string inserted;
    bool isEmpty() const { return removed == 0 && inserted.empty(); }
    friend bool operator==(const TextEdit&, const TextEdit&) = default;
};

std::string applyEdit(std::string_view text, const TextEdit& edit);

// One edit equivalent to `first` applied to text followed by `second` applied to the result.
TextEdit composeEdits(std::string_view text, const TextEdit& first, const TextEdit& second);

// Finds a needle without regard to case, forward only: each call's `from` must not be smaller
// than the previous call's, and then all calls together read the haystack about once.
class ForwardFinder {
public:
    ForwardFinder(std::string_view hay, std::string_view needle);
    // 0-based offset of the first occurrence that begins at or after `from`, or npos.
    std::size_t next(std::size_t from);
    static constexpr std::size_t npos = std::string_view::npos;

private:
    std::size_t nextByte(int variant, std::size_t from);

    std::string_view hay_;
    std::string_view needle_;
    unsigned char first_[2] = {0, 0}; // the two cases of the needle's first byte (equal when it has one)
    std::size_t cached_[2] = {0, 0};  // next place of each, valid for searches from lastFrom_[i]
    std::size_t lastFrom_[2] = {npos, npos};
};

// Match Brace with the caret at `caret`: selects the "{" there through its matching "}" (every
// brace counts, in comments and strings too). Not on a "{": the one character at the caret is
// selected; no matching "}": the selection collapses to the caret.
Selection matchBrace(std::string_view text, Pos caret);

struct FindResult {
    Pos found = 0;       // 1-based position of the occurrence, 0 when there is none
    Pos ipos = 0;        // where the next search starts: found + 1, or 0
    Selection selection; // the occurrence, when found
};

// The first occurrence of word (without regard to case) at or after ipos. An empty word is
// never found.
FindResult findWord(std::string_view text, Pos ipos, std::string_view word);

struct ReplaceResult {
    TextEdit edit;                      // empty when nothing changed
    std::optional<Selection> selection; // none: the selection stays as it was
    Pos ipos = 0;                       // where the next search starts
    long replaced = 0;                  // occurrences replaced
    bool bounded = false;               // the series would never end; see replaceSeries
};

// True when, once one occurrence has been replaced, every later search would find an occurrence
// inside the inserted text again, so that a Replace All never ends: replacement holds word after
// its first byte (in edge mode: with a blank on both sides, the end of the replacement counting as
// blank because the character after the occurrence stays).
bool replacementRecurs(std::string_view word, std::string_view replacement, bool checkEdges);

// Replace (all = false) or Replace All (all = true) from ipos. Each step searches for word without
// regard to case from ipos; plain mode replaces the occurrence; edge mode replaces it only when a
// space, tab, CR or LF stands on both sides of it (an occurrence at the very start or the very end
// of the text is not replaced, and one at position 1 ends the series), keeping those characters.
// The next step searches from one byte after the start of the occurrence, in the changed text.
// When that series would never end (replacementRecurs), Replace All instead replaces each
// occurrence of the original text once, left to right, and never looks inside inserted text;
// `bounded` then tells so. Linear in the size of the text and of the result.
ReplaceResult replaceSeries(std::string_view text, Pos ipos, std::string_view word,
                            std::string_view replacement, bool all, bool checkEdges);

} // namespace editor
