#include "editor/typingaids.h"

#include "cog/layout.h"

#include <algorithm>

namespace editor {

namespace {

bool isDelimiter(char c) {
    return c == '\n' || c == '\r' || c == ' ' || c == '\t';
}

// The part of the line from the space on, up to its carriage return.
std::string_view typedPart(std::string_view fromSpace) {
    return fromSpace.substr(0, fromSpace.find('\r'));
}

} // namespace

Range selectWordRange(std::string_view text, long caret) {
    return selectWordRangeIn(text, 0, caret);
}

Range selectWordRangeIn(std::string_view window, long windowStart, long caret) {
    caret = std::min(caret, windowStart + static_cast<long>(window.size()));
    if (caret <= 0) return {0, 0};
    if (caret <= windowStart) return {caret, 0}; // the window misses the byte before the caret
    auto at = [&](long i) { return window[static_cast<std::size_t>(i - windowStart)]; };
    long j = caret - 1;
    while (j > windowStart && !isDelimiter(at(j))) --j;
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

std::string popupPrefix(std::string_view fromSpace, std::optional<char> pending) {
    std::string_view typed = typedPart(fromSpace);
    while (!typed.empty() && typed.front() == ' ') typed.remove_prefix(1);
    while (!typed.empty() && typed.back() == ' ') typed.remove_suffix(1);
    std::string prefix(typed);
    if (pending) prefix += *pending;
    return prefix;
}

int matchPrefix(const std::vector<std::string>& items, std::string_view prefix) {
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].size() >= prefix.size() &&
            cog::equalText(std::string_view(items[i]).substr(0, prefix.size()), prefix))
            return static_cast<int>(i);
    return -1;
}

Range insertRange(std::string_view fromSpace, long lSpace) {
    // Everything after the space, the line break excluded.
    return {lSpace, std::max(static_cast<long>(typedPart(fromSpace).size()) - 1, 0L)};
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
