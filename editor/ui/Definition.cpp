#include "editor/ui/Definition.h"

#include "editor/ui/CogTextBox.h"
#include "editor/ui/ScriptAnalysis.h"

#include <QMouseEvent>

Definition::Definition(CogTextBox* box, ScriptAnalysis* analysis)
    : QObject(box), box_(box), analysis_(analysis) {
    box->viewport()->installEventFilter(this);
}

bool Definition::goToDefinition(long offset) {
    if (analysis_->current(), !analysis_->checked()) return false;
    const auto target = language::definition(analysis_->script(), static_cast<std::uint32_t>(offset));
    if (!target) return false;
    box_->setSelStart(target->begin.offset);
    box_->setSelLength(target->end.offset - target->begin.offset);
    box_->SendScintilla(QsciScintilla::SCI_SCROLLCARET);
    return true;
}

std::vector<language::Span> Definition::usages(long offset) {
    if (analysis_->current(), !analysis_->checked()) return {};
    return language::references(analysis_->script(), static_cast<std::uint32_t>(offset), true);
}

bool Definition::eventFilter(QObject* watched, QEvent* event) {
    // Ctrl+click on a name: its definition, instead of the click's own meaning.
    if (event->type() != QEvent::MouseButtonPress) return QObject::eventFilter(watched, event);
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::LeftButton || mouse->modifiers() != Qt::ControlModifier) return false;
    const QPoint at = mouse->position().toPoint();
    const long offset = box_->SendScintilla(QsciScintilla::SCI_POSITIONFROMPOINTCLOSE,
                                            static_cast<unsigned long>(at.x()), long(at.y()));
    return offset >= 0 && goToDefinition(offset);
}
