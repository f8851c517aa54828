#include "editor/truetype.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace editor::truetype {

namespace {

struct Writer {
    std::string bytes;
    void u8(unsigned v) { bytes.push_back(static_cast<char>(v & 0xFF)); }
    void u16(long v) {
        u8(static_cast<unsigned>(v >> 8));
        u8(static_cast<unsigned>(v));
    }
    void u32(std::uint32_t v) {
        u16(v >> 16);
        u16(v & 0xFFFF);
    }
    void pad() {
        while (bytes.size() % 4) u8(0);
    }
};

struct QPoint {
    long x, y;
    bool onCurve;
};
using Contour = std::vector<QPoint>;

QPoint rounded(Point p, bool onCurve) {
    return {std::lround(p.x), std::lround(p.y), onCurve};
}

Point lerp(Point a, Point b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

// A cubic curve as two quadratic ones: split at its middle, each half's control point chosen so
// that a cubic which is an exact quadratic (as TrueType sources give) comes back unchanged.
void addCubic(Contour& c, Point p0, Point c1, Point c2, Point p3) {
    const Point a = lerp(p0, c1, 0.5), b = lerp(c1, c2, 0.5), d = lerp(c2, p3, 0.5);
    const Point ab = lerp(a, b, 0.5), bd = lerp(b, d, 0.5), mid = lerp(ab, bd, 0.5);
    const auto control = [](Point s, Point k1, Point k2, Point e) {
        return Point{(3 * (k1.x + k2.x) - s.x - e.x) / 4, (3 * (k1.y + k2.y) - s.y - e.y) / 4};
    };
    c.push_back(rounded(control(p0, a, ab, mid), false));
    c.push_back(rounded(mid, true));
    c.push_back(rounded(control(mid, bd, d, p3), false));
    c.push_back(rounded(p3, true));
}

std::vector<Contour> contoursOf(const Glyph& g) {
    std::vector<Contour> contours;
    Point last;
    for (const PathElement& e : g.outline) {
        if (e.kind == PathElement::Kind::MoveTo) contours.emplace_back();
        if (contours.empty()) contours.emplace_back();
        if (e.kind == PathElement::Kind::CubicTo)
            addCubic(contours.back(), last, e.c1, e.c2, e.to);
        else
            contours.back().push_back(rounded(e.to, true));
        last = e.to;
    }
    for (Contour& c : contours) { // a closing point on the start point is implied
        if (c.size() > 1 && c.back().onCurve && c.back().x == c.front().x && c.back().y == c.front().y)
            c.pop_back();
    }
    std::erase_if(contours, [](const Contour& c) { return c.size() < 2; });
    return contours;
}

struct Bounds {
    long xMin = LONG_MAX, yMin = LONG_MAX, xMax = LONG_MIN, yMax = LONG_MIN;
    void add(long x, long y) {
        xMin = std::min(xMin, x), yMin = std::min(yMin, y);
        xMax = std::max(xMax, x), yMax = std::max(yMax, y);
    }
};

// The glyph's outline data; b gets its bounds.
std::string glyphData(const std::vector<Contour>& contours, Bounds& b, Bounds& all, std::size_t& points) {
    if (contours.empty()) return {};
    for (const Contour& c : contours)
        for (const QPoint& p : c) b.add(p.x, p.y), all.add(p.x, p.y);
    Writer w;
    w.u16(static_cast<long>(contours.size()));
    w.u16(b.xMin), w.u16(b.yMin), w.u16(b.xMax), w.u16(b.yMax);
    std::size_t n = 0;
    for (const Contour& c : contours) w.u16(static_cast<long>((n += c.size()) - 1));
    points = std::max(points, n);
    w.u16(0); // no instructions
    for (const Contour& c : contours)
        for (const QPoint& p : c) w.u8(p.onCurve ? 1 : 0); // coordinates as 16-bit deltas
    long prev = 0;
    for (const Contour& c : contours)
        for (const QPoint& p : c) w.u16(p.x - prev), prev = p.x;
    prev = 0;
    for (const Contour& c : contours)
        for (const QPoint& p : c) w.u16(p.y - prev), prev = p.y;
    w.pad();
    return w.bytes;
}

std::string cmapTable(const std::vector<Glyph>& glyphs) {
    // Format 4, one segment per code point (glyph i + 1) and the closing 0xFFFF segment.
    const long segments = static_cast<long>(glyphs.size()) + 1;
    long range = 1, selector = 0;
    while (range * 2 <= segments) range *= 2, ++selector;
    Writer w;
    w.u16(0), w.u16(1);            // version, one encoding record
    w.u16(3), w.u16(1), w.u32(12); // Windows, Unicode BMP, at offset 12
    w.u16(4), w.u16(16 + 8 * segments), w.u16(0);
    w.u16(segments * 2), w.u16(range * 2), w.u16(selector), w.u16(segments * 2 - range * 2);
    for (const Glyph& g : glyphs) w.u16(static_cast<long>(g.codePoint));
    w.u16(0xFFFF), w.u16(0);
    for (const Glyph& g : glyphs) w.u16(static_cast<long>(g.codePoint));
    w.u16(0xFFFF);
    for (std::size_t i = 0; i < glyphs.size(); ++i)
        w.u16(static_cast<long>(i + 1) - static_cast<long>(glyphs[i].codePoint));
    w.u16(1);
    for (long i = 0; i < segments; ++i) w.u16(0);
    return w.bytes;
}

std::string nameTable(const std::string& family) {
    const std::string names[] = {family, "Regular", family};
    const int ids[] = {1, 2, 4};
    Writer w, strings;
    w.u16(0), w.u16(3), w.u16(6 + 12 * 3);
    for (int i = 0; i < 3; ++i) {
        w.u16(3), w.u16(1), w.u16(0x409), w.u16(ids[i]);
        w.u16(static_cast<long>(names[i].size() * 2)), w.u16(static_cast<long>(strings.bytes.size()));
        for (const char c : names[i]) strings.u16(static_cast<unsigned char>(c));
    }
    return w.bytes + strings.bytes;
}

std::uint32_t checksum(const std::string& table) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); i += 4) {
        std::uint32_t word = 0;
        for (std::size_t k = 0; k < 4; ++k)
            word = (word << 8) | (i + k < table.size() ? static_cast<unsigned char>(table[i + k]) : 0u);
        sum += word;
    }
    return sum;
}

} // namespace

