#include "editor/lineends.h"

#include <algorithm>

namespace editor {

namespace {

// Counts the line ends whose first byte lies in window[from, to); the window may hold a byte of
// context before `from` and after `to`.
void countIn(std::string_view window, std::size_t from, std::size_t to, LineEndCounts& counts, Pos sign) {
    for (std::size_t i = from; i < to; ++i) {
        if (window[i] == '\r') {
            if (i + 1 < window.size() && window[i + 1] == '\n')
                counts.crlf += sign;
            else
                counts.cr += sign;
        } else if (window[i] == '\n' && (i == 0 || window[i - 1] != '\r')) {
            counts.lf += sign;
        }
    }
}

// The line ends that start in [from, to) of a text of textSize bytes, read with one byte of
// context on either side, added to counts with sign.
void countRange(Pos from, Pos to, Pos textSize, const RangeReader& read, LineEndCounts& counts, Pos sign) {
    from = std::clamp<Pos>(from, 0, textSize);
    to = std::clamp<Pos>(to, from, textSize);
    if (from == to) return;
    const Pos start = from > 0 ? from - 1 : 0;
    const Pos end = std::min(to + 1, textSize);
    countIn(read(start, end - start), static_cast<std::size_t>(from - start),
            static_cast<std::size_t>(to - start), counts, sign);
}

} // namespace

LineEndStyle styleOf(const LineEndCounts& c) {
    const int kinds = (c.crlf > 0) + (c.lf > 0) + (c.cr > 0);
    if (kinds == 0) return LineEndStyle::None;
    if (kinds > 1) return LineEndStyle::Mixed;
    return c.crlf > 0 ? LineEndStyle::CrLf : c.lf > 0 ? LineEndStyle::Lf : LineEndStyle::Cr;
}

std::string_view styleName(LineEndStyle style) {
    switch (style) {
    case LineEndStyle::Lf:
        return "LF";
    case LineEndStyle::Cr:
        return "CR";
    case LineEndStyle::Mixed:
        return "Mixed";
    case LineEndStyle::None:
    case LineEndStyle::CrLf:
        break;
    }
    return "CR LF";
}

LineEndCounts countLineEnds(std::string_view text) {
    LineEndCounts counts;
    countIn(text, 0, text.size(), counts, 1);
    return counts;
}

// A line end's kind depends on its own bytes and the byte after its first one, so an edit at
// [position, position + n) can change only the line ends that start from one byte before it to
// the byte after it.
void LineEndTracker::beforeEdit(const Edit& edit, Pos textSize, const RangeReader& read) {
    countRange(edit.position - 1, edit.position + edit.deleted + 1, textSize, read, counts_, -1);
}

void LineEndTracker::afterEdit(const Edit& edit, Pos textSize, const RangeReader& read) {
    countRange(edit.position - 1, edit.position + edit.inserted + 1, textSize, read, counts_, 1);
}

std::string convertLineEnds(std::string_view text, std::string_view eol, Pos& caret) {
    std::string out;
    out.reserve(text.size() + text.size() / 32);
    Pos newCaret = -1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (newCaret < 0 && static_cast<Pos>(i + pair) >= caret) newCaret = static_cast<Pos>(out.size());
        if (pair || text[i] == '\r' || text[i] == '\n') {
            out += eol;
            if (pair) ++i;
        } else {
            out += text[i];
        }
    }
    caret = newCaret < 0 ? static_cast<Pos>(out.size()) : newCaret;
    return out;
}

} // namespace editor
