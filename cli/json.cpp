#include "cli/json.h"

#include <cstdio>
#include <functional>

namespace cli {

std::string jsonString(std::string_view bytes) {
    std::string out = "\"";
    for (const char ch : bytes) {
        const auto c = static_cast<unsigned char>(ch);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7F) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else if (c >= 0x80) { // Latin-1 byte as its UTF-8 character
                out += static_cast<char>(0xC0 | (c >> 6));
                out += static_cast<char>(0x80 | (c & 0x3F));
            } else {
                out += ch;
            }
        }
    }
    return out + "\"";
}

std::string jsonNodes(const cog::KeyedTree& tree) {
    std::string out = "[";
    bool first = true;
    for (const auto& node : tree.nodes()) {
        if (!first) out += ", ";
        first = false;
        out += "{\"key\": " + jsonString(node.key) + ", \"text\": " + jsonString(node.text) +
               ", \"tag\": " + jsonString(node.tag) +
               ", \"parent\": " + (node.hasParent ? jsonString(node.parentKey) : std::string("null")) + "}";
    }
    return out + "]";
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
