// Places in a COG text and the diagnostics found there: plain data for the editor, the command
// line and any other reader.
#pragma once

#include <cstdint>
#include <string>

namespace language {

// A place in the text: the 0-based byte offset and the 1-based line and byte column. CR LF, LF
// and a lone CR each end a line.
struct Position {
    std::uint32_t offset = 0;
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

// A range of bytes [begin, end): end is the place just past the last byte.
struct Span {
    Position begin;
    Position end;
    bool contains(std::uint32_t offset) const { return begin.offset <= offset && offset < end.offset; }
};

enum class Severity : std::uint8_t { Error, Warning };

struct Diagnostic {
    Severity severity = Severity::Error;
    const char* code = ""; // a stable short name of the check, e.g. "unknown-verb"
    Span span;
    std::string text;
    bool syntax = false; // a lexical or syntax error (the only ones a syntax-only analysis reports)
};

inline const char* severityName(Severity s) {
    return s == Severity::Error ? "error" : "warning";
}

} // namespace language
