// A script open in a language client. The client counts positions in UTF-16 code units and
// sends UTF-8; COG files are Windows-1252 bytes, one byte per character. The document keeps
// both: the client's text, and its bytes for the language services, each character one byte
// (a character the code page cannot hold becomes '?', as it would be saved), so positions map
// exactly both ways.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lsp {

// A place as the protocol gives it: 0-based line, and UTF-16 code units into the line.
struct Position {
    std::uint32_t line = 0;
    std::uint32_t character = 0;
};

class Document {
public:
    explicit Document(std::string_view utf8 = {}) { setText(utf8); }

    void setText(std::string_view utf8);
    // Replaces the text between two places with utf8. A place past the end of its line stands at
    // the line's end; one past the last line at the end of the text.
    void replace(Position from, Position to, std::string_view utf8);

    const std::string& bytes() const { return bytes_; }
    std::uint32_t offset(Position p) const;        // the byte at a place
    Position position(std::uint32_t offset) const; // the place of a byte

private:
    std::uint32_t unitIndex(Position p) const; // the code unit at a place
    void rebuild();

    std::u16string text_;
    std::string bytes_;
    std::vector<std::uint32_t> lineUnits_; // where each line starts, in code units
    std::vector<std::uint32_t> lineBytes_; // and in bytes
};

// Conversions of texts that pass between the client and the services.
std::u16string utf16FromUtf8(std::string_view utf8); // invalid sequences become U+FFFD
std::string bytesFromUtf8(std::string_view utf8);    // Windows-1252; '?' for what it cannot hold
std::string utf8FromBytes(std::string_view bytes);   // Windows-1252 bytes as UTF-8

} // namespace lsp
