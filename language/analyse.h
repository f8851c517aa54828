// The COG language checker: one entry point from a script's text to its syntax tree, symbol table
// and diagnostics. Pure and total: any bytes give an analysis, never a crash or a hang.
#pragma once

#include "language/span.h"
#include "language/tree.h"
#include "language/verbs.h"

#include <string>
#include <string_view>
#include <vector>

namespace language {

struct AnalyseOptions {
    bool syntaxOnly = false; // lexical and syntax errors alone: no semantic checks
};

struct Analysis {
    SyntaxTree tree;
    SymbolTable symbols;
    std::vector<Diagnostic> diagnostics; // in text order
};

// Reads the text as a COG script: lexer, parser, then (unless syntaxOnly) the checks of symbols,
// types, labels and flow. Spans index the text given here. Texts over 4 GiB are read up to that.
Analysis analyse(std::string_view text, const VerbTable& verbs, const AnalyseOptions& options = {});

// One diagnostic as the command line prints it: "FILE:LINE:COL: error: TEXT".
std::string formatDiagnostic(std::string_view file, const Diagnostic& d);

} // namespace language
