#include "editor/languagetext.h"

namespace editor {

namespace {

std::string count(std::size_t n, const char* what) {
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

} // namespace

std::string diagnosticsSummary(const std::vector<language::Diagnostic>& diagnostics) {
    std::size_t errors = 0;
    for (const auto& d : diagnostics) errors += d.severity == language::Severity::Error;
    const std::size_t warnings = diagnostics.size() - errors;
    if (errors && warnings) return count(errors, "error") + ", " + count(warnings, "warning");
    if (errors || warnings) return errors ? count(errors, "error") : count(warnings, "warning");
    return "No problems";
}

std::string lineAt(std::string_view text, const language::Span& span) {
    const std::size_t at = std::min<std::size_t>(span.begin.offset, text.size());
    std::size_t start = at - std::min<std::size_t>(span.begin.column - 1, at);
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    while (start < end && (text[start] == ' ' || text[start] == '\t')) ++start;
    return std::string(text.substr(start, end - start));
}

std::string completionList(const std::vector<language::CompletionItem>& items, char separator) {
    std::string list;
    for (const auto& item : items) {
        if (!list.empty()) list += separator;
        list += item.label;
        if (item.kind == language::ItemKind::Verb) list += item.detail;
    }
    return list;
}

std::string_view completionName(std::string_view shown) {
    return shown.substr(0, std::min(shown.find('('), shown.size()));
}

} // namespace editor
