// Renaming and deleting explorer nodes on any text, for every node of the text's tree.
#include "cog/explorer.h"
#include "cog/renamedelete.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(renamedelete) {
    const std::size_t pick = in.byte();
    const std::string_view newLabel = in.piece();
    const std::string_view text = in.rest();
    cog::ExplorerResult r = cog::buildExplorer(text, "Cog 1", cog::symbolTypes());
    cog::KeyedTree& tree = r.tree;
    if (tree.empty()) return;
    const std::size_t index = 1 + pick % tree.count();
    const cog::KeyedTree::Node node = tree.at(index);
    const cog::RenameResult rn = cog::renameNode(text, tree, node.key, node.text, newLabel);
    fuzzing::require(fuzzing::inside(rn.edit, text), "rename edits outside the text");
    (void)editor::applyEdit(text, rn.edit);
    (void)cog::usedInCode(text, cog::StripDefaultValue(node.text));
    const cog::DeleteResult d = cog::deleteNode(text, tree, node.key);
    fuzzing::require(fuzzing::inside(d.edit, text), "delete edits outside the text");
    const std::string after = editor::applyEdit(text, d.edit);
    if (d.outcome == cog::DeleteResult::Outcome::Deleted)
        fuzzing::require(d.caret >= 0 && d.caret <= static_cast<long>(after.size()),
                         "caret outside the text");
    cog::applyDelete(tree, d);
    if (!d.removeKey.empty()) fuzzing::require(!tree.contains(d.removeKey), "the node stays in the tree");
}
