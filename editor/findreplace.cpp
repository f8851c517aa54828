#include "editor/findreplace.h"

#include <algorithm>
#include <cstring>

namespace editor {

namespace {

bool equalFolded(const char* a, std::string_view b) {
    for (std::size_t k = 0; k < b.size(); ++k)
        if (cog::foldCase(static_cast<unsigned char>(a[k])) !=
            cog::foldCase(static_cast<unsigned char>(b[k])))
            return false;
    return true;
}

std::size_t sz(Pos p) {
    return static_cast<std::size_t>(p);
}

} // namespace

std::string applyEdit(std::string_view text, const TextEdit& edit) {
    std::string out(text.substr(0, sz(edit.start)));
    out += edit.inserted;
    out += text.substr(sz(edit.start + edit.removed));
    return out;
}

TextEdit composeEdits(std::string_view text, const TextEdit& first, const TextEdit& second) {
    if (first.isEmpty()) return second;
    if (second.isEmpty()) return first;
    const std::string middle = applyEdit(text, first);
    const Pos firstEnd = first.start + static_cast<Pos>(first.inserted.size()); // in the middle text
    const Pos start = std::min(first.start, second.start);
    const Pos endMiddle = std::max(firstEnd, second.start + second.removed);
    TextEdit e;
    e.start = start;
    e.removed = endMiddle - firstEnd + first.start + first.removed - start;
    const std::string last = applyEdit(middle, second);
    const Pos growth = static_cast<Pos>(second.inserted.size()) - second.removed;
    e.inserted = last.substr(sz(start), sz(endMiddle + growth - start));
    return e;
}

// ---------------------------------------------------------------------------------------------

ForwardFinder::ForwardFinder(std::string_view hay, std::string_view needle) : hay_(hay), needle_(needle) {
    if (needle.empty()) return;
    const auto f = static_cast<unsigned char>(needle[0]);
    first_[0] = first_[1] = f;
    for (int c = 0; c < 256; ++c)
        if (c != f && cog::foldCase(static_cast<unsigned char>(c)) == cog::foldCase(f))
            first_[1] = static_cast<unsigned char>(c);
}

std::size_t ForwardFinder::nextByte(int variant, std::size_t from) {
    // A cached place at or after `from`, found by a scan that began no later than `from`, is still
    // the next one; so is "none".
    if (lastFrom_[variant] != npos && lastFrom_[variant] <= from &&
        (cached_[variant] == npos || cached_[variant] >= from))
        return cached_[variant];
    std::size_t found = npos;
    if (from < hay_.size()) {
        const void* p = std::memchr(hay_.data() + from, first_[variant], hay_.size() - from);
        if (p) found = static_cast<std::size_t>(static_cast<const char*>(p) - hay_.data());
    }
    lastFrom_[variant] = from;
    cached_[variant] = found;
    return found;
}

std::size_t ForwardFinder::next(std::size_t from) {
    if (needle_.empty() || needle_.size() > hay_.size()) return npos;
    const std::size_t last = hay_.size() - needle_.size(); // last place an occurrence can begin
    const bool twoCases = first_[0] != first_[1];
    while (from <= last) {
        const std::size_t a = nextByte(0, from);
        const std::size_t b = twoCases ? nextByte(1, from) : npos;
        const std::size_t c = std::min(a, b);
        if (c == npos || c > last) return npos;
        if (equalFolded(hay_.data() + c + 1, needle_.substr(1))) return c;
        from = c + 1;
    }
    return npos;
}

// ---------------------------------------------------------------------------------------------

Selection matchBrace(std::string_view text, Pos caret) {
    const auto n = static_cast<Pos>(text.size());
    if (caret < 0) caret = 0;
    if (caret >= n) return {caret, 0};
    if (text[sz(caret)] != '{') return {caret, 1};
    // The k-th "{" after the brace is paired with the k-th "}" after it, for k = 1, 2, ... until a
    // "}" comes first or either kind runs out; each search goes on from the previous one.
    auto next = [&](Pos from, char c) -> Pos { // 1-based, searching from the 1-based position from
        if (from > n) return 0;
        const void* p = std::memchr(text.data() + from - 1, c, sz(n - from + 1));
        return p ? static_cast<Pos>(static_cast<const char*>(p) - text.data()) + 1 : 0;
    };
    Pos o = caret + 1;
    Pos c = caret + 1;
    do {
        o = next(o + 1, '{');
        c = next(c + 1, '}');
    } while (!(o > c || o == 0 || c == 0));
    if (c != 0) return {caret, c - caret};
    return {caret, 0};
}

FindResult findWord(std::string_view text, Pos ipos, std::string_view word) {
    FindResult result;
    if (word.empty()) return result;
    result.found = cog::find(ipos, text, word);
    if (result.found == 0) return result;
    result.ipos = result.found + 1;
    result.selection = {result.found - 1, static_cast<Pos>(word.size())};
    return result;
}

bool replacementRecurs(std::string_view word, std::string_view replacement, bool checkEdges) {
    if (word.empty() || replacement.size() <= word.size()) return false;
    for (std::size_t k = 1; k + word.size() <= replacement.size(); ++k) {
        if (!equalFolded(replacement.data() + k, word)) continue;
        if (!checkEdges) return true;
        const std::size_t after = k + word.size();
        if (cog::isBlank(replacement[k - 1]) &&
            (after == replacement.size() || cog::isBlank(replacement[after])))
            return true;
    }
    return false;
}

namespace {

// The text during a replace series, without copying the untouched parts: the original bytes
// [0, base), then `out` (the changed region so far), then the original bytes from `tail` on.
class SeriesText {
public:
    explicit SeriesText(std::string_view original) : orig_(original) {}

