#include "editor/ui/Completion.h"

#include "editor/languagetext.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/ScriptAnalysis.h"
#include "language/text.h"

#include <QKeyEvent>

namespace {

constexpr long kNameToOpen = 3; // characters of a name that open the list by themselves
// Up to this size a text is analysed at once for the list; a larger one opens it once the
// analysis made when typing pauses is there, so that typing never waits for it.
constexpr long kInstantAnalysisLimit = 512 * 1024;
constexpr char kSeparator = '\n';

} // namespace

Completion::Completion(CogTextBox* box, ScriptAnalysis* analysis)
    : QObject(box), box_(box), analysis_(analysis) {
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETSEPARATOR, static_cast<unsigned long>(kSeparator));
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETIGNORECASE, 1UL);
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETCASEINSENSITIVEBEHAVIOUR,
                       static_cast<unsigned long>(QsciScintilla::SC_CASEINSENSITIVEBEHAVIOUR_IGNORECASE));
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETORDER,
                       static_cast<unsigned long>(QsciScintilla::SC_ORDER_CUSTOM));
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETAUTOHIDE, 1UL);
    box->SendScintilla(QsciScintilla::SCI_AUTOCSETMAXHEIGHT, 10UL);
    // Any character that cannot continue a name closes the list.
    box->SendScintilla(QsciScintilla::SCI_AUTOCSTOPS, 0UL, " \t()[]{};:,.=+-*/%<>!&|^~\"'#\\");
    box->installEventFilter(this);
    connect(box, &QsciScintillaBase::SCN_CHARADDED, this, &Completion::charAdded);
    connect(box, qOverload<const char*, int>(&QsciScintillaBase::SCN_AUTOCSELECTION), this,
            &Completion::chosen);
    connect(analysis, &ScriptAnalysis::analysed, this, [this] {
        if (pendingAt_ >= 0 && pendingAt_ == box_->selStart() && box_->selLength() == 0) show();
        pendingAt_ = -1;
    });
}

bool Completion::show() {
    pendingAt_ = -1;
    if (analysis_->current(), !analysis_->checked()) return false;
    const long caret = box_->selStart();
    const language::Completion c = language::complete(analysis_->script(), static_cast<std::uint32_t>(caret));
    if (c.items.empty()) return false;
    const std::string list = editor::completionList(c.items, kSeparator);
    box_->SendScintilla(QsciScintilla::SCI_AUTOCSHOW, static_cast<unsigned long>(caret - c.from),
                        list.c_str());
    return true;
}

bool Completion::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Space && key->modifiers() == Qt::ControlModifier) {
        show();
        return true;
    }
    // Enter and Tab choose from the list before any other key handling sees them.
    const bool choose =
        key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_Tab;
    if (choose && key->modifiers() == Qt::NoModifier && box_->SendScintilla(QsciScintilla::SCI_AUTOCACTIVE)) {
        box_->SendScintilla(QsciScintilla::SCI_AUTOCCOMPLETE);
        return true;
    }
    return false;
}

void Completion::charAdded(int ch) {
    if (!language::isIdentChar(char(ch)) || box_->SendScintilla(QsciScintilla::SCI_AUTOCACTIVE)) return;
    const long caret = box_->selStart();
    const long start = std::max(0L, caret - kNameToOpen - 1);
    const std::string_view around = box_->range(start, std::min(caret + 1, box_->textLength()) - start);
    // Exactly three characters of a name, typed at its end.
    const auto at = static_cast<std::size_t>(caret - start);
    if (at < kNameToOpen) return;
    for (std::size_t i = at - kNameToOpen; i < at; ++i)
        if (!language::isIdentChar(around[i])) return;
    if ((at > kNameToOpen && language::isIdentChar(around[at - kNameToOpen - 1])) ||
        (around.size() > at && language::isIdentChar(around[at])) ||
        language::isDigit(around[at - kNameToOpen]))
        return;
    if (!analysis_->isCurrent() && !analysis_->inCodeSection(caret)) return;
    if (analysis_->isCurrent() || box_->textLength() <= kInstantAnalysisLimit)
        show();
    else
        pendingAt_ = caret;
}

void Completion::chosen(const char* selection, int position) {
    // The list shows a verb's argument types beside its name: only the name is written.
    box_->SendScintilla(QsciScintilla::SCI_AUTOCCANCEL);
    const std::string_view name = editor::completionName(selection);
    box_->replaceRange(position, box_->selStart() - position,
                       QByteArray(name.data(), qsizetype(name.size())));
    box_->setSelStart(position + long(name.size()));
}
