// The result window of the syntax check: one line per finding of the current editor window;
// clicking a finding puts that window's caret where the finding points.
#pragma once

#include "cog/layout.h"

#include <QDialog>

class QListWidget;
class QListWidgetItem;
class QPushButton;

class frmChkSyn : public QDialog {
    Q_OBJECT
public:
    explicit frmChkSyn(QWidget* parent = nullptr);

    QListWidget* lstChkSyn;
    QPushButton* cmdOK;

    // Checks the current editor window and lists the findings.
    void CheckCog();
    // Appends one finding: its text, and the caret index it points at as the item's data.
    void addErr(const QString& sErr, qint32 lpos);
    // Whether the character sChar at text position lpos of the current editor window is closed
    // by sOppChar under the lock-step rule (iDir 1 forward, -1 backward).
    bool MatchChar(cog::Pos lpos, const QString& sChar, const QString& sOppChar, int iDir);

    void lstChkSyn_Click(QListWidgetItem* item);
    void cmdOK_Click();

    // The open result window, or nullptr when none is loaded.
    static frmChkSyn* loaded();
    // Shows the result window, loading (and so checking) it when it is not loaded yet.
    static frmChkSyn* showWindow();

private:
    void Form_Load();
};
