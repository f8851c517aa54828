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

const QByteArray kScript = "# counter\r\n"
                           "symbols\r\n"
                           "int     count=0\r\n"
                           "int     ax\r\n"
                           "thing   player\r\n"
                           "message startup\r\n"
                           "end\r\n"
                           "code\r\n"
                           "startup:\r\n"
                           "  // count up\r\n"
                           "  count = count + 1;\r\n"
                           "  recount(ax); x; ax(1);\r\n"
                           "  return;\r\n"
                           "end\r\n";

// The structure of kScript as the explorer shows it.
cog::KeyedTree scriptTree(const QString& caption) {
    cog::KeyedTree t;
    t.add(std::nullopt, "root", caption.toStdString(), "parent");
    t.add("root", "symbols", "symbols", "parent");
    t.add("root", "code", "code", "parent");
    t.add("symbols", "int", "int", "parent");
    t.add("int", "int     count=0\r", "count=0");
    t.add("int", "int     ax\r", "ax");
    t.add("symbols", "thing", "thing", "parent");
    t.add("thing", "thing   player\r", "player");
    t.add("symbols", "message", "message", "parent");
    t.add("message", "message startup\r", "startup");
    t.add("code", "startup:", "startup", "message");
    t.add("startup:", "// count up", "// count up");
    return t;
}

} // namespace

class tst_ExplorerTools : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void renameByEditingTheLabel();
    void renameOfANodeWithADefaultValue();
    void abandonedOrImpossibleRenamesChangeNothing();
    void deleteRemovesTheDeclarationLine();
    void deleteOfTheLastSymbolRemovesItsGroup();
    void deleteOfTheOnlyCommentRemovesTheMessageNode();
    void deleteOfASymbolInUseIsRefused();
    void deleteOpenCases();
    void addSymbolFrameControls();
    void addSymbolValidation();
    void addSymbolWritesTheLine_data();
    void addSymbolWritesTheLine();
    void addSymbolWithoutAnEndLine();

private:
    frmTessary* openScript(const QByteArray& text = kScript);
    void showStructure(frmTessary* w);
    void clickNode(const std::string& key);
    void editLabel(const std::string& key, const QString& text, bool commit = true);

    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

frmTessary* tst_ExplorerTools::openScript(const QByteArray& text) {
    dialogs_ = ScriptedDialogs();
    frame_ = startTessary(dialogs_);
    if (!frame_) return nullptr;
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes(text);
    w->clearModified();
    mdlTessary::strCurCog = w->Tag;
    return w;
}

void tst_ExplorerTools::showStructure(frmTessary* w) {
    frame_->cmbTvwSel->setCurrentIndex(frame_->cmbTvwSel->findText(QStringLiteral("CogExplorer")));
    frame_->cmbTvwSel_Click();
    frame_->cmbCog->setCurrentIndex(mdlTessary::colCogs.indexOf(w->Tag) - 1);
    frame_->cmbCog_Click();
    if (frame_->tvwCogE->count() == 0) {
        frame_->tvwCogE->setModel(scriptTree(w->Caption()));
        frame_->tvwCogE->Tag = w->Tag;
        frame_->nLCE = "root";
    }
    frame_->tvwCogE->expandAll();
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

void tst_ExplorerTools::renameByEditingTheLabel() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    editLabel("int     ax\r", QStringLiteral("total"));
    QByteArray expected = kScript;
    expected.replace("int     ax\r", "int     total\r");
    // Free-standing later occurrences change, parts of longer words and "ax(" or "ax)" stay.
    QCOMPARE(textOf(w), expected);
    QCOMPARE(frame_->tvwCogE->node("int     ax\r")->text, std::string("total"));
    QCOMPARE(frame_->tvwCogE->itemFor("int     ax\r")->text(0), QStringLiteral("total"));
    QVERIFY(w->bMod);
    QCOMPARE(w->sW, QByteArray("ax"));
    QCOMPARE(w->sR, QByteArray("total"));
    QCOMPARE(w->ipos, cog::Pos(0));
    w->txtMain->undo(); // one step
    QCOMPARE(textOf(w), kScript);
}

void tst_ExplorerTools::renameOfANodeWithADefaultValue() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    editLabel("int     count=0\r", QStringLiteral("total=0"));
    QByteArray expected = kScript;
    expected.replace("count=0", "total=0");
    expected.replace("// count up", "// total up");
    expected.replace("count = count", "total = total");
    QCOMPARE(textOf(w), expected);

    // A second rename starts from the label the node shows now.
    editLabel("int     count=0\r", QStringLiteral("total=7"));
    expected.replace("total=0", "total=7");
    QCOMPARE(textOf(w), expected);
}

