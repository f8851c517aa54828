// The language checker on any text: it ends, every span lies in the text with the line and
// column its offset has, diagnostics come in text order, the tree is a tree, and the syntax
// errors are the same with and without the semantic checks.
#include "language/analyse.h"
#include "tests/fuzz/fuzztarget.h"

#include <algorithm>

namespace {

const language::VerbTable& fuzzVerbs() {
    static const language::VerbTable table =
        language::VerbTable::read("nothing sleep(flex)\n"
                                  "vector getthingpos(thing)\n"
                                  "any getsenderref()\n"
                                  "nothing movetoframe(thing, int, flex)\n"
                                  "nothing print(string)\n"
                                  "int getcurframe(thing)\n"
                                  "nothing heapnew(int) deprecated\n"
                                  "alias wait sleep\n");
    return table;
}

// The 0-based offsets where lines start: after LF, after a CR not followed by LF.
std::vector<std::uint32_t> lineStarts(std::string_view text) {
    std::vector<std::uint32_t> starts{0};
    for (std::uint32_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')))
            starts.push_back(i + 1);
    return starts;
}

void requirePosition(const language::Position& p, const std::vector<std::uint32_t>& starts, std::size_t size,
                     const char* what) {
    fuzzing::require(p.offset <= size, what);
    const auto line =
        static_cast<std::uint32_t>(std::upper_bound(starts.begin(), starts.end(), p.offset) - starts.begin());
    fuzzing::require(p.line == line && p.column == p.offset - starts[line - 1] + 1, what);
}

void requireSpan(const language::Span& s, const std::vector<std::uint32_t>& starts, std::size_t size) {
    fuzzing::require(s.begin.offset <= s.end.offset, "a span that ends before it begins");
    requirePosition(s.begin, starts, size, "a span's start has the wrong line or column");
    requirePosition(s.end, starts, size, "a span's end has the wrong line or column");
}

} // namespace

TESSARY_FUZZ_TARGET(language) {
    const std::string_view text = in.rest();
    const auto starts = lineStarts(text);
    const language::Analysis full = language::analyse(text, fuzzVerbs());
    const language::Analysis syntax = language::analyse(text, fuzzVerbs(), {.syntaxOnly = true});

    std::uint32_t previous = 0;
    std::vector<const language::Diagnostic*> syntaxInFull;
    for (const language::Diagnostic& d : full.diagnostics) {
        requireSpan(d.span, starts, text.size());
        fuzzing::require(d.span.begin.offset >= previous, "diagnostics out of text order");
        fuzzing::require(*d.code && !d.text.empty(), "a diagnostic without code or text");
        previous = d.span.begin.offset;
        if (d.syntax) syntaxInFull.push_back(&d);
    }
    fuzzing::require(syntaxInFull.size() == syntax.diagnostics.size(), "syntax errors depend on the checks");
    for (std::size_t i = 0; i < syntaxInFull.size(); ++i) {
        fuzzing::require(syntax.diagnostics[i].syntax, "a semantic diagnostic in a syntax-only analysis");
        fuzzing::require(syntaxInFull[i]->span.begin.offset == syntax.diagnostics[i].span.begin.offset &&
                             syntaxInFull[i]->text == syntax.diagnostics[i].text,
                         "syntax errors depend on the checks");
        fuzzing::require(i == 0 ||
                             syntaxInFull[i]->span.begin.offset != syntaxInFull[i - 1]->span.begin.offset,
                         "two syntax errors at one place");
    }

    // Every node is reached once from the root, and lies in the text.
    const language::SyntaxTree& tree = full.tree;
    fuzzing::require(tree.root != language::kNoNode, "no root");
    std::vector<char> seen(tree.nodes.size(), 0);
    std::vector<language::NodeId> stack{tree.root};
    while (!stack.empty()) {
        const language::NodeId id = stack.back();
        stack.pop_back();
        fuzzing::require(id < tree.nodes.size() && !seen[id], "a node reached twice or out of range");
        seen[id] = 1;
        requireSpan(tree[id].span, starts, text.size());
        for (language::NodeId c = tree[id].firstChild; c != language::kNoNode;
             c = tree.nodes.at(c).nextSibling)
            stack.push_back(c);
    }
    fuzzing::require(std::all_of(seen.begin(), seen.end(), [](char s) { return s; }),
                     "a node outside the tree");
    for (const language::Symbol& s : full.symbols.symbols) {
        requireSpan(s.nameSpan, starts, text.size());
        for (const language::Span& use : s.uses) requireSpan(use, starts, text.size());
    }
    if (!text.empty()) {
        const auto at = static_cast<std::uint32_t>(text.size() / 2);
        const language::NodeId n = tree.nodeAt(at);
        fuzzing::require(n == language::kNoNode || tree[n].span.contains(at), "nodeAt gave a node elsewhere");
    }
}
