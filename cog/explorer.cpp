#include "cog/explorer.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace cog {

namespace {

// Every text position at which needle occurs (text mode), in order, overlapping ones included,
// so that "the first occurrence at or after a position" is a lookup instead of a rescan.
class Occurrences {
public:
    Occurrences(std::string_view text, std::string_view needle) {
        for (Pos p = find(1, text, needle); p; p = find(p + 1, text, needle)) at_.push_back(p);
    }
    // The first occurrence beginning at or after from and ending at or before last; 0 when none.
    Pos next(Pos from, Pos last, Pos needleLength) const {
        const auto it = std::lower_bound(at_.begin(), at_.end(), from);
        if (it == at_.end() || *it + needleLength - 1 > last) return 0;
        return *it;
    }

private:
    std::vector<Pos> at_;
};

// The first text position of each label (text mode), 0 for a label that does not occur. Every
// label ends with ":", so every occurrence ends at a colon: one pass over the colons, comparing
// the folded bytes before each with the labels of each length, finds them all.
std::vector<Pos> firstOccurrences(std::string_view text, const std::vector<std::string>& labels) {
    std::vector<Pos> first(labels.size(), 0);
    // length -> folded label -> the indexes of the labels still looked for
    std::map<std::size_t, std::unordered_map<std::string, std::vector<std::size_t>>> wanted;
    std::size_t open = 0;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (labels[i].empty() || labels[i].back() != ':') continue; // not a label; never the case
        wanted[labels[i].size()][foldedText(labels[i])].push_back(i);
        ++open;
    }
    for (std::size_t colon = text.find(':'); open > 0 && colon != std::string_view::npos;
         colon = text.find(':', colon + 1)) {
        for (auto group = wanted.begin(); group != wanted.end();) {
            const std::size_t length = group->first;
            if (length > colon + 1) break; // the map is ordered by length
            const std::size_t start = colon + 1 - length;
            const auto hit = group->second.find(foldedText(text.substr(start, length)));
            if (hit != group->second.end()) {
                for (const std::size_t i : hit->second) first[i] = static_cast<Pos>(start) + 1;
                open -= hit->second.size();
                group->second.erase(hit);
            }
            group = group->second.empty() ? wanted.erase(group) : std::next(group);
        }
    }
    return first;
}

class Builder {
public:
    Builder(std::string_view text, std::string_view caption, const std::vector<std::string>& keywords)
        : text_(text), caption_(caption), keywords_(keywords) {}

    ExplorerResult run() {
        const Pos s = symbolsMarker(text_);
        const Pos e = endMarker(text_);
        if (s == 0)
            fail("no \"symbols\" line (it counts only at the start of a line after the first)");
        else if (e == 0)
            fail("no \"end\" line (it counts only at the start of a line)");
        else if (e < s) // the symbols body would have a negative length
            fail("the first \"end\" line comes before the \"symbols\" line", e);
        else if (scanSymbols(s, e))
            scanComments();
        return std::move(result_);
    }

private:
    // Records a stop for a reason other than a duplicate key, and where it arose (a caret index).
    bool fail(std::string why, Pos caret = -1) {
        result_.stop = ExplorerResult::Stop::Failure;
        result_.failure = std::move(why);
        result_.selStart = caret;
        result_.selLength = 0;
        return false;
    }

    // Adds a node; false (with the stop recorded) when the tree refuses it.
    bool add(std::string_view parent, std::string key, std::string text, std::string tag) {
        const std::string refused = key;
        switch (result_.tree.add(parent, std::move(key), std::move(text), std::move(tag))) {
        case KeyedTree::AddResult::Added:
            return true;
        case KeyedTree::AddResult::DuplicateKey:
            result_.stop = ExplorerResult::Stop::DuplicateKey;
            result_.offendingKey = refused;
            return false;
        case KeyedTree::AddResult::NoSuchParent:
            break;
        }
        result_.stop = ExplorerResult::Stop::Failure;
        return false;
    }

    void markOffender(std::string_view anchor, Pos offset, Pos textPos, Pos length) {
        result_.anchor = std::string(anchor);
        result_.anchorOffset = offset;
        result_.selStart = textPos - 1;
        result_.selLength = length;
    }

