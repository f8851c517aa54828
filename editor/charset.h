// The character set of COG scripts: Windows-1252, one byte per character. The editor keeps a
// file's bytes unchanged and uses these tables only to show, type, copy and print characters.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace editor {

inline constexpr std::string_view kCharsetName = "Windows-1252";

// The character a byte stands for. The five bytes the code page leaves undefined (0x81, 0x8D,
// 0x8F, 0x90, 0x9D) stand for the control characters of the same number, so that every byte has
// a character of its own and every character maps back to its byte.
char32_t decodeByte(unsigned char byte);

// The byte of a character, or nothing when the code page cannot hold it.
std::optional<unsigned char> encodeChar(char32_t c);

// Bytes as UTF-16 text, one code unit per byte.
std::u16string decode(std::string_view bytes);

// UTF-16 text as bytes. When a character cannot be held, `refused` is the index of its first code
// unit and `bytes` holds what came before it.
struct Encoded {
    std::string bytes;
    std::optional<std::size_t> refused;
};
Encoded encode(std::u16string_view text);

} // namespace editor
