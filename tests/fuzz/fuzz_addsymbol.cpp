// Add Symbol on any text and fields: the line goes in whole, above the end line, the caret with it.
#include "cog/addsymbol.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(addsymbol) {
    cog::NewSymbol s;
    s.local = in.flag();
    const long caret = in.number(70000);
    s.keyword = std::string(in.piece());
    s.name = std::string(in.piece());
    s.defaultValue = std::string(in.piece());
    s.linkId = std::string(in.piece());
    const std::string_view text = in.rest();
    const cog::AddSymbolResult r = cog::addSymbol(text, caret, s);
    if (r.outcome != cog::AddSymbolResult::Outcome::Inserted) {
        fuzzing::require(r.edit.isEmpty(), "a refused Add changed the text");
        return;
    }
    const cog::Pos at = cog::insertionPoint(text);
    fuzzing::require(at >= 0 && r.edit.start == at && r.edit.removed == 0 && r.edit.inserted == r.line,
                     "the line does not go in at the insertion point");
    fuzzing::require(r.line.size() >= 2 && r.line.substr(r.line.size() - 2) == "\r\n",
                     "the line has no CR LF");
    (void)cog::explorerShowsWindow(s.name, s.linkId);
}
