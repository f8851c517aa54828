// The CogExplorer's reading of a COG text: its declarations grouped by type keyword, its messages
// and the "//" comments inside each message's handler, as a keyed tree.
//
// The build follows the layout rules of cog/layout.h to the letter, including where it stops: a
// key that is already in the tree stops it (DuplicateKey), and so does any other impossible step
// (Failure): an end marker before the symbols marker, a declaration line without CR inside the
// symbols body, a label with no "return;" after it, a comment without CR inside its body, or an
// empty tree. The nodes added before the stop stay in the tree.
#pragma once

#include "cog/keyedtree.h"
#include "cog/layout.h"

#include <string>
#include <string_view>
#include <vector>

namespace cog {

struct ExplorerResult {
    KeyedTree tree;
    enum class Stop { None, DuplicateKey, Failure } stop = Stop::None;

    // Set when stop == DuplicateKey: the key the tree refused.
    std::string offendingKey;
    // Where the refused line or comment was met: the keyword being scanned (or, for a comment,
    // the label of the message whose body was scanned), and the 1-based position inside the
    // symbols body (or that message body) of the line's or comment's first byte.
    std::string anchor;
    Pos anchorOffset = 0;
    // The same place as a selection of the text: the caret index of the line's or comment's
    // first byte and its length without the line break, so that selecting it marks the line.
    // For a Failure, the caret index where the unreadable part begins (-1 when there is none).
    Pos selStart = -1;
    Pos selLength = 0;

    // Set when stop == Failure: what could not be read, in a few words.
    std::string failure;

    bool complete() const { return stop == Stop::None; }
};

// Builds the tree of text. The root's text is caption; keywords are the symbol-type keywords in
// the order in which their groups appear (normally symbolTypes()).
ExplorerResult buildExplorer(std::string_view text, std::string_view caption,
                             const std::vector<std::string>& keywords);

} // namespace cog
