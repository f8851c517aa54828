// What the editor writes about the COG language's findings: the count of a text's diagnostics.
#pragma once

#include "language/span.h"

#include <string>
#include <vector>

namespace editor {

// "2 errors, 1 warning"; "1 error"; "No problems" when there are none.
std::string diagnosticsSummary(const std::vector<language::Diagnostic>& diagnostics);

} // namespace editor
