// What every code editor shows besides the text: COG colouring, line numbers, the current line,
// the brace pair at the caret, and what the COG language tells of the text. Installed once on each
// editor window's text box.
#pragma once

class CogTextBox;
class Completion;
class DiagnosticMarks;
class Hover;
class Rename;
class Definition;
class QFont;
class ScriptAnalysis;

namespace editorfeatures {

// The language features of one text box, each a small object owned by it.
struct Features {
    ScriptAnalysis* analysis = nullptr; // shared by the others
    DiagnosticMarks* diagnostics = nullptr;
    Definition* definition = nullptr; // and usages
    Completion* completion = nullptr;
    Hover* hover = nullptr; // shows the diagnostics' messages in its tooltip too
    Rename* rename = nullptr;
};

// Gives the text box its COG lexer, a line-number margin that grows with the line count, the
// current-line highlight, the highlight of the brace pair at the caret, and the language
// features: the diagnostics drawn on the text, go to definition and usages, completion, hover and
// rename.
Features install(CogTextBox* box);

// The editor font for the text, every colouring style and the line-number margin.
void applyFont(CogTextBox* box, const QFont& font);

} // namespace editorfeatures
