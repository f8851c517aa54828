// The rules of the editor's typing aids: the word before the caret, the symbols range, the
// message pop-up's prefix and insertion range, the help line's parenthesis depth and what a
// Backspace prepares. Caret indexes are 0-based; lsym, lsymend and text positions are 1-based.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace editor {

struct Range {
    long start = 0; // 0-based caret index
    long length = 0;
    bool operator==(const Range&) const = default;
};

// The word that ends at the caret: the run of bytes after the last line feed, carriage return,
// space or tab before it. When the byte before the caret is such a delimiter, just that byte;
// when the scan reaches the start of the text, everything before the caret. Empty at caret 0.
Range selectWordRange(std::string_view text, long caret);
// The same rule on a part of the text: window holds the bytes from index windowStart up to at
// least the caret, and windowStart is 0 or the index of a delimiter (the line break before the
// caret's line), so that the word never reaches past it.
Range selectWordRangeIn(std::string_view window, long windowStart, long caret);

// The caret lies inside the symbols range: lsym < caret < lsymend as plain numbers.
bool insideSymbols(long lsym, long lsymend, long caret);

// A space after this word opens the message pop-up: it contains "message", any letter case.
bool opensMessagePopup(std::string_view word);

// The pop-up works on the rest of the line that opened it: fromSpace holds the text from 1-based
// position lSpace (the space itself) on; only the part before its first carriage return counts,
// or all of it when it has none.
//
// The text the user has typed since the space: that part without leading and trailing spaces
// (tabs stay), followed by the character being typed, if any (appended at the end wherever the
// caret is).
std::string popupPrefix(std::string_view fromSpace, std::optional<char> pending = std::nullopt);

// The 0-based index of the first item that begins with prefix (letter case ignored), or -1.
int matchPrefix(const std::vector<std::string>& items, std::string_view prefix);

// What a chosen name replaces: from caret index lSpace up to the end of that line, the line break
// excluded.
Range insertRange(std::string_view fromSpace, long lSpace);

// The help line and the number of parentheses opened while it is shown.
struct HelpLine {
    bool shown = false;
    int parens = 0;
    bool operator==(const HelpLine&) const = default;
};

// "(" typed with the pop-up hidden: while the help line is shown it counts one more level;
// otherwise the caller looks the word before the caret up and shows the help line when found.
enum class OpenParen { Counted, LookUp };
OpenParen openParenTyped(HelpLine& h);
void closeParenTyped(HelpLine& h);   // ")" typed with the pop-up hidden
void openParenDeleted(HelpLine& h);  // Backspace removes a "("
void closeParenDeleted(HelpLine& h); // Backspace removes a ")": may show the help line again

// What Backspace does before the editor's own deletion.
enum class Backspace {
    ClosePopup,      // hide the pop-up, collapse the selection to its start, delete the byte before
    DeleteSelection, // the editor deletes the selection
    Nothing,         // caret at the start of the text
    JoinLines,       // the line break before the caret goes as one
    DeleteChar,      // one byte goes; "(" and ")" update the help line
};
Backspace classifyBackspace(bool popupShown, long selLength, long caret, char before);

} // namespace editor
