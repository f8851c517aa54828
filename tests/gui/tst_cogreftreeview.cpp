// The reference tree on the frame: loading, click, double-click and the Tree menu.
#include "harness.h"
#include "refdir.h"

#include "app/ui/KeyedTreeView.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTreeWidget>

class tst_CogRefTree : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void missingReferenceEndsTheProgram();
    void loadsGroupsCollapsed();
    void malformedLinesAreSkipped();
    void clickShowsDescription_data();
    void clickShowsDescription();
    void mouseClickAndDoubleClick();
    void doubleClickInsertsBeforeSelection();
    void doubleClickOnGroupInsertsNothing();
    void doubleClickWithoutWindow();
    void findAndFindNext();
    void findNextBeforeAnyFind();
    void findWithoutMatchChangesNothing();
    void collapseAndExpandAll();
    void collapseKeepsExplorerRoot();

private:
    frmMain* start();
    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
};

namespace {

const QByteArray kRef = "Reference for the tests\r\n"
                        ".foo\r\n"                               // 1
                        ".Things\r\n"                            // 2
                        "Foo(a)|Does foo | twice\r\n"            // 3
                        "GetThingPos(thing)|Where it is\r\n"     // 4
                        ".Empty\r\n"                             // 5
                        ".Sound\r\n"                             // 6
                        "PlaySoundThing(sound, thing)|Plays\r\n" // 7
                        "eof\r\n"
                        "After(x)|never read\r\n";

QString key(frmMain* f, int index) {
    return QString::fromStdString(f->tvwCog->nodeAt(static_cast<std::size_t>(index)).key);
}

QString currentKey(KeyedTreeView* tree) {
    const auto k = tree->keyOf(tree->currentItem());
    return k ? QString::fromStdString(*k) : QString();
}

} // namespace

void tst_CogRefTree::init() {
    prepareTessaryTest();
    dialogs_ = ScriptedDialogs();
    dir_ = makeProgramDirectory(kRef, "x\r\nstartup\r\n");
}

void tst_CogRefTree::cleanup() {
    stopTessary();
    dir_.reset();
}

frmMain* tst_CogRefTree::start() {
    frmMain* f = startTessary(dialogs_);
    if (f) QTest::qWait(0);
    return f;
}

void tst_CogRefTree::missingReferenceEndsTheProgram() {
    QFile::remove(dir_->filePath("cogref.dat"));
    QVERIFY(!startTessary(dialogs_));
    QVERIFY(!mdlTessary::frame());
    QCOMPARE(dialogs_.messages.size(), 1);
    QCOMPARE(dialogs_.messages[0].text,
             "cog.ref needs to be put in " + QDir::toNativeSeparators(dir_->path()));
    QCOMPARE(dialogs_.messages[0].buttons, int(ui::vbOKOnly));
    QCOMPARE(dialogs_.messages[0].icon, 0);
    QCOMPARE(dialogs_.messages[0].title, QStringLiteral("Tessary"));
    QVERIFY(QSettings().allKeys().isEmpty());
}

void tst_CogRefTree::loadsGroupsCollapsed() {
    frmMain* f = start();
    QVERIFY(f);
    QCOMPARE(f->tvwCog->count(), std::size_t(7));
    QStringList top;
    for (int i = 0; i < f->tvwCog->topLevelItemCount(); ++i) {
        top << f->tvwCog->topLevelItem(i)->text(0);
        QVERIFY(!f->tvwCog->topLevelItem(i)->isExpanded());
    }
    QCOMPARE(top, (QStringList{"foo", "Things", "Empty", "Sound"}));
    QCOMPARE(f->tvwCog->itemFor("Empty")->childCount(), 0);
    QCOMPARE(f->tvwCog->itemFor("Things")->child(0)->text(0), QStringLiteral("Foo"));
    QCOMPARE(f->nLC, std::optional<std::string>("foo"));
}

