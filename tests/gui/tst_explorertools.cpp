// Renaming and deleting through the explorer tree, and the Add Symbol frame, on real widgets:
// label edits typed into the tree, the Delete key, and the frame's fields and button.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"
#include "cog/layout.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

namespace {
const QByteArray kScript =
    "# counter\r\nsymbols\r\nint     count=0\r\nint     ax\r\nthing   player\r\n"
    "message startup\r\nend\r\ncode\r\nstartup:\r\n  // count up\r\n  count = count + 1;\r\n"
    "  recount(ax); x; ax(1);\r\n  return;\r\nend\r\n";
const int kEndLine = int(kScript.indexOf("\nend") + 1);
const std::string kCount = "int     count=0\r", kAx = "int     ax\r";
} // namespace

class tst_ExplorerTools : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    // Free-standing later occurrences change; parts of longer words and "ax(" or "ax)" stay.
    void renameByEditingTheLabel() {
        frmTessary* w = openScript(kScript, true);
        QVERIFY(w);
        editLabel(kCount, QStringLiteral("total=0"));
        QByteArray expected =
            QByteArray(kScript).replace("count=0", "total=0").replace("// count", "// total");
        QCOMPARE(textOf(w), expected.replace("count = count", "total = total"));
        QCOMPARE(frame_->tvwCogE->node(kCount)->text, std::string("total=0"));
        QCOMPARE(frame_->tvwCogE->itemFor(kCount)->text(0), QStringLiteral("total=0"));
        QVERIFY(w->bMod);
        QCOMPARE((QList<QByteArray>{w->sW, w->sR}), (QList<QByteArray>{"count", "total"}));
        QCOMPARE(w->ipos, cog::Pos(0));
        editLabel(kCount, QStringLiteral("total=7")); // starts from the label the node shows now
        QCOMPARE(textOf(w), QByteArray(expected).replace("total=0", "total=7"));
        w->txtMain->undo(); // one step each
        QCOMPARE(textOf(w), expected);
        editLabel(kAx, QStringLiteral("total"));
        QCOMPARE(textOf(w), QByteArray(expected).replace("int     ax\r", "int     total\r"));
    }

    void abandonedOrImpossibleRenamesChangeNothing() {
        frmTessary* w = openScript(kScript, true);
        QVERIFY(w);
        auto unchanged = [&](const std::string& key, const QString& label, bool commit = true) {
            const QByteArray before = textOf(w);
            const std::string shown = frame_->tvwCogE->node(key)->text;
            editLabel(key, label, commit);
            QCOMPARE(textOf(w), before);
            QCOMPARE(frame_->tvwCogE->node(key)->text, shown);
            QCOMPARE(frame_->tvwCogE->itemFor(key)->text(0), QString::fromStdString(shown));
        };
        unchanged(kAx, "abandoned", false);
        unchanged("root", "renamed.cog");
        unchanged(kAx, ""); // an emptied label
        w->txtMain->setTextBytes(QByteArray(kScript).replace("player", "hero"));
        w->clearModified();
        unchanged("thing   player\r", "villain"); // the label no longer occurs
        QVERIFY(!w->bMod);
        mdlTessary::RefreshCogList(); // no window chosen any more
        unchanged(kAx, "bx");
        QVERIFY(dialogs_.messages.isEmpty());
    }

    // The Delete key on a node: the bytes removed from the text, the nodes that leave the tree.
    void deleteKey_data() {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("removed"); // empty: the text and the tree stay
        QTest::addColumn<QStringList>("gone");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("declaration line") << QByteArray("int     ax\r") << QByteArray("int     ax\r\n")
                                          << QStringList{"int     ax\r"} << QStringList{};
        QTest::newRow("last symbol of its type, with the group")
            << QByteArray("thing   player\r") << QByteArray("thing   player\r\n")
            << QStringList{"thing   player\r", "thing"} << QStringList{};
        QTest::newRow("only comment of a message, with the message node")
            << QByteArray("// count up") << QByteArray("// count up") << QStringList{"startup:"}
            << QStringList{};
        QTest::newRow("symbol in use") << QByteArray("int     count=0\r") << QByteArray() << QStringList{}
                                       << QStringList{"Can not delete: symbol is present in code section"};
        QTest::newRow("root") << QByteArray("root") << QByteArray() << QStringList{} << QStringList{};
    }

    void deleteKey() {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, removed);
        QFETCH(QStringList, gone);
        QFETCH(QStringList, messages);
        frmTessary* w = openScript(kScript, true);
        QVERIFY(w);
        const auto nodes = frame_->tvwCogE->count();
        pressKey(key.toStdString());
        QCOMPARE(textOf(w), removed.isEmpty() ? kScript : QByteArray(kScript).replace(removed, ""));
        QCOMPARE(w->bMod, !removed.isEmpty());
        if (!removed.isEmpty()) QCOMPARE(w->txtMain->selStart(), long(kScript.indexOf(removed)));
        if (gone.isEmpty()) QCOMPARE(frame_->tvwCogE->count(), nodes);
        for (const auto& k : gone) QVERIFY(!frame_->tvwCogE->contains(k.toStdString()));
        QCOMPARE(dialogs_.texts(), messages);
        for (const auto& m : std::as_const(dialogs_.messages)) QVERIFY(criticalOk(m));
    }

    void deleteOpenCases() {
        frmTessary* w = openScript(kScript, true);
        QVERIFY(w);
        pressKey(kAx);
        const QByteArray once = textOf(w);
        pressKey(kCount, Qt::Key_Insert); // another key does nothing
        mdlTessary::RefreshCogList();     // no window chosen
        pressKey("message startup\r");
        QCOMPARE(textOf(w), once);
        QVERIFY(frame_->tvwCogE->contains("message startup\r"));
        QVERIFY(dialogs_.messages.isEmpty());
    }

    // The frame's controls, and the two checks before anything is written.
    void addSymbolFrame() {
        frmTessary* w = openScript();
        QVERIFY(w);
        QStringList items, types;
        for (int i = 0; i < frame_->cmbVarType->count(); ++i) items << frame_->cmbVarType->itemText(i);
        for (const auto& t : cog::symbolTypes()) types << QString::fromStdString(t);
        QCOMPARE(items, types);
        QCOMPARE(
            (QStringList{frame_->fraAddSym->title(), frame_->cmbVarType->currentText(),
                         frame_->cmdAddVar->text(), frame_->cmbVarType->toolTip(),
                         frame_->txtVarName->toolTip(), frame_->txtDefVal->toolTip()}),
            (QStringList{"Add Symbol", "Choose One...", "Add", "Choose the data type of the new variable",
                         "ter the name of the variable to be created", "Enter the Default Value here"}));
        QVERIFY(frame_->cmbVarType->currentIndex() == -1 && frame_->chkLocal->text().isEmpty() &&
                !frame_->chkLocal->isChecked());
        add(-1, "speed");
        frame_->txtVarName->clear();
        add(2, "");
        QCOMPARE(dialogs_.texts(),
                 (QStringList{"You must choose a type!", "You must enter the symbol name!"}));
        for (const auto& m : std::as_const(dialogs_.messages)) QVERIFY(criticalOk(m));
        QCOMPARE(textOf(w), kScript);
        QCOMPARE(frame_->cmbVarType->currentIndex(), 2);                   // the fields keep their contents
        const QByteArray endless = "symbols\r\nint a\r\n  end\r\nEND\r\n"; // no line starts with "end"
        w->txtMain->setTextBytes(endless);
        w->clearModified();
        add(3, "b");
        QCOMPARE(textOf(w), endless);
        QVERIFY(!w->bMod);
        QCOMPARE(dialogs_.messages.size(), 3);
        QVERIFY(dialogs_.messages[2].text.contains("\"end\"") &&
                dialogs_.messages[2].text.contains(w->Caption()));
    }

    void addSymbolWritesTheLine_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("local");
        QTest::addColumn<QString>("linkId");
        QTest::addColumn<int>("caret");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("name only, caret in the code moves down")
            << "" << false << "" << int(kScript.indexOf("return;"))
            << "int     x" + QByteArray(20, ' ') + "\r\n";
        QTest::newRow("every field, caret in the symbols stays")
            << "5" << true << "1" << 12 << "int     x=5" + QByteArray(15, ' ') + "local     linkid=1\r\n";
    }

    void addSymbolWritesTheLine() {
        QFETCH(QString, value);
        QFETCH(bool, local);
        QFETCH(QString, linkId);
        QFETCH(int, caret);
        QFETCH(QByteArray, line);
        frmTessary* w = openScript();
        QVERIFY(w);
        w->txtMain->setSelStart(caret);
        QTest::keyClicks(frame_->txtDefVal, value);
        if (local)
            QTest::mouseClick(frame_->chkLocal, Qt::LeftButton, {},
                              QPoint(2, frame_->chkLocal->height() / 2));
        QCOMPARE(frame_->chkLocal->isChecked(), local);
        QTest::keyClicks(frame_->txtLinkID, linkId);
        add(3, "x");
        QCOMPARE(textOf(w), QByteArray(kScript).insert(kEndLine, line));
        QCOMPARE(w->txtMain->selStart(), long(caret < kEndLine ? caret : caret + line.size()));
        QCOMPARE(w->txtMain->selLength(), 0L);
        QVERIFY(w->Caption().endsWith('*'));
        QVERIFY(dialogs_.messages.isEmpty());
        QCOMPARE(frame_->txtVarName->text(), QStringLiteral("x")); // the fields are not cleared
    }

    void addSymbolRebuildsTheExplorerShowingItsWindow_data() {
        QTest::addColumn<QString>("shown"); // the tree chosen in cmbTvwSel
        QTest::addColumn<int>("chosen");    // the window chosen in cmbCog afterwards (1-based, 0: none)
        QTest::addColumn<bool>("modified"); // the window carries the modified mark before the Add
        QTest::addColumn<bool>("rebuilt");
        QTest::newRow("explorer shows the window") << "CogExplorer" << 1 << false << true;
        QTest::newRow("explorer shows the modified window") << "CogExplorer" << 1 << true << true;
        QTest::newRow("reference tree shown") << "CogRef" << 1 << false << false;
        QTest::newRow("explorer shows another window") << "CogExplorer" << 2 << false << false;
        QTest::newRow("no window chosen") << "CogExplorer" << 0 << false << false;
    }

    void addSymbolRebuildsTheExplorerShowingItsWindow() {
        QFETCH(QString, shown);
        QFETCH(int, chosen);
        QFETCH(bool, modified);
        QFETCH(bool, rebuilt);
        frmTessary* w = openScript();
        QVERIFY(w);
        frame_->mnuFileNew_Click();
        cogWindow(2)->txtMain->setTextBytes(kScript);
        QVERIFY(showExplorer(w));
        const std::string newKey = "int     speed" + std::string(20, ' ') + "\r";
        QVERIFY(!frame_->tvwCogE->contains(newKey));
        if (chosen == 0) mdlTessary::RefreshCogList();
        if (chosen == 2) frame_->cmbCog->setCurrentIndex(1);
        frame_->cmbTvwSel->setCurrentIndex(frame_->cmbTvwSel->findText(shown));
        frame_->cmbTvwSel_Click();
        if (modified) QTest::keyClick(w->txtMain, Qt::Key_Space);
        mdlTessary::strCurCog = w->Tag;
        add(3, "speed");
        QVERIFY(textOf(w).contains(QByteArray::fromStdString(newKey)));
        QCOMPARE(frame_->tvwCogE->contains(newKey), rebuilt);
        QVERIFY(dialogs_.messages.isEmpty());
    }

