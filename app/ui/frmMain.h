// The main frame: the multiple-document area with its editor windows, the tool panel with the
// two trees and Add Symbol, the description line, and every menu.
#pragma once

#include <QMainWindow>

#include <QByteArray>
#include <QPointer>

#include <array>
#include <optional>
#include <string>

class FrameStatusBar;
class KeyedTreeView;
class OpenRequestServer;
class QAction;
class QCheckBox;
class QComboBox;
class QDockWidget;
class QGroupBox;
class QLineEdit;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class frmTessary;

class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    QMdiArea* mdiArea;

    // Tool panel.
    QWidget* picCogRef;
    QComboBox* cmbTvwSel;
    QComboBox* cmbCog;
    KeyedTreeView* tvwCog;  // the reference tree
    KeyedTreeView* tvwCogE; // the explorer tree
    QGroupBox* fraAddSym;
    QComboBox* cmbVarType;
    QLineEdit* txtVarName;
    QLineEdit* txtDefVal;
    QCheckBox* chkLocal;
    QLineEdit* txtLinkID;
    QPushButton* cmdAddVar;
    QWidget* picCogDesc;
    QLineEdit* txtCogDesc;

    // Menus.
    QMenu* mnuFile_m;
    QAction *mnuFileNew, *mnuFileOpen, *mnuOpenTemp, *mnuFileClose, *mnuFileSave, *mnuFileSaveAs,
        *mnuFileSaveAll, *mnuFilePrint, *mnuFileExit;
    std::array<QAction*, 4> mnuFileMRU{};
    QAction* mnuFileBar6;
    QMenu* mnuEditm;
    std::array<QAction*, 5> mnuEdit{}; // Match Brace, Find Word, Find Next, Replace, Replace All
    QAction *mnuEditBar1, *mnuEditChkSyn;
    QAction *mnuEditUndo, *mnuEditRedo; // act on the current window
    QAction* mnuEditGoToLine;
    QMenu* mnuEditLineEnds;
    QAction *mnuEditLineEndsCrLf, *mnuEditLineEndsLf;
    QMenu* mnuCogFunct;
    QAction *mnuCFCollapse, *mnuCFExpand, *mnuCFFind, *mnuCFFindNext;
    QMenu* mnuView;
    QAction *mnuViewFont, *mnuViewOptions, *mnuViewRefresh;
    QMenu* mnuWindow;
    QAction *mnuWindowCascade, *mnuWindowTileHorizontal, *mnuWindowTileVertical, *mnuWindowArrangeIcons;
    QAction* mnuWindowTabbed; // the windows as tabs filling the area
    QMenu* mnuHelpm;
    std::array<QAction*, 1> mnuHelp{};

    FrameStatusBar* sbrMain;

    // The docks below the editors: the current window's diagnostics, and the usages last found.
    QDockWidget* dckProblems;
    QTreeWidget* lvwProblems;
    QAction* mnuViewProblems; // shows and hides the Problems dock
    QDockWidget* dckUsages;   // a tab beside the Problems dock
    QTreeWidget* lvwUsages;
    QAction* mnuViewUsages;
    QAction *mnuEditGoToDefinition, *mnuEditFindUsages, *mnuEditRenameSymbol;

    // State of the trees.
    std::optional<std::string> nLC;  // key of the current reference node
    std::optional<std::string> nLCE; // key of the current explorer node
    int iLN = 0;                     // index of the node last found by the Tree menu
    QString strFindText;             // the Tree menu's find text

    // File menu.
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileClose_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuFileSaveAll_Click();
    void mnuFilePrint_Click();
    void mnuFileExit_Click();
    void mnuFileMRU_Click(int index);
    void mnuOpenTemp_Click();
    // Saves a window as File Save does (Save As for a never-saved one). False when nothing was
    // saved: a write failed, the user kept the changed file on disk, or Save As was cancelled.
    bool saveWindow(frmTessary* w);
    bool saveWindowAs(frmTessary* w);

    // Edit menu.
    void mnuEdit_Click(int index);
    void mnuEditChkSyn_Click();
    void mnuEditGoToLine_Click();
    void mnuEditLineEnds_Click(const QByteArray& eol);

    // Tree menu and the trees.
    void mnuCFCollapse_Click();
    void mnuCFExpand_Click();
    void mnuCFFind_Click();
    void mnuCFFindNext_Click();
    void tvwCog_NodeClick(const std::string& key);
    void tvwCog_DblClick();
    void cmbTvwSel_Click();
    void cmbCog_Click();
    void tvwCogE_NodeClick(const std::string& key);
    void tvwCogE_DblClick();
    void tvwCogE_AfterLabelEdit(const std::string& key, const QString& newString);
    void tvwCogE_KeyDown(int keyCode, int shift);
    void cmdAddVar_Click();

    // View, Window and Help menus.
    void mnuViewFont_Click();
    void mnuViewOptions_Click();
    void mnuViewRefresh_Click();
    void mnuWindowCascade_Click();
    void mnuWindowTileHorizontal_Click();
    void mnuWindowTileVertical_Click();
    void mnuWindowArrangeIcons_Click();
    void mnuWindowTabbed_Click();
    void mnuHelp_Click(int index);
    void showAbout();

    // Frame events.
    void MDIForm_LinkExecute(const QString& cmdStr);
    // Listens on serverName (openrequests::serverName) for paths handed over by a second start of
    // the program; false when another instance already listens.
    bool listenForExecuteRequests(const QString& serverName);

    // Adds a new editor window to the area (hidden until shown).
    QMdiSubWindow* addEditorWindow(frmTessary* w);
    // Called by an editor window that has accepted its close.
    void windowClosed(frmTessary* w);
    // Moves a new window, and shrinks it where needed, so that it lies wholly inside the area.
    void keepInsideArea(QMdiSubWindow* sub);
    // Typed text as the file's bytes; nothing, and a message in the status bar, when it holds a
    // character the file's character set cannot hold.
    std::optional<QByteArray> codePageBytes(const QString& text);
    void reportRefused(const QString& character);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void createPanels();
    void createMenus();
    // The status bar, Go to Line, line ends, tabbed windows and the second shortcuts.
    void addConveniences();
    void setTabbedWindows(bool tabbed);
    // The Problems dock and the language commands of the Edit menu (languageCommands.cpp).
    void addLanguagePanels();
    // Shows the diagnostics of the window in the Problems dock and the status bar, now and after
    // each new analysis of its text; nullptr shows none.
    void followLanguage(frmTessary* w);
    void showProblems();
    void lvwProblems_Click(QTreeWidgetItem* item);
    void mnuEditGoToDefinition_Click();
    void mnuEditFindUsages_Click();
    void mnuEditRenameSymbol_Click();
    void lvwUsages_Click(QTreeWidgetItem* item);
    // Listens to a new editor window: files dropped on its text, characters it refused.
    void followEditor(frmTessary* w);
    void fillWindowMenu();
    void MDIForm_Unload();

    OpenRequestServer* server_ = nullptr;
    QList<QAction*> windowListActions_;
    QPointer<frmTessary> languageWindow_; // the window whose diagnostics are shown
    QPointer<frmTessary> usagesWindow_;   // the window whose usages are listed
    QList<QMetaObject::Connection> languageConnections_;
};
