// Lines and columns of caret indexes, as compilers print them, for the plain output.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace cli {

struct LineColumn {
    long line = 1;   // 1-based
    long column = 1; // 1-based, counted in bytes
};

// The line and column of the byte after caret index caret (0-based). A caret past the end of the
// text stays on the last line, its column counting on.
inline LineColumn lineColumn(std::string_view text, long caret) {
    const auto before =
        text.substr(0, static_cast<std::size_t>(std::clamp<long>(caret, 0, long(text.size()))));
    LineColumn at;
    at.line = 1 + static_cast<long>(std::count(before.begin(), before.end(), '\n'));
    const auto lastLF = before.rfind('\n');
    const long lineStart = lastLF == std::string_view::npos ? 0 : static_cast<long>(lastLF) + 1;
    at.column = std::max(caret, 0L) - lineStart + 1;
    return at;
}

inline std::string location(const std::string& file, std::string_view text, long caret) {
    const LineColumn at = lineColumn(text, caret);
    return file + ":" + std::to_string(at.line) + ":" + std::to_string(at.column);
}

} // namespace cli
