// COG colouring as the editor keeps it: the whole text styled once, then edits, each followed or
// not by a restyle of a range that starts at the line of the earliest byte edited since the last
// one (the editor asks again for the line of an edit even at the very end of the text) and stops
// early where the style tracker says the stored styles are still right. The styles the editor
// then holds are those of styling the edited text from scratch.
#include "editor/coglexer.h"
#include "tests/fuzz/fuzztarget.h"

#include <string>
#include <vector>

namespace {

// The start of the line holding position; a line ends after a LF, or after a CR that no LF follows.
std::size_t lineStartOf(std::string_view text, std::size_t position) {
    for (std::size_t i = std::min(position, text.size()); i > 0; --i)
        if (text[i - 1] == '\n' || (text[i - 1] == '\r' && (i == text.size() || text[i] != '\n'))) return i;
    return 0;
}

} // namespace

TESSARY_FUZZ_TARGET(colouring) {
    editor::CogWords words;
    std::vector<std::string> verbs;
    for (std::string_view list = in.piece(); !list.empty();) {
        const auto blank = list.find(' ');
        verbs.emplace_back(list.substr(0, blank));
        list.remove_prefix(blank == std::string_view::npos ? list.size() : blank + 1);
    }
    words.setVerbs(verbs);
    std::string text(in.piece());
    std::vector<unsigned char> styles(text.size());
    editor::styleCogText(text, words, styles.data());
    editor::StyleTracker tracker;
    tracker.styled(0, static_cast<std::int64_t>(text.size()));
    std::size_t endStyled = text.size(); // the editor's own mark: bytes before it are styled

    auto restyle = [&](std::size_t wanted) { // as the editor's lexer does when asked up to wanted
        const std::size_t start = lineStartOf(text, endStyled);
        const std::size_t last = lineStartOf(text, wanted - 1); // whole lines: up to the end of its line
        const std::size_t stop = last + editor::lineLength(std::string_view(text).substr(last));
        std::size_t at = start;
        while (at < stop) {
            const std::size_t length = editor::lineLength(std::string_view(text).substr(at));
            editor::styleCogLine(std::string_view(text).substr(at, length), editor::LineState::Normal, words,
                                 styles.data() + at);
            at += length;
            const auto pos = static_cast<std::int64_t>(at);
            if (at < stop && tracker.canStopAt(pos) && tracker.cleanEnd() >= static_cast<std::int64_t>(stop))
                break;
        }
        at = std::max(at, stop);
        tracker.styled(static_cast<std::int64_t>(start), static_cast<std::int64_t>(at));
        endStyled = std::max(endStyled, at);
    };

    for (int edits = 0; edits < 64 && !in.empty(); ++edits) {
        const auto pos = static_cast<std::size_t>(in.number(static_cast<long>(text.size()) + 1));
        const auto del = static_cast<std::size_t>(in.number(static_cast<long>(text.size() - pos) + 1));
        const std::string_view ins = in.piece();
        text.replace(pos, del, ins);
        styles.erase(styles.begin() + static_cast<long>(pos), styles.begin() + static_cast<long>(pos + del));
        styles.insert(styles.begin() + static_cast<long>(pos), ins.size(), 0xEE); // not a style
        if (del > 0) tracker.deleted(static_cast<std::int64_t>(pos), static_cast<std::int64_t>(del));
        if (!ins.empty())
            tracker.inserted(static_cast<std::int64_t>(pos), static_cast<std::int64_t>(ins.size()));
        endStyled = std::min(endStyled, pos);
        if (in.flag()) { // the editor shows the lines up to some place and styles them
            const std::size_t wanted =
                static_cast<std::size_t>(in.number(static_cast<long>(text.size()) + 1));
            if (wanted > 0 && wanted >= endStyled) restyle(wanted);
        }
    }
    if (!text.empty()) restyle(text.size()); // the editor shows it all
    std::vector<unsigned char> fresh(text.size());
    editor::styleCogText(text, words, fresh.data());
    fuzzing::require(styles == fresh, "kept styles differ from styling the text afresh");
}