private:
    frmTessary* openScript(const QByteArray& text = kScript, bool explorer = false);
    bool showExplorer(frmTessary* w);
    static bool criticalOk(const ScriptedDialogs::Shown& m) {
        return m.icon == ui::vbCritical && m.buttons == ui::vbOKOnly && m.title == QStringLiteral("Tessary");
    }
    void clickNode(const std::string& key);
    void editLabel(const std::string& key, const QString& text, bool commit = true);
    void pressKey(const std::string& key, Qt::Key k = Qt::Key_Delete) {
        clickNode(key);
        QTest::keyClick(frame_->tvwCogE, k);
    }
    void add(int type, const QString& name) {
        frame_->cmbVarType->setCurrentIndex(type);
        QTest::keyClicks(frame_->txtVarName, name);
        QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);
    }

    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

// Opens the text in a window; with `explorer`, the CogExplorer shows its structure, expanded.
frmTessary* tst_ExplorerTools::openScript(const QByteArray& text, bool explorer) {
    dialogs_ = ScriptedDialogs();
    frame_ = startTessary(dialogs_);
    if (!frame_) return nullptr;
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes(text);
    w->clearModified();
    mdlTessary::strCurCog = w->Tag;
    return !explorer || showExplorer(w) ? w : nullptr;
}

