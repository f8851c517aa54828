// The frame's side of the COG language features: the Problems dock below the editors (shown and
// hidden from the View menu), the diagnostics count in the status bar.
#include "app/ui/StatusBar.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"
#include "editor/languagetext.h"
#include "editor/ui/ScriptAnalysis.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStyle>
#include <QTreeWidget>

namespace {

enum Role { LineRole = Qt::UserRole, ColumnRole };

QTreeWidget* listOfPlaces(const QString& name, const QStringList& headers) {
    auto* list = new QTreeWidget;
    list->setObjectName(name);
    list->setHeaderLabels(headers);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->header()->setStretchLastSection(true);
    return list;
}

QDockWidget* dock(const QString& title, const QString& name, QWidget* content, QWidget* parent) {
    auto* d = new QDockWidget(title, parent);
    d->setObjectName(name);
    d->setWidget(content);
    d->setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    return d;
}

} // namespace

void frmMain::addLanguagePanels() {
    // The docks lie below the editors only, not below the tool panel beside them: the editors'
    // area becomes a main window of its own inside the frame.
    auto* editors = new QMainWindow;
    editors->setObjectName(QStringLiteral("picEditors"));
    editors->setWindowFlags(Qt::Widget);
    delete mdiArea->parentWidget()->layout()->replaceWidget(mdiArea, editors);
    editors->setCentralWidget(mdiArea);

    lvwProblems =
        listOfPlaces(QStringLiteral("lvwProblems"), {QStringLiteral("Line"), QStringLiteral("Problem")});
    dckProblems = dock(QStringLiteral("Problems"), QStringLiteral("dckProblems"), lvwProblems, editors);
    editors->addDockWidget(Qt::BottomDockWidgetArea, dckProblems);
    editors->resizeDocks({dckProblems}, {twips(1200)}, Qt::Vertical);
    connect(lvwProblems, &QTreeWidget::itemClicked, this, &frmMain::lvwProblems_Click);

    mnuViewProblems = dckProblems->toggleViewAction();
    mnuViewProblems->setText(QStringLiteral("&Problems"));
    mnuView->addSeparator();
    mnuView->addAction(mnuViewProblems);

    connect(mdiArea, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sub) {
        // As the status bar: the window that lost the focus to no window stays shown.
        if (auto* w = sub ? qobject_cast<frmTessary*>(sub->widget()) : nullptr) followLanguage(w);
    });
}

void frmMain::followLanguage(frmTessary* w) {
    for (const auto& c : languageConnections_) disconnect(c);
    languageConnections_.clear();
    languageWindow_ = w;
    if (w)
        languageConnections_ << connect(w->language.analysis, &ScriptAnalysis::analysed, this,
                                        &frmMain::showProblems)
                             << connect(w, &QObject::destroyed, this, [this] { followLanguage(nullptr); });
    showProblems();
}

void frmMain::showProblems() {
    lvwProblems->clear();
    ScriptAnalysis* analysis = languageWindow_ ? languageWindow_->language.analysis : nullptr;
    // A text edited since its last analysis is shown once typing pauses.
    if (!analysis || !analysis->isCurrent()) return sbrMain->setDiagnostics(QString());
    const auto& diagnostics = analysis->current().diagnostics;
    QList<QTreeWidgetItem*> items;
    for (const language::Diagnostic& d : diagnostics) {
        auto* item = new QTreeWidgetItem({QString::number(d.span.begin.line), codepage::toText(d.text)});
        const bool error = d.severity == language::Severity::Error;
        item->setIcon(
            0, style()->standardIcon(error ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning));
        item->setToolTip(0, QString::fromLatin1(language::severityName(d.severity)));
        item->setData(0, LineRole, int(d.span.begin.line));
        item->setData(0, ColumnRole, int(d.span.begin.column));
        items << item;
    }
    lvwProblems->addTopLevelItems(items);
    sbrMain->setDiagnostics(QString::fromStdString(editor::diagnosticsSummary(diagnostics)));
}

void frmMain::lvwProblems_Click(QTreeWidgetItem* item) {
    if (!languageWindow_ || !item) return;
    languageWindow_->GoToLine(item->data(0, LineRole).toInt(), item->data(0, ColumnRole).toInt());
}
