#include "language/tree.h"

#include "language/text.h"

namespace language {

std::vector<NodeId> SyntaxTree::children(NodeId id) const {
    std::vector<NodeId> out;
    for (NodeId c = nodes[id].firstChild; c != kNoNode; c = nodes[c].nextSibling) out.push_back(c);
    return out;
}

NodeId SyntaxTree::nodeAt(std::uint32_t offset) const {
    NodeId best = kNoNode;
    for (NodeId i = 0; i < nodes.size(); ++i) {
        const Span& s = nodes[i].span;
        if (!s.contains(offset)) continue;
        // The narrowest span wins; of equal ones the first node, a child being made before its parent.
        if (best == kNoNode ||
            s.end.offset - s.begin.offset < nodes[best].span.end.offset - nodes[best].span.begin.offset)
            best = i;
    }
    return best;
}

namespace {

template <class Index> std::uint32_t find(const Index& index, std::string_view name) {
    const auto it = index.find(name);
    return it == index.end() ? kNoRef : it->second;
}

} // namespace

std::uint32_t SymbolTable::findSymbol(std::string_view name) const {
    return find(symbolIndex_, name);
}
std::uint32_t SymbolTable::findLabel(std::string_view name) const {
    return find(labelIndex_, name);
}

std::uint32_t SymbolTable::addSymbol(Symbol s) {
    const auto index = static_cast<std::uint32_t>(symbols.size());
    symbolIndex_.insert_or_assign(s.name, index);
    symbols.push_back(std::move(s));
    return index;
}

std::uint32_t SymbolTable::addLabel(Label l) {
    const auto index = static_cast<std::uint32_t>(labels.size());
    labelIndex_.emplace(l.name, index);
    labels.push_back(std::move(l));
    return index;
}

std::uint32_t SymbolTable::symbolAt(std::uint32_t offset) const {
    for (std::uint32_t i = 0; i < symbols.size(); ++i) {
        if (symbols[i].nameSpan.contains(offset)) return i;
        for (const Span& use : symbols[i].uses)
            if (use.contains(offset)) return i;
    }
    return kNoRef;
}

} // namespace language
