#include "app/ui/frmMain.h"

#include "app/ui/KeyedTreeView.h"
#include "app/ui/MRU.h"
#include "app/ui/OpenRequestServer.h"
#include "app/ui/dialogs.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QAction* addItem(QMenu* menu, const QString& caption, const QKeySequence& shortcut = {}) {
    QAction* action = menu->addAction(caption);
    action->setShortcut(shortcut);
    return action;
}

// Shares the area among the windows that are not minimized, in their order: in strips one above
// the other (stacked) or side by side.
void tileInStrips(QMdiArea* mdiArea, bool stacked) {
    QList<QMdiSubWindow*> windows = mdiArea->subWindowList();
    windows.removeIf([](const QMdiSubWindow* sub) { return sub->isMinimized(); });
    if (windows.isEmpty()) return;
    const QRect area = mdiArea->viewport()->rect();
    const int step = (stacked ? area.height() : area.width()) / int(windows.size());
    for (int i = 0; i < windows.size(); ++i) {
        windows[i]->showNormal();
        windows[i]->setGeometry(stacked ? QRect(0, i * step, area.width(), step)
                                        : QRect(i * step, 0, step, area.height()));
    }
}

} // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(QStringLiteral("Tessary - by Varnell"));
    setAcceptDrops(true);
    createPanels();
    createMenus();
    addConveniences();
    addLanguagePanels();
    resize(twips(10500) + 120, twips(7170) + 120);
    move(twips(510), twips(930));
}

frmMain::~frmMain() {
    // The editor windows go with the frame.
    mdlTessary::colCogs.clear();
}

