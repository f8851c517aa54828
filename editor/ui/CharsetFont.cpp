#include "editor/ui/CharsetFont.h"

#include "editor/charset.h"
#include "editor/truetype.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHash>
#include <QPainterPath>
#include <QRawFont>

namespace charsetfont {

namespace {

std::vector<editor::truetype::PathElement> outline(const QPainterPath& path) {
    using editor::truetype::PathElement;
    std::vector<PathElement> out;
    const auto point = [](const QPointF& p) { return editor::truetype::Point{p.x(), -p.y()}; }; // y up
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isCurveTo() && i + 2 < path.elementCount()) {
            out.push_back({PathElement::Kind::CubicTo, point(path.elementAt(i + 2)), point(e),
                           point(path.elementAt(i + 1))});
            i += 2;
        } else {
            out.push_back(
                {e.isMoveTo() ? PathElement::Kind::MoveTo : PathElement::Kind::LineTo, point(e), {}, {}});
        }
    }
    return out;
}

// The glyph of character c in the first of the raw fonts that has it.
bool addGlyph(editor::truetype::Font& font, char32_t codePoint, char32_t c, const QList<QRawFont>& sources) {
    const QString text = QString::fromUcs4(&c, 1);
    for (const QRawFont& raw : sources) {
        if (!raw.supportsCharacter(c)) continue;
        const QList<quint32> glyphs = raw.glyphIndexesForString(text);
        if (glyphs.size() != 1) continue;
        const QList<QPointF> advances = raw.advancesForGlyphIndexes(glyphs);
        font.glyphs.push_back({codePoint, advances.value(0).x(), outline(raw.pathForGlyph(glyphs[0]))});
        return true;
    }
    return false;
}

} // namespace

QString shownFamily(const QFont& font) {
    return QFontInfo(font).family();
}

QString install(const QString& family) {
    static QHash<QString, QString> installed;
    if (const auto it = installed.constFind(family); it != installed.constEnd()) return *it;
    QString& standIn = installed[family];

    QRawFont primary = QRawFont::fromFont(QFont(family));
    if (!primary.isValid()) return {};
    const int unitsPerEm = qRound(primary.unitsPerEm());
    QList<QRawFont> sources{primary, QRawFont::fromFont(QFont())}; // the second for what the first lacks
    for (QRawFont& raw : sources) raw.setPixelSize(unitsPerEm);    // outlines in font units

    editor::truetype::Font font;
    font.familyName = "Tessary Windows-1252 " + QString::number(qHash(family), 16).toStdString();
    font.unitsPerEm = unitsPerEm;
    font.ascent = primary.ascent();
    font.descent = primary.descent();
    for (char32_t byte = 0x80; byte <= 0x9F; ++byte) {
        const char32_t c = editor::decodeByte(static_cast<unsigned char>(byte));
        if (c != byte) addGlyph(font, byte, c, sources); // the undefined bytes keep no glyph
    }
    if (font.glyphs.empty()) return {};
    const std::string bytes = editor::truetype::build(font);
    const int id =
        QFontDatabase::addApplicationFontFromData(QByteArray(bytes.data(), qsizetype(bytes.size())));
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty()) return {};
    standIn = families.first();
    QFont::insertSubstitution(family, standIn);
    return standIn;
}

} // namespace charsetfont
