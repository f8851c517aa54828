#include "editor/ui/Hover.h"

#include "editor/ui/CogTextBox.h"
#include "editor/ui/ScriptAnalysis.h"
#include "editor/ui/codePage.h"

#include <QToolTip>

namespace {

constexpr int kDwellMs = 500; // the mouse rests this long

} // namespace

Hover::Hover(CogTextBox* box, ScriptAnalysis* analysis) : QObject(box), box_(box), analysis_(analysis) {
    box->SendScintilla(QsciScintilla::SCI_SETMOUSEDWELLTIME, static_cast<unsigned long>(kDwellMs), 0L);
    connect(box, &QsciScintillaBase::SCN_DWELLSTART, this, &Hover::dwell);
    connect(box, &QsciScintillaBase::SCN_DWELLEND, this, [] { QToolTip::hideText(); });
}

void Hover::dwell(int position, int x, int y) {
    if (position < 0 || (analysis_->current(), !analysis_->checked())) return;
    const auto about = language::hover(analysis_->script(), static_cast<std::uint32_t>(position));
    if (about)
        QToolTip::showText(box_->viewport()->mapToGlobal(QPoint(x, y)), codepage::toText(about->text),
                           box_->viewport());
}