bool tst_ExplorerTools::showExplorer(frmTessary* w) {
    frame_->cmbTvwSel->setCurrentIndex(frame_->cmbTvwSel->findText(QStringLiteral("CogExplorer")));
    frame_->cmbTvwSel_Click();
    frame_->cmbCog->setCurrentIndex(mdlTessary::colCogs.indexOf(w->Tag) - 1);
    frame_->cmbCog_Click();
    frame_->tvwCogE->expandAll();
    return frame_->tvwCogE->contains(kCount) && frame_->tvwCogE->Tag == w->Tag;
}

void tst_ExplorerTools::clickNode(const std::string& key) {
    KeyedTreeView* tree = frame_->tvwCogE;
    QTreeWidgetItem* item = tree->itemFor(key);
    QVERIFY(item);
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(item).center());
    QCOMPARE(frame_->nLCE, std::optional<std::string>(key));
}

void tst_ExplorerTools::editLabel(const std::string& key, const QString& text, bool commit) {
    KeyedTreeView* tree = frame_->tvwCogE;
    QTreeWidgetItem* item = tree->itemFor(key);
    QVERIFY(item);
    // A click on the node that is already selected would itself start an edit, after a delay.
    if (tree->currentItem() != item) clickNode(key);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the last edit's editor
    tree->editItem(item, 0);
    QLineEdit* editor = nullptr;
    for (auto* e : tree->viewport()->findChildren<QLineEdit*>())
        if (e->isVisible()) editor = e;
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, commit ? Qt::Key_Return : Qt::Key_Escape);
    QCoreApplication::processEvents();
}

TESSARY_TEST_MAIN(tst_ExplorerTools)
#include "tst_explorertools.moc"
