#include "cog/keyedtree.h"

#include <algorithm>

namespace cog {

KeyedTree::AddResult KeyedTree::add(std::optional<std::string_view> parent, std::string key, std::string text,
                                    std::string tag) {
    if (parent && !contains(*parent)) return AddResult::NoSuchParent;
    auto [it, inserted] = byKey_.try_emplace(std::move(key), nodes_.size());
    if (!inserted) return AddResult::DuplicateKey;
    Node node;
    node.key = it->first;
    node.text = std::move(text);
    node.tag = std::move(tag);
    if (parent) {
        node.parentKey = std::string(*parent);
        node.hasParent = true;
    }
    nodes_.push_back(std::move(node));
    return AddResult::Added;
}

bool KeyedTree::remove(std::string_view keyView) {
    if (!contains(keyView)) return false;
    const std::string key(keyView); // the view may point into a node that is about to move
    // Children always come after their parent, so one forward pass collects the subtree.
    std::vector<bool> doomed(nodes_.size(), false);
    std::unordered_map<std::string, bool> doomedKeys{{key, true}};
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const Node& n = nodes_[i];
        if (n.key == key || (n.hasParent && doomedKeys.contains(n.parentKey))) {
            doomed[i] = true;
            doomedKeys.emplace(n.key, true);
        }
    }
    std::size_t w = 0;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (doomed[i]) continue;
        if (w != i) nodes_[w] = std::move(nodes_[i]); // a self-move would empty the node
        ++w;
    }
    nodes_.resize(w);
    reindex();
    return true;
}

void KeyedTree::clear() {
    nodes_.clear();
    byKey_.clear();
}

void KeyedTree::reindex() {
    byKey_.clear();
    for (std::size_t i = 0; i < nodes_.size(); ++i) byKey_.emplace(nodes_[i].key, i);
}

std::size_t KeyedTree::indexOf(std::string_view key) const {
    const auto it = byKey_.find(std::string(key));
    return it == byKey_.end() ? 0 : it->second + 1;
}

const KeyedTree::Node* KeyedTree::find(std::string_view key) const {
    const std::size_t i = indexOf(key);
    return i ? &nodes_[i - 1] : nullptr;
}

KeyedTree::Node* KeyedTree::find(std::string_view key) {
    const std::size_t i = indexOf(key);
    return i ? &nodes_[i - 1] : nullptr;
}

std::size_t KeyedTree::childCount(std::string_view key) const {
    return static_cast<std::size_t>(std::count_if(
        nodes_.begin(), nodes_.end(), [&](const Node& n) { return n.hasParent && n.parentKey == key; }));
}

std::vector<std::size_t> KeyedTree::childrenOf(std::optional<std::string_view> key) const {
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const Node& n = nodes_[i];
        if (key ? (n.hasParent && n.parentKey == *key) : !n.hasParent) result.push_back(i + 1);
    }
    return result;
}

} // namespace cog
