// The rules by which the COG tools read a script: a few markers found by substring search,
// declaration lines, message labels and bodies, and comments. Everything here is a pure function
// of the text's bytes.
//
// Positions follow two conventions, and each function says which it uses:
//  - a text position (Pos) is 1-based, the first byte of the text being position 1; 0 means
//    "not found";
//  - a caret index is 0-based, like the editor's selection start: the caret before the byte at
//    text position p has caret index p - 1.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cog {

using Pos = long;

// Text mode compares letters without regard to case (in the 8-bit Latin-1 / Windows-1252 sense);
// exact mode compares every byte.
enum class Mode { Text, Exact };

// The byte with its case folded: A-Z to a-z and the Latin-1 capitals to their small letters.
unsigned char foldCase(unsigned char c);
bool equalText(std::string_view a, std::string_view b); // text-mode equality
// The bytes with their case folded: two texts are equal in text mode when these are equal.
std::string foldedText(std::string_view s);
bool containsText(std::string_view hay, std::string_view needle);

// The 1-based position of the first occurrence of needle in hay that begins at or after start,
// or 0 when there is none. A start below 1 counts as 1. An empty needle is found at start when
// start lies inside a non-empty hay.
Pos find(Pos start, std::string_view hay, std::string_view needle, Mode mode = Mode::Text);

// Substring by 1-based start and length; the parts outside the text are dropped.
std::string_view mid(std::string_view s, Pos start, Pos length);

inline constexpr char CR = '\r';
inline constexpr char LF = '\n';

// The 14 symbol-type keywords, in the order in which the tools use them.
const std::vector<std::string>& symbolTypes();

// Section markers: the text position of a line feed followed by the keyword (text mode), all
// searched from the start of the text; 0 when there is none.
struct Markers {
    Pos symbols = 0;
    Pos end = 0;
    Pos code = 0;
    Pos secondEnd = 0; // the next LF + "end" after the end marker
};
Markers findMarkers(std::string_view text);
Pos symbolsMarker(std::string_view text);
Pos endMarker(std::string_view text);
Pos codeMarker(std::string_view text);

// The text that the explorer scans for declarations: from the byte after "symbols" for
// (end marker - symbols marker) bytes. None when either marker is missing or the end marker
// lies before the symbols marker.
std::optional<std::string_view> symbolsBody(std::string_view text);

// The name declared by a declaration line whose keyword is n bytes long.
std::string GetSymbolName(std::string_view line, std::size_t n);

// The part before the first "=", or the whole string when it has none.
std::string StripDefaultValue(std::string_view s);

// True when the occurrence of a name of the given length at text position q has a space, tab,
// CR or LF on both sides.
bool isWholeWord(std::string_view text, Pos q, std::size_t length);
bool isBlank(char c); // space, tab, CR or LF

// The message body for a label found at text position p: from p + len(label) + 2 for
// (r - p) bytes, r being the first "return;" after p (0 when none). None when that is negative.
std::optional<std::string_view> messageBody(std::string_view text, std::string_view label, Pos p);

// The declaration line written by Add Symbol, CR LF included.
std::string declarationLine(std::string_view keyword, std::string_view name, std::string_view defaultValue,
                            bool local, std::string_view linkId);

} // namespace cog
