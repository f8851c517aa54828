// Go to Line: what the user types, "line" or "line:column", both counted from 1.
#pragma once

#include <optional>
#include <string_view>

namespace editor {

struct LineColumn {
    long line = 1;
    long column = 1;
    bool operator==(const LineColumn&) const = default;
};

// Blanks around the numbers are allowed; anything else that is not a whole number from 1 up
// (with at most nine digits) is refused.
std::optional<LineColumn> parseLineColumn(std::string_view typed);

} // namespace editor
