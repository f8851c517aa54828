// What users of general editors expect beside the frame's own commands: the status bar, Go to
// Line, Edit > Line Ends, Window > Tabbed Windows (remembered in the settings), Ctrl+Shift+S for
// Save As and Ctrl+Q for Exit, and files dropped on an editor's text.
#include "app/settingsvalues.h"
#include "app/ui/StatusBar.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/charset.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/LineEndWatch.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"

#include <QActionGroup>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSettings>
#include <QTimer>

namespace {

const QString kTabbedKey = QStringLiteral("Window/TabbedWindows");

} // namespace

void frmMain::addConveniences() {
    sbrMain = new FrameStatusBar(this);
    setStatusBar(sbrMain);
    connect(mdiArea, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sub) {
        // The window that lost the focus to no window stays shown, as the frame's commands act on it.
        if (auto* w = sub ? qobject_cast<frmTessary*>(sub->widget()) : nullptr) sbrMain->follow(w);
    });

    // The menu shows the first shortcut, F11; Exit's menu item keeps showing none.
    mnuFileSaveAs->setShortcuts({QKeySequence(Qt::Key_F11), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)});
    auto* exitKey = new QAction(this);
    exitKey->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    addAction(exitKey);
    connect(exitKey, &QAction::triggered, mnuFileExit, &QAction::trigger);

    // Before the separator that opens Undo and Redo, which stay last.
    QAction* undoBar = mnuEditm->actions().at(mnuEditm->actions().indexOf(mnuEditUndo) - 1);
    mnuEditm->insertSeparator(undoBar);
    mnuEditGoToLine = new QAction(QStringLiteral("&Go to Line..."), this);
    mnuEditGoToLine->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    mnuEditm->insertAction(undoBar, mnuEditGoToLine);
    connect(mnuEditGoToLine, &QAction::triggered, this, [this] { mnuEditGoToLine_Click(); });
    mnuEditLineEnds = new QMenu(QStringLiteral("Line &Ends"), this);
    mnuEditm->insertMenu(undoBar, mnuEditLineEnds);
    mnuEditLineEndsCrLf = mnuEditLineEnds->addAction(QStringLiteral("&CR LF (COG tools, Windows)"));
    mnuEditLineEndsLf = mnuEditLineEnds->addAction(QStringLiteral("&LF (Unix)"));
    auto* lineEnds = new QActionGroup(this);
    for (QAction* a : {mnuEditLineEndsCrLf, mnuEditLineEndsLf}) {
        a->setCheckable(true);
        lineEnds->addAction(a);
    }
    connect(mnuEditLineEndsCrLf, &QAction::triggered, this, [this] { mnuEditLineEnds_Click("\r\n"); });
    connect(mnuEditLineEndsLf, &QAction::triggered, this, [this] { mnuEditLineEnds_Click("\n"); });
    // The item of the current window's line ends is checked; a mixed text checks neither.
    connect(mnuEditLineEnds, &QMenu::aboutToShow, this, [this] {
        const frmTessary* w = mdlTessary::currentCog();
        const editor::LineEndStyle style = w ? w->lineEnds->style() : editor::LineEndStyle::None;
        mnuEditLineEndsCrLf->setChecked(style == editor::LineEndStyle::CrLf);
        mnuEditLineEndsLf->setChecked(style == editor::LineEndStyle::Lf);
    });

    mnuWindowTabbed = new QAction(QStringLiteral("Ta&bbed Windows"), this);
    mnuWindowTabbed->setCheckable(true);
    mnuWindow->insertAction(mnuWindowCascade, mnuWindowTabbed);
    mnuWindow->insertSeparator(mnuWindowCascade);
    connect(mnuWindowTabbed, &QAction::triggered, this, [this] { mnuWindowTabbed_Click(); });
    const QString stored = QSettings().value(kTabbedKey, QStringLiteral("False")).toString();
    mnuWindowTabbed->setChecked(settings::toBool(stored.toStdString(), false));
    setTabbedWindows(mnuWindowTabbed->isChecked());
}

void frmMain::mnuWindowTabbed_Click() {
    setTabbedWindows(mnuWindowTabbed->isChecked());
    QSettings().setValue(kTabbedKey,
                         QString::fromStdString(settings::boolText(mnuWindowTabbed->isChecked())));
}

void frmMain::setTabbedWindows(bool tabbed) {
    // Tabs fill the area: there is nothing to arrange.
    for (QAction* arrange :
         {mnuWindowCascade, mnuWindowTileHorizontal, mnuWindowTileVertical, mnuWindowArrangeIcons})
        arrange->setEnabled(!tabbed);
    if (tabbed == (mdiArea->viewMode() == QMdiArea::TabbedView)) return;
    if (tabbed) {
        mdiArea->setViewMode(QMdiArea::TabbedView);
        mdiArea->setDocumentMode(true);
        mdiArea->setTabsClosable(true);
        mdiArea->setTabsMovable(true);
        return;
    }
    mdiArea->setViewMode(QMdiArea::SubWindowView);
    QMdiSubWindow* active = mdiArea->activeSubWindow();
    for (QMdiSubWindow* sub : mdiArea->subWindowList()) { // back to their own size, inside the area
        sub->showNormal();
        keepInsideArea(sub);
    }
    if (active) mdiArea->setActiveSubWindow(active);
}

void frmMain::keepInsideArea(QMdiSubWindow* sub) {
    if (mdiArea->viewMode() == QMdiArea::TabbedView || sub->isMaximized() || sub->isMinimized()) return;
    const QRect area = mdiArea->viewport()->rect();
    QRect g = sub->geometry();
    g.setSize(g.size().boundedTo(area.size()));
    g.moveTo(std::clamp(g.left(), 0, area.width() - g.width()),
             std::clamp(g.top(), 0, area.height() - g.height()));
    if (g != sub->geometry()) sub->setGeometry(g);
}

void frmMain::followEditor(frmTessary* w) {
    connect(w->txtMain, &CogTextBox::filesDropped, this, [this](const QStringList& paths) {
        // As on the frame: the first file opens, once the drop has ended.
        const QString path = paths.first();
        QTimer::singleShot(0, this, [path] { mdlTessary::OpenCogFile(path); });
    });
    connect(w->txtMain, &CogTextBox::characterRefused, this, &frmMain::reportRefused);
}

std::optional<QByteArray> frmMain::codePageBytes(const QString& text) {
    QString refused;
    const auto bytes = codepage::toBytes(text, &refused);
    if (!bytes) reportRefused(refused);
    return bytes;
}

void frmMain::reportRefused(const QString& character) {
    sbrMain->showMessage(
        QStringLiteral("\"%1\" was left out: the file's character set, %2, has no such character.")
            .arg(character, QString::fromLatin1(editor::kCharsetName)),
        8000);
}
