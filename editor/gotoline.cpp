#include "editor/gotoline.h"

namespace editor {

namespace {

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

std::optional<long> number(std::string_view s) {
    s = trimmed(s);
    if (s.empty() || s.size() > 9) return std::nullopt;
    long n = 0;
    for (const char c : s) {
        if (c < '0' || c > '9') return std::nullopt;
        n = n * 10 + (c - '0');
    }
    if (n < 1) return std::nullopt;
    return n;
}

} // namespace

std::optional<LineColumn> parseLineColumn(std::string_view typed) {
    const auto colon = typed.find(':');
    const auto line = number(typed.substr(0, colon));
    if (!line) return std::nullopt;
    if (colon == std::string_view::npos) return LineColumn{*line, 1};
    const auto column = number(typed.substr(colon + 1));
    if (!column) return std::nullopt;
    return LineColumn{*line, *column};
}

} // namespace editor