void frmMain::createPanels() {
    mdiArea = new QMdiArea;
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(mdiArea, &QMdiArea::subWindowActivated, this, [](QMdiSubWindow* sub) {
        // Form_Activate: the activated window becomes the current one.
        if (auto* w = sub ? qobject_cast<frmTessary*>(sub->widget()) : nullptr)
            mdlTessary::strCurCog = w->Tag;
    });

    // The tool panel on the left: the tree selector and window list, the two trees in one
    // place, and Add Symbol below them.
    picCogRef = new QWidget;
    picCogRef->setObjectName(QStringLiteral("picCogRef"));
    picCogRef->setFixedWidth(twips(3075) + 40);
    cmbTvwSel = new QComboBox;
    cmbTvwSel->setObjectName(QStringLiteral("cmbTvwSel"));
    cmbTvwSel->setEditable(true);
    cmbTvwSel->setInsertPolicy(QComboBox::NoInsert);
    cmbTvwSel->addItems({QStringLiteral("CogRef"), QStringLiteral("CogExplorer")});
    cmbTvwSel->setCurrentIndex(-1);
    cmbTvwSel->setEditText(QStringLiteral("Choose One"));
    cmbCog = new QComboBox;
    cmbCog->setObjectName(QStringLiteral("cmbCog"));
    cmbCog->setEditable(true);
    cmbCog->setInsertPolicy(QComboBox::NoInsert);
    cmbCog->setEditText(QStringLiteral("Choose Cog"));
    tvwCog = new KeyedTreeView;
    tvwCog->setObjectName(QStringLiteral("tvwCog"));
    tvwCogE = new KeyedTreeView;
    tvwCogE->setObjectName(QStringLiteral("tvwCogE"));
    tvwCogE->setLabelsEditable(true);
    tvwCogE->hide();

    fraAddSym = new QGroupBox(QStringLiteral("Add Symbol"));
    fraAddSym->setObjectName(QStringLiteral("fraAddSym"));
    cmbVarType = new QComboBox;
    cmbVarType->setObjectName(QStringLiteral("cmbVarType"));
    cmbVarType->setEditable(true);
    cmbVarType->setInsertPolicy(QComboBox::NoInsert);
    cmbVarType->addItems({"ai", "cog", "flex", "int", "keyframe", "material", "message", "model", "sector",
                          "sound", "surface", "template", "thing", "vector"});
    cmbVarType->setCurrentIndex(-1);
    cmbVarType->setEditText(QStringLiteral("Choose One..."));
    // Sized by a few characters, not by its longest item: the panel is narrow.
    cmbVarType->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbVarType->setMinimumContentsLength(8);
    cmbVarType->setToolTip(QStringLiteral("Choose the data type of the new variable"));
    txtVarName = new QLineEdit;
    txtVarName->setObjectName(QStringLiteral("txtVarName"));
    txtVarName->setToolTip(QStringLiteral("ter the name of the variable to be created"));
    txtDefVal = new QLineEdit;
    txtDefVal->setObjectName(QStringLiteral("txtDefVal"));
    txtDefVal->setToolTip(QStringLiteral("Enter the Default Value here"));
    chkLocal = new QCheckBox;
    chkLocal->setObjectName(QStringLiteral("chkLocal"));
    txtLinkID = new QLineEdit;
    txtLinkID->setObjectName(QStringLiteral("txtLinkID"));
    txtLinkID->setMaximumWidth(40);
    cmdAddVar = new QPushButton(QStringLiteral("Add"));
    cmdAddVar->setObjectName(QStringLiteral("cmdAddVar"));
    auto* symLayout = new QGridLayout(fraAddSym);
    symLayout->setContentsMargins(6, 6, 6, 6);
    symLayout->setHorizontalSpacing(4);
    symLayout->setColumnStretch(1, 1);
    symLayout->addWidget(new QLabel(QStringLiteral("Data Type:")), 0, 0);
    symLayout->addWidget(cmbVarType, 0, 1, 1, 4);
    symLayout->addWidget(new QLabel(QStringLiteral("Name:")), 1, 0);
    symLayout->addWidget(txtVarName, 1, 1, 1, 4);
    symLayout->addWidget(new QLabel(QStringLiteral("Value:")), 2, 0);
    symLayout->addWidget(txtDefVal, 2, 1, 1, 4);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Local:")));
    row->addWidget(chkLocal);
    row->addWidget(new QLabel(QStringLiteral("Link ID:")));
    row->addWidget(txtLinkID);
    row->addStretch();
    row->addWidget(cmdAddVar);
    row->setSpacing(4);
    cmdAddVar->setMinimumWidth(cmdAddVar->fontMetrics().horizontalAdvance(cmdAddVar->text()) + 24);
    cmdAddVar->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    symLayout->addLayout(row, 3, 0, 1, 5);

    auto* selectors = new QHBoxLayout;
    selectors->setSpacing(2);
    // The tree selector keeps its width when the window list beside it is hidden.
    cmbTvwSel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    selectors->addWidget(cmbTvwSel);
    selectors->addWidget(cmbCog, 1);
    selectors->addStretch(0);
    auto* panel = new QVBoxLayout(picCogRef);
    panel->setContentsMargins(0, 0, 0, 0);
    panel->addLayout(selectors);
    panel->addWidget(tvwCog, 1); // the trees take whatever height the frame gives
    panel->addWidget(tvwCogE, 1);
    panel->addWidget(fraAddSym); // Add Symbol stays directly below them

    // The description line along the bottom.
    picCogDesc = new QWidget;
    picCogDesc->setObjectName(QStringLiteral("picCogDesc"));
    txtCogDesc = new QLineEdit;
    txtCogDesc->setObjectName(QStringLiteral("txtCogDesc"));
    txtCogDesc->setReadOnly(true);
    auto* descLayout = new QVBoxLayout(picCogDesc);
    descLayout->setContentsMargins(0, 2, 0, 2);
    descLayout->addWidget(txtCogDesc);

    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(picCogRef);
    top->addWidget(mdiArea, 1);
    auto* central = new QWidget;
    auto* outer = new QVBoxLayout(central);
    outer->setContentsMargins(2, 2, 2, 0);
    outer->setSpacing(2);
    outer->addLayout(top, 1);
    outer->addWidget(picCogDesc);
    setCentralWidget(central);

    connect(cmbTvwSel, &QComboBox::activated, this, [this] { cmbTvwSel_Click(); });
    connect(cmbCog, &QComboBox::activated, this, [this] { cmbCog_Click(); });
    connect(tvwCog, &KeyedTreeView::nodeClicked, this, &frmMain::tvwCog_NodeClick);
    connect(tvwCog, &KeyedTreeView::nodeDoubleClicked, this, [this] { tvwCog_DblClick(); });
    connect(tvwCogE, &KeyedTreeView::nodeClicked, this, &frmMain::tvwCogE_NodeClick);
    connect(tvwCogE, &KeyedTreeView::nodeDoubleClicked, this, [this] { tvwCogE_DblClick(); });
    connect(tvwCogE, &KeyedTreeView::labelEdited, this, &frmMain::tvwCogE_AfterLabelEdit);
    connect(tvwCogE, &KeyedTreeView::keyPressed, this, [this](QKeyEvent* e) {
        if (e->key() == Qt::Key_Delete) tvwCogE_KeyDown(46, static_cast<int>(e->modifiers()));
    });
    connect(cmdAddVar, &QPushButton::clicked, this, [this] { cmdAddVar_Click(); });
}

