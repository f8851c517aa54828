// The small amount of JSON that tessary-cli writes.
#pragma once

#include "cog/keyedtree.h"

#include <string>
#include <string_view>

namespace cli {

// A JSON string literal of the bytes: quotes and backslashes escaped, CR, LF and tab as \r, \n
// and \t, other control bytes as \u00XX, and bytes 0x80-0xFF as the characters U+0080-U+00FF.
std::string jsonString(std::string_view bytes);

// The tree's nodes in index order: [{"key": K, "text": T, "tag": G, "parent": P}, ...], parent
// null for a top-level node.
std::string jsonNodes(const cog::KeyedTree& tree);

// The tree as indented text, two spaces a level, one node text a line.
std::string plainTree(const cog::KeyedTree& tree);

} // namespace cli
