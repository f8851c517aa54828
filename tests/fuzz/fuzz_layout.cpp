// The layout rules on any text: search in both modes, markers, the symbols body, names,
// message bodies and the whole-word test (the search is compared with a plain one in
// tst_differential).
#include "cog/layout.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(layout) {
    const auto mode = in.flag() ? cog::Mode::Text : cog::Mode::Exact;
    const long start = in.number(300) - 2;
    const std::size_t n = in.byte() % 12;
    const std::string_view needle = in.piece();
    const std::string_view text = in.rest();

    const cog::Pos at = cog::find(start, text, needle, mode);
    if (at > 0) {
        fuzzing::require(at >= std::max(start, 1L), "found before the start");
        const std::string_view hit = cog::mid(text, at, static_cast<cog::Pos>(needle.size()));
        fuzzing::require(mode == cog::Mode::Exact ? hit == needle : cog::equalText(hit, needle),
                         "found something else than the needle");
    }
    const cog::Markers m = cog::findMarkers(text);
    fuzzing::require(m.secondEnd == 0 || m.secondEnd > m.end, "second end before the end");
    if (const auto body = cog::symbolsBody(text))
        fuzzing::require(body->size() <= text.size(), "body too long");

    const std::string name = cog::GetSymbolName(needle, n);
    fuzzing::require(name.size() <= needle.size(), "name longer than its line");
    const std::string bare = cog::StripDefaultValue(name);
    fuzzing::require(bare.find('=') == std::string::npos, "bare name keeps a default value");

    const cog::Pos label = cog::find(1, text, needle);
    (void)cog::messageBody(text, needle, label);
    (void)cog::isWholeWord(text, at, needle.size());
    (void)cog::declarationLine(needle, name, bare, n & 1, needle);
}
