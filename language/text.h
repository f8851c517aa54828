// Small byte-level helpers of the language reader: ASCII letter case and character classes.
#pragma once

#include <string>
#include <string_view>

namespace language {

inline char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
inline bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
inline bool isIdentStart(char c) {
    return isLetter(c) || c == '_';
}
inline bool isIdentChar(char c) {
    return isIdentStart(c) || isDigit(c);
}
inline bool isHexDigit(char c) {
    return isDigit(c) || (lowerAscii(c) >= 'a' && lowerAscii(c) <= 'f');
}

inline bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    return true;
}

// The name in lower case, written into out (whose buffer is reused from call to call).
inline const std::string& lowered(std::string_view name, std::string& out) {
    out.assign(name);
    for (char& c : out) c = lowerAscii(c);
    return out;
}

// The word with "a" or "an" before it: "a thing", "an int".
inline std::string withArticle(std::string_view word) {
    const bool vowel =
        !word.empty() && std::string_view("aeiouAEIOU").find(word[0]) != std::string_view::npos;
    return (vowel ? "an " : "a ") + std::string(word);
}

} // namespace language
