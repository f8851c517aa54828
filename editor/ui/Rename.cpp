#include "editor/ui/Rename.h"

#include "editor/ui/CogTextBox.h"
#include "editor/ui/ScriptAnalysis.h"

Rename::Rename(CogTextBox* box, ScriptAnalysis* analysis) : QObject(box), box_(box), analysis_(analysis) {}

language::RenameTarget Rename::target(long offset) {
    if (analysis_->current(), !analysis_->checked()) return {{}, "the text is too large to be checked"};
    return language::prepareRename(analysis_->script(), static_cast<std::uint32_t>(offset));
}

std::string Rename::rename(long offset, std::string_view newName) {
    if (analysis_->current(), !analysis_->checked()) return "the text is too large to be checked";
    const language::RenameResult result =
        language::rename(analysis_->script(), static_cast<std::uint32_t>(offset), newName);
    if (!result.ok()) return result.refusal;
    box_->SendScintilla(QsciScintilla::SCI_BEGINUNDOACTION);
    // From the last to the first, so that the offsets before each edit stay true.
    for (auto edit = result.edits.rbegin(); edit != result.edits.rend(); ++edit)
        box_->replaceRange(edit->span.begin.offset, edit->span.end.offset - edit->span.begin.offset,
                           QByteArray::fromStdString(edit->text));
    box_->SendScintilla(QsciScintilla::SCI_ENDUNDOACTION);
    return {};
}
