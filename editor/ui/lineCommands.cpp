// Lines of the text: Go to Line, the line-end bar of an editor window and the conversion of its
// line ends.
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/gotoline.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/LineEndWatch.h"
#include "editor/ui/NoticeBar.h"
#include "editor/ui/frmTessary.h"

#include <QAction>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QByteArray kCrLf = QByteArrayLiteral("\r\n");

QString lineEndMessage(editor::LineEndStyle style) {
    const QString consequence = QStringLiteral(
        " The CogExplorer, the syntax check and Add Symbol read lines that end in CR LF and will not "
        "find all the sections of this file.");
    switch (style) {
    case editor::LineEndStyle::Lf:
        return QStringLiteral("The lines of this file end in LF alone.") + consequence;
    case editor::LineEndStyle::Cr:
        return QStringLiteral("The lines of this file end in CR alone.") + consequence;
    default:
        return QStringLiteral("Some lines of this file do not end in CR LF.") + consequence;
    }
}

bool needsCrLf(editor::LineEndStyle style) {
    return style != editor::LineEndStyle::CrLf && style != editor::LineEndStyle::None;
}

} // namespace

void frmTessary::addNotice(NoticeBar* bar) {
    picNotices->layout()->addWidget(bar);
}

void frmTessary::setupLineEndBar() {
    barLineEnds = new NoticeBar;
    barLineEnds->setObjectName(QStringLiteral("barLineEnds"));
    barLineEnds->hide();
    QPushButton* convert = barLineEnds->addButton(QStringLiteral("Convert to CR LF"));
    convert->setObjectName(QStringLiteral("cmdConvertLineEnds"));
    connect(convert, &QPushButton::clicked, this, [this] { ConvertLineEnds(kCrLf); });
    // A bar the user hid stays hidden until the text has only CR LF line ends again.
    connect(barLineEnds, &NoticeBar::hidden, this, [this] { barLineEnds->setProperty("dismissed", true); });
    connect(lineEnds, &LineEndWatch::styleChanged, this, &frmTessary::lineEnds_StyleChanged);
    addNotice(barLineEnds);
}

void frmTessary::lineEnds_StyleChanged() {
    const editor::LineEndStyle style = lineEnds->style();
    if (!needsCrLf(style)) {
        barLineEnds->setProperty("dismissed", false);
        barLineEnds->hide();
        return;
    }
    barLineEnds->setMessage(lineEndMessage(style));
    barLineEnds->setVisible(!barLineEnds->property("dismissed").toBool());
}

bool frmTessary::ConvertLineEnds(const QByteArray& eol) {
    return lineEnds->convert(eol);
}

void frmTessary::GoToLine(long line, long column) {
    const long lines = txtMain->SendScintilla(QsciScintilla::SCI_GETLINECOUNT);
    const unsigned long l = static_cast<unsigned long>(std::clamp(line, 1L, lines) - 1);
    const long start = txtMain->SendScintilla(QsciScintilla::SCI_POSITIONFROMLINE, l);
    const long end = txtMain->SendScintilla(QsciScintilla::SCI_GETLINEENDPOSITION, l);
    txtMain->setSelStart(std::min(start + column - 1, end));
    txtMain->SendScintilla(QsciScintilla::SCI_SCROLLCARET);
    txtMain->setFocus();
}

void frmMain::mnuEditGoToLine_Click() {
    frmTessary* w = mdlTessary::currentCog();
    if (!w) return;
    const long caretLine = w->txtMain->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION,
                                                     static_cast<unsigned long>(w->txtMain->selStart()));
    const QString typed = ui::InputBox(QStringLiteral("Line number, optionally followed by :column"),
                                       QStringLiteral("Go to Line"), QString::number(caretLine + 1));
    if (typed.trimmed().isEmpty()) return; // cancelled
    const QByteArray bytes = typed.toLatin1();
    const auto target = editor::parseLineColumn(std::string_view(bytes.constData(), bytes.size()));
    if (!target) {
        ui::MsgBox(QStringLiteral("\"") + typed +
                       QStringLiteral("\" is not a line number. Enter a line, optionally followed by "
                                      ":column, for example 12 or 12:5."),
                   ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    w->GoToLine(target->line, target->column);
}

void frmMain::mnuEditLineEnds_Click(const QByteArray& eol) {
    if (frmTessary* w = mdlTessary::currentCog()) w->ConvertLineEnds(eol);
}
