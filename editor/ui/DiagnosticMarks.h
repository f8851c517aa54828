// The diagnostics of an editor's text drawn on it: errors underlined by a red squiggle, warnings
// by an amber one, a marker in the margin beside each line that has one, and the messages as a
// tooltip where the mouse rests on a squiggle.
#pragma once

#include "language/span.h"

#include <QObject>

#include <string>
#include <vector>

class CogTextBox;
class ScriptAnalysis;

class DiagnosticMarks : public QObject {
    Q_OBJECT
public:
    DiagnosticMarks(CogTextBox* box, ScriptAnalysis* analysis);

    // Whether resting the mouse on a squiggle shows its messages (off where another feature
    // shows them in its own tooltip).
    bool tooltips = true;
    // The margin that holds the markers.
    static constexpr int kMargin = 1;

    // The messages of the diagnostics at a byte offset of the text as it is now, errors first.
    QStringList messagesAt(long offset) const;

private:
    void show();
    void dwell(int position, int x, int y);

    CogTextBox* box_;
    ScriptAnalysis* analysis_;
    int errorIndicator_, warningIndicator_, errorMarker_, warningMarker_;
    std::vector<std::string> messages_; // of the diagnostics drawn, by indicator value - 1
};
