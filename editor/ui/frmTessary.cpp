#include "editor/ui/frmTessary.h"

#include "app/ui/dialogs.h"
#include "app/ui/diskfile.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/DiskWatch.h"
#include "editor/ui/EditorFeatures.h"
#include "editor/ui/LineEndWatch.h"
#include "editor/ui/NoticeBar.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

frmTessary::frmTessary(QWidget* parent) : QWidget(parent) {
    txtMain = new CogTextBox(this);
    txtMain->setObjectName(QStringLiteral("txtMain"));
    features = editorfeatures::install(txtMain);
    lineEnds = new LineEndWatch(txtMain);
    picNotices = new QWidget(this);
    picNotices->setObjectName(QStringLiteral("picNotices"));
    auto* notices = new QVBoxLayout(picNotices);
    notices->setContentsMargins(0, 0, 0, 0);
    notices->setSpacing(0);
    setupLineEndBar();

    picMain = new QFrame(this);
    picMain->setObjectName(QStringLiteral("picMain"));
    picMain->setFixedHeight(twips(495));
    picMain->setFrameShape(QFrame::StyledPanel);
    lblHelp = new QLabel(picMain);
    lblHelp->setObjectName(QStringLiteral("lblHelp"));
    lblHelp->setTextFormat(Qt::PlainText);
    auto* helpLayout = new QVBoxLayout(picMain);
    helpLayout->setContentsMargins(4, 0, 4, 0);
    helpLayout->addWidget(lblHelp);
    picMain->hide();

    // The file changed or vanished on disk: a bar above the text until the user reloads or hides it.
    diskBar = new NoticeBar;
    diskBar->setObjectName(QStringLiteral("diskBar"));
    diskBar->hide();
    lblDisk = diskBar->lblMessage;
    cmdReload = diskBar->addButton(QStringLiteral("&Reload"));
    cmdReload->setObjectName(QStringLiteral("cmdReload"));
    cmdDismiss = diskBar->cmdHide;
    addNotice(diskBar);
    connect(cmdReload, &QPushButton::clicked, this, &frmTessary::reloadRequested);
    connect(&DiskWatch::instance(), &DiskWatch::changed, this, [this](const QString& path) {
        if (path == watchedPath_) checkDisk();
    });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(picNotices);
    layout->addWidget(txtMain, 1);
    layout->addWidget(picMain);

    // The pop-up floats over the text box, outside the layout.
    picCogParams = new QFrame(this);
    picCogParams->setObjectName(QStringLiteral("picCogParams"));
    picCogParams->setFrameShape(QFrame::Box);
    picCogParams->resize(twips(3135), twips(1815));
    lvwCogParams = new QTreeWidget(picCogParams);
    lvwCogParams->setObjectName(QStringLiteral("lvwCogParams"));
    lvwCogParams->setHeaderLabels({QStringLiteral("Parameter")});
    lvwCogParams->setRootIsDecorated(false);
    lvwCogParams->setUniformRowHeights(true);
    auto* popupLayout = new QVBoxLayout(picCogParams);
    popupLayout->setContentsMargins(0, 0, 0, 0);
    popupLayout->addWidget(lvwCogParams);
    picCogParams->hide();
    picCogParams->raise();

    txtMain->keyHook = [this](QKeyEvent* e) { return txtMain_KeyEvent(e); };
    lvwCogParams->installEventFilter(this);
    connect(lvwCogParams, &QTreeWidget::itemDoubleClicked, this, [this] { lvwCogParams_DblClick(); });
    connect(txtMain, &CogTextBox::textEdited, this, &frmTessary::txtMain_Change);

    // Form_Load
    intParens = 0;
    ipos = 1;
    bMod = false;
}

frmTessary::~frmTessary() {
    if (!watchedPath_.isEmpty()) DiskWatch::instance().remove(watchedPath_);
}

QString frmTessary::Caption() const {
    return caption_;
}

void frmTessary::setCaption(const QString& caption) {
    caption_ = caption;
    setWindowTitle(caption);
    if (QMdiSubWindow* sub = subWindow()) sub->setWindowTitle(caption);
}

QMdiSubWindow* frmTessary::subWindow() const {
    return qobject_cast<QMdiSubWindow*>(parentWidget());
}

void frmTessary::clearModified() {
    bMod = false;
    if (caption_.endsWith(QLatin1Char('*'))) setCaption(caption_.chopped(1));
}

void frmTessary::txtMain_Change(const editor::Edit& edit) {
    bMod = true;
    if (!caption_.endsWith(QLatin1Char('*'))) setCaption(caption_ + QLatin1Char('*'));
    const long size = txtMain->textLength();
    const editor::RangeReader read = [this](cog::Pos start, cog::Pos length) {
        return txtMain->range(start, length);
    };
    lsym = editor::updateFirstOccurrence(lsym, "\nsymbols", size, edit, read);
    lsymend = editor::updateFirstOccurrence(lsymend, "\nend", size, edit, read);
}

bool frmTessary::Form_QueryUnload() {
    if (!bMod) return true;
    const QString name = strFileTitle.isEmpty() ? Caption() : strFileTitle;
    switch (ui::MsgBox(QStringLiteral("Save changes to ") + name + QLatin1Char('?'), ui::vbYesNoCancel,
                       ui::vbExclamation)) {
    case ui::vbYes:
        return mdlTessary::frame()->saveWindow(this);
    case ui::vbNo:
        emit discarded();
        return true;
    default:
        return false;
    }
}

void frmTessary::closeEvent(QCloseEvent* event) {
    if (!Form_QueryUnload()) {
        event->ignore();
        return;
    }
    event->accept();
    mdlTessary::frame()->windowClosed(this);
    emit closed();
}

void frmTessary::setDiskState(const editor::DiskState& state) {
    diskState = state;
    const bool bound = strFile.compare(QStringLiteral("blank"), Qt::CaseInsensitive) != 0;
    const QString path = bound ? strFile : QString();
    if (path != watchedPath_) {
        if (!watchedPath_.isEmpty()) DiskWatch::instance().remove(watchedPath_);
        watchedPath_ = path;
        if (!path.isEmpty()) DiskWatch::instance().add(path);
    }
    diskBar->hide();
}

void frmTessary::checkDisk() {
    if (watchedPath_.isEmpty()) return;
    switch (editor::compareDiskState(diskState, diskfile::currentState(watchedPath_))) {
    case editor::DiskChange::Unchanged:
        diskBar->hide();
        return;
    case editor::DiskChange::Changed:
        lblDisk->setText(QStringLiteral("The file on disk has changed since this window read or saved it."));
        cmdReload->show();
        break;
    case editor::DiskChange::Deleted:
        lblDisk->setText(QStringLiteral("The file has been deleted from disk. Save writes it again."));
        cmdReload->hide();
        break;
    }
    diskBar->show();
}

bool frmTessary::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lvwCogParams && event->type() == QEvent::KeyPress)
        return lvwCogParams_KeyEvent(static_cast<QKeyEvent*>(event));
    return QWidget::eventFilter(watched, event);
}
