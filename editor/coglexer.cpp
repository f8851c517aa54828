#include "editor/coglexer.h"

#include <algorithm>
#include <cstring>

namespace editor {

namespace {

bool isWordStart(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool isWordChar(unsigned char c) {
    return isWordStart(c) || (c >= '0' && c <= '9');
}
bool isDigit(unsigned char c) {
    return c >= '0' && c <= '9';
}
bool isBlank(unsigned char c) {
    return c == ' ' || c == '\t';
}
char lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

void fill(unsigned char* out, std::size_t from, std::size_t to, CogStyle style) {
    std::memset(out + from, static_cast<unsigned char>(style), to - from);
}

} // namespace

CogWords::CogWords() {
    for (const char* w : {"symbols", "code", "end"}) words_[w] = CogStyle::Section;
    for (const char* w : {"ai", "cog", "flex", "int", "keyframe", "material", "message", "model", "sector",
                          "sound", "surface", "template", "thing", "vector"})
        words_[w] = CogStyle::Type;
    for (const char* w : {"if", "else", "while", "do", "for", "return", "call", "stop"})
        words_[w] = CogStyle::Flow;
}

void CogWords::setVerbs(const std::vector<std::string>& verbs) {
    std::erase_if(words_, [](const auto& item) { return item.second == CogStyle::Verb; });
    for (const std::string& verb : verbs) {
        std::string key(verb);
        std::transform(key.begin(), key.end(), key.begin(), lower);
        words_.emplace(std::move(key), CogStyle::Verb); // keeps a keyword of the same name
    }
}

CogStyle CogWords::classify(std::string_view word) const {
    thread_local std::string key;
    key.assign(word);
    std::transform(key.begin(), key.end(), key.begin(), lower);
    const auto found = words_.find(key);
    return found == words_.end() ? CogStyle::Default : found->second;
}

std::size_t lineLength(std::string_view text) {
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) return text.size();
    return text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n' ? end + 2 : end + 1;
}

LineState styleCogLine(std::string_view line, LineState, const CogWords& words, unsigned char* out) {
    const std::size_t n = line.size();
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(line[i]); };
    std::size_t i = 0;
    while (i < n && isBlank(at(i))) ++i;
    fill(out, 0, i, CogStyle::Default);

    // A label: the line's first word followed directly by a colon.
    if (i < n && isWordStart(at(i))) {
        std::size_t j = i;
        while (j < n && isWordChar(at(j))) ++j;
        if (j < n && line[j] == ':') {
            fill(out, i, j + 1, CogStyle::Label);
            i = j + 1;
        }
    }

    while (i < n) {
        const unsigned char c = at(i);
        if (c == '#' || (c == '/' && i + 1 < n && line[i + 1] == '/')) {
            std::size_t end = n;
            while (end > i && (line[end - 1] == '\n' || line[end - 1] == '\r')) --end;
            fill(out, i, end, CogStyle::Comment);
            fill(out, end, n, CogStyle::Default);
            return LineState::Normal;
        }
        if (c == '"') {
            std::size_t j = i + 1;
            while (j < n && line[j] != '"' && line[j] != '\r' && line[j] != '\n') ++j;
            if (j < n && line[j] == '"') ++j;
            fill(out, i, j, CogStyle::String);
            i = j;
        } else if (isWordStart(c)) {
            std::size_t j = i + 1;
            while (j < n && isWordChar(at(j))) ++j;
            fill(out, i, j, words.classify(line.substr(i, j - i)));
            i = j;
        } else if (isDigit(c) || (c == '.' && i + 1 < n && isDigit(at(i + 1)))) {
            std::size_t j = i + 1;
            while (j < n && (isWordChar(at(j)) || line[j] == '.')) ++j;
            fill(out, i, j, CogStyle::Number);
            i = j;
        } else {
            out[i++] = static_cast<unsigned char>(CogStyle::Default);
        }
    }
    return LineState::Normal;
}

void styleCogText(std::string_view text, const CogWords& words, unsigned char* out) {
    LineState state = LineState::Normal;
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t len = lineLength(text.substr(pos));
        state = styleCogLine(text.substr(pos, len), state, words, out + pos);
        pos += len;
    }
}

void StyleTracker::inserted(std::int64_t position, std::int64_t length) {
    if (position <= cleanEnd_) cleanEnd_ += length;
    if (changeStart_ < 0) {
        changeStart_ = position;
        changeEnd_ = position + length;
        return;
    }
    changeStart_ = std::min(changeStart_, position);
    if (position <= changeEnd_) changeEnd_ += length;
    changeEnd_ = std::max(changeEnd_, position + length);
}

void StyleTracker::deleted(std::int64_t position, std::int64_t length) {
    if (position < cleanEnd_) cleanEnd_ -= std::min(length, cleanEnd_ - position);
    if (changeStart_ < 0) {
        changeStart_ = changeEnd_ = position;
        return;
    }
    if (changeEnd_ > position) changeEnd_ = std::max(position, changeEnd_ - length);
    changeEnd_ = std::max(changeEnd_, position);
    changeStart_ = std::min(changeStart_, position);
}

void StyleTracker::reset() {
    cleanEnd_ = 0;
    changeStart_ = changeEnd_ = -1;
}

void StyleTracker::styled(std::int64_t start, std::int64_t position) {
    if (start <= cleanEnd_) cleanEnd_ = std::max(cleanEnd_, position);
    if (changeStart_ < 0 || start > changeStart_) return;
    // Styling that ends right at the change's end has not restyled the line that starts there,
    // whose stored styles may hang on what the change took away (a deletion that joined it to the
    // tail of a comment): the change shrinks to that line start, unless no stored style after it
    // counts as right.
    if (position > changeEnd_ || position >= cleanEnd_)
        changeStart_ = changeEnd_ = -1;
    else
        changeStart_ = std::max(changeStart_, position);
}

bool StyleTracker::canStopAt(std::int64_t position) const {
    return position < cleanEnd_ && (changeStart_ < 0 || position > changeEnd_);
}

} // namespace editor
