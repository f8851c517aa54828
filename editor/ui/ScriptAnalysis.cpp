#include "editor/ui/ScriptAnalysis.h"

#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"

#include <QFile>

namespace {

// Typing that pauses this long is done for the moment.
constexpr int kPauseMs = 300;

const QByteArray& verbFile() {
    static const QByteArray bytes = [] {
        QFile file(mdlTessary::programDirectory() + QStringLiteral("/verbs.dat"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    return bytes;
}

} // namespace

ScriptAnalysis::ScriptAnalysis(CogTextBox* box) : QObject(box), box_(box) {
    pause_.setSingleShot(true);
    connect(&pause_, &QTimer::timeout, this, [this] {
        if (stale_) current();
    });
    connect(box, &CogTextBox::textEdited, this, &ScriptAnalysis::edited);
    edited();
}

const language::VerbTable& ScriptAnalysis::verbs() {
    static const language::VerbTable table =
        language::VerbTable::read(std::string_view(verbFile().constData(), std::size_t(verbFile().size())));
    return table;
}

const language::Analysis& ScriptAnalysis::current() {
    if (!stale_) return analysis_;
    pause_.stop();
    text_.assign(box_->bytes());
    analysis_ = language::analyse(text_, verbs(), {.syntaxOnly = verbs().size() == 0});
    stale_ = false;
    emit analysed();
    return analysis_;
}

void ScriptAnalysis::edited() {
    stale_ = true;
    // A text read from a file (or a new window's first text) has no undo history: it is analysed
    // as soon as the window is shown, typing only once it pauses.
    const bool read = !box_->SendScintilla(QsciScintilla::SCI_CANUNDO);
    pause_.start(read ? 0 : kPauseMs);
}
