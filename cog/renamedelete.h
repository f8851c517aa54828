// Renaming a symbol and deleting a declaration, message label or comment from the CogExplorer:
// text edits driven by a node of the explorer's tree, computed without any control.
#pragma once

#include "cog/keyedtree.h"
#include "cog/layout.h"
#include "editor/findreplace.h"

#include <optional>
#include <string>
#include <string_view>

namespace cog {

// The search state that a rename leaves in the editor window (its ipos, sW and sR).
struct SearchState {
    Pos ipos = 1;
    std::string word;
    std::string replacement;
};

struct RenameResult {
    enum class Outcome {
        Renamed,   // the text was changed (or the label kept its text)
        NotInText, // the old label does not occur in the text: nothing to rename
        Refused,   // the node cannot be renamed (the root, a node not in the tree, an empty label)
    };
    Outcome outcome = Outcome::Refused;
    editor::TextEdit edit; // on the text as it was
    std::optional<editor::Selection> selection;
    std::optional<SearchState> search; // set when the replace series ran
    bool keepsNewLabel() const { return outcome == Outcome::Renamed; }
};

// Renames the node keyed `key`, whose label was oldLabel, to newLabel: the first occurrence of
// oldLabel is replaced by newLabel, then every later occurrence of the bare old name that stands
// between blanks (space, tab, CR, LF) is replaced by the bare new name, in the text as already
// changed. The root (which shows the window's caption) and keys not in the tree are refused.
RenameResult renameNode(std::string_view text, const KeyedTree& tree, std::string_view key,
                        std::string_view oldLabel, std::string_view newLabel);

// The rename's two replace passes on the old and new labels, as the series of the Edit menu runs
// them: plain Replace from position 1, then edge-mode Replace All from where it stopped.
RenameResult renameLabel(std::string_view text, std::string_view oldLabel, std::string_view newLabel);

// Whether name occurs as a whole word after the code marker (anywhere, when there is no code
// marker), not counting an occurrence at position 1.
bool usedInCode(std::string_view text, std::string_view name);

struct DeleteResult {
    enum class Outcome {
        Deleted,      // edit removes the node's text; removeKey leaves the tree
        InUse,        // the symbol is still used in the code section: nothing changes
        KeyNotInText, // the node's text is no longer in the text: only removeKey leaves the tree
        NotInTree,    // the key names no node (already removed): nothing changes
        Root,         // the root node is not deleted: nothing changes
    };
    Outcome outcome = Outcome::NotInTree;
    editor::TextEdit edit;
    Pos caret = 0;         // the caret index afterwards, when the text changed
    std::string removeKey; // the node to remove with its subtree: the node, or its group when it is the
                           // group's only child
};

// Deleting the node keyed `key` from the text and the tree.
DeleteResult deleteNode(std::string_view text, const KeyedTree& tree, std::string_view key);

// Applies a delete's tree update.
void applyDelete(KeyedTree& tree, const DeleteResult& result);

} // namespace cog