void tst_CogRefTree::malformedLinesAreSkipped() {
    dir_ =
        makeProgramDirectory("t\r\nLost(x)|no group yet\r\n.G\r\nNoParen|x\r\n\r\nA(x)|d\r\nA(x)|d\r\n", {});
    frmMain* f = start();
    QVERIFY(f);
    QCOMPARE(f->tvwCog->count(), std::size_t(2));
    QCOMPARE(f->tvwCog->nodeAt(2).text, std::string("A"));
    QVERIFY(dialogs_.messages.isEmpty());
    // Without messages.dat the pop-up list is simply empty.
    QCOMPARE(cogWindow(1)->lvwCogParams->topLevelItemCount(), 0);
}

void tst_CogRefTree::clickShowsDescription_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("description");
    QTest::newRow("entry: everything after the first bar") << 3 << "Does foo | twice";
    QTest::newRow("group: its tag") << 2 << "parent";
}

void tst_CogRefTree::clickShowsDescription() {
    QFETCH(int, index);
    QFETCH(QString, description);
    frmMain* f = start();
    QVERIFY(f);
    f->tvwCog_NodeClick(key(f, index).toStdString());
    QCOMPARE(f->txtCogDesc->text(), description);
    QCOMPARE(f->nLC, std::optional<std::string>(key(f, index).toStdString()));
}