    Pos size() const { return base_ + outSize() + (origSize() - tail_); }
    Pos outEnd() const { return base_ + outSize(); } // where the untouched tail begins
    char at(Pos v) const {
        if (v < base_) return orig_[sz(v)];
        if (v < outEnd()) return out_[sz(v - base_)];
        return orig_[sz(tail_ + v - outEnd())];
    }
    bool matchesAt(Pos v, std::string_view word) const {
        if (v + static_cast<Pos>(word.size()) > size()) return false;
        for (std::size_t k = 0; k < word.size(); ++k)
            if (cog::foldCase(static_cast<unsigned char>(at(v + static_cast<Pos>(k)))) !=
                cog::foldCase(static_cast<unsigned char>(word[k])))
                return false;
        return true;
    }
    // The original offset of position v, which lies in the tail.
    Pos tailOffset(Pos v) const { return tail_ + v - outEnd(); }
    Pos virtualOfTail(Pos offset) const { return outEnd() + offset - tail_; }

    // Replaces the w bytes at position v (which is not before base) with r.
    void replace(Pos v, Pos w, std::string_view r) {
        if (!changed_) {
            // Nothing changed so far: the changed region starts here.
            base_ = v;
            tail_ = v;
            changed_ = true;
            out_.reserve(orig_.size() - sz(v) + r.size());
        }
        if (v >= outEnd()) {
            const Pos to = tailOffset(v);
            out_.append(orig_.substr(sz(tail_), sz(to - tail_)));
            tail_ = to;
        }
        const Pos ob = v - base_;
        if (ob + w <= outSize()) {
            out_.replace(sz(ob), sz(w), r);
        } else {
            tail_ += ob + w - outSize();
            out_.resize(sz(ob));
            out_ += r;
        }
        editEnd_ = tail_;
        editOutSize_ = outSize();
    }

    // The one edit that the series made; the text is given up to it.
    TextEdit takeEdit() {
        if (!changed_) return {};
        out_.resize(sz(editOutSize_));
        return {base_, editEnd_ - base_, std::move(out_)};
    }

private:
    Pos outSize() const { return static_cast<Pos>(out_.size()); }
    Pos origSize() const { return static_cast<Pos>(orig_.size()); }

    std::string_view orig_;
    std::string out_;
    Pos base_ = 0;
    Pos tail_ = 0;
    bool changed_ = false;
    Pos editEnd_ = 0;
    Pos editOutSize_ = 0;
};

} // namespace

ReplaceResult replaceSeries(std::string_view text, Pos ipos, std::string_view word,
                            std::string_view replacement, bool all, bool checkEdges) {
    ReplaceResult result;
    result.ipos = 0;
    if (word.empty()) return result;
    const auto w = static_cast<Pos>(word.size());
    const auto rLen = static_cast<Pos>(replacement.size());
    const bool bounded = all && replacementRecurs(word, replacement, checkEdges);

    SeriesText t(text);
    ForwardFinder finder(text, word);
    Pos from = std::max<Pos>(ipos, 1) - 1; // 0-based position of the next search
    for (;;) {
        // The next occurrence at or after `from`: first among the changed bytes still ahead (at most
        // the end of the last replacement), then in the untouched tail.
        Pos v = -1;
        for (Pos p = from; p < t.outEnd(); ++p)
            if (t.matchesAt(p, word)) {
                v = p;
                break;
            }
        if (v < 0) {
            const Pos start = std::max(from, t.outEnd());
            if (start < t.size()) {
                const std::size_t s = finder.next(sz(t.tailOffset(start)));
                if (s != ForwardFinder::npos) v = t.virtualOfTail(static_cast<Pos>(s));
            }
        }
        if (v < 0) {
            result.ipos = 0;
            break;
        }
        if (checkEdges && v == 0) {
            result.ipos = 1;
            break;
        }
        bool replaceIt = true;
        if (checkEdges)
            replaceIt = cog::isBlank(t.at(v - 1)) && v + w < t.size() && cog::isBlank(t.at(v + w));
        if (replaceIt) {
            t.replace(v, w, replacement);
            ++result.replaced;
            result.selection = Selection{v + rLen + (checkEdges ? 1 : 0), 0};
            // A series that would never end goes on after the inserted text instead of inside it.
            from = bounded ? t.outEnd() : v + 1;
        } else {
            result.selection = Selection{v - 1, std::min(w + 2, t.size() - (v - 1))};
            from = v + 1;
        }
        result.ipos = v + 2;
        if (!all) break;
    }
    result.edit = t.takeEdit();
    result.bounded = bounded && result.replaced > 0;
    return result;
}

} // namespace editor
