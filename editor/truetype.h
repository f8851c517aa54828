// Writes a small TrueType font from glyph outlines. The editor shows its 8-bit text through
// Latin-1, which has no visible characters at 0x80-0x9F; a font that draws the Windows-1252
// characters (the euro sign, curly quotes, ...) at those code points, made from the outlines of
// the editor font itself, shows them in place.
#pragma once

#include <string>
#include <vector>

namespace editor::truetype {

struct Point {
    double x = 0, y = 0;
};

// One element of an outline in font units, y growing upwards.
struct PathElement {
    enum class Kind { MoveTo, LineTo, CubicTo } kind = Kind::MoveTo;
    Point to;
    Point c1, c2; // the control points of CubicTo
};

struct Glyph {
    char32_t codePoint = 0;
    double advance = 0;
    std::vector<PathElement> outline;
};

struct Font {
    std::string familyName; // ASCII
    int unitsPerEm = 2048;
    double ascent = 0, descent = 0; // both positive
    std::vector<Glyph> glyphs;      // code points below 0x10000, each once
};

// The bytes of a TrueType font holding the glyphs (cubic curves approximated by quadratic ones)
// and an empty .notdef glyph.
std::string build(const Font& font);

} // namespace editor::truetype
