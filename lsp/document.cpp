#include "lsp/document.h"

#include "editor/charset.h"

#include <algorithm>

namespace lsp {

namespace {

bool isHigh(char16_t u) {
    return u >= 0xD800 && u <= 0xDBFF;
}
bool isLow(char16_t u) {
    return u >= 0xDC00 && u <= 0xDFFF;
}

// The code point at text[i] and the code units it takes.
char32_t codePoint(std::u16string_view text, std::size_t i, std::size_t& units) {
    if (isHigh(text[i]) && i + 1 < text.size() && isLow(text[i + 1])) {
        units = 2;
        return 0x10000 + ((char32_t(text[i]) - 0xD800) << 10) + (char32_t(text[i + 1]) - 0xDC00);
    }
    units = 1;
    return text[i];
}

char byteOf(char32_t c) {
    const auto byte = editor::encodeChar(c);
    return byte ? static_cast<char>(*byte) : '?';
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace

std::u16string utf16FromUtf8(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        const int more = b < 0x80             ? 0
                         : (b & 0xE0) == 0xC0 ? 1
                         : (b & 0xF0) == 0xE0 ? 2
                         : (b & 0xF8) == 0xF0 ? 3
                                              : -1;
        char32_t c = more == 0 ? b : more == 1 ? b & 0x1F : more == 2 ? b & 0x0F : b & 0x07;
        bool ok = more >= 0 && i + static_cast<std::size_t>(more) < utf8.size();
        for (int k = 1; ok && k <= more; ++k) {
            const auto n = static_cast<unsigned char>(utf8[i + k]);
            ok = (n & 0xC0) == 0x80;
            c = (c << 6) | (n & 0x3F);
        }
        static constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
        ok = ok && c >= kLeast[std::max(more, 0)] && c <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF);
        if (!ok) {
            out += u'\xFFFD';
            ++i;
            continue;
        }
        i += static_cast<std::size_t>(more) + 1;
        if (c >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
    }
    return out;
}

std::string bytesFromUtf8(std::string_view utf8) {
    const std::u16string text = utf16FromUtf8(utf8);
    std::string out;
    for (std::size_t i = 0, units = 0; i < text.size(); i += units) out += byteOf(codePoint(text, i, units));
    return out;
}

std::string utf8FromBytes(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (const char b : bytes) appendUtf8(out, editor::decodeByte(static_cast<unsigned char>(b)));
    return out;
}

void Document::setText(std::string_view utf8) {
    text_ = utf16FromUtf8(utf8);
    rebuild();
}

void Document::replace(Position from, Position to, std::string_view utf8) {
    std::uint32_t a = unitIndex(from), b = unitIndex(to);
    if (b < a) std::swap(a, b);
    text_.replace(a, b - a, utf16FromUtf8(utf8));
    rebuild();
}

void Document::rebuild() {
    bytes_.clear();
    bytes_.reserve(text_.size());
    lineUnits_.assign(1, 0);
    lineBytes_.assign(1, 0);
    for (std::size_t i = 0, units = 0; i < text_.size(); i += units) {
        const char32_t c = codePoint(text_, i, units);
        bytes_ += byteOf(c);
        if (c == u'\n' || (c == u'\r' && (i + 1 == text_.size() || text_[i + 1] != u'\n'))) {
            lineUnits_.push_back(static_cast<std::uint32_t>(i + 1));
            lineBytes_.push_back(static_cast<std::uint32_t>(bytes_.size()));
        }
    }
}

std::uint32_t Document::unitIndex(Position p) const {
    if (p.line >= lineUnits_.size()) return static_cast<std::uint32_t>(text_.size());
    const std::uint32_t start = lineUnits_[p.line];
    std::uint32_t end = p.line + 1 < lineUnits_.size() ? lineUnits_[p.line + 1] : std::uint32_t(text_.size());
    if (end > start && text_[end - 1] == u'\n') --end;
    if (end > start && text_[end - 1] == u'\r') --end;
    std::uint32_t at = start + std::min(p.character, end - start);
    if (at > start && at < text_.size() && isHigh(text_[at - 1]) && isLow(text_[at]))
        --at; // not inside a pair
    return at;
}

std::uint32_t Document::offset(Position p) const {
    const std::uint32_t at = unitIndex(p);
    const std::uint32_t line =
        std::min<std::uint32_t>(p.line, static_cast<std::uint32_t>(lineUnits_.size() - 1));
    const std::uint32_t start = p.line < lineUnits_.size() ? lineUnits_[line] : at;
    std::uint32_t bytes =
        p.line < lineUnits_.size() ? lineBytes_[line] : static_cast<std::uint32_t>(bytes_.size());
    for (std::size_t i = start, units = 0; i < at; i += units, ++bytes) codePoint(text_, i, units);
    return bytes;
}

Position Document::position(std::uint32_t offset) const {
    offset = std::min<std::uint32_t>(offset, static_cast<std::uint32_t>(bytes_.size()));
    const auto line = static_cast<std::uint32_t>(
        std::upper_bound(lineBytes_.begin(), lineBytes_.end(), offset) - lineBytes_.begin() - 1);
    std::size_t i = lineUnits_[line];
    for (std::uint32_t n = lineBytes_[line]; n < offset; ++n) {
        std::size_t units = 1;
        codePoint(text_, i, units);
        i += units;
    }
    return {line, static_cast<std::uint32_t>(i - lineUnits_[line])};
}

} // namespace lsp
