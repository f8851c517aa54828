#include "language/analyse.h"

#include "language/checker.h"
#include "language/parser.h"

#include <algorithm>
#include <limits>

namespace language {

Analysis analyse(std::string_view text, const VerbTable& verbs, const AnalyseOptions& options) {
    text = text.substr(0, std::min<std::size_t>(text.size(), std::numeric_limits<std::uint32_t>::max() - 1));
    Analysis out;
    out.tree.nodes.reserve(text.size() / 8);
    const ParseOutcome parsed = parse(text, out);
    if (options.syntaxOnly)
        std::erase_if(out.diagnostics, [](const Diagnostic& d) { return !d.syntax; });
    else
        check(text, verbs, parsed, out);
    std::stable_sort(
        out.diagnostics.begin(), out.diagnostics.end(),
        [](const Diagnostic& x, const Diagnostic& y) { return x.span.begin.offset < y.span.begin.offset; });
    return out;
}

std::string formatDiagnostic(std::string_view file, const Diagnostic& d) {
    std::string line(file);
    line += ':' + std::to_string(d.span.begin.line) + ':' + std::to_string(d.span.begin.column) + ": ";
    line += severityName(d.severity);
    line += ": ";
    line += d.text;
    return line;
}

} // namespace language
