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

} // namespace editor
