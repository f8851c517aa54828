// The colouring rules of COG source: which style each byte of a text gets, line by line, and the
// bookkeeping that lets an editor restyle only the lines an edit touched.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace editor {

enum class CogStyle : unsigned char {
    Default = 0,
    Comment, // "#" or "//" to the end of the line
    Section, // symbols, code, end
    Type,    // the symbol-type keywords
    Flow,    // if, else, while, do, for, return, call, stop
    Verb,    // a verb name of the loaded reference
    Label,   // "name:" starting a line
    String,  // "..." up to the closing quote or the line end
    Number,  // 12, 1.5, 0x1F
};
inline constexpr int cogStyleCount = 9;

// What a line hands on to the next. Comments and strings end with their line, so every line of
// COG starts in the normal state and any line start is a safe place to restart styling.
enum class LineState : int { Normal = 0 };

// The keyword and verb names, compared without regard to letter case.
class CogWords {
public:
    CogWords();
    // Replaces the verb names; a keyword keeps its own style when a verb has the same name.
    void setVerbs(const std::vector<std::string>& verbs);
    // The style of a whole word: Section, Type, Flow, Verb, or Default for any other name.
    CogStyle classify(std::string_view word) const;

private:
    std::unordered_map<std::string, CogStyle> words_; // lower case
};

// Styles one line: `line` starts at a line start and runs up to and including its LF (or to the
// end of the text). Writes line.size() style bytes to out and returns the state at its end.
LineState styleCogLine(std::string_view line, LineState start, const CogWords& words, unsigned char* out);

// Styles a text that starts at a line start: one style byte per input byte.
void styleCogText(std::string_view text, const CogWords& words, unsigned char* out);

// Length of the line starting at text[0]: up to and including its LF, or the whole rest.
std::size_t lineLength(std::string_view text);

// Which stored styles are still right after edits. Styles are right in [0, cleanEnd) except in
// the changed range; once a restyle that began at or before the changed range has passed its
// end, the lines after it still carry their right styles and styling may stop there.
class StyleTracker {
public:
    void inserted(std::int64_t position, std::int64_t length);
    void deleted(std::int64_t position, std::int64_t length);
    // Forget every stored style (new words, new text).
    void reset();
    // A restyle that began at `start` (a line start) has written right styles up to `position`.
    void styled(std::int64_t start, std::int64_t position);
    // True when a restyle that has reached the line start `position` with the state the next line
    // had before may stop: the styles from there to cleanEnd() are still right.
    bool canStopAt(std::int64_t position) const;
    std::int64_t cleanEnd() const { return cleanEnd_; }
    bool hasChange() const { return changeStart_ >= 0; }

private:
    std::int64_t cleanEnd_ = 0;
    std::int64_t changeStart_ = -1, changeEnd_ = -1; // the changed range; -1 when none
};

} // namespace editor