void tst_ExplorerTools::abandonedOrImpossibleRenamesChangeNothing() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    editLabel("int     ax\r", QStringLiteral("abandoned"), false);
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->tvwCogE->itemFor("int     ax\r")->text(0), QStringLiteral("ax"));

    editLabel("root", QStringLiteral("renamed.cog"));
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->tvwCogE->node("root")->text, w->Caption().toStdString());

    editLabel("int     ax\r", QString()); // an emptied label
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->tvwCogE->itemFor("int     ax\r")->text(0), QStringLiteral("ax"));

    w->txtMain->setTextBytes(QByteArray(kScript).replace("player", "hero"));
    w->clearModified();
    editLabel("thing   player\r", QStringLiteral("villain")); // the label no longer occurs
    QVERIFY(!textOf(w).contains("villain"));
    QCOMPARE(frame_->tvwCogE->node("thing   player\r")->text, std::string("player"));
    QVERIFY(!w->bMod);

    mdlTessary::RefreshCogList(); // no window chosen any more
    editLabel("int     ax\r", QStringLiteral("bx"));
    QVERIFY(!textOf(w).contains("bx"));
    QCOMPARE(frame_->tvwCogE->node("int     ax\r")->text, std::string("ax"));
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_ExplorerTools::deleteRemovesTheDeclarationLine() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    clickNode("int     ax\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QCOMPARE(textOf(w), QByteArray(kScript).replace("int     ax\r\n", ""));
    QCOMPARE(w->txtMain->selStart(), long(kScript.indexOf("int     ax")));
    QVERIFY(!frame_->tvwCogE->contains("int     ax\r"));
    QVERIFY(frame_->tvwCogE->contains("int"));
    QVERIFY(w->bMod);
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_ExplorerTools::deleteOfTheLastSymbolRemovesItsGroup() {
    frmTessary* w = openScript(QByteArray(kScript).replace("// count up", "// add one"));
    QVERIFY(w);
    showStructure(w);
    clickNode("thing   player\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QVERIFY(!textOf(w).contains("player"));
    QVERIFY(!frame_->tvwCogE->contains("thing"));
    QVERIFY(!frame_->tvwCogE->contains("thing   player\r"));
}

void tst_ExplorerTools::deleteOfTheOnlyCommentRemovesTheMessageNode() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    clickNode("// count up");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QCOMPARE(textOf(w), QByteArray(kScript).replace("// count up", ""));
    QVERIFY(!frame_->tvwCogE->contains("startup:"));
    QVERIFY(frame_->tvwCogE->contains("code"));
}

void tst_ExplorerTools::deleteOfASymbolInUseIsRefused() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    const auto nodes = frame_->tvwCogE->count();
    clickNode("int     count=0\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QCOMPARE(dialogs_.messages.size(), 1);
    QCOMPARE(dialogs_.messages[0].text, QStringLiteral("Can not delete: symbol is present in code section"));
    QCOMPARE(dialogs_.messages[0].icon, int(ui::vbCritical));
    QCOMPARE(dialogs_.messages[0].buttons, int(ui::vbOKOnly));
    QCOMPARE(dialogs_.messages[0].title, QStringLiteral("Tessary"));
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->tvwCogE->count(), nodes);
    QVERIFY(!w->bMod);
}

