// An editor window: one open COG file, shown as a child of the main frame.
#pragma once

#include "cog/layout.h"
#include "editor/diskstate.h"
#include "editor/firstoccurrence.h"
#include "editor/ui/EditorFeatures.h"

#include <QString>
#include <QWidget>

class CogTextBox;
class LineEndWatch;
class NoticeBar;
class QAbstractButton;
class QFrame;
class QLabel;
class QMdiSubWindow;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

class frmTessary : public QWidget {
    Q_OBJECT
public:
    explicit frmTessary(QWidget* parent = nullptr);
    ~frmTessary() override;

    // Controls.
    QWidget* picNotices;    // the bars above the text (addNotice)
    NoticeBar* barLineEnds; // shown while lines end otherwise than in CR LF
    CogTextBox* txtMain;
    QFrame* picMain;      // the help strip below the text box
    QLabel* lblHelp;      // the help line inside it
    QFrame* picCogParams; // the pop-up holding the message list
    QTreeWidget* lvwCogParams;
    NoticeBar* diskBar; // shown while the file on disk differs from what the window read or wrote
    QLabel* lblDisk;
    QPushButton* cmdReload;
    QAbstractButton* cmdDismiss; // the bar's hide button

    // Public members, shared with the frame and the tools.
    int intParens = 0;    // parentheses opened while the help line is shown
    cog::Pos ipos = 1;    // 1-based start of the next search
    QByteArray sW;        // word to find or replace
    QByteArray sR;        // replacement
    QString strFile;      // full path, or "blank" for a window never saved
    QString strFileTitle; // file name without directory; empty for a new window
    bool bMod = false;    // changed since the last load or save
    cog::Pos lsym = 0;    // 1-based position of the first LF followed by "symbols"
    cog::Pos lsymend = 0; // 1-based position of the first LF followed by "end"
    long lSpace = 0;      // caret index at which the message pop-up was opened
    QString Tag;          // the window's key in colCogs

    // strFile as this window last read or wrote it.
    editor::DiskState diskState;
    LineEndWatch* lineEnds;            // the line-end style of the text
    editorfeatures::Features features; // the COG language features of the text box

    QString Caption() const;
    void setCaption(const QString& caption);
    // Drops the modified mark: bMod false and no trailing "*".
    void clearModified();

    QMdiSubWindow* subWindow() const;

    // Find, replace and brace matching on the text.
    void MatchBrace();
    void FindWord();
    void Replace(bool bAll, bool bCheckEdges);

    // Puts the caret on a line (1-based; past the last line: the last) and column (1-based byte
    // column; past the line's end: its end), and gives the text the focus.
    void GoToLine(long line, long column);
    // Converts every line end to eol as one undo step; false when there was nothing to convert.
    bool ConvertLineEnds(const QByteArray& eol);
    // Adds a bar above the text, below those already there.
    void addNotice(NoticeBar* bar);

    // Key handling of the text box before the editor sees the key (key-down and character
    // events); true when the key is consumed.
    bool txtMain_KeyEvent(QKeyEvent* event);
    // The message list's events.
    void lvwCogParams_DblClick();
    bool lvwCogParams_KeyEvent(QKeyEvent* event);

    // Runs on every change of the text.
    void txtMain_Change(const editor::Edit& edit);

    // Asks to save when modified; false when the user cancels the close.
    bool Form_QueryUnload();

    // Records what was read from or written to strFile, and watches that file for changes.
    void setDiskState(const editor::DiskState& state);
    // Compares strFile on disk with diskState and shows or hides the bar above the text.
    void checkDisk();

signals:
    // Reload was pressed in the bar above the text.
    void reloadRequested();
    // The user chose not to save the changes when the window closed.
    void discarded();
    // The window has closed.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setupLineEndBar();
    void lineEnds_StyleChanged();
    void SelectWord();
    void InsertParam(bool bSelect);
    void FindParam(int keyascii);

    QString caption_;
    QString watchedPath_;
};
