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
        current();
        emit analysed();
    });
    connect(box, &CogTextBox::textEdited, this, &ScriptAnalysis::edited);
    edited({});
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
    stale_ = false;
    checked_ = box_->textLength() <= kLargestChecked;
    if (!checked_) { // nothing is said about it, and no memory is taken for it
        text_.clear();
        analysis_ = {};
        return analysis_;
    }
    text_.assign(box_->bytes());
    analysis_ = language::analyse(text_, verbs(), {.syntaxOnly = verbs().size() == 0});
    return analysis_;
}

bool ScriptAnalysis::inCodeSection(long offset) const {
    const language::SyntaxTree& tree = analysis_.tree;
    if (tree.root == language::kNoNode) return true; // nothing analysed yet: no first look
    for (language::NodeId c = tree[tree.root].firstChild; c != language::kNoNode; c = tree[c].nextSibling) {
        if (tree[c].kind != language::NodeKind::Code) continue;
        long start = tree[c].span.begin.offset;
        for (const editor::Edit& e : edits_)
            if (e.position <= start) start = std::max(e.position, start - e.deleted) + e.inserted;
        return offset > start;
    }
    return false;
}

void ScriptAnalysis::edited(const editor::Edit& edit) {
    if (!stale_) edits_.clear();
    edits_.push_back(edit);
    stale_ = true;
    // A text read from a file (or a new window's first text) has no undo history: it is analysed
    // as soon as the window is shown, typing only once it pauses.
    const bool read = !box_->SendScintilla(QsciScintilla::SCI_CANUNDO);
    pause_.start(read ? 0 : kPauseMs);
}
