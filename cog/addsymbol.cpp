#include "cog/addsymbol.h"

namespace cog {

Pos insertionPoint(std::string_view text) {
    const Pos p = find(1, text, "\nend", Mode::Exact);
    return p == 0 ? -1 : p; // the LF is at caret index p - 1, so the line after it starts at p
}

AddSymbolResult addSymbol(std::string_view text, Pos caret, const NewSymbol& symbol) {
    AddSymbolResult result;
    if (symbol.keyword.empty()) return result;
    if (symbol.name.empty()) {
        result.outcome = AddSymbolResult::Outcome::NoName;
        return result;
    }
    result.line =
        declarationLine(symbol.keyword, symbol.name, symbol.defaultValue, symbol.local, symbol.linkId);
    const Pos p = insertionPoint(text);
    if (p < 0) {
        result.outcome = AddSymbolResult::Outcome::NoEndLine;
        result.caret = caret;
        return result;
    }
    result.outcome = AddSymbolResult::Outcome::Inserted;
    result.edit = {p, 0, result.line};
    result.caret = caret < p ? caret : caret + static_cast<Pos>(result.line.size());
    return result;
}

bool explorerShowsWindow(std::string_view caption, std::string_view chosenText) {
    if (!caption.empty() && caption.back() == '*') return containsText(caption, chosenText);
    return equalText(caption, chosenText);
}

} // namespace cog
