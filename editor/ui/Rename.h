// Rename Symbol on an editor's text: the declaration and every use the parser sees of the symbol
// or label at an offset get the new name, as one undo step; comments and strings stay as they are.
#pragma once

#include "language/services.h"

#include <QObject>

#include <string>
#include <string_view>

class CogTextBox;
class ScriptAnalysis;

class Rename : public QObject {
    Q_OBJECT
public:
    Rename(CogTextBox* box, ScriptAnalysis* analysis);

    // The name at offset (or just before it) and whether it can be renamed.
    language::RenameTarget target(long offset);
    // Renames what is named at offset; why nothing was renamed, or empty when it was.
    std::string rename(long offset, std::string_view newName);

private:
    CogTextBox* box_;
    ScriptAnalysis* analysis_;
};
