#include "app/ui/StatusBar.h"

#include "editor/charset.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/LineEndWatch.h"
#include "editor/ui/frmTessary.h"

#include <QLabel>

namespace {

QLabel* field(const QString& name, QStatusBar* bar) {
    auto* label = new QLabel(bar);
    label->setObjectName(name);
    label->setContentsMargins(6, 0, 6, 0);
    bar->addPermanentWidget(label);
    return label;
}

} // namespace

FrameStatusBar::FrameStatusBar(QWidget* parent) : QStatusBar(parent) {
    setObjectName(QStringLiteral("sbrMain"));
    lblDiagnostics = field(QStringLiteral("lblDiagnostics"), this);
    lblDiagnostics->hide();
    lblPosition = field(QStringLiteral("lblPosition"), this);
    lblPosition->setMinimumWidth(
        lblPosition->fontMetrics().horizontalAdvance(QStringLiteral("Ln 99999, Col 999")));
    positionTimer_.setSingleShot(true);
    positionTimer_.setInterval(40);
    connect(&positionTimer_, &QTimer::timeout, this, &FrameStatusBar::showPosition);
    lblLineEnds = field(QStringLiteral("lblLineEnds"), this);
    lblCharset = field(QStringLiteral("lblCharset"), this);
    follow(nullptr);
}

void FrameStatusBar::follow(frmTessary* w) {
    for (const auto& c : connections_) disconnect(c);
    connections_.clear();
    window_ = w;
    if (w) {
        // At most one repaint of the position per moment: while keys come fast, repainting the
        // label after each would cost as much as the rest of the keystroke.
        connections_ << connect(w->txtMain, &QsciScintilla::cursorPositionChanged, this,
                                [this] {
                                    if (!positionTimer_.isActive()) positionTimer_.start();
                                })
                     << connect(w->lineEnds, &LineEndWatch::styleChanged, this, &FrameStatusBar::showLineEnds)
                     << connect(w, &QObject::destroyed, this, [this] { follow(nullptr); }); // it closed
    }
    lblCharset->setText(w ? QString::fromLatin1(editor::kCharsetName) : QString());
    showPosition();
    showLineEnds();
}

void FrameStatusBar::setDiagnostics(const QString& summary) {
    lblDiagnostics->setText(summary);
    lblDiagnostics->setVisible(!summary.isEmpty());
}

void FrameStatusBar::showPosition() {
    if (!window_) return lblPosition->clear();
    CogTextBox* box = window_->txtMain;
    const long caret = box->SendScintilla(QsciScintilla::SCI_GETCURRENTPOS);
    const long line =
        box->SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, static_cast<unsigned long>(caret));
    const long column =
        caret - box->SendScintilla(QsciScintilla::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line));
    lblPosition->setText(QStringLiteral("Ln %1, Col %2").arg(line + 1).arg(column + 1));
}

void FrameStatusBar::showLineEnds() {
    if (!window_) return lblLineEnds->clear();
    lblLineEnds->setText(QString::fromLatin1(editor::styleName(window_->lineEnds->style())));
}
