#include "cog/renamedelete.h"

namespace cog {

namespace {

bool isMessageTag(std::string_view tag) {
    return equalText(tag, "message");
}
bool isParentTag(std::string_view tag) {
    return equalText(tag, "parent");
}

} // namespace

RenameResult renameLabel(std::string_view text, std::string_view oldLabel, std::string_view newLabel) {
    RenameResult result;
    if (oldLabel.empty() || newLabel.empty()) return result;
    const auto first = editor::replaceSeries(text, 1, oldLabel, newLabel, false, false);
    if (first.replaced == 0) {
        result.outcome = RenameResult::Outcome::NotInText;
        return result;
    }
    result.outcome = RenameResult::Outcome::Renamed;
    const std::string word = StripDefaultValue(oldLabel);
    const std::string replacement = StripDefaultValue(newLabel);
    const std::string once = editor::applyEdit(text, first.edit);
    // A new name that holds the old one free-standing would make the series replace inside what it
    // inserted, without end: it then starts after the new label.
    const Pos from = editor::replacementRecurs(word, replacement, true)
                         ? first.ipos - 1 + static_cast<Pos>(newLabel.size())
                         : first.ipos;
    const auto rest = editor::replaceSeries(once, from, word, replacement, true, true);
    result.edit = editor::composeEdits(text, first.edit, rest.edit);
    result.selection = rest.selection ? rest.selection : first.selection;
    // An empty bare name is never searched for, which leaves the search where the first pass did.
    result.search = SearchState{word.empty() ? first.ipos : rest.ipos, word, replacement};
    return result;
}

RenameResult renameNode(std::string_view text, const KeyedTree& tree, std::string_view key,
                        std::string_view oldLabel, std::string_view newLabel) {
    const KeyedTree::Node* node = tree.find(key);
    if (!node || !node->hasParent) return {};
    if (oldLabel == newLabel) { // nothing to change
        RenameResult same;
        same.outcome = RenameResult::Outcome::Renamed;
        return same;
    }
    return renameLabel(text, oldLabel, newLabel);
}

bool usedInCode(std::string_view text, std::string_view name) {
    if (name.empty()) return false;
    const Pos cm = codeMarker(text);
    editor::ForwardFinder finder(text, name);
    for (std::size_t q = finder.next(0); q != editor::ForwardFinder::npos; q = finder.next(q + 1)) {
        const auto at = static_cast<Pos>(q) + 1;
        if (at >= 2 && at > cm && isWholeWord(text, at, name.size())) return true;
    }
    return false;
}

DeleteResult deleteNode(std::string_view text, const KeyedTree& tree, std::string_view key) {
    DeleteResult result;
    const KeyedTree::Node* node = tree.find(key);
    if (!node) return result;
    if (!node->hasParent) {
        result.outcome = DeleteResult::Outcome::Root;
        return result;
    }
    const KeyedTree::Node* parent = tree.find(node->parentKey);
    const bool inMessage = parent && isMessageTag(parent->tag); // a comment node
    const std::string name = inMessage ? node->text : StripDefaultValue(node->text);
    if (!inMessage && !isParentTag(node->tag) && usedInCode(text, name)) {
        result.outcome = DeleteResult::Outcome::InUse;
        return result;
    }
    result.removeKey = parent && tree.childCount(parent->key) == 1 ? parent->key : node->key;
    const Pos at = find(1, text, node->key);
    if (at == 0) {
        result.outcome = DeleteResult::Outcome::KeyNotInText;
        return result;
    }
    result.outcome = DeleteResult::Outcome::Deleted;
    const auto size = static_cast<Pos>(text.size());
    const Pos length = static_cast<Pos>(node->key.size()) + (inMessage ? 0 : 1);
    result.edit = {at - 1, std::min(length, size - (at - 1)), {}};
    result.caret = at - 1;
    return result;
}

void applyDelete(KeyedTree& tree, const DeleteResult& result) {
    if (!result.removeKey.empty()) tree.remove(result.removeKey);
}

} // namespace cog
