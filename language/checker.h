// The semantic checks of the code section (internal to the language folder): names, verbs and
// types of expressions, labels and calls, and the flow from label to label.
#pragma once

#include "language/parser.h"

namespace language {

void check(std::string_view text, const VerbTable& verbs, const ParseOutcome& parsed, Analysis& out);

} // namespace language