void frmMain::createMenus() {
    mnuFile_m = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFileNew = addItem(mnuFile_m, QStringLiteral("&New"), QKeySequence(Qt::CTRL | Qt::Key_N));
    mnuFileOpen = addItem(mnuFile_m, QStringLiteral("&Open"), QKeySequence(Qt::CTRL | Qt::Key_O));
    mnuOpenTemp = addItem(mnuFile_m, QStringLiteral("Open &Template"));
    mnuFileClose = addItem(mnuFile_m, QStringLiteral("&Close"));
    mnuFile_m->addSeparator();
    mnuFileSave = addItem(mnuFile_m, QStringLiteral("&Save"), QKeySequence(Qt::CTRL | Qt::Key_S));
    mnuFileSaveAs = addItem(mnuFile_m, QStringLiteral("Save &As"), QKeySequence(Qt::Key_F11));
    mnuFileSaveAll = addItem(mnuFile_m, QStringLiteral("Save Al&l"), QKeySequence(Qt::Key_F12));
    mnuFile_m->addSeparator();
    mnuFilePrint = addItem(mnuFile_m, QStringLiteral("&Print"), QKeySequence(Qt::CTRL | Qt::Key_P));
    mnuFile_m->addSeparator();
    for (int k = 0; k < 4; ++k) {
        mnuFileMRU[k] = addItem(mnuFile_m, QString());
        mnuFileMRU[k]->setVisible(false);
        connect(mnuFileMRU[k], &QAction::triggered, this, [this, k] { mnuFileMRU_Click(k); });
    }
    mnuFileBar6 = mnuFile_m->addSeparator();
    mnuFileBar6->setVisible(false);
    mnuFileExit = addItem(mnuFile_m, QStringLiteral("E&xit"));
    connect(mnuFileNew, &QAction::triggered, this, [this] { mnuFileNew_Click(); });
    connect(mnuFileOpen, &QAction::triggered, this, [this] { mnuFileOpen_Click(); });
    connect(mnuOpenTemp, &QAction::triggered, this, [this] { mnuOpenTemp_Click(); });
    connect(mnuFileClose, &QAction::triggered, this, [this] { mnuFileClose_Click(); });
    connect(mnuFileSave, &QAction::triggered, this, [this] { mnuFileSave_Click(); });
    connect(mnuFileSaveAs, &QAction::triggered, this, [this] { mnuFileSaveAs_Click(); });
    connect(mnuFileSaveAll, &QAction::triggered, this, [this] { mnuFileSaveAll_Click(); });
    connect(mnuFilePrint, &QAction::triggered, this, [this] { mnuFilePrint_Click(); });
    connect(mnuFileExit, &QAction::triggered, this, [this] { mnuFileExit_Click(); });

    mnuEditm = menuBar()->addMenu(QStringLiteral("&Edit"));
    mnuEdit[0] = addItem(mnuEditm, QStringLiteral("Match &Brace"), QKeySequence(Qt::CTRL | Qt::Key_B));
    mnuEdit[1] = addItem(mnuEditm, QStringLiteral("&Find Word"), QKeySequence(Qt::CTRL | Qt::Key_F));
    mnuEdit[2] = addItem(mnuEditm, QStringLiteral("Find &Next"), QKeySequence(Qt::Key_F3));
    mnuEdit[3] = addItem(mnuEditm, QStringLiteral("&Replace"), QKeySequence(Qt::CTRL | Qt::Key_R));
    mnuEdit[4] = addItem(mnuEditm, QStringLiteral("Replace &All"));
    mnuEdit[2]->setEnabled(false);
    for (int i = 0; i < 5; ++i)
        connect(mnuEdit[i], &QAction::triggered, this, [this, i] { mnuEdit_Click(i); });
    mnuEditBar1 = mnuEditm->addSeparator();
    mnuEditBar1->setVisible(false);
    mnuEditChkSyn = addItem(mnuEditm, QStringLiteral("Check &Syntax"), QKeySequence(Qt::Key_F2));
    mnuEditChkSyn->setVisible(false);
    mnuEditChkSyn->setEnabled(false);
    connect(mnuEditChkSyn, &QAction::triggered, this, [this] { mnuEditChkSyn_Click(); });
    // Inside the text box the editor's own Ctrl+Z and Ctrl+Y do the same.
    mnuEditm->addSeparator();
    mnuEditUndo = addItem(mnuEditm, QStringLiteral("&Undo"));
    mnuEditUndo->setShortcuts(QKeySequence::Undo);
    mnuEditRedo = addItem(mnuEditm, QStringLiteral("Re&do"));
    mnuEditRedo->setShortcuts(QKeySequence::Redo);
    connect(mnuEditUndo, &QAction::triggered, this, [] {
        if (frmTessary* w = mdlTessary::currentCog()) w->txtMain->undo();
    });
    connect(mnuEditRedo, &QAction::triggered, this, [] {
        if (frmTessary* w = mdlTessary::currentCog()) w->txtMain->redo();
    });

    mnuCogFunct = menuBar()->addMenu(QStringLiteral("&Tree"));
    mnuCFCollapse = addItem(mnuCogFunct, QStringLiteral("&Collapse All"));
    mnuCFExpand = addItem(mnuCogFunct, QStringLiteral("&Expand All"));
    mnuCogFunct->addSeparator();
    mnuCFFind = addItem(mnuCogFunct, QStringLiteral("&Find"), QKeySequence(Qt::Key_F7));
    mnuCFFindNext = addItem(mnuCogFunct, QStringLiteral("Find &Next"), QKeySequence(Qt::Key_F8));
    connect(mnuCFCollapse, &QAction::triggered, this, [this] { mnuCFCollapse_Click(); });
    connect(mnuCFExpand, &QAction::triggered, this, [this] { mnuCFExpand_Click(); });
    connect(mnuCFFind, &QAction::triggered, this, [this] { mnuCFFind_Click(); });
    connect(mnuCFFindNext, &QAction::triggered, this, [this] { mnuCFFindNext_Click(); });

    mnuView = menuBar()->addMenu(QStringLiteral("&View"));
    mnuViewFont = addItem(mnuView, QStringLiteral("&Fonts"));
    mnuViewOptions = addItem(mnuView, QStringLiteral("&Options"));
    mnuView->addSeparator();
    mnuViewRefresh = addItem(mnuView, QStringLiteral("&Refresh Tree"), QKeySequence(Qt::Key_F5));
    connect(mnuViewFont, &QAction::triggered, this, [this] { mnuViewFont_Click(); });
    connect(mnuViewOptions, &QAction::triggered, this, [this] { mnuViewOptions_Click(); });
    connect(mnuViewRefresh, &QAction::triggered, this, [this] { mnuViewRefresh_Click(); });

    mnuWindow = menuBar()->addMenu(QStringLiteral("&Window"));
    mnuWindowCascade = addItem(mnuWindow, QStringLiteral("&Cascade"));
    mnuWindowTileHorizontal = addItem(mnuWindow, QStringLiteral("Tile &Horizontal"));
    mnuWindowTileVertical = addItem(mnuWindow, QStringLiteral("Tile &Vertical"));
    mnuWindowArrangeIcons = addItem(mnuWindow, QStringLiteral("&Arrange Icons"));
    connect(mnuWindowCascade, &QAction::triggered, this, [this] { mnuWindowCascade_Click(); });
    connect(mnuWindowTileHorizontal, &QAction::triggered, this, [this] { mnuWindowTileHorizontal_Click(); });
    connect(mnuWindowTileVertical, &QAction::triggered, this, [this] { mnuWindowTileVertical_Click(); });
    connect(mnuWindowArrangeIcons, &QAction::triggered, this, [this] { mnuWindowArrangeIcons_Click(); });
    connect(mnuWindow, &QMenu::aboutToShow, this, &frmMain::fillWindowMenu);

    mnuHelpm = menuBar()->addMenu(QStringLiteral("&Help"));
    mnuHelp[0] = addItem(mnuHelpm, QStringLiteral("&About"));
    connect(mnuHelp[0], &QAction::triggered, this, [this] { mnuHelp_Click(0); });
}

