#include "cog/layout.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace cog {

namespace {

constexpr std::array<unsigned char, 256> makeFoldTable() {
    std::array<unsigned char, 256> t{};
    for (int c = 0; c < 256; ++c) t[c] = static_cast<unsigned char>(c);
    for (int c = 'A'; c <= 'Z'; ++c) t[c] = static_cast<unsigned char>(c + 32);
    for (int c = 0xC0; c <= 0xDE; ++c)
        if (c != 0xD7) t[c] = static_cast<unsigned char>(c + 32); // À-Þ, but not the multiplication sign
    t[0x8A] = 0x9A;                                               // Š
    t[0x8C] = 0x9C;                                               // Œ
    t[0x8E] = 0x9E;                                               // Ž
    t[0x9F] = 0xFF;                                               // Ÿ
    return t;
}
constexpr auto kFold = makeFoldTable();

// For each byte, the other byte that folds to the same letter (itself when there is none).
constexpr std::array<unsigned char, 256> makePartnerTable() {
    std::array<unsigned char, 256> t{};
    for (int c = 0; c < 256; ++c) t[c] = static_cast<unsigned char>(c);
    for (int c = 0; c < 256; ++c)
        if (kFold[c] != c) {
            t[c] = kFold[c];
            t[kFold[c]] = static_cast<unsigned char>(c);
        }
    return t;
}
constexpr auto kPartner = makePartnerTable();

bool equalAt(const char* a, std::string_view b, Mode mode) {
    if (mode == Mode::Exact) return std::memcmp(a, b.data(), b.size()) == 0;
    for (std::size_t i = 0; i < b.size(); ++i)
        if (kFold[static_cast<unsigned char>(a[i])] != kFold[static_cast<unsigned char>(b[i])]) return false;
    return true;
}

// The first byte in [from, end) that is first or other; null when there is none. The range is
// searched in growing chunks, so that the work stays in proportion to the distance to the byte
// found even when one of the two never occurs: a search for "return;" in a text that has no "R"
// must not look through the whole rest of the text each time.
const char* nextCandidate(const char* from, const char* end, unsigned char first, unsigned char other) {
    for (std::size_t chunk = 256; from < end; chunk = std::min<std::size_t>(chunk * 2, 1 << 16)) {
        const char* const stop = from + std::min<std::size_t>(chunk, static_cast<std::size_t>(end - from));
        const auto* hit =
            static_cast<const char*>(std::memchr(from, first, static_cast<std::size_t>(stop - from)));
        if (other != first) {
            const char* const limit = hit ? hit : stop;
            if (const auto* earlier = static_cast<const char*>(
                    std::memchr(from, other, static_cast<std::size_t>(limit - from))))
                hit = earlier;
        }
        if (hit) return hit;
        from = stop;
    }
    return nullptr;
}

} // namespace

unsigned char foldCase(unsigned char c) {
    return kFold[c];
}

std::string foldedText(std::string_view s) {
    std::string folded(s);
    for (char& c : folded) c = static_cast<char>(kFold[static_cast<unsigned char>(c)]);
    return folded;
}

bool equalText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && equalAt(a.data(), b, Mode::Text);
}

bool containsText(std::string_view hay, std::string_view needle) {
    return find(1, hay, needle) > 0;
}

Pos find(Pos start, std::string_view hay, std::string_view needle, Mode mode) {
    if (start < 1) start = 1;
    const auto size = static_cast<Pos>(hay.size());
    if (needle.empty()) return start <= size ? start : 0;
    const auto n = static_cast<Pos>(needle.size());
    if (start - 1 + n > size) return 0;
    const char* const base = hay.data();
    const char* const end = base + (size - n) + 1; // one past the last place a match can begin
    const auto first = static_cast<unsigned char>(needle[0]);
    const unsigned char other = mode == Mode::Text ? kPartner[first] : first;
    for (const char* a = nextCandidate(base + (start - 1), end, first, other); a;
         a = nextCandidate(a + 1, end, first, other))
        if (equalAt(a + 1, needle.substr(1), mode)) return static_cast<Pos>(a - base) + 1;
    return 0;
}

std::string_view mid(std::string_view s, Pos start, Pos length) {
    if (start < 1) {
        length += start - 1;
        start = 1;
    }
    const auto size = static_cast<Pos>(s.size());
    if (length <= 0 || start > size) return {};
    return s.substr(static_cast<std::size_t>(start - 1),
                    static_cast<std::size_t>(std::min(length, size - start + 1)));
}

const std::vector<std::string>& symbolTypes() {
    static const std::vector<std::string> types{"ai",       "cog",      "flex",  "int",    "keyframe",
                                                "material", "message",  "model", "sector", "sound",
                                                "surface",  "template", "thing", "vector"};
    return types;
}

Pos symbolsMarker(std::string_view text) {
    return find(1, text, "\nsymbols");
}
Pos endMarker(std::string_view text) {
    return find(1, text, "\nend");
}
Pos codeMarker(std::string_view text) {
    return find(1, text, "\ncode");
}

Markers findMarkers(std::string_view text) {
    Markers m;
    m.symbols = symbolsMarker(text);
    m.end = endMarker(text);
    m.code = codeMarker(text);
    m.secondEnd = m.end == 0 ? 0 : find(m.end + 1, text, "\nend");
    return m;
}

std::optional<std::string_view> symbolsBody(std::string_view text) {
    const Pos s = symbolsMarker(text);
    const Pos e = endMarker(text);
    if (s == 0 || e == 0 || e < s) return std::nullopt;
    return mid(text, s + 8, e - s);
}

std::string GetSymbolName(std::string_view line, std::size_t n) {
    std::string_view rest = n < line.size() ? line.substr(n) : std::string_view{};
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    while (!rest.empty() && rest.back() == ' ') rest.remove_suffix(1);
    while (!rest.empty() && rest.front() == '\t') rest.remove_prefix(1);
    for (char delimiter : {'\t', ' ', CR}) {
        const auto at = rest.find(delimiter);
        if (at != std::string_view::npos) return std::string(rest.substr(0, at));
    }
    return std::string(rest);
}

std::string StripDefaultValue(std::string_view s) {
    const auto at = s.find('=');
    return std::string(at == std::string_view::npos ? s : s.substr(0, at));
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == CR || c == LF;
}

bool isWholeWord(std::string_view text, Pos q, std::size_t length) {
    const Pos before = q - 1;
    const Pos after = q + static_cast<Pos>(length);
    if (before < 1 || after > static_cast<Pos>(text.size())) return false;
    return isBlank(text[before - 1]) && isBlank(text[after - 1]);
}

std::optional<std::string_view> messageBody(std::string_view text, std::string_view label, Pos p) {
    const Pos r = find(p + 1, text, "return;");
    if (r - p < 0) return std::nullopt;
    return mid(text, p + static_cast<Pos>(label.size()) + 2, r - p);
}

std::string declarationLine(std::string_view keyword, std::string_view name, std::string_view defaultValue,
                            bool local, std::string_view linkId) {
    std::string line(keyword);
    line += "     ";
    line += name;
    if (!defaultValue.empty()) {
        line += '=';
        line += defaultValue;
    }
    line += std::string(15, ' ');
    if (local) line += "local";
    line += "     ";
    if (!linkId.empty()) {
        line += "linkid=";
        line += linkId;
    }
    line += "\r\n";
    return line;
}

} // namespace cog
