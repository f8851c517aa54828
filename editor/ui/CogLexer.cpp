#include "editor/ui/CogLexer.h"

#include "editor/ui/CogTextBox.h"

#include <Qsci/qsciscintilla.h>

#include <QApplication>
#include <QPalette>

#include <algorithm>

using editor::CogStyle;

namespace {

std::vector<std::string> gSharedVerbs;
std::vector<CogLexer*> gLexers;

bool darkPalette() {
    return QApplication::palette().color(QPalette::Base).lightness() < 128;
}

bool boldStyle(int style) {
    const auto s = static_cast<CogStyle>(style);
    return s == CogStyle::Section || s == CogStyle::Flow || s == CogStyle::Label;
}

} // namespace

CogLexer::CogLexer(QObject* parent) : QsciLexerCustom(parent) {
    words_.setVerbs(gSharedVerbs);
    gLexers.push_back(this);
    setDefaultColor(QApplication::palette().color(QPalette::Text));
    setDefaultPaper(QApplication::palette().color(QPalette::Base));
}

CogLexer::~CogLexer() {
    std::erase(gLexers, this);
}

void CogLexer::setVerbs(std::vector<std::string> verbs) {
    words_.setVerbs(verbs);
    restyleAll();
}

void CogLexer::setSharedVerbs(std::vector<std::string> verbs) {
    gSharedVerbs = std::move(verbs);
    for (CogLexer* lexer : gLexers) lexer->setVerbs(gSharedVerbs);
}

const std::vector<std::string>& CogLexer::sharedVerbs() {
    return gSharedVerbs;
}

const char* CogLexer::language() const {
    return "COG";
}

QString CogLexer::description(int style) const {
    switch (static_cast<CogStyle>(style)) {
    case CogStyle::Default:
        return QStringLiteral("Default");
    case CogStyle::Comment:
        return QStringLiteral("Comment");
    case CogStyle::Section:
        return QStringLiteral("Section");
    case CogStyle::Type:
        return QStringLiteral("Symbol type");
    case CogStyle::Flow:
        return QStringLiteral("Flow keyword");
    case CogStyle::Verb:
        return QStringLiteral("Verb");
    case CogStyle::Label:
        return QStringLiteral("Message label");
    case CogStyle::String:
        return QStringLiteral("String");
    case CogStyle::Number:
        return QStringLiteral("Number");
    }
    return {};
}

QColor CogLexer::defaultColor(int style) const {
    // One set of colours for light backgrounds, one for dark; each keeps a clear contrast.
    const bool dark = darkPalette();
    switch (static_cast<CogStyle>(style)) {
    case CogStyle::Comment:
        return dark ? QColor(0x6a, 0x99, 0x55) : QColor(0x00, 0x80, 0x00);
    case CogStyle::Section:
        return dark ? QColor(0x56, 0x9c, 0xd6) : QColor(0x00, 0x00, 0x7f);
    case CogStyle::Type:
        return dark ? QColor(0x4e, 0xc9, 0xb0) : QColor(0x00, 0x00, 0xff);
    case CogStyle::Flow:
        return dark ? QColor(0xc5, 0x86, 0xc0) : QColor(0x7f, 0x00, 0x7f);
    case CogStyle::Verb:
        return dark ? QColor(0xdc, 0xdc, 0xaa) : QColor(0x00, 0x6e, 0x7f);
    case CogStyle::Label:
        return dark ? QColor(0xff, 0xb8, 0x6c) : QColor(0xa0, 0x50, 0x00);
    case CogStyle::String:
        return dark ? QColor(0xce, 0x91, 0x78) : QColor(0xa3, 0x15, 0x15);
    case CogStyle::Number:
        return dark ? QColor(0xb5, 0xce, 0xa8) : QColor(0x09, 0x86, 0x58);
    case CogStyle::Default:
        break;
    }
    return QApplication::palette().color(QPalette::Text);
}

QColor CogLexer::defaultPaper(int) const {
    return QApplication::palette().color(QPalette::Base);
}

QFont CogLexer::defaultFont(int style) const {
    QFont font = QsciLexerCustom::defaultFont(style);
    font.setBold(boldStyle(style));
    font.setItalic(static_cast<CogStyle>(style) == CogStyle::Comment);
    return font;
}

void CogLexer::setFont(const QFont& font, int style) {
    if (style >= 0) {
        QsciLexerCustom::setFont(font, style);
        return;
    }
    for (int s = 0; s < editor::cogStyleCount; ++s) {
        QFont styled(font);
        if (boldStyle(s)) styled.setBold(true);
        QsciLexerCustom::setFont(styled, s);
    }
}