// The Window menu ends with the open editor windows, the active one checked.
void frmMain::fillWindowMenu() {
    qDeleteAll(windowListActions_);
    windowListActions_.clear();
    const QList<QMdiSubWindow*> windows = mdiArea->subWindowList();
    if (windows.isEmpty()) return;
    windowListActions_ << mnuWindow->addSeparator();
    for (int i = 0; i < windows.size(); ++i) {
        QMdiSubWindow* sub = windows[i];
        const QString title = sub->windowTitle().replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction* action =
            mnuWindow->addAction(i < 9 ? QStringLiteral("&%1 %2").arg(i + 1).arg(title) : title);
        action->setCheckable(true);
        action->setChecked(sub == mdiArea->activeSubWindow());
        connect(action, &QAction::triggered, this, [this, sub] { mdiArea->setActiveSubWindow(sub); });
        windowListActions_ << action;
    }
}

void frmMain::mnuWindowCascade_Click() {
    mdiArea->cascadeSubWindows();
}

void frmMain::mnuWindowTileHorizontal_Click() {
    tileInStrips(mdiArea, true); // one window above the other, each as wide as the area
}

void frmMain::mnuWindowTileVertical_Click() {
    tileInStrips(mdiArea, false); // side by side, each as high as the area
}

void frmMain::mnuWindowArrangeIcons_Click() {
    // Minimized windows in a row along the bottom of the area.
    const QRect area = mdiArea->viewport()->rect();
    int x = 0;
    for (auto* sub : mdiArea->subWindowList()) {
        if (!sub->isMinimized()) continue;
        const QSize size = sub->size();
        sub->move(x, area.height() - size.height());
        x += size.width();
    }
}

