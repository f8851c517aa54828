// Add Symbol: the declaration line built from the form's fields and its insertion above the
// first line that begins with "end" (exact case), keeping the caret with the user's text.
#pragma once

#include "cog/layout.h"
#include "editor/findreplace.h"

#include <string>
#include <string_view>

namespace cog {

struct NewSymbol {
    std::string keyword; // empty: no type chosen
    std::string name;
    std::string defaultValue;
    bool local = false;
    std::string linkId;
};

struct AddSymbolResult {
    enum class Outcome {
        Inserted,
        NoType,    // no type chosen
        NoName,    // no name entered
        NoEndLine, // the text has no line beginning with "end": nowhere to insert
    };
    Outcome outcome = Outcome::NoType;
    std::string line;      // the declaration line, CR LF included
    editor::TextEdit edit; // inserts the line
    Pos caret = 0;         // the caret index afterwards
};

// The caret index at which the line goes: just after the first LF that is followed by "end" in
// exact case; -1 when there is none.
Pos insertionPoint(std::string_view text);

AddSymbolResult addSymbol(std::string_view text, Pos caret, const NewSymbol& symbol);

// Whether the explorer, showing the window whose entry in the window list reads chosenText,
// shows the window captioned caption: a modified window's caption ("name*") need only contain
// the entry's text, another must equal it.
bool explorerShowsWindow(std::string_view caption, std::string_view chosenText);

} // namespace cog
