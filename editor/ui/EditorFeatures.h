// What every code editor shows besides the text: COG colouring, line numbers, the current line
// and the brace pair at the caret. Installed once on each editor window's text box.
#pragma once

class CogTextBox;
class QFont;

namespace editorfeatures {

// Gives the text box its COG lexer, a line-number margin that grows with the line count, the
// current-line highlight and the highlight of the brace pair at the caret.
void install(CogTextBox* box);

// The editor font for the text, every colouring style and the line-number margin.
void applyFont(CogTextBox* box, const QFont& font);

} // namespace editorfeatures
