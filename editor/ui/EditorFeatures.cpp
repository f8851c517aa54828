#include "editor/ui/EditorFeatures.h"

#include "editor/ui/CogLexer.h"
#include "editor/ui/CogTextBox.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

namespace editorfeatures {

namespace {

constexpr int lineNumberMargin = 0;
constexpr int symbolMargin = 1;

QColor blend(const QColor& a, const QColor& b, double weightOfB) {
    return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - weightOfB) + b.redF() * weightOfB),
                            static_cast<float>(a.greenF() * (1 - weightOfB) + b.greenF() * weightOfB),
                            static_cast<float>(a.blueF() * (1 - weightOfB) + b.blueF() * weightOfB));
}

// Room for the digits of the last line number plus one, never fewer than four.
void fitLineNumberMargin(CogTextBox* box) {
    const int digits = QString::number(std::max(1, box->lines())).size();
    box->setMarginWidth(lineNumberMargin, QString(std::max(3, digits) + 1, QLatin1Char('9')));
}

} // namespace

void install(CogTextBox* box) {
    box->setLexer(new CogLexer(box));

    const QPalette palette = QApplication::palette();
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const QColor highlight = palette.color(QPalette::Highlight);

    box->setMarginType(lineNumberMargin, QsciScintilla::NumberMargin);
    box->setMarginLineNumbers(lineNumberMargin, true);
    box->setMarginWidth(symbolMargin, 4);
    box->setMarginsBackgroundColor(palette.color(QPalette::Window));
    box->setMarginsForegroundColor(
        blend(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.35));
    fitLineNumberMargin(box);
    QObject::connect(box, &QsciScintilla::linesChanged, box, [box] { fitLineNumberMargin(box); });

    box->setCaretForegroundColor(text);
    box->setCaretLineVisible(true);
    box->setCaretLineBackgroundColor(blend(base, highlight, 0.12));

    box->setBraceMatching(QsciScintilla::SloppyBraceMatch);
    box->setMatchedBraceBackgroundColor(blend(base, highlight, 0.35));
    box->setMatchedBraceForegroundColor(text);
    box->setUnmatchedBraceForegroundColor(QColor(0xd0, 0x20, 0x20));
    box->setUnmatchedBraceBackgroundColor(base);
}

void applyFont(CogTextBox* box, const QFont& font) {
    box->setFont(font);
    if (QsciLexer* lexer = box->lexer()) lexer->setFont(font);
    box->setMarginsFont(font);
    fitLineNumberMargin(box);
}

} // namespace editorfeatures
