// Brace matching, word search and the replace series on any text, word and replacement.
#include "editor/findreplace.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(findreplace) {
    const bool all = in.flag();
    const bool edges = in.flag();
    const long ipos = in.number(600) - 2;
    const long caret = in.number(600) - 2;
    const std::string_view word = in.piece();
    const std::string_view replacement = in.piece();
    const std::string_view text = in.rest();
    const auto size = static_cast<long>(text.size());

    const editor::Selection brace = editor::matchBrace(text, caret);
    fuzzing::require(brace.length >= 0 && brace.start >= 0, "negative selection");
    if (brace.length > 1)
        fuzzing::require(text[static_cast<std::size_t>(brace.start + brace.length - 1)] == '}',
                         "a matched brace selection that does not end on }");

    const editor::FindResult found = editor::findWord(text, ipos, word);
    if (found.found)
        fuzzing::require(found.found + static_cast<long>(word.size()) - 1 <= size, "match past the end");

    const editor::ReplaceResult r = editor::replaceSeries(text, ipos, word, replacement, all, edges);
    fuzzing::require(fuzzing::inside(r.edit, text), "edit outside the text");
    const std::string after = editor::applyEdit(text, r.edit);
    const long growth = static_cast<long>(replacement.size()) - static_cast<long>(word.size());
    fuzzing::require(static_cast<long>(after.size()) == size + r.replaced * growth, "size does not add up");
    if (!all) fuzzing::require(r.replaced <= 1, "Replace changed more than one occurrence");
}
