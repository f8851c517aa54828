// Shows the Windows-1252 characters of bytes 0x80-0x9F (the euro sign, curly quotes, dashes, ...)
// in the editor. The component draws 8-bit text through Latin-1, where those bytes are invisible
// control characters; a small font made from the editor font's own outlines draws the right
// characters at their code points and stands in for the editor font there.
#pragma once

#include <QString>

class QFont;

namespace charsetfont {

// The family of the font actually shown for font (a stand-in when the named one is missing).
QString shownFamily(const QFont& font);

// Makes text in the family show bytes 0x80-0x9F as Windows-1252 characters; once per family.
// Returns the family of the stand-in font (empty when the family has no outlines to take).
QString install(const QString& family);

} // namespace charsetfont
