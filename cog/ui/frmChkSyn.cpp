#include "cog/ui/frmChkSyn.h"

#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "cog/syntaxcheck.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPointer<frmChkSyn> gLoaded;

constexpr int kCaretRole = Qt::UserRole;

} // namespace

frmChkSyn::frmChkSyn(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmChkSyn"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Check Syntax - "));
    lstChkSyn = new QListWidget;
    lstChkSyn->setObjectName(QStringLiteral("lstChkSyn"));
    lstChkSyn->setSortingEnabled(false);
    cmdOK = new QPushButton(QStringLiteral("OK"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lstChkSyn, 1);
    layout->addLayout(buttons);
    resize(360, 240);

    connect(lstChkSyn, &QListWidget::itemClicked, this, &frmChkSyn::lstChkSyn_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmChkSyn::cmdOK_Click);
}

frmChkSyn* frmChkSyn::loaded() {
    return gLoaded.data();
}

frmChkSyn* frmChkSyn::showWindow() {
    if (!gLoaded) {
        gLoaded = new frmChkSyn; // no owner
        // Without an owner it would keep the program running after the frame has closed.
        if (frmMain* frame = mdlTessary::frame())
            QObject::connect(frame, &QObject::destroyed, gLoaded, &QWidget::close);
        gLoaded->Form_Load();
    }
    gLoaded->show();
    gLoaded->raise();
    gLoaded->activateWindow();
    return gLoaded;
}

void frmChkSyn::Form_Load() {
    const frmTessary* w = mdlTessary::currentCog();
    setWindowTitle(QStringLiteral("Check Syntax - ") + (w ? w->Caption() : QString()));
    CheckCog();
}

void frmChkSyn::CheckCog() {
    const frmTessary* w = mdlTessary::currentCog();
    if (!w) return;
    for (const cog::Finding& f : cog::checkCog(w->txtMain->bytes(), w->txtMain->selStart()))
        addErr(QString::fromLatin1(f.text.data(), static_cast<qsizetype>(f.text.size())),
               static_cast<qint32>(f.caret));
}

void frmChkSyn::addErr(const QString& sErr, qint32 lpos) {
    auto* item = new QListWidgetItem(sErr);
    item->setData(kCaretRole, lpos);
    lstChkSyn->addItem(item);
}

bool frmChkSyn::MatchChar(cog::Pos lpos, const QString& sChar, const QString& sOppChar, int iDir) {
    const frmTessary* w = mdlTessary::currentCog();
    if (!w || sChar.isEmpty() || sOppChar.isEmpty()) return false;
    return cog::matchChar(w->txtMain->bytes(), lpos, sChar.at(0).toLatin1(), sOppChar.at(0).toLatin1(), iDir);
}

void frmChkSyn::lstChkSyn_Click(QListWidgetItem* item) {
    frmTessary* w = mdlTessary::currentCog();
    if (!w || !item) return;
    w->txtMain->setSelStart(item->data(kCaretRole).toInt());
}

void frmChkSyn::cmdOK_Click() {
    close();
}
