// The incremental marker tracker, through any series of edits, against a search of the whole text.
#include "cog/layout.h"
#include "editor/firstoccurrence.h"
#include "tests/fuzz/fuzztarget.h"

#include <string>

TESSARY_FUZZ_TARGET(firstoccurrence) {
    static const char* const needles[] = {"\nsymbols", "\nend", "\ncode", "\r\n", "{"};
    const std::string_view needle = needles[in.byte() % 5];
    std::string text(in.piece());
    cog::Pos tracked = cog::find(1, text, needle);
    while (!in.empty()) {
        const auto pos = static_cast<cog::Pos>(in.number(static_cast<long>(text.size()) + 1));
        const auto del = static_cast<cog::Pos>(in.number(static_cast<long>(text.size()) - pos + 1));
        const std::string_view ins = in.piece();
        text.replace(static_cast<std::size_t>(pos), static_cast<std::size_t>(del), ins);
        tracked = editor::updateFirstOccurrence(
            tracked, needle, static_cast<cog::Pos>(text.size()),
            {pos, del, static_cast<cog::Pos>(ins.size())}, [&](cog::Pos s, cog::Pos len) {
                fuzzing::require(s >= 0 && len >= 0 && s + len <= static_cast<cog::Pos>(text.size()),
                                 "read outside the text");
                return std::string_view(text).substr(static_cast<std::size_t>(s),
                                                     static_cast<std::size_t>(len));
            });
        fuzzing::require(tracked == cog::find(1, text, needle), "tracked marker differs from a full search");
    }
}
