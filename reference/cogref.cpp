#include "reference/cogref.h"

#include "cog/layout.h"
#include "editor/lines.h"

#include <optional>

namespace reference {

namespace {

std::string quoted(std::string_view s) {
    std::string q = "\"";
    q += s;
    q += '"';
    return q;
}

} // namespace

CogRef readCogRef(std::string_view bytes) {
    CogRef ref;
    const auto lines = editor::splitLines(bytes);
    std::optional<std::string> group; // key of the group the next entry belongs to
    auto skip = [&](std::size_t lineNo, std::string reason) {
        ref.warnings.push_back({lineNo, std::move(reason)});
    };
    for (std::size_t i = 1; i < lines.size(); ++i) { // line 1 is never read as content
        const std::string_view line = lines[i];
        const std::size_t lineNo = i + 1;
        if (cog::equalText(line, "EOF")) break;
        if (line.empty()) {
            skip(lineNo, "empty line");
            continue;
        }
        if (line.front() == '.') {
            const std::string_view name = line.substr(1);
            if (name.empty()) {
                group.reset();
                skip(lineNo, "group line without a name");
                continue;
            }
            group = std::string(name);
            if (ref.tree.add(std::nullopt, std::string(name), std::string(name), std::string(kGroupTag)) ==
                cog::KeyedTree::AddResult::DuplicateKey) {
                // Entries that follow still join the group of that name loaded earlier.
                const auto* existing = ref.tree.find(name);
                if (!existing || !isGroupTag(existing->tag)) group.reset();
                skip(lineNo, "repeated key " + quoted(name));
            }
            continue;
        }
        const std::size_t paren = line.find('(');
        const std::size_t bar = line.find('|');
        if (paren == std::string_view::npos) {
            skip(lineNo, "entry line without \"(\"");
            continue;
        }
        if (bar == std::string_view::npos) {
            skip(lineNo, "entry line without \"|\"");
            continue;
        }
        if (bar < paren) {
            skip(lineNo, "entry line without \"(\" before its \"|\"");
            continue;
        }
        if (!group) {
            skip(lineNo, "entry line without a group line above it");
            continue;
        }
        if (ref.tree.add(*group, std::string(line), std::string(line.substr(0, paren)), std::string(line)) ==
            cog::KeyedTree::AddResult::DuplicateKey)
            skip(lineNo, "repeated key " + quoted(line));
    }
    return ref;
}

bool isGroupTag(std::string_view tag) {
    return cog::equalText(tag, kGroupTag);
}

TagParts splitTag(std::string_view tag) {
    const std::size_t bar = tag.find('|');
    if (bar == std::string_view::npos) return {tag, tag};
    return {tag.substr(0, bar), tag.substr(bar + 1)};
}

bool findMatches(const cog::KeyedTree::Node& node, std::string_view findText) {
    return !isGroupTag(node.tag) && cog::containsText(node.text, findText);
}

std::size_t findNode(const cog::KeyedTree& tree, std::string_view findText, std::size_t from) {
    for (std::size_t i = from < 1 ? 1 : from; i <= tree.count(); ++i)
        if (findMatches(tree.at(i), findText)) return i;
    return 0;
}

std::size_t lookUpEntry(const cog::KeyedTree& tree, std::string_view word) {
    for (std::size_t i = 1; i <= tree.count(); ++i) {
        const auto& node = tree.at(i);
        if (!isGroupTag(node.tag) && cog::equalText(node.text, word)) return i;
    }
    return 0;
}

} // namespace reference