void tst_ExplorerTools::deleteOpenCases() {
    frmTessary* w = openScript();
    QVERIFY(w);
    showStructure(w);
    const auto nodes = frame_->tvwCogE->count();
    clickNode("root");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->tvwCogE->count(), nodes);

    clickNode("int     ax\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    const QByteArray once = textOf(w);
    frame_->tvwCogE_KeyDown(46, 0); // the current node was removed already
    QCOMPARE(textOf(w), once);

    // Another key does nothing.
    clickNode("int     count=0\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Insert);
    QCOMPARE(textOf(w), once);

    mdlTessary::RefreshCogList(); // no window chosen
    clickNode("message startup\r");
    QTest::keyClick(frame_->tvwCogE, Qt::Key_Delete);
    QCOMPARE(textOf(w), once);
    QVERIFY(frame_->tvwCogE->contains("message startup\r"));
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_ExplorerTools::addSymbolFrameControls() {
    QVERIFY(openScript());
    QCOMPARE(frame_->fraAddSym->title(), QStringLiteral("Add Symbol"));
    QCOMPARE(frame_->cmbVarType->currentIndex(), -1);
    QCOMPARE(frame_->cmbVarType->currentText(), QStringLiteral("Choose One..."));
    QStringList items;
    for (int i = 0; i < frame_->cmbVarType->count(); ++i) items << frame_->cmbVarType->itemText(i);
    QStringList types;
    for (const auto& t : cog::symbolTypes()) types << QString::fromStdString(t);
    QCOMPARE(items, types);
    QCOMPARE(frame_->cmbVarType->toolTip(), QStringLiteral("Choose the data type of the new variable"));
    QCOMPARE(frame_->txtVarName->toolTip(), QStringLiteral("ter the name of the variable to be created"));
    QCOMPARE(frame_->txtDefVal->toolTip(), QStringLiteral("Enter the Default Value here"));
    QCOMPARE(frame_->cmdAddVar->text(), QStringLiteral("Add"));
    QVERIFY(frame_->chkLocal->text().isEmpty());
    QVERIFY(!frame_->chkLocal->isChecked());
    QVERIFY(frame_->txtVarName->text().isEmpty() && frame_->txtDefVal->text().isEmpty() &&
            frame_->txtLinkID->text().isEmpty());
}

void tst_ExplorerTools::addSymbolValidation() {
    frmTessary* w = openScript();
    QVERIFY(w);
    QTest::keyClicks(frame_->txtVarName, "speed");
    QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);
    frame_->cmbVarType->setCurrentIndex(2);
    frame_->txtVarName->clear();
    QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);
    QCOMPARE(dialogs_.texts(), (QStringList{"You must choose a type!", "You must enter the symbol name!"}));
    for (const auto& m : dialogs_.messages) {
        QCOMPARE(m.icon, int(ui::vbCritical));
        QCOMPARE(m.buttons, int(ui::vbOKOnly));
        QCOMPARE(m.title, QStringLiteral("Tessary"));
    }
    QCOMPARE(textOf(w), kScript);
    QCOMPARE(frame_->cmbVarType->currentIndex(), 2); // the fields keep their contents
}

void tst_ExplorerTools::addSymbolWritesTheLine_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("local");
    QTest::addColumn<QString>("linkId");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QByteArray>("line");
    const int endLine = static_cast<int>(kScript.indexOf("\nend") + 1);
    const int inCode = static_cast<int>(kScript.indexOf("return;"));
    QTest::newRow("name only, caret in the code moves down")
        << 3 << "x"
        << "" << false << "" << inCode << QByteArray("int     x" + QByteArray(20, ' ') + "\r\n");
    QTest::newRow("every field, caret in the symbols stays")
        << 3 << "x"
        << "5" << true << "1" << 12
        << QByteArray("int     x=5" + QByteArray(15, ' ') + "local     linkid=1\r\n");
    QTest::newRow("caret at the end line moves with it")
        << 2 << "speed"
        << "" << false << "" << endLine << QByteArray("flex     speed" + QByteArray(20, ' ') + "\r\n");
}

void tst_ExplorerTools::addSymbolWritesTheLine() {
    QFETCH(int, type);
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(bool, local);
    QFETCH(QString, linkId);
    QFETCH(int, caret);
    QFETCH(QByteArray, line);
    frmTessary* w = openScript();
    QVERIFY(w);
    w->txtMain->setSelStart(caret);
    frame_->cmbVarType->setCurrentIndex(type);
    QTest::keyClicks(frame_->txtVarName, name);
    QTest::keyClicks(frame_->txtDefVal, value);
    if (local)
        QTest::mouseClick(frame_->chkLocal, Qt::LeftButton, {}, QPoint(2, frame_->chkLocal->height() / 2));
    QCOMPARE(frame_->chkLocal->isChecked(), local);
    QTest::keyClicks(frame_->txtLinkID, linkId);
    QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);

    const int at = static_cast<int>(kScript.indexOf("\nend") + 1);
    QCOMPARE(textOf(w), QByteArray(kScript).insert(at, line));
    QCOMPARE(w->txtMain->selStart(), long(caret < at ? caret : caret + line.size()));
    QCOMPARE(w->txtMain->selLength(), 0L);
    QVERIFY(w->Caption().endsWith('*'));
    QVERIFY(dialogs_.messages.isEmpty());
    QCOMPARE(frame_->txtVarName->text(), name); // the fields are not cleared
}

void tst_ExplorerTools::addSymbolWithoutAnEndLine() {
    const QByteArray text = "symbols\r\nint a\r\n  end\r\nEND\r\n";
    frmTessary* w = openScript(text);
    QVERIFY(w);
    frame_->cmbVarType->setCurrentIndex(3);
    QTest::keyClicks(frame_->txtVarName, "b");
    QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);
    QCOMPARE(textOf(w), text);
    QVERIFY(!w->bMod);
    QCOMPARE(dialogs_.messages.size(), 1);
    QVERIFY(dialogs_.messages[0].text.contains(QStringLiteral("\"end\"")));
    QVERIFY(dialogs_.messages[0].text.contains(w->Caption()));
}

QTEST_MAIN(tst_ExplorerTools)
#include "tst_explorertools.moc"
