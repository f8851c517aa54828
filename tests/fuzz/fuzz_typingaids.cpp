// The typing-aid rules at any caret of any text, and the help line through any key sequence.
#include "editor/typingaids.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(typingaids) {
    const long caret = in.number(2000) - 2;
    const long lSpace = in.number(2000) - 2;
    std::string keys(in.piece());
    const std::string_view prefixWord = in.piece();
    const std::string_view text = in.rest();
    const auto size = static_cast<long>(text.size());

    const editor::Range word = editor::selectWordRange(text, caret);
    if (caret >= 0 && caret <= size) {
        fuzzing::require(word.start >= 0 && word.start + word.length <= caret, "word range past the caret");
        (void)editor::opensMessagePopup(
            text.substr(static_cast<std::size_t>(word.start), static_cast<std::size_t>(word.length)));
    }
    std::string prefix;
    if (lSpace >= 1 && lSpace <= size) {
        const std::string_view fromSpace = text.substr(static_cast<std::size_t>(lSpace - 1));
        prefix = editor::popupPrefix(fromSpace);
        fuzzing::require(prefix.size() <= fromSpace.size(), "prefix longer than the line");
        const editor::Range r = editor::insertRange(fromSpace, lSpace);
        fuzzing::require(r.start == lSpace && r.length >= 0 && r.start + r.length <= size,
                         "insert range outside");
    }
    const std::vector<std::string> items{"activated", "startup", "timer", "user0", std::string(prefixWord)};
    const int m = editor::matchPrefix(items, prefix);
    fuzzing::require(m >= -1 && m < static_cast<int>(items.size()), "match index outside the list");

    editor::HelpLine h;
    for (const char k : keys) {
        switch (static_cast<unsigned char>(k) % 4) {
        case 0:
            if (editor::openParenTyped(h) == editor::OpenParen::LookUp && (k & 4)) h = {true, 0};
            break;
        case 1:
            editor::closeParenTyped(h);
            break;
        case 2:
            editor::openParenDeleted(h);
            break;
        default:
            editor::closeParenDeleted(h);
            break;
        }
        (void)editor::classifyBackspace(k & 8, k & 16, caret, k);
    }
}