void CogLexer::setEditor(QsciScintilla* editor) {
    disconnect(modified_);
    QsciLexerCustom::setEditor(editor);
    tracker_.reset();
    if (auto* box = qobject_cast<CogTextBox*>(editor))
        modified_ = connect(box, &CogTextBox::textEdited, this, &CogLexer::onEdited);
}

void CogLexer::onEdited(const editor::Edit& edit) {
    if (edit.deleted > 0) tracker_.deleted(edit.position, edit.deleted);
    if (edit.inserted > 0) tracker_.inserted(edit.position, edit.inserted);
}

void CogLexer::restyleAll() {
    tracker_.reset();
    if (QsciScintilla* ed = editor()) {
        ed->SendScintilla(QsciScintillaBase::SCI_STARTSTYLING, 0UL, 0L);
        ed->viewport()->update();
    }
}

void CogLexer::styleText(int start, int end) {
    QsciScintilla* ed = editor();
    if (!ed || end <= start) return;
    if (auto* box = qobject_cast<CogTextBox*>(ed)) box->announceEdit(); // the tracker must know every edit
    using Sci = QsciScintillaBase;
    const auto lineStartAfter = [ed](long position) { // start of the line after the one holding position
        const long length = ed->SendScintilla(Sci::SCI_GETLENGTH);
        const long line = ed->SendScintilla(Sci::SCI_LINEFROMPOSITION, static_cast<unsigned long>(position));
        const long next = ed->SendScintilla(Sci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line + 1));
        return next < 0 || next > length ? length : next;
    };
    // Whole lines: from start (a line start) to the end of the line holding end - 1.
    const long stop = lineStartAfter(end - 1);
    long line = ed->SendScintilla(Sci::SCI_LINEFROMPOSITION, static_cast<unsigned long>(start));
    auto state = line > 0 ? static_cast<editor::LineState>(ed->SendScintilla(
                                Sci::SCI_GETLINESTATE, static_cast<unsigned long>(line - 1)))
                          : editor::LineState::Normal;
    ed->SendScintilla(Sci::SCI_STARTSTYLING, static_cast<unsigned long>(start), 0L);

    // In chunks of whole lines: asking for a range moves Scintilla's gap only within it.
    constexpr long chunkSize = 64 * 1024;
    for (long chunk = start; chunk < stop;) {
        const long chunkEnd = std::min(stop, lineStartAfter(std::min(stop, chunk + chunkSize) - 1));
        const auto* text = reinterpret_cast<const char*>(
            ed->SendScintilla(Sci::SCI_GETRANGEPOINTER, static_cast<unsigned long>(chunk),
                              static_cast<long>(chunkEnd - chunk)));
        const std::string_view range(text, static_cast<std::size_t>(chunkEnd - chunk));
        styles_.resize(range.size());
        std::size_t done = 0;
        while (done < range.size()) {
            const std::size_t len = editor::lineLength(range.substr(done));
            state = editor::styleCogLine(range.substr(done, len), state, words_, styles_.data() + done);
            done += len;
            const long before = ed->SendScintilla(Sci::SCI_GETLINESTATE, static_cast<unsigned long>(line));
            if (before != static_cast<long>(state))
                ed->SendScintilla(Sci::SCI_SETLINESTATE, static_cast<unsigned long>(line),
                                  static_cast<long>(state));
            ++line;
            const long pos = chunk + static_cast<long>(done);
            // Past the edit, a line that ends in the state it ended in before is followed by lines
            // whose stored styles are still right: keep them.
            if (pos < stop && before == static_cast<long>(state) && tracker_.canStopAt(pos) &&
                tracker_.cleanEnd() >= stop) {
                ed->SendScintilla(Sci::SCI_SETSTYLINGEX, static_cast<unsigned long>(done),
                                  reinterpret_cast<const char*>(styles_.data()));
                ed->SendScintilla(Sci::SCI_STARTSTYLING, static_cast<unsigned long>(stop), 0L);
                tracker_.styled(start, stop);
                return;
            }
        }
        ed->SendScintilla(Sci::SCI_SETSTYLINGEX, static_cast<unsigned long>(done),
                          reinterpret_cast<const char*>(styles_.data()));
        chunk = chunkEnd;
    }
    tracker_.styled(start, stop);
}
