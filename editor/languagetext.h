// What the editor writes about the COG language's findings: the count of a text's diagnostics,
// the lines of the places found.
#pragma once

#include "language/services.h"
#include "language/span.h"

#include <string>
#include <string_view>
#include <vector>

namespace editor {

// "2 errors, 1 warning"; "1 error"; "No problems" when there are none.
std::string diagnosticsSummary(const std::vector<language::Diagnostic>& diagnostics);

// The line of text that holds the span's start, without its line end and leading blanks.
std::string lineAt(std::string_view text, const language::Span& span);

// The completion list as the editor component takes it: the items' texts joined by separator, a
// verb followed by its argument types (and its result's type).
std::string completionList(const std::vector<language::CompletionItem>& items, char separator);
// The name an item of that list writes: its text up to the argument types.
std::string_view completionName(std::string_view shown);

} // namespace editor
