// The reference tree on the frame: loading, click, double-click and the Tree menu.
#include "harness.h"
#include "refdir.h"

#include "app/ui/KeyedTreeView.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTreeWidget>

namespace {

// Nodes: 1 .foo, 2 .Things, 3 Foo, 4 GetThingPos, 5 .Empty, 6 .Sound, 7 PlaySoundThing.
const QByteArray kRef =
    "t\r\n.foo\r\n.Things\r\nFoo(a)|Does foo | twice\r\nGetThingPos(thing)|Where it is\r\n"
    ".Empty\r\n.Sound\r\nPlaySoundThing(sound, thing)|Plays\r\neof\r\nAfter(x)|never read\r\n";
const QStringList kGroups{"foo", "Things", "Empty", "Sound"};

QString key(frmMain* f, int index) {
    return QString::fromStdString(f->tvwCog->nodeAt(static_cast<std::size_t>(index)).key);
}

QString currentKey(KeyedTreeView* tree) {
    const auto k = tree->keyOf(tree->currentItem());
    return k ? QString::fromStdString(*k) : QString();
}

// The centre of node `index` in the reference tree, its group expanded.
QPoint nodeCentre(frmMain* f, int index) {
    f->tvwCog->setNodeExpanded("Things", true);
    return f->tvwCog->visualItemRect(f->tvwCog->itemFor(key(f, index).toStdString())).center();
}

} // namespace

class tst_CogRefTree : public QObject {
    Q_OBJECT
private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        dir_ = makeProgramDirectory(kRef, "x\r\nstartup\r\n");
    }
    void cleanup() {
        stopTessary();
        dir_.reset();
    }

    void missingReferenceEndsTheProgram() {
        QFile::remove(dir_->filePath("cogref.dat"));
        QVERIFY(!startTessary(dialogs_));
        QVERIFY(!mdlTessary::frame());
        QCOMPARE(dialogs_.messages.size(), 1);
        const auto& shown = dialogs_.messages[0];
        QCOMPARE(shown.text, "cog.ref needs to be put in " + QDir::toNativeSeparators(dir_->path()));
        QCOMPARE(shown.buttons, int(ui::vbOKOnly));
        QCOMPARE(shown.icon, 0);
        QCOMPARE(shown.title, QStringLiteral("Tessary"));
        QVERIFY(QSettings().allKeys().isEmpty());
    }
    void clickAndDoubleClick_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("description"); // shown on the click
        QTest::addColumn<int>("selLength");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("caret");
        QTest::newRow("an entry's call text goes before the selection")
            << 3 << "Does foo | twice" << 3 << QByteArray("xFoo(a)abcy") << 7;
        QTest::newRow("at the caret")
            << 4 << "Where it is" << 0 << QByteArray("xGetThingPos(thing)abcy") << 19;
        QTest::newRow("a group inserts nothing") << 6 << "parent" << 0 << QByteArray("xabcy") << 1;
    }
    void clickAndDoubleClick() {
        QFETCH(int, index);
        QFETCH(QString, description);
        QFETCH(int, selLength);
        QFETCH(QByteArray, after);
        QFETCH(int, caret);
        frmMain* f = start();
        QVERIFY(f);
        frmTessary* w = cogWindow(1);
        w->txtMain->setTextBytes("xabcy");
        w->bMod = false;
        w->txtMain->setSelStart(1);
        w->txtMain->setSelLength(selLength);
        const QPoint at = nodeCentre(f, index);
        QTest::mouseClick(f->tvwCog->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(f->txtCogDesc->text(), description);
        QCOMPARE(f->nLC, std::optional<std::string>(key(f, index).toStdString()));
        QTest::mouseDClick(f->tvwCog->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(textOf(w), after);
        QCOMPARE(w->txtMain->selStart(), long(caret));
        QCOMPARE(w->bMod, after != "xabcy");
    }
    void findAndFindNext() {
        frmMain* f = start();
        QVERIFY(f);
        f->mnuCFFindNext_Click(); // before any Find, the empty text from node 1: the first entry
        QCOMPARE(f->iLN, 3);
        QCOMPARE(currentKey(f->tvwCog), key(f, 3));
        QVERIFY(dialogs_.inputs.isEmpty());

        dialogs_.inputAnswers = {"THING", "thing", "Empty", ""};
        f->mnuCFFind_Click();
        QCOMPARE(dialogs_.inputs.last(), (QStringList{"String to find", "Tessary", ""}));
        QCOMPARE(f->iLN, 4); // the group "Things" never matches
        QCOMPARE(currentKey(f->tvwCog), key(f, 4));
        QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Where it is"));
        QCOMPARE(f->nLC, std::optional<std::string>(key(f, 4).toStdString()));
        f->mnuCFFindNext_Click();
        QCOMPARE(f->iLN, 7);
        f->mnuCFFindNext_Click(); // no wrap to the top
        QCOMPARE(f->iLN, 7);
        QCOMPARE(currentKey(f->tvwCog), key(f, 7));

        f->mnuCFFind_Click(); // the previous text is offered again; lower case finds upper case
        QCOMPARE(dialogs_.inputs.last(), (QStringList{"String to find", "Tessary", "THING"}));
        QCOMPARE(f->iLN, 4);
        f->mnuCFFind_Click(); // only a group holds it: nothing changes, no message
        QCOMPARE(f->strFindText, QStringLiteral("Empty"));
        QCOMPARE(f->iLN, 4);
        QCOMPARE(currentKey(f->tvwCog), key(f, 4));
        QVERIFY(dialogs_.messages.isEmpty());
        f->mnuCFFind_Click(); // Cancel: the empty text finds the first entry
        QCOMPARE(f->strFindText, QString());
        QCOMPARE(f->iLN, 3);
    }
    void expandAndCollapseAll() {
        frmMain* f = start();
        QVERIFY(f);
        QCOMPARE(f->tvwCog->count(), std::size_t(7)); // groups load collapsed, in file order
        QStringList top;
        for (int i = 0; i < f->tvwCog->topLevelItemCount(); ++i) {
            top << f->tvwCog->topLevelItem(i)->text(0);
            QVERIFY(!f->tvwCog->topLevelItem(i)->isExpanded());
        }
        QCOMPARE(top, kGroups);
        f->mnuCFExpand_Click();
        for (const QString& group : kGroups) QVERIFY(f->tvwCog->node(group.toStdString())->expanded);
        QVERIFY(f->tvwCog->itemFor("Things")->isExpanded());
        f->mnuCFCollapse_Click();
        for (const QString& group : kGroups) QVERIFY(!f->tvwCog->node(group.toStdString())->expanded);
        QVERIFY(!f->tvwCog->itemFor("Sound")->isExpanded());

        // On the explorer the menu acts there, and Collapse All keeps "root" open.
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
    }

private:
    frmMain* start() {
        frmMain* f = startTessary(dialogs_);
        if (f) QTest::qWait(0);
        return f;
    }
    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
};

TESSARY_TEST_MAIN(tst_CogRefTree)
#include "tst_cogreftreeview.moc"
