#include "editor/typingaids.h"

#include "cog/layout.h"

#include <algorithm>

namespace editor {

namespace {

bool isDelimiter(char c) {
    return c == '\n' || c == '\r' || c == ' ' || c == '\t';
}

// The 1-based position of the first CR at or after lSpace; one past the text when none.
long lineEnd(std::string_view text, long lSpace) {
    const long size = static_cast<long>(text.size());
    const long from = std::max(lSpace, 1L);
    if (from > size) return size + 1;
    const std::size_t cr = text.find('\r', static_cast<std::size_t>(from - 1));
    return cr == std::string_view::npos ? size + 1 : static_cast<long>(cr) + 1;
}

} // namespace

Range selectWordRange(std::string_view text, long caret) {
    caret = std::min(caret, static_cast<long>(text.size()));
    if (caret <= 0) return {0, 0};
    long j = caret - 1;
    while (j > 0 && !isDelimiter(text[static_cast<std::size_t>(j)])) --j;
    if (j == caret - 1) return {caret - 1, 1};
    if (j == 0) return {0, caret}; // the byte at 0 is included even when it is a delimiter
    return {j + 1, caret - j - 1};
}

bool insideSymbols(long lsym, long lsymend, long caret) {
    return lsym < caret && caret < lsymend;
}

bool opensMessagePopup(std::string_view word) {
    return cog::containsText(word, "message");
}

std::string popupPrefix(std::string_view text, long lSpace) {
    const long e = lineEnd(text, lSpace);
    std::string_view typed = cog::mid(text, lSpace, e - lSpace);
    while (!typed.empty() && typed.front() == ' ') typed.remove_prefix(1);
    while (!typed.empty() && typed.back() == ' ') typed.remove_suffix(1);
    return std::string(typed);
}

int matchPrefix(const std::vector<std::string>& items, std::string_view prefix) {
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].size() >= prefix.size() &&
            cog::equalText(std::string_view(items[i]).substr(0, prefix.size()), prefix))
            return static_cast<int>(i);
    return -1;
}

Range insertRange(std::string_view text, long lSpace) {
    const long e = lineEnd(text, lSpace);
    const long start = std::min(std::max(lSpace, 0L), static_cast<long>(text.size()));
    return {start, std::max(e - lSpace - 1, 0L)};
}

OpenParen openParenTyped(HelpLine& h) {
    if (!h.shown) return OpenParen::LookUp;
    ++h.parens;
    return OpenParen::Counted;
}

void closeParenTyped(HelpLine& h) {
    if (h.parens == 0)
        h.shown = false;
    else if (h.shown)
        --h.parens;
}

void openParenDeleted(HelpLine& h) {
    if (h.parens == 0) h.shown = false;
    if (h.shown && h.parens > 0) --h.parens;
}

void closeParenDeleted(HelpLine& h) {
    if (h.shown) ++h.parens;
    if (h.parens == 0) h.shown = true;
}

Backspace classifyBackspace(bool popupShown, long selLength, long caret, char before) {
    if (popupShown) return Backspace::ClosePopup;
    if (selLength > 0) return Backspace::DeleteSelection;
    if (caret <= 0) return Backspace::Nothing;
    if (before == '\n') return Backspace::JoinLines;
    return Backspace::DeleteChar;
}

} // namespace editor
