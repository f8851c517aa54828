// Recovery copies: while a window holds changes that are not saved, its text is copied a few
// seconds after typing pauses into a folder of this program's own under the user's data
// location, so that a crash or a killed program loses at most those seconds. A copy goes when
// the text is saved or its changes are discarded. At start-up, the copies of programs that are
// no longer running are offered back.
#pragma once

#include <QObject>
#include <QTimer>

class frmTessary;

// The copy of one window, owned by the window.
class RecoveryCopy : public QObject {
    Q_OBJECT
public:
    explicit RecoveryCopy(frmTessary* w);
    // Writes the copy now when the window is modified; removes it when not.
    void writeNow();
    void remove();

    // How long after the last keystroke a copy is written, and how long continuous typing may
    // go on before one is written anyway.
    static constexpr int kPauseMs = 2000;
    static constexpr int kLongestMs = 15000;

private:
    frmTessary* w_;
    QString file_;
    bool discarded_ = false; // the user chose to lose these changes: no copy any more
    QTimer pause_;
    QTimer longest_;
};

namespace recovery {

// Starts this program's folder of copies, once.
void startSession();
// Gives w a copy that follows its text.
void attach(frmTessary* w);
// The text of w was saved, or read again from its file: its copy goes.
void forget(frmTessary* w);
// Offers the copies left by programs no longer running, in one question: restore them into new
// windows marked modified, discard them, or keep them for the next start.
void offer();

} // namespace recovery
