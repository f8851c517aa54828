// The JSON that tessary-cli writes: values built with nlohmann::json (keys in the order they are
// set), written on one line as {"key": value, ...}.
#pragma once

#include "cog/keyedtree.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace cli {

using Json = nlohmann::ordered_json;

// Bytes as the text of a JSON string: bytes 0x80-0xFF stand for the characters U+0080-U+00FF.
std::string jsonText(std::string_view bytes);

// The value on one line, ", " between items and ": " after keys; strings escaped by the library
// (quotes, backslashes, control characters).
std::string writeJson(const Json& value);

// A JSON string literal of the bytes, as jsonText reads them.
std::string jsonString(std::string_view bytes);

// The tree's nodes in index order: [{"key": K, "text": T, "tag": G, "parent": P}, ...], parent
// null for a top-level node.
Json jsonNodes(const cog::KeyedTree& tree);

// The tree as indented text, two spaces a level, one node text a line.
std::string plainTree(const cog::KeyedTree& tree);

} // namespace cli
