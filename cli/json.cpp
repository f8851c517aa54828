#include "cli/json.h"

#include <functional>

namespace cli {

std::string jsonText(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (const char ch : bytes) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 0x80) {
            out += ch;
        } else { // the character U+0080-U+00FF in UTF-8
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

namespace {

void write(const Json& value, std::string& out) {
    if (value.is_object()) {
        out += '{';
        const char* separator = "";
        for (const auto& [key, item] : value.items()) {
            out += separator + Json(key).dump() + ": ";
            write(item, out);
            separator = ", ";
        }
        out += '}';
    } else if (value.is_array()) {
        out += '[';
        const char* separator = "";
        for (const Json& item : value) {
            out += separator;
            write(item, out);
            separator = ", ";
        }
        out += ']';
    } else {
        out += value.dump();
    }
}

} // namespace

std::string writeJson(const Json& value) {
    std::string out;
    write(value, out);
    return out;
}

std::string jsonString(std::string_view bytes) {
    return Json(jsonText(bytes)).dump();
}

Json jsonNodes(const cog::KeyedTree& tree) {
    Json nodes = Json::array();
    for (const auto& node : tree.nodes())
        nodes.push_back({{"key", jsonText(node.key)},
                         {"text", jsonText(node.text)},
                         {"tag", jsonText(node.tag)},
                         {"parent", node.hasParent ? Json(jsonText(node.parentKey)) : Json(nullptr)}});
    return nodes;
}

std::string plainTree(const cog::KeyedTree& tree) {
    std::string out;
    std::function<void(std::optional<std::string_view>, int)> walk =
        [&](std::optional<std::string_view> parent, int depth) {
            for (const std::size_t i : tree.childrenOf(parent)) {
                const auto& node = tree.at(i);
                out += std::string(static_cast<std::size_t>(depth) * 2, ' ') + node.text + "\n";
                walk(node.key, depth + 1);
            }
        };
    walk(std::nullopt, 0);
    return out;
}

} // namespace cli
