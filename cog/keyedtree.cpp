#include "cog/keyedtree.h"

#include <algorithm>

namespace cog {

KeyedTree::AddResult KeyedTree::add(std::optional<std::string_view> parent, std::string key, std::string text,
                                    std::string tag) {
    const std::size_t parentSlot = parent ? indexOf(*parent) : 0; // 1-based here
    if (parent && parentSlot == 0) return AddResult::NoSuchParent;
    const std::size_t slot = nodes_.size();
    auto [it, inserted] = byKey_.try_emplace(std::move(key), slot);
    if (!inserted) return AddResult::DuplicateKey;
    (parent ? children_[parentSlot - 1] : topLevel_).push_back(slot);
    children_.emplace_back();
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
    children_.clear();
    topLevel_.clear();
}

void KeyedTree::reindex() {
    byKey_.clear();
    children_.assign(nodes_.size(), {});
    topLevel_.clear();
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        byKey_.emplace(nodes_[i].key, i);
        // A parent always comes before its children.
        (nodes_[i].hasParent ? children_[byKey_.at(nodes_[i].parentKey)] : topLevel_).push_back(i);
    }
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

const std::vector<std::size_t>* KeyedTree::childSlots(std::optional<std::string_view> key) const {
    if (!key) return &topLevel_;
    const std::size_t i = indexOf(*key);
    return i ? &children_[i - 1] : nullptr;
}

std::size_t KeyedTree::childCount(std::string_view key) const {
    const auto* slots = childSlots(key);
    return slots ? slots->size() : 0;
}

std::vector<std::size_t> KeyedTree::childrenOf(std::optional<std::string_view> key) const {
    std::vector<std::size_t> result;
    if (const auto* slots = childSlots(key))
        for (const std::size_t slot : *slots) result.push_back(slot + 1);
    return result;
}

} // namespace cog