void tst_CogRefTree::mouseClickAndDoubleClick() {
    frmMain* f = start();
    QVERIFY(f);
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes("x");
    w->txtMain->setSelStart(1);
    f->tvwCog->setNodeExpanded("Things", true);
    QTreeWidgetItem* item = f->tvwCog->itemFor("GetThingPos(thing)|Where it is");
    const QPoint at = f->tvwCog->visualItemRect(item).center();
    QTest::mouseClick(f->tvwCog->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Where it is"));
    QTest::mouseDClick(f->tvwCog->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(textOf(w), QByteArray("xGetThingPos(thing)"));
    QCOMPARE(w->txtMain->selStart(), 19L);
}

void tst_CogRefTree::doubleClickInsertsBeforeSelection() {
    frmMain* f = start();
    QVERIFY(f);
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes("xabcy");
    w->bMod = false;
    w->txtMain->setSelStart(1);
    w->txtMain->setSelLength(3);
    f->tvwCog_NodeClick(key(f, 3).toStdString());
    f->tvwCog_DblClick();
    QCOMPARE(textOf(w), QByteArray("xFoo(a)abcy"));
    QCOMPARE(w->txtMain->selStart(), 7L);
    QVERIFY(w->bMod);
}

void tst_CogRefTree::doubleClickOnGroupInsertsNothing() {
    frmMain* f = start();
    QVERIFY(f);
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes("abc");
    f->tvwCog_NodeClick("Sound");
    f->tvwCog_DblClick();
    QCOMPARE(textOf(w), QByteArray("abc"));
}

void tst_CogRefTree::doubleClickWithoutWindow() {
    frmMain* f = start();
    QVERIFY(f);
    f->mnuFileClose_Click();
    QCOMPARE(mdlTessary::colCogs.count(), 0);
    f->tvwCog_NodeClick(key(f, 3).toStdString());
    f->tvwCog_DblClick(); // nowhere to insert: nothing happens
    QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Does foo | twice"));
}

void tst_CogRefTree::findAndFindNext() {
    frmMain* f = start();
    QVERIFY(f);
    dialogs_.inputAnswers = {"THING", "thing"};
    f->mnuCFFind_Click();
    QCOMPARE(dialogs_.inputs.last(), (QStringList{"String to find", "Tessary", ""}));
    QCOMPARE(f->iLN, 4); // the group "Things" never matches
    QCOMPARE(currentKey(f->tvwCog), key(f, 4));
    QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Where it is"));
    QCOMPARE(f->nLC, std::optional<std::string>(key(f, 4).toStdString()));

    f->mnuCFFindNext_Click();
    QCOMPARE(f->iLN, 7);
    QCOMPARE(currentKey(f->tvwCog), key(f, 7));
    f->mnuCFFindNext_Click(); // no wrap to the top
    QCOMPARE(f->iLN, 7);
    QCOMPARE(currentKey(f->tvwCog), key(f, 7));

    f->mnuCFFind_Click(); // the previous text is offered again
    QCOMPARE(dialogs_.inputs.last(), (QStringList{"String to find", "Tessary", "THING"}));
    QCOMPARE(f->strFindText, QStringLiteral("thing"));
    QCOMPARE(f->iLN, 4);
}

void tst_CogRefTree::findNextBeforeAnyFind() {
    frmMain* f = start();
    QVERIFY(f);
    f->mnuCFFindNext_Click(); // empty find text from node 1: the first entry
    QCOMPARE(f->iLN, 3);
    QCOMPARE(currentKey(f->tvwCog), key(f, 3));
    QVERIFY(dialogs_.inputs.isEmpty());
}

void tst_CogRefTree::findWithoutMatchChangesNothing() {
    frmMain* f = start();
    QVERIFY(f);
    dialogs_.inputAnswers = {"pos", "Empty"};
    f->mnuCFFind_Click();
    QCOMPARE(f->iLN, 4);
    f->mnuCFFind_Click(); // only a group holds it
    QCOMPARE(f->iLN, 4);
    QCOMPARE(currentKey(f->tvwCog), key(f, 4));
    QCOMPARE(f->strFindText, QStringLiteral("Empty"));
    QVERIFY(dialogs_.messages.isEmpty());
    f->mnuCFFind_Click(); // Cancel: the empty text finds the first entry
    QCOMPARE(f->strFindText, QString());
    QCOMPARE(f->iLN, 3);
}

void tst_CogRefTree::collapseAndExpandAll() {
    frmMain* f = start();
    QVERIFY(f);
    f->mnuCFExpand_Click();
    for (const char* group : {"foo", "Things", "Empty", "Sound"}) QVERIFY(f->tvwCog->node(group)->expanded);
    QVERIFY(f->tvwCog->itemFor("Things")->isExpanded());
    f->mnuCFCollapse_Click();
    for (const char* group : {"foo", "Things", "Empty", "Sound"}) QVERIFY(!f->tvwCog->node(group)->expanded);
    QVERIFY(!f->tvwCog->itemFor("Sound")->isExpanded());
}

void tst_CogRefTree::collapseKeepsExplorerRoot() {
    frmMain* f = start();
    QVERIFY(f);
    KeyedTreeView* e = f->tvwCogE;
    e->clearNodes();
    e->addNode(std::nullopt, "root", "Cog 1", "parent");
    e->addNode(std::string("root"), "Messages", "Messages", "parent");
    e->addNode(std::string("Messages"), "startup", "startup", "message");
    e->addNode(std::string("startup"), "c1", "// hello", "comment");
    f->cmbTvwSel->setCurrentIndex(1);
    f->cmbTvwSel_Click();
    QVERIFY(e->isVisibleTo(f));
    f->mnuCFExpand_Click();
    QVERIFY(e->node("startup")->expanded);
    QVERIFY(!f->tvwCog->node("Things")->expanded); // the hidden reference tree is left alone
    f->mnuCFCollapse_Click();
    QVERIFY(e->node("root")->expanded);
    QVERIFY(!e->node("Messages")->expanded);
    QVERIFY(!e->node("startup")->expanded);

    dialogs_.inputAnswers = {"HELLO"};
    f->mnuCFFind_Click(); // finds in the explorer, not in the reference
    QCOMPARE(f->iLN, 4);
    QCOMPARE(f->nLCE, std::optional<std::string>("c1"));
    QCOMPARE(currentKey(e), QStringLiteral("c1"));
}

QTEST_MAIN(tst_CogRefTree)
#include "tst_cogreftreeview.moc"