void frmMain::mnuHelp_Click(int) {
    showAbout();
}

QMdiSubWindow* frmMain::addEditorWindow(frmTessary* w) {
    QMdiSubWindow* sub = mdiArea->addSubWindow(w);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->resize(twips(7335) + 16, twips(6360) + 32);
    followEditor(w);
    return sub;
}

void frmMain::windowClosed(frmTessary* w) {
    setWindowTitle(QStringLiteral("Tessary by Varnell"));
    if (!tvwCogE->Tag.isEmpty() && tvwCogE->Tag == w->Tag) {
        tvwCogE->clearNodes();
        nLCE.reset();
    }
    mdlTessary::colCogs.remove(w->Tag);
    mdlTessary::RefreshCogList();
}

void frmMain::closeEvent(QCloseEvent* event) {
    // Every editor window gets its close request first; a Cancel keeps the program running.
    for (QMdiSubWindow* sub : mdiArea->subWindowList()) {
        if (!sub->close()) {
            event->ignore();
            return;
        }
    }
    MDIForm_Unload();
    event->accept();
}

void frmMain::MDIForm_Unload() {
    if (mdlTessary::objMRU) mdlTessary::objMRU->SaveMRU(mnuFileMRU);
    QSettings settings;
    settings.beginGroup(QStringLiteral("Defaults"));
    settings.setValue(QStringLiteral("DefOpenDir"), mdlTessary::DefOpenDir);
    settings.setValue(QStringLiteral("DefSaveDir"), mdlTessary::DefSaveDir);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
    // Only the first dropped file opens.
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty() || !urls.first().isLocalFile()) return;
    event->acceptProposedAction();
    const QString path = urls.first().toLocalFile();
    QTimer::singleShot(0, this, [path] { mdlTessary::OpenCogFile(path); });
}

void frmMain::MDIForm_LinkExecute(const QString& cmdStr) {
    ui::MsgBox(cmdStr);
    mdlTessary::OpenCogFile(cmdStr);
}

bool frmMain::listenForExecuteRequests(const QString& serverName) {
    server_ = new OpenRequestServer(this);
    // Queued: the path is shown in a message box, which must not wait inside the socket's handler.
    connect(
        server_, &OpenRequestServer::pathReceived, this,
        [this](const QString& path) {
            raise();
            activateWindow();
            MDIForm_LinkExecute(path);
        },
        Qt::QueuedConnection);
    return server_->listen(serverName);
}
