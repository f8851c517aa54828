#include "editor/ui/DiagnosticMarks.h"

#include "editor/ui/CogTextBox.h"
#include "editor/ui/ScriptAnalysis.h"
#include "editor/ui/codePage.h"

#include <QToolTip>

namespace {

const QColor kErrorColour(0xd0, 0x20, 0x20);
const QColor kWarningColour(0xe0, 0x98, 0x00);
constexpr int kDwellMs = 500;

} // namespace

DiagnosticMarks::DiagnosticMarks(CogTextBox* box, ScriptAnalysis* analysis)
    : QObject(box), box_(box), analysis_(analysis),
      errorIndicator_(box->indicator(QStringLiteral("diagnostic_error"))),
      warningIndicator_(box->indicator(QStringLiteral("diagnostic_warning"))),
      errorMarker_(box->marker(QStringLiteral("diagnostic_error"))),
      warningMarker_(box->marker(QStringLiteral("diagnostic_warning"))) {
    for (const auto& [indicator, colour] :
         {std::pair{errorIndicator_, kErrorColour}, {warningIndicator_, kWarningColour}}) {
        box->SendScintilla(QsciScintilla::SCI_INDICSETSTYLE, static_cast<unsigned long>(indicator),
                           long(QsciScintilla::INDIC_SQUIGGLEPIXMAP));
        box->SendScintilla(QsciScintilla::SCI_INDICSETFORE, static_cast<unsigned long>(indicator), colour);
        box->SendScintilla(QsciScintilla::SCI_INDICSETUNDER, static_cast<unsigned long>(indicator), 1L);
    }
    box->markerDefine(QsciScintilla::Circle, errorMarker_);
    box->setMarkerBackgroundColor(kErrorColour, errorMarker_);
    box->setMarkerForegroundColor(kErrorColour, errorMarker_);
    box->markerDefine(QsciScintilla::RightTriangle, warningMarker_);
    box->setMarkerBackgroundColor(kWarningColour, warningMarker_);
    box->setMarkerForegroundColor(kWarningColour, warningMarker_);
    box->setMarginType(kMargin, QsciScintilla::SymbolMargin);
    box->setMarginMarkerMask(kMargin, (1 << errorMarker_) | (1 << warningMarker_));
    box->setMarginWidth(kMargin, 12);
    box->SendScintilla(QsciScintilla::SCI_SETMOUSEDWELLTIME, static_cast<unsigned long>(kDwellMs), 0L);
    connect(analysis, &ScriptAnalysis::analysed, this, &DiagnosticMarks::show);
    connect(box, &QsciScintillaBase::SCN_DWELLSTART, this, &DiagnosticMarks::dwell);
    connect(box, &QsciScintillaBase::SCN_DWELLEND, this, [] { QToolTip::hideText(); });
}

void DiagnosticMarks::show() {
    const long length = box_->textLength();
    for (const int indicator : {errorIndicator_, warningIndicator_}) {
        box_->SendScintilla(QsciScintilla::SCI_SETINDICATORCURRENT, static_cast<unsigned long>(indicator));
        box_->SendScintilla(QsciScintilla::SCI_INDICATORCLEARRANGE, 0UL, length);
    }
    box_->markerDeleteAll(errorMarker_);
    box_->markerDeleteAll(warningMarker_);
    messages_.clear();
    for (const language::Diagnostic& d : analysis_->current().diagnostics) {
        const bool error = d.severity == language::Severity::Error;
        messages_.push_back(d.text);
        // An empty span (a missing token) is underlined on the byte before it, or after it at the start.
        long start = d.span.begin.offset, end = d.span.end.offset;
        if (end <= start) start > 0 ? --start : ++end;
        end = std::min(end, length);
        box_->SendScintilla(QsciScintilla::SCI_SETINDICATORCURRENT,
                            static_cast<unsigned long>(error ? errorIndicator_ : warningIndicator_));
        box_->SendScintilla(QsciScintilla::SCI_SETINDICATORVALUE,
                            static_cast<unsigned long>(messages_.size()));
        if (end > start)
            box_->SendScintilla(QsciScintilla::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(start),
                                end - start);
        box_->markerAdd(int(d.span.begin.line) - 1, error ? errorMarker_ : warningMarker_);
    }
}

QStringList DiagnosticMarks::messagesAt(long offset) const {
    QStringList messages;
    for (const int indicator : {errorIndicator_, warningIndicator_}) {
        const long value = box_->SendScintilla(QsciScintilla::SCI_INDICATORVALUEAT,
                                               static_cast<unsigned long>(indicator), offset);
        if (value > 0 && std::size_t(value) <= messages_.size())
            messages << codepage::toText(messages_[std::size_t(value) - 1]);
    }
    return messages;
}

void DiagnosticMarks::dwell(int position, int x, int y) {
    if (!tooltips || position < 0) return;
    const QStringList messages = messagesAt(position);
    if (!messages.isEmpty())
        QToolTip::showText(box_->viewport()->mapToGlobal(QPoint(x, y)), messages.join(QLatin1Char('\n')),
                           box_->viewport());
}
