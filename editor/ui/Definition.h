// Go to Definition and Find Usages on an editor's text: Ctrl+click on a name (or the caller, for
// the name at the caret) moves to its declaration, from "call x" to the label "x:"; the usages of
// the symbol or label at an offset are listed for whoever shows them.
#pragma once

#include "language/span.h"

#include <QObject>

#include <vector>

class CogTextBox;
class ScriptAnalysis;

class Definition : public QObject {
    Q_OBJECT
public:
    Definition(CogTextBox* box, ScriptAnalysis* analysis);

    // Selects the declared name of what the name at offset (or just before it) names; false, and
    // the caret left alone, when it names nothing declared.
    bool goToDefinition(long offset);
    // The declaration and every use of the symbol or label named at offset, in text order
    // (spans into analysis->text()); empty when there is none.
    std::vector<language::Span> usages(long offset);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CogTextBox* box_;
    ScriptAnalysis* analysis_;
};
