// A tree of nodes addressed by unique string keys, in creation order: the model behind the
// CogExplorer and the CogRef trees. The widgets only mirror it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cog {

class KeyedTree {
public:
    struct Node {
        std::string key;
        std::string text;
        std::string tag;
        std::string parentKey; // empty for a top-level node
        bool hasParent = false;
        bool expanded = false;
    };

    enum class AddResult { Added, DuplicateKey, NoSuchParent };

    // Adds a node at the top level (parent empty) or as the last child of the node keyed parent.
    // Keys compare exactly: "a" and "A" are different keys.
    AddResult add(std::optional<std::string_view> parent, std::string key, std::string text,
                  std::string tag = {});

    // Removes the node and its whole subtree; later nodes move down in index. False when the key
    // is not in the tree.
    bool remove(std::string_view key);
    void clear();

    std::size_t count() const { return nodes_.size(); }
    bool empty() const { return nodes_.empty(); }
    bool contains(std::string_view key) const { return byKey_.contains(std::string(key)); }

    // 1-based index in creation order; 0 when the key is not in the tree.
    std::size_t indexOf(std::string_view key) const;
    const Node& at(std::size_t index) const { return nodes_.at(index - 1); } // 1-based
    Node& at(std::size_t index) { return nodes_.at(index - 1); }
    const Node* find(std::string_view key) const;
    Node* find(std::string_view key);

    // A node's children (or, for no key, the top-level nodes) in creation order, as 1-based
    // indexes; kept as the nodes are added, so asking costs nothing but the answer.
    std::size_t childCount(std::string_view key) const;
    std::vector<std::size_t> childrenOf(std::optional<std::string_view> key) const;

    const std::vector<Node>& nodes() const { return nodes_; }

private:
    void reindex();

    // The 0-based slots of the children of no key (top level), or of the node keyed key.
    const std::vector<std::size_t>* childSlots(std::optional<std::string_view> key) const;

    std::vector<Node> nodes_;
    std::unordered_map<std::string, std::size_t> byKey_; // key -> 0-based slot in nodes_
    std::vector<std::vector<std::size_t>> children_;     // slot -> its children's slots
    std::vector<std::size_t> topLevel_;                  // the slots of the top-level nodes
};

} // namespace cog
