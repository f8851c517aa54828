// The recursive-descent parser of COG scripts (internal to the language folder): builds the tree
// and declares the symbols, reporting lexical and syntax errors and the faults of declaration
// lines. After an error it skips to the next declaration line (symbols) or the end of the
// statement (";" or "}" in code) and goes on.
#pragma once

#include "language/analyse.h"

namespace language {

struct ParseOutcome {
    bool symbolsBroken = false; // a syntax error in the symbols section (or no such section)
    bool codeBroken = false;    // a syntax error in the code section (or no such section)
};

ParseOutcome parse(std::string_view text, Analysis& out);

} // namespace language
