// Keeps "the first occurrence of a needle in the text" current across edits while looking only
// at the bytes around each edit: the editor's section markers are recomputed on every keystroke,
// and a whole-text scan per keystroke would grow with the file.
#pragma once

#include "cog/layout.h"

#include <functional>
#include <string_view>

namespace editor {

using cog::Pos;

// One edit of the text: at 0-based byte offset position, `deleted` bytes were removed and
// `inserted` bytes put in their place.
struct Edit {
    Pos position = 0;
    Pos deleted = 0;
    Pos inserted = 0;
};

// Reads the bytes [start, start + length) of the edited text (0-based start). The view must stay
// valid until the next call.
using RangeReader = std::function<std::string_view(Pos start, Pos length)>;

// The 1-based position of the first occurrence of needle (text mode) in the edited text, given
// `before`, the same position in the text before the edit, and the edited text's size. Equal to
// cog::find(1, editedText, needle) for every edit; it reads more than a small window around the
// edit only when the edit destroyed the occurrence that was first.
Pos updateFirstOccurrence(Pos before, std::string_view needle, Pos textSize, const Edit& edit,
                          const RangeReader& read);

} // namespace editor
