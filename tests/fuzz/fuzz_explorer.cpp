// The CogExplorer build on any text: a tree whose every node hangs under an existing parent, and
// a stop that names the key it refused.
#include "cog/explorer.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(explorer) {
    const std::string_view caption = in.piece();
    const std::string_view text = in.rest();
    const cog::ExplorerResult r = cog::buildExplorer(text, caption, cog::symbolTypes());
    const cog::KeyedTree& tree = r.tree;
    for (const auto& node : tree.nodes()) {
        fuzzing::require(!node.hasParent || tree.contains(node.parentKey), "a node without its parent");
        fuzzing::require(node.key.size() <= text.size() || node.key == "root" || node.key == "symbols" ||
                             node.key == "code",
                         "a key longer than the text");
    }
    if (r.stop == cog::ExplorerResult::Stop::DuplicateKey) {
        fuzzing::require(tree.contains(r.offendingKey), "the refused key is not in the tree");
        fuzzing::require(r.selStart >= 0 && r.selStart + r.selLength <= static_cast<long>(text.size()),
                         "the offending line lies outside the text");
    }
    if (r.complete())
        fuzzing::require(!tree.empty() && tree.at(1).key == "root", "a complete tree without root");
}
