// The message box, input box and common dialogs of the program, behind one replaceable object so
// that tests can answer them and see what was shown.
#pragma once

#include <QFont>
#include <QLoggingCategory>
#include <QString>

class QPrinter;
class QWidget;

namespace ui {

// Buttons, icons and answers of MsgBox.
// vbDefaultButton2, added to the buttons, makes the second button the default.
enum : int { vbOKOnly = 0, vbYesNoCancel = 3, vbYesNo = 4, vbDefaultButton2 = 256 };
enum : int { vbCritical = 16, vbExclamation = 48 };
enum : int { vbOK = 1, vbCancel = 2, vbYes = 6, vbNo = 7 };

inline const QString kTitle = QStringLiteral("Tessary");

// What the user is shown, as lines "message: TEXT" and "windows: CAPTION | ...", in the logging
// category "tessary.ui" (off by default; QT_LOGGING_RULES="tessary.ui.info=true" switches it on).
Q_DECLARE_LOGGING_CATEGORY(lcUi)

// The real implementation shows Qt's dialogs.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Returns vbOK, or vbYes / vbNo / vbCancel for vbYesNoCancel and vbYesNo.
    virtual int msgBox(const QString& text, int buttons, int icon, const QString& title);
    // Cancel answers the empty text.
    virtual QString inputBox(const QString& prompt, const QString& title, const QString& defaultText);
    // A filter in the form "Description (*.x)|*.x|All files (*.*)|*.*". Cancel answers "".
    virtual QString openFileName(const QString& dir, const QString& filter);
    virtual QString saveFileName(const QString& dir, const QString& filter, const QString& defaultSuffix);
    // Shows the print dialog for the printer; false when cancelled.
    virtual bool printDialog(QPrinter& printer);
    // The font dialog starting at initial; false when cancelled.
    virtual bool fontDialog(const QFont& initial, QFont& chosen);
};

Dialogs& dialogs();
// Installs another implementation (tests); nullptr restores the real dialogs.
void setDialogs(Dialogs* replacement);

int MsgBox(const QString& text, int buttons = vbOKOnly, int icon = 0, const QString& title = kTitle);
QString InputBox(const QString& prompt, const QString& title = kTitle, const QString& defaultText = {});

// The dialog filter "A (*.a)|*.a|B|*" in Qt's form "A (*.a);;B (*)".
QString qtFilter(const QString& filter);

} // namespace ui
