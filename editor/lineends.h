// The line ends of a text: which kinds it holds, kept current across edits by looking only at
// the bytes around each edit, and conversion of all of them to one kind.
#pragma once

#include "editor/firstoccurrence.h"

#include <string>
#include <string_view>

namespace editor {

struct LineEndCounts {
    Pos crlf = 0; // CR LF pairs
    Pos lf = 0;   // LF not after a CR
    Pos cr = 0;   // CR not before an LF
    bool operator==(const LineEndCounts&) const = default;
};

enum class LineEndStyle { None, CrLf, Lf, Cr, Mixed };

LineEndStyle styleOf(const LineEndCounts& counts);
// "CR LF", "LF", "CR" or "Mixed"; a text without line ends is shown as "CR LF", the line end that
// Enter inserts there.
std::string_view styleName(LineEndStyle style);

LineEndCounts countLineEnds(std::string_view text);

// Keeps the counts of an edited text. Before each edit, beforeEdit is called on the text as it
// is; after it, afterEdit on the edited text (with the same position, deleted and inserted).
class LineEndTracker {
public:
    void reset(std::string_view text) { counts_ = countLineEnds(text); }
    void beforeEdit(const Edit& edit, Pos textSize, const RangeReader& read);
    void afterEdit(const Edit& edit, Pos textSize, const RangeReader& read);
    const LineEndCounts& counts() const { return counts_; }
    LineEndStyle style() const { return styleOf(counts_); }

private:
    LineEndCounts counts_;
};

// The text with every line end (CR LF, LF or CR) replaced by eol. `caret`, a 0-based offset into
// text, is moved to the same place in the result (a caret inside a CR LF pair to its start).
std::string convertLineEnds(std::string_view text, std::string_view eol, Pos& caret);

} // namespace editor
