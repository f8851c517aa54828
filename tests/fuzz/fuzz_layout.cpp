// The layout rules on any text: search in both modes, markers, the symbols body, names,
// message bodies and the whole-word test.
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
    if (!needle.empty() && text.size() <= 4096) { // no earlier occurrence was passed over
        for (cog::Pos p = std::max(start, 1L);
             p > 0 && (at == 0 || p < at) &&
             p + static_cast<cog::Pos>(needle.size()) - 1 <= static_cast<cog::Pos>(text.size());
             ++p) {
            const std::string_view s = cog::mid(text, p, static_cast<cog::Pos>(needle.size()));
            fuzzing::require(!(mode == cog::Mode::Exact ? s == needle : cog::equalText(s, needle)),
                             "an earlier occurrence was missed");
        }
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
