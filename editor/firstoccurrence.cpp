#include "editor/firstoccurrence.h"

#include <algorithm>

namespace editor {

Pos updateFirstOccurrence(Pos before, std::string_view needle, Pos textSize, const Edit& edit,
                          const RangeReader& read) {
    const auto m = static_cast<Pos>(needle.size());
    const Pos oldStart = before - 1; // 0-based
    // An occurrence that ends before the edit is untouched, and nothing earlier can appear.
    if (before != 0 && oldStart + m <= edit.position) return before;

    // Occurrences that overlap the inserted bytes or the seam lie within this window.
    const Pos w0 = std::max<Pos>(0, edit.position - (m - 1));
    const Pos w1 = std::min<Pos>(textSize, edit.position + edit.inserted + (m - 1));
    if (w1 > w0) {
        const Pos at = cog::find(1, read(w0, w1 - w0), needle);
        if (at) return w0 + at;
    }
    if (before == 0) return 0; // the old text had none, so the untouched rest has none either
    const Pos tail = edit.position + edit.inserted;
    if (oldStart >= edit.position + edit.deleted) return before - edit.deleted + edit.inserted;
    // The edit destroyed the first occurrence: look for the next one in the untouched rest.
    if (tail >= textSize) return 0;
    const Pos at = cog::find(1, read(tail, textSize - tail), needle);
    return at ? tail + at : 0;
}

} // namespace editor
