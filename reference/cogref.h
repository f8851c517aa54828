// The COG reference file and the rules that look entries up in the reference tree.
//
// The file's first line is a free title. Every following line up to a line reading "EOF" (any
// letter case) is a group line (".Name") or an entry line ("Name(arguments)|description").
// Groups become top-level nodes (key and text the name, tag "parent"); an entry becomes a child
// of the group above it, keyed and tagged by the whole line, its text the part before the "(".
#pragma once

#include "cog/keyedtree.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace reference {

inline constexpr std::string_view kGroupTag = "parent";

struct LoadWarning {
    std::size_t line = 0; // 1-based line number in the file
    std::string reason;
};

struct CogRef {
    cog::KeyedTree tree;
    std::vector<LoadWarning> warnings; // one per skipped line, in file order
};

// Reads a reference file. A line that is neither a valid group line nor a valid entry line is
// skipped with a warning and reading goes on; a file without the "EOF" line ends at its last line.
CogRef readCogRef(std::string_view bytes);

bool isGroupTag(std::string_view tag); // "parent", any letter case

// An entry's tag split at its first "|": the call text shown on the help line and inserted by a
// double-click, and the description. A tag without "|" gives the whole tag for both.
struct TagParts {
    std::string_view callText;
    std::string_view description;
};
TagParts splitTag(std::string_view tag);

// The Tree menu's matching rule: findText occurs in the node's text (letter case ignored) and the
// node is not a group. An empty findText occurs in every non-empty text.
bool findMatches(const cog::KeyedTree::Node& node, std::string_view findText);

// The 1-based index of the first node at or after index from that matches findText, or 0. No wrap.
std::size_t findNode(const cog::KeyedTree& tree, std::string_view findText, std::size_t from);

// The first entry (not a group) whose text equals word, letter case ignored; 0 when none.
std::size_t lookUpEntry(const cog::KeyedTree& tree, std::string_view word);

} // namespace reference