std::string build(const Font& font) {
    const long upem = font.unitsPerEm, ascent = std::lround(font.ascent), descent = std::lround(font.descent);
    Writer glyf, loca, hmtx;
    Bounds all;
    std::size_t maxPoints = 0, maxContours = 0;
    long maxAdvance = 0;
    loca.u32(0), loca.u32(0), hmtx.u16(upem / 2), hmtx.u16(0); // .notdef: empty
    for (const Glyph& g : font.glyphs) {
        const auto contours = contoursOf(g);
        maxContours = std::max(maxContours, contours.size());
        Bounds b;
        glyf.bytes += glyphData(contours, b, all, maxPoints);
        loca.u32(static_cast<std::uint32_t>(glyf.bytes.size()));
        maxAdvance = std::max(maxAdvance, std::lround(g.advance));
        // The left side bearing must equal the outline's left edge, or renderers shift it there.
        hmtx.u16(std::lround(g.advance)), hmtx.u16(contours.empty() ? 0 : b.xMin);
    }
    if (all.xMin > all.xMax) all = {0, 0, 0, 0};
    const long glyphs = static_cast<long>(font.glyphs.size()) + 1;

    Writer head, hhea, maxp, os2, post;
    head.u32(0x10000), head.u32(0x10000), head.u32(0), head.u32(0x5F0F3CF5);
    head.u16(0x000B), head.u16(upem);
    for (int i = 0; i < 4; ++i) head.u32(0); // created, modified
    head.u16(all.xMin), head.u16(all.yMin), head.u16(all.xMax), head.u16(all.yMax);
    head.u16(0), head.u16(8), head.u16(2), head.u16(1), head.u16(0); // long offsets in loca

    hhea.u32(0x10000), hhea.u16(ascent), hhea.u16(-descent), hhea.u16(0), hhea.u16(maxAdvance);
    hhea.u16(0), hhea.u16(0), hhea.u16(all.xMax), hhea.u16(1), hhea.u16(0), hhea.u16(0);
    for (int i = 0; i < 5; ++i) hhea.u16(0);
    hhea.u16(glyphs);

    maxp.u32(0x10000), maxp.u16(glyphs), maxp.u16(static_cast<long>(maxPoints));
    maxp.u16(static_cast<long>(maxContours)), maxp.u16(0), maxp.u16(0), maxp.u16(2);
    for (int i = 0; i < 8; ++i) maxp.u16(0);

    os2.u16(1), os2.u16(maxAdvance), os2.u16(400), os2.u16(5), os2.u16(0);
    for (int i = 0; i < 11; ++i) os2.u16(0); // script offsets, strikeout, family class
    for (int i = 0; i < 10; ++i) os2.u8(0);  // panose
    for (int i = 0; i < 5; ++i) os2.u32(0);  // Unicode ranges, vendor
    os2.u16(0x40);                           // regular
    os2.u16(font.glyphs.empty() ? 0 : static_cast<long>(font.glyphs.front().codePoint));
    os2.u16(font.glyphs.empty() ? 0 : static_cast<long>(font.glyphs.back().codePoint));
    os2.u16(ascent), os2.u16(-descent), os2.u16(0), os2.u16(ascent), os2.u16(descent);
    os2.u32(1), os2.u32(0); // the Latin 1 code page

    post.u32(0x30000);
    for (int i = 0; i < 7; ++i) post.u32(0);

    // Tables in tag order, each at a 4-byte boundary.
    const std::pair<const char*, std::string> tables[] = {{"OS/2", os2.bytes},
                                                          {"cmap", cmapTable(font.glyphs)},
                                                          {"glyf", glyf.bytes},
                                                          {"head", head.bytes},
                                                          {"hhea", hhea.bytes},
                                                          {"hmtx", hmtx.bytes},
                                                          {"loca", loca.bytes},
                                                          {"maxp", maxp.bytes},
                                                          {"name", nameTable(font.familyName)},
                                                          {"post", post.bytes}};
    const long count = static_cast<long>(std::size(tables));
    Writer out;
    out.u32(0x10000), out.u16(count), out.u16(128), out.u16(3), out.u16(count * 16 - 128);
    std::string body;
    for (const auto& [tag, data] : tables) {
        out.bytes += tag;
        out.u32(checksum(data));
        out.u32(static_cast<std::uint32_t>(12 + 16 * count + body.size()));
        out.u32(static_cast<std::uint32_t>(data.size()));
        body += data;
        while (body.size() % 4) body.push_back('\0');
    }
    return out.bytes + body;
}

} // namespace editor::truetype
