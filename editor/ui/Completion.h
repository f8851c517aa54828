// Completion in the code section of an editor's text, in the editor component's own list: verbs
// with their argument types, the script's symbols, the engine's message names and the statement
// keywords. The list opens on Ctrl+Space, and by itself once three characters of a name are typed;
// Enter or Tab writes the chosen name as it is declared. Never in the symbols section, where the
// message pop-up of the typing aids works.
#pragma once

#include <QObject>

class CogTextBox;
class ScriptAnalysis;

class Completion : public QObject {
    Q_OBJECT
public:
    Completion(CogTextBox* box, ScriptAnalysis* analysis);

    // Opens the list for the name before the caret; false when nothing may go there.
    bool show();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void charAdded(int ch);
    void chosen(const char* selection, int position);

    CogTextBox* box_;
    ScriptAnalysis* analysis_;
    long pendingAt_ = -1; // the caret where the list opens once the text has been analysed
};
