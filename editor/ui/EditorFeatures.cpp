#include "editor/ui/EditorFeatures.h"

#include "editor/ui/CharsetFont.h"
#include "editor/ui/CogLexer.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/Completion.h"
#include "editor/ui/Definition.h"
#include "editor/ui/DiagnosticMarks.h"
#include "editor/ui/Hover.h"
#include "editor/ui/Rename.h"
#include "editor/ui/ScriptAnalysis.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

namespace editorfeatures {

namespace {

constexpr int lineNumberMargin = 0;

QColor blend(const QColor& a, const QColor& b, double weightOfB) {
    return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - weightOfB) + b.redF() * weightOfB),
                            static_cast<float>(a.greenF() * (1 - weightOfB) + b.greenF() * weightOfB),
                            static_cast<float>(a.blueF() * (1 - weightOfB) + b.blueF() * weightOfB));
}

int lineNumberDigits(const CogTextBox* box) { // never fewer than three; asked after every edit
    int digits = 1;
    for (int n = box->lines(); n >= 10; n /= 10) ++digits;
    return std::max(3, digits);
}

// Room for the digits of the last line number plus one, never fewer than four.
void fitLineNumberMargin(CogTextBox* box, int digits) {
    box->setMarginWidth(lineNumberMargin, QString(digits + 1, QLatin1Char('9')));
}

} // namespace

Features install(CogTextBox* box) {
    box->setLexer(new CogLexer(box));

    const QPalette palette = QApplication::palette();
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const QColor highlight = palette.color(QPalette::Highlight);

    box->setMarginType(lineNumberMargin, QsciScintilla::NumberMargin);
    box->setMarginLineNumbers(lineNumberMargin, true);
    box->setMarginsBackgroundColor(palette.color(QPalette::Window));
    box->setMarginsForegroundColor(
        blend(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.35));
    fitLineNumberMargin(box, lineNumberDigits(box));
    QObject::connect(box, &CogTextBox::textEdited, box, [box, digits = lineNumberDigits(box)]() mutable {
        if (const int now = lineNumberDigits(box); now != digits) fitLineNumberMargin(box, digits = now);
    });

    box->setCaretForegroundColor(text);
    box->setCaretLineVisible(true);
    // See-through, so that the brace highlight on the caret's line still shows.
    QColor currentLine = highlight;
    currentLine.setAlpha(40);
    box->setCaretLineBackgroundColor(currentLine);

    box->setBraceMatching(QsciScintilla::SloppyBraceMatch);
    box->setMatchedBraceBackgroundColor(blend(base, highlight, 0.35));
    box->setMatchedBraceForegroundColor(text);
    box->setUnmatchedBraceForegroundColor(QColor(0xd0, 0x20, 0x20));
    box->setUnmatchedBraceBackgroundColor(base);

    Features features;
    features.analysis = new ScriptAnalysis(box);
    features.diagnostics = new DiagnosticMarks(box, features.analysis);
    features.definition = new Definition(box, features.analysis);
    features.completion = new Completion(box, features.analysis);
    features.hover = new Hover(box, features.analysis);
    features.diagnostics->tooltips = false;
    features.rename = new Rename(box, features.analysis);
    return features;
}

void applyFont(CogTextBox* box, const QFont& font) {
    // The text is drawn in the font actually shown, named as such, so that the characters of
    // bytes 0x80-0x9F can be drawn from it (see CharsetFont.h).
    QFont shown = font;
    shown.setFamily(charsetfont::shownFamily(font));
    charsetfont::install(shown.family());
    box->setFont(shown);
    if (QsciLexer* lexer = box->lexer()) lexer->setFont(shown);
    box->setMarginsFont(shown);
    // With a lexer the editor takes its styles' fonts from the lexer and leaves the widget's own
    // font as it was; keep that one the editor font of the settings, for whoever reads it.
    box->QWidget::setFont(font);
    fitLineNumberMargin(box, lineNumberDigits(box));
}

} // namespace editorfeatures
