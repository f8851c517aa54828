// The reference file reader and the lookups of the reference tree on any file.
#include "reference/cogref.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(cogref) {
    const std::string_view word = in.piece();
    const reference::CogRef ref = reference::readCogRef(in.rest());
    const cog::KeyedTree& tree = ref.tree;
    for (std::size_t i = 1; i <= tree.count(); ++i) {
        const auto& node = tree.at(i);
        fuzzing::require(tree.indexOf(node.key) == i, "a node's key does not lead back to it");
        const reference::TagParts parts = reference::splitTag(node.tag);
        fuzzing::require(parts.callText.size() <= node.tag.size(), "call text longer than its tag");
        (void)reference::isGroupTag(node.tag);
    }
    const std::size_t hit = reference::findNode(tree, word, 1);
    fuzzing::require(hit <= tree.count(), "found node outside the tree");
    if (hit) fuzzing::require(reference::findMatches(tree.at(hit), word), "found node does not match");
    const std::size_t entry = reference::lookUpEntry(tree, word);
    fuzzing::require(entry <= tree.count(), "entry outside the tree");
}
