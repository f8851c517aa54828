#include "cog/syntaxcheck.h"

namespace cog {

std::vector<BraceMatch> matchOpeningBraces(std::string_view text) {
    // With the opening braces numbered 1..m and h(a) = a - (closing braces before the a-th
    // opening brace), the k-th "{" after brace i is brace i + k and the k-th "}" after it is
    // closing brace i - h(i) + k. So the lock-step walk compares brace a with closing brace
    // a - h(i), and the "{" comes first exactly while h(a) > h(i). The walk therefore ends at the
    // first later brace a with h(a) <= h(i) (or at m + 1 when there is none), unless the closing
    // braces run out before: the brace is closed when closing brace a - h(i) exists.
    std::vector<BraceMatch> braces;
    std::vector<Pos> depth; // h(a)
    Pos closing = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '{') {
            braces.push_back({static_cast<Pos>(i) + 1, false});
            depth.push_back(static_cast<Pos>(braces.size()) - closing);
        } else if (text[i] == '}') {
            ++closing;
        }
    }
    const auto m = static_cast<Pos>(braces.size());
    std::vector<Pos> stack; // 1-based brace numbers with rising depth, nearest on top
    for (Pos a = m; a >= 1; --a) {
        const Pos h = depth[a - 1];
        while (!stack.empty() && depth[stack.back() - 1] > h) stack.pop_back();
        const Pos end = stack.empty() ? m + 1 : stack.back();
        braces[a - 1].closed = end - h <= closing;
        stack.push_back(a);
    }
    return braces;
}

bool matchChar(std::string_view text, Pos lpos, char open, char close, int dir) {
    const auto size = static_cast<Pos>(text.size());
    // The next position (1-based) of c after from in the walking direction; 0 when none.
    auto next = [&](Pos from, char c) -> Pos {
        if (dir >= 0) {
            const auto at =
                from < size ? text.find(c, static_cast<std::size_t>(from)) : std::string_view::npos;
            return at == std::string_view::npos ? 0 : static_cast<Pos>(at) + 1;
        }
        if (from <= 1) return 0;
        const auto at = text.rfind(c, static_cast<std::size_t>(from - 2));
        return at == std::string_view::npos ? 0 : static_cast<Pos>(at) + 1;
    };
    // Distances from lpos make the backward walk read exactly like the forward one.
    auto distance = [&](Pos p) { return p == 0 ? 0 : (dir >= 0 ? p - lpos : lpos - p); };
    Pos op = lpos, cl = lpos;
    do {
        op = next(op, open);
        cl = next(cl, close);
    } while (!(distance(op) > distance(cl) || op == 0 || cl == 0));
    return cl != 0;
}

std::vector<Finding> checkCog(std::string_view text, Pos caret) {
    std::vector<Finding> findings;
    for (const BraceMatch& brace : matchOpeningBraces(text))
        if (!brace.closed) findings.push_back({"{ not matched", brace.position - 1});

    const Markers mk = findMarkers(text);
    if (mk.symbols == 0) findings.push_back({"no symbols section", caret});
    if (mk.end == 0 || (mk.symbols > 0 && mk.code > 0 && mk.end > mk.code))
        findings.push_back({"no end for symbols section", caret});
    if (mk.code == 0) findings.push_back({"no code section", caret});
    if (mk.end < mk.code && mk.secondEnd == 0) findings.push_back({"no end for code section", caret});
    return findings;
}

} // namespace cog
