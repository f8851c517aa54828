#include "editor/ui/ScriptAnalysis.h"

#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"
#include "reference/cogref.h"

#include <QFile>

namespace {

// Typing that pauses this long is done for the moment.
constexpr int kPauseMs = 300;

std::string dataFile(const char* name) {
    QFile file(mdlTessary::programDirectory() + QLatin1Char('/') + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
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
    static const language::VerbTable table = language::VerbTable::read(dataFile("verbs.dat"));
    return table;
}

const language::VerbDocs& ScriptAnalysis::docs() {
    static const language::VerbDocs entries =
        language::VerbDocs::fromReference(reference::readCogRef(dataFile("cogref.dat")).tree);
    return entries;
}

language::Script ScriptAnalysis::script() {
    const language::Analysis& analysis = current();
    return {text_, analysis, verbs(), docs()};
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
