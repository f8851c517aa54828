// The frame's side of the COG language features: the Problems dock below the editors (shown and
// hidden from the View menu), the diagnostics count in the status bar, and the Edit menu's Go to
// Definition, Find Usages (whose places are listed in a tab beside the Problems) and Rename Symbol.
#include "app/ui/StatusBar.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"
#include "editor/languagetext.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/Definition.h"
#include "editor/ui/Rename.h"
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

enum Role { LineRole = Qt::UserRole, ColumnRole, LengthRole };

// Moves the caret to a listed place, selecting its length.
void goToPlace(frmTessary* w, const QTreeWidgetItem* item) {
    if (!w || !item) return;
    w->GoToLine(item->data(0, LineRole).toInt(), item->data(0, ColumnRole).toInt());
    w->txtMain->setSelLength(item->data(0, LengthRole).toInt());
}

// A place in a list: its line (and column), its text.
QTreeWidgetItem* placeItem(const language::Span& span, const QString& text, bool withColumn) {
    const QString line = QString::number(span.begin.line);
    auto* item =
        new QTreeWidgetItem({withColumn ? line + ':' + QString::number(span.begin.column) : line, text});
    item->setData(0, LineRole, int(span.begin.line));
    item->setData(0, ColumnRole, int(span.begin.column));
    item->setData(0, LengthRole,
                  span.begin.line == span.end.line ? int(span.end.column - span.begin.column) : 0);
    return item;
}

QTreeWidget* listOfPlaces(const QString& name, const QStringList& headers) {
    auto* list = new QTreeWidget;
    list->setObjectName(name);
    list->setHeaderLabels(headers);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->header()->setStretchLastSection(true);
    return list;
}

void refuseRename(const std::string& reason) {
    ui::MsgBox(QStringLiteral("Nothing was renamed: ") + codepage::toText(reason) + QLatin1Char('.'),
               ui::vbOKOnly, ui::vbExclamation);
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
    lvwUsages = listOfPlaces(QStringLiteral("lvwUsages"), {QStringLiteral("Line"), QStringLiteral("Usage")});
    dckUsages = dock(QStringLiteral("Usages"), QStringLiteral("dckUsages"), lvwUsages, editors);
    editors->tabifyDockWidget(dckProblems, dckUsages);
    dckProblems->raise();
    connect(lvwUsages, &QTreeWidget::itemClicked, this, &frmMain::lvwUsages_Click);

    mnuViewProblems = dckProblems->toggleViewAction();
    mnuViewProblems->setText(QStringLiteral("&Problems"));
    mnuViewUsages = dckUsages->toggleViewAction();
    mnuViewUsages->setText(QStringLiteral("&Usages"));
    mnuView->addSeparator();
    mnuView->addAction(mnuViewProblems);
    mnuView->addAction(mnuViewUsages);

    // After Go to Line, before the separator that opens Undo and Redo, which stay last.
    QAction* undoBar = mnuEditm->actions().at(mnuEditm->actions().indexOf(mnuEditUndo) - 1);
    mnuEditGoToDefinition = new QAction(QStringLiteral("Go to &Definition"), this);
    mnuEditGoToDefinition->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F12));
    mnuEditFindUsages = new QAction(QStringLiteral("Find &Usages"), this);
    mnuEditFindUsages->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F12));
    mnuEditRenameSymbol = new QAction(QStringLiteral("Re&name Symbol..."), this);
    mnuEditRenameSymbol->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
    mnuEditm->insertActions(undoBar, {mnuEditGoToDefinition, mnuEditFindUsages, mnuEditRenameSymbol});
    connect(mnuEditRenameSymbol, &QAction::triggered, this, [this] { mnuEditRenameSymbol_Click(); });
    connect(mnuEditGoToDefinition, &QAction::triggered, this, [this] { mnuEditGoToDefinition_Click(); });
    connect(mnuEditFindUsages, &QAction::triggered, this, [this] { mnuEditFindUsages_Click(); });

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
        languageConnections_ << connect(w->features.analysis, &ScriptAnalysis::analysed, this,
                                        &frmMain::showProblems)
                             << connect(w, &QObject::destroyed, this, [this] { followLanguage(nullptr); });
    showProblems();
}

void frmMain::showProblems() {
    lvwProblems->clear();
    ScriptAnalysis* analysis = languageWindow_ ? languageWindow_->features.analysis : nullptr;
    // A text edited since its last analysis is shown once typing pauses.
    if (!analysis || !analysis->isCurrent()) return sbrMain->setDiagnostics(QString());
    const auto& diagnostics = analysis->current().diagnostics;
    if (!analysis->checked())
        return sbrMain->setDiagnostics(
            QStringLiteral("Not checked: larger than %1 MB").arg(ScriptAnalysis::kLargestChecked >> 20));
    QList<QTreeWidgetItem*> items;
    for (const language::Diagnostic& d : diagnostics) {
        auto* item = placeItem(d.span, codepage::toText(d.text), false);
        item->setData(0, LengthRole, 0);
        const bool error = d.severity == language::Severity::Error;
        item->setIcon(
            0, style()->standardIcon(error ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning));
        item->setToolTip(0, QString::fromLatin1(language::severityName(d.severity)));
        items << item;
    }
    lvwProblems->addTopLevelItems(items);
    sbrMain->setDiagnostics(QString::fromStdString(editor::diagnosticsSummary(diagnostics)));
}

void frmMain::lvwProblems_Click(QTreeWidgetItem* item) {
    goToPlace(languageWindow_, item);
}

void frmMain::mnuEditGoToDefinition_Click() {
    frmTessary* w = mdlTessary::currentCog();
    if (w && !w->features.definition->goToDefinition(w->txtMain->selStart()))
        sbrMain->showMessage(QStringLiteral("There is no declaration of a name at the caret."), 5000);
}

void frmMain::mnuEditFindUsages_Click() {
    frmTessary* w = mdlTessary::currentCog();
    if (!w) return;
    const auto usages = w->features.definition->usages(w->txtMain->selStart());
    if (usages.empty()) {
        sbrMain->showMessage(QStringLiteral("There is no symbol or label at the caret."), 5000);
        return;
    }
    usagesWindow_ = w;
    lvwUsages->clear();
    const std::string& text = w->features.analysis->text();
    for (const language::Span& span : usages)
        lvwUsages->addTopLevelItem(placeItem(span, codepage::toText(editor::lineAt(text, span)), true));
    dckUsages->show();
    dckUsages->raise();
}

void frmMain::mnuEditRenameSymbol_Click() {
    frmTessary* w = mdlTessary::currentCog();
    if (!w) return;
    const long caret = w->txtMain->selStart();
    const language::RenameTarget target = w->features.rename->target(caret);
    if (!target.ok()) return refuseRename(target.refusal);
    const QString name = codepage::toText(w->features.analysis->text().substr(
        target.span.begin.offset, target.span.end.offset - target.span.begin.offset));
    const QString typed =
        ui::InputBox(QStringLiteral("New name for ") + name, QStringLiteral("Rename Symbol"), name).trimmed();
    if (typed.isEmpty() || typed == name) return; // cancelled, or nothing to change
    const auto bytes = codePageBytes(typed);
    if (!bytes) return;
    const std::string refusal = w->features.rename->rename(caret, bytes->toStdString());
    if (!refusal.empty()) refuseRename(refusal);
}

void frmMain::lvwUsages_Click(QTreeWidgetItem* item) {
    goToPlace(usagesWindow_, item);
}