    bool scanSymbols(Pos s, Pos e) {
        const std::string_view body = mid(text_, s + 8, e - s);
        const Pos bodyStart = s + 8; // text position of the body's first byte
        KeyedTree& tree = result_.tree;
        tree.add(std::nullopt, "root", std::string(caption_), "parent");
        tree.at(1).expanded = true;
        tree.add("root", "symbols", "symbols", "parent");
        tree.add("root", "code", "code", "parent");

        for (const std::string& keyword : keywords_) {
            const std::string needle = LF + keyword;
            const bool isMessage = equalText(keyword, "message");
            bool groupAdded = false;
            Pos p = find(1, body, needle);
            Pos cr = find(p + 1, body, std::string_view(&CR, 1));
            while (p > 0) {
                if (cr == 0)
                    return fail("the declaration line has no CR inside the symbols section",
                                bodyStart + p - 1);
                const std::string line(mid(body, p + 1, cr - p));
                const Pos lineStart = bodyStart + p; // text position after the LF
                const Pos lineLength = cr - p - 1;   // without its CR
                if (isMessage) {
                    const std::string name = GetSymbolName(line, 7);
                    if (!add("code", name + ":", name, "message")) {
                        markOffender(keyword, p + 1, lineStart, lineLength);
                        return false;
                    }
                    messages_.push_back(name + ":");
                }
                if (!groupAdded) {
                    if (!add("symbols", keyword, keyword, "parent")) {
                        markOffender(keyword, p + 1, lineStart, lineLength);
                        return false;
                    }
                    groupAdded = true;
                }
                if (!add(keyword, line, GetSymbolName(line, keyword.size()), {})) {
                    markOffender(keyword, p + 1, lineStart, lineLength);
                    return false;
                }
                p = find(cr + 1, body, needle);
                cr = find(p + 1, body, std::string_view(&CR, 1));
            }
        }
        return true;
    }

    bool scanComments() {
        if (messages_.empty()) return true;
        const Occurrences returns(text_, "return;");
        const Occurrences slashes(text_, "//");
        const Occurrences crs(text_, std::string_view(&CR, 1));
        const std::vector<Pos> labelAt = firstOccurrences(text_, messages_);
        const auto size = static_cast<Pos>(text_.size());

        for (std::size_t m = 0; m < messages_.size(); ++m) {
            const std::string& label = messages_[m];
            const Pos p = labelAt[m];
            const Pos r = returns.next(p + 1, size, 7);
            if (r - p < 0) return fail("the label " + label + " has no \"return;\" after it", p - 1);
            // The message body is the text from first to last (text positions); a search inside
            // it is a lookup among the occurrences in the whole text that lie within it.
            const Pos first = p + static_cast<Pos>(label.size()) + 2;
            const Pos last = std::min(first + (r - p) - 1, size);
            auto inBody = [&](const Occurrences& o, Pos from, Pos length) -> Pos {
                if (first > last) return 0;
                const Pos at = o.next(first + from - 1, last, length);
                return at ? at - first + 1 : 0;
            };
            Pos k = inBody(slashes, 1, 2);
            for (;;) {
                const Pos e = inBody(crs, k + 1, 1);
                if (k == 0) break;
                if (e == 0)
                    return fail("the comment has no CR inside the handler of " + label, first + k - 2);
                const std::string comment(
                    text_.substr(static_cast<std::size_t>(first + k - 2), static_cast<std::size_t>(e - k)));
                if (!add(label, comment, comment, {})) {
                    markOffender(label, k, first + k - 1, e - k);
                    return false;
                }
                k = inBody(slashes, e + 1, 2);
            }
        }
        return true;
    }

    std::string_view text_;
    std::string_view caption_;
    const std::vector<std::string>& keywords_;
    std::vector<std::string> messages_; // the labels met while scanning, in order
    ExplorerResult result_;
};

} // namespace

ExplorerResult buildExplorer(std::string_view text, std::string_view caption,
                             const std::vector<std::string>& keywords) {
    return Builder(text, caption, keywords).run();
}

} // namespace cog
