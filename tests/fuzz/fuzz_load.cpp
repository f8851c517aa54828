// Opening a COG file, as far as the rules go: the new window's text (default.cog) is replaced by
// the file's bytes, which arrive in blocks, and the change handler keeps the section markers
// from those edits alone; the editor then colours the text in chunks of whole lines, and the
// explorer tree and the syntax check read it. Markers and colours agree with reading the whole
// text at once.
#include "cog/explorer.h"
#include "cog/syntaxcheck.h"
#include "editor/coglexer.h"
#include "editor/firstoccurrence.h"
#include "tests/fuzz/fuzztarget.h"

#include <string>
#include <vector>

TESSARY_FUZZ_TARGET(load) {
    const auto block = static_cast<std::size_t>(1 + in.number(70000));
    const auto chunk = static_cast<std::size_t>(1 + in.number(70000));
    const std::string_view defaultText = in.piece();
    const std::string_view file = in.rest();

    std::string text(defaultText);
    cog::Pos symbols = cog::find(1, text, "\nsymbols"), end = cog::find(1, text, "\nend");
    auto edit = [&](const editor::Edit& e) {
        const editor::RangeReader read = [&](cog::Pos start, cog::Pos length) {
            fuzzing::require(start >= 0 && length >= 0 &&
                                 start + length <= static_cast<cog::Pos>(text.size()),
                             "read outside the text");
            return std::string_view(text).substr(static_cast<std::size_t>(start),
                                                 static_cast<std::size_t>(length));
        };
        const auto size = static_cast<cog::Pos>(text.size());
        symbols = editor::updateFirstOccurrence(symbols, "\nsymbols", size, e, read);
        end = editor::updateFirstOccurrence(end, "\nend", size, e, read);
    };
    const auto cleared = static_cast<cog::Pos>(text.size());
    text.clear();
    edit({0, cleared, 0});
    for (std::size_t at = 0; at < file.size(); at += block) {
        const std::string_view piece = file.substr(at, block);
        text += piece;
        edit({static_cast<cog::Pos>(at), 0, static_cast<cog::Pos>(piece.size())});
    }
    fuzzing::require(text == file, "the loaded text differs from the file");
    fuzzing::require(symbols == cog::find(1, file, "\nsymbols") && end == cog::find(1, file, "\nend"),
                     "markers kept through the load differ from a search of the file");

    const editor::CogWords words;
    std::vector<unsigned char> whole(file.size()), chunked(file.size());
    editor::styleCogText(file, words, whole.data());
    for (std::size_t at = 0; at < file.size();) { // chunks end at line ends, as the editor asks for them
        std::size_t stop = at;
        while (stop < file.size() && (stop == at || stop - at < chunk))
            stop += editor::lineLength(file.substr(stop));
        editor::styleCogText(file.substr(at, stop - at), words, chunked.data() + at);
        at = stop;
    }
    fuzzing::require(whole == chunked, "colours depend on where the editor's chunks begin");

    (void)cog::buildExplorer(file, "loaded.cog", cog::symbolTypes());
    for (const cog::Finding& f : cog::checkCog(file, 0))
        fuzzing::require(f.caret >= 0 && f.caret <= static_cast<long>(file.size()),
                         "a finding outside the text");
}
