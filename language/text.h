// Small byte-level helpers of the language reader: ASCII letter case and character classes.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace language {

inline char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
// Byte classes by table: the lexer asks them of every byte.
enum : unsigned char { kDigitClass = 1, kLetterClass = 2, kUnderscoreClass = 4, kHexClass = 8 };
inline constexpr auto kCharClasses = [] {
    std::array<unsigned char, 256> t{};
    for (int c = '0'; c <= '9'; ++c) t[c] = kDigitClass | kHexClass;
    for (int c = 'a'; c <= 'z'; ++c) t[c] = t[c - 'a' + 'A'] = kLetterClass;
    for (int c = 'a'; c <= 'f'; ++c) t[c] = t[c - 'a' + 'A'] = kLetterClass | kHexClass;
    t['_'] = kUnderscoreClass;
    return t;
}();
inline unsigned char charClass(char c) {
    return kCharClasses[static_cast<unsigned char>(c)];
}
inline bool isDigit(char c) {
    return charClass(c) & kDigitClass;
}
inline bool isLetter(char c) {
    return charClass(c) & kLetterClass;
}
inline bool isIdentStart(char c) {
    return charClass(c) & (kLetterClass | kUnderscoreClass);
}
inline bool isIdentChar(char c) {
    return charClass(c) & (kLetterClass | kUnderscoreClass | kDigitClass);
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

// Hashing and equality of names without regard to ASCII letter case, for maps keyed by name that
// are looked up with a string_view into the text (no lower-case copy made).
struct NoCaseHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const {
        std::size_t h = 1469598103934665603ull;
        for (char c : s) h = (h ^ static_cast<unsigned char>(lowerAscii(c))) * 1099511628211ull;
        return h;
    }
};
struct NoCaseEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return equalsNoCase(a, b); }
};

// The text in single quotes: 'text'. (Built by appending: GCC 12 warns falsely about
// "'" + std::string + "'" chains.)
inline std::string quote(std::string_view text) {
    std::string s;
    s.reserve(text.size() + 2);
    s += '\'';
    s.append(text);
    s += '\'';
    return s;
}

// The word with "a" or "an" before it: "a thing", "an int".
inline std::string withArticle(std::string_view word) {
    const bool vowel =
        !word.empty() && std::string_view("aeiouAEIOU").find(word[0]) != std::string_view::npos;
    return (vowel ? "an " : "a ") + std::string(word);
}

} // namespace language
