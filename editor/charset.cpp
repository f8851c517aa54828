#include "editor/charset.h"

#include <array>

namespace editor {

namespace {

// Bytes 0x80 to 0x9F; every other byte is the character of the same number.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

char32_t decodeByte(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
    return byte;
}

std::optional<unsigned char> encodeChar(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<unsigned char>(c);
    for (std::size_t i = 0; i < kHighControls.size(); ++i)
        if (kHighControls[i] == c) return static_cast<unsigned char>(0x80 + i);
    return std::nullopt;
}

std::u16string decode(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        text[i] = static_cast<char16_t>(decodeByte(static_cast<unsigned char>(bytes[i])));
    return text;
}

Encoded encode(std::u16string_view text) {
    Encoded out;
    out.bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = encodeChar(text[i]); // a surrogate half is never one
        if (!byte) {
            out.refused = i;
            return out;
        }
        out.bytes.push_back(static_cast<char>(*byte));
    }
    return out;
}

} // namespace editor
