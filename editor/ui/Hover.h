// What resting the mouse on an editor's text shows in a tooltip: the diagnostics there first, then
// what the name is (a verb's signature and description, a symbol's declaration line, the message
// a label handles).
#pragma once

#include <QObject>

class CogTextBox;
class ScriptAnalysis;

class Hover : public QObject {
    Q_OBJECT
public:
    Hover(CogTextBox* box, ScriptAnalysis* analysis);

private:
    void dwell(int position, int x, int y);

    CogTextBox* box_;
    ScriptAnalysis* analysis_;
};
