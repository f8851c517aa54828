// Keeps an editor's line-end style current as the text changes, lets Enter and paste insert the
// file's own line end (LF in a file whose lines all end in LF, CR in one of CR alone, CR LF
// otherwise), and converts every line end of the text to one kind.
#pragma once

#include "editor/lineends.h"

#include <QObject>

class CogTextBox;

class LineEndWatch : public QObject {
    Q_OBJECT
public:
    explicit LineEndWatch(CogTextBox* box);

    editor::LineEndStyle style() const { return tracker_.style(); }
    const editor::LineEndCounts& counts() const { return tracker_.counts(); }

    // Replaces every line end by eol ("\r\n" or "\n") as one undo step, keeping the caret on its
    // line and the view where it was. False when nothing had to change.
    bool convert(const QByteArray& eol);

signals:
    void styleChanged(editor::LineEndStyle style);

private:
    void update();

    CogTextBox* box_;
    editor::LineEndTracker tracker_;
    editor::LineEndStyle shown_ = editor::LineEndStyle::None;
};
