// The shallow syntax check: opening braces that are never closed, and missing or misplaced
// section lines. It looks at "{", "}" and the section markers of cog/layout.h and at nothing else.
#pragma once

#include "cog/layout.h"

#include <string>
#include <string_view>
#include <vector>

namespace cog {

struct Finding {
    std::string text; // "{ not matched", "no symbols section", ...
    Pos caret = 0;    // the caret index a click on the finding moves to

    friend bool operator==(const Finding&, const Finding&) = default;
};

// The findings for text, in the order they are found: first every unmatched opening brace in
// text order (at the brace), then the section findings (at caret, the editor's caret index).
std::vector<Finding> checkCog(std::string_view text, Pos caret);

// For each opening brace of text, in text order: whether it is closed by the lock-step rule.
// The k-th "{" after the brace and the k-th "}" after it are compared for k = 1, 2, ...; the
// brace is closed as soon as a "}" comes before the next "{", or the "{" run out while a "}" is
// still found; it is not closed when the "}" run out first. Linear in the size of the text.
struct BraceMatch {
    Pos position = 0; // text position of the "{"
    bool closed = false;
};
std::vector<BraceMatch> matchOpeningBraces(std::string_view text);

// The same rule for one character at text position lpos, walked search by search: open is the
// character at lpos and close its counterpart; dir 1 walks forward, -1 backward (the mirror
// image). Costs up to the distance to the answer; matchOpeningBraces is the choice for all braces.
bool matchChar(std::string_view text, Pos lpos, char open = '{', char close = '}', int dir = 1);

} // namespace cog
