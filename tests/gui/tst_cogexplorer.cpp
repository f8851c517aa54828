// The CogExplorer on the frame (choosing a window, refreshing, jumping from a node, the message
// for two equal lines) and the syntax check's result window.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"
#include "cog/ui/frmChkSyn.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

namespace {

const QByteArray kScript =
    "# door.cog\r\nsymbols\r\nthing      door\r\nmessage    startup\r\nint        count=0\r\n"
    "end\r\ncode\r\nstartup:\r\n   // get ready\r\n   count = 1;\r\n   return;\r\nend\r\n";

// Picks the index-th window (1-based) in cmbCog with the keyboard, as a user would.
void chooseWindow(frmMain* frame, int index) {
    frame->cmbCog->setCurrentIndex(index - 2);
    QTest::keyClick(frame->cmbCog, Qt::Key_Down);
}

// Starts with text in window 1, shows "CogExplorer" in the tree selector as the user does, and
// (unless extraWindow) chooses window 1; with extraWindow a second window is current first.
frmMain* startExploring(ScriptedDialogs& dialogs, const QByteArray& text = kScript,
                        bool extraWindow = false) {
    frmMain* frame = startTessary(dialogs);
    cogWindow(1)->txtMain->setTextBytes(text);
    if (extraWindow) frame->mnuFileNew_Click();
    frame->cmbTvwSel->setCurrentIndex(0);
    QTest::keyClick(frame->cmbTvwSel, Qt::Key_Down);
    chooseWindow(frame, 1);
    return frame;
}

QStringList treeTexts(const KeyedTreeView* tree) {
    QStringList out;
    for (const auto& n : tree->model().nodes()) out << QString::fromLatin1(n.text.c_str());
    return out;
}

} // namespace

class tst_CogExplorer : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() {
        if (frmChkSyn* w = frmChkSyn::loaded()) delete w;
        stopTessary();
    }

    void choosingAWindowFillsTheTreeAndRefreshRebuildsIt() {
        ScriptedDialogs dialogs;
        frmMain* frame = startExploring(dialogs, kScript, true);
        QCOMPARE(frame->cmbTvwSel->currentText(), QStringLiteral("CogExplorer"));
        QVERIFY(frame->tvwCogE->isVisible() && frame->cmbCog->isVisible() && !frame->tvwCog->isVisible());

        KeyedTreeView* tree = frame->tvwCogE;
        QCOMPARE(treeTexts(tree), (QStringList{"Cog 1*", "symbols", "code", "int", "count=0", "startup",
                                               "message", "startup", "thing", "door", "// get ready"}));
        QCOMPARE(tree->topLevelItemCount(), 1);
        QTreeWidgetItem* root = tree->topLevelItem(0);
        QVERIFY(root->isExpanded());
        QVERIFY(!root->child(0)->isExpanded());
        QCOMPARE(root->child(1)->child(0)->child(0)->text(0), QStringLiteral("// get ready"));
        QCOMPARE(tree->Tag, QStringLiteral("cog1"));
        QCOMPARE(frame->nLCE, std::optional<std::string>("root"));
        QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog2")); // success leaves the current window alone
        QVERIFY(dialogs.messages.isEmpty());

        // Typing does not touch the tree; F5 rebuilds it.
        frmTessary* w = cogWindow(1);
        w->txtMain->setSelStart(kScript.indexOf("end"));
        w->txtMain->setSelText("sound s\r\n");
        QVERIFY(!tree->contains("sound s\r"));
        QCOMPARE(frame->mnuViewRefresh->shortcut(), QKeySequence(Qt::Key_F5));
        frame->mnuViewRefresh->trigger();
        QCOMPARE(tree->node("sound s\r")->text, std::string("s"));
        // With no window chosen (a new window refreshes cmbCog), refreshing changes nothing.
        frame->mnuFileNew_Click();
        QCOMPARE(frame->cmbCog->currentIndex(), -1);
        frame->mnuViewRefresh_Click();
        QCOMPARE(tree->count(), std::size_t(13));
        QCOMPARE(tree->Tag, QStringLiteral("cog1"));
    }
    void doubleClickJumps_data() {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<int>("caret");
        QTest::newRow("a symbol: the start of its declaration line")
            << QByteArray("int        count=0\r") << int(kScript.indexOf("int        count"));
        QTest::newRow("a message: the first occurrence of its label")
            << QByteArray("startup:") << int(kScript.indexOf("startup:"));
        QTest::newRow("a comment: its text") << QByteArray("// get ready") << int(kScript.indexOf("// get"));
        QTest::newRow("a type group: nothing") << QByteArray("thing") << 5;
    }
    void doubleClickJumps() {
        QFETCH(QByteArray, key);
        QFETCH(int, caret);
        ScriptedDialogs dialogs;
        frmMain* frame = startExploring(dialogs);
        frmTessary* w = cogWindow(1);
        w->txtMain->setSelStart(5);
        KeyedTreeView* tree = frame->tvwCogE;
        tree->expandAll();
        QTreeWidgetItem* item = tree->itemFor(key.toStdString());
        QVERIFY(item);
        const QPoint at = tree->visualItemRect(item).center();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(frame->nLCE, std::optional<std::string>(key.toStdString()));
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(w->txtMain->selStart(), long(caret));
        QCOMPARE(w->txtMain->selLength(), 0L);
    }
    void duplicateLineIsReportedAndSelected() {
        ScriptedDialogs dialogs;
        const QByteArray text = "#\r\nsymbols\r\nthing door\r\nint a\r\nint  b\r\nint a\r\nend\r\n";
        frmMain* frame = startExploring(dialogs, text, true);
        QCOMPARE(dialogs.messages.size(), 1);
        QCOMPARE(
            dialogs.messages[0].text,
            QStringLiteral(
                "You have 2 comment/symbol lines that are exactly the same.  In order for CogExplorer to "
                "work correctly, you MUST have each commented/symbol line be unique.  The line that "
                "caused the errors has been selected.  Change it then reselect the cog."));
        QCOMPARE(dialogs.messages[0].icon, int(ui::vbCritical));
        QCOMPARE(dialogs.messages[0].buttons, int(ui::vbOKOnly));
        QCOMPARE(dialogs.messages[0].title, QStringLiteral("Tessary"));
        // The second "int a" line is selected; the nodes added before stay.
        CogTextBox* box = cogWindow(1)->txtMain;
        QCOMPARE(box->selStart(), long(text.lastIndexOf("int a")));
        QCOMPARE(box->selText(), QByteArray("int a"));
        QCOMPARE(treeTexts(frame->tvwCogE), (QStringList{"Cog 1*", "symbols", "code", "int", "a", "b"}));
        QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog1"));
    }
    void otherFailuresEndSilently() {
        ScriptedDialogs dialogs;
        frmMain* frame = startExploring(dialogs);
        frame->tvwCogE_NodeClick("thing");
        frame->mnuFileNew_Click();
        cogWindow(2)->txtMain->setTextBytes("# upside down\r\nend\r\nsymbols\r\nint a\r\n");
        mdlTessary::strCurCog = QStringLiteral("cog1");
        chooseWindow(frame, 2);
        QVERIFY(dialogs.messages.isEmpty());
        QCOMPARE(frame->tvwCogE->count(), std::size_t(0));
        QCOMPARE(frame->tvwCogE->Tag, QStringLiteral("cog2"));
        QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog2")); // left at the chosen window
        QCOMPARE(frame->nLCE, std::optional<std::string>("thing"));
    }
    void treeIsClearedWhenItsWindowCloses() {
        ScriptedDialogs dialogs;
        frmMain* frame = startExploring(dialogs, kScript, true);
        cogWindow(2)->bMod = false;
        frame->mnuFileClose_Click();
        QCOMPARE(frame->tvwCogE->count(), std::size_t(11)); // another window closed
        cogWindow(1)->clearModified();
        mdlTessary::strCurCog = QStringLiteral("cog1");
        frame->mnuFileClose_Click();
        QCOMPARE(frame->tvwCogE->count(), std::size_t(0));
    }
    void checkWindowListsFindingsOnce() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frmTessary* w = cogWindow(1);
        const QByteArray text =
            "#\r\nsymbols\r\nend\r\ncode\r\nstartup:\r\n  if (1) {\r\n  {}\r\n  return;\r\n";
        w->txtMain->setTextBytes(text);
        w->txtMain->setSelStart(7);
        frame->mnuEditChkSyn_Click();
        QPointer<frmChkSyn> check = frmChkSyn::loaded();
        QVERIFY(check && check->isVisible() && !check->isModal() && !check->parentWidget());
        QCOMPARE(check->windowTitle(), QStringLiteral("Check Syntax - ") + w->Caption());
        QListWidget* list = check->lstChkSyn;
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->item(0)->text(), QStringLiteral("{ not matched"));
        QCOMPARE(list->item(1)->text(), QStringLiteral("no end for code section"));
        // A click on a finding puts the caret there.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
        QCOMPARE(w->txtMain->selStart(), long(text.indexOf('{')));
        QCOMPARE(w->txtMain->selLength(), 0L);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(1)).center());
        QCOMPARE(w->txtMain->selStart(), 7L);

        // While it is open, the command only brings it to the front: the findings stay.
        w->txtMain->setTextBytes("{");
        frame->mnuEditChkSyn_Click();
        QCOMPARE(frmChkSyn::loaded(), check.data());
        QCOMPARE(list->count(), 2);

        // OK unloads it; the next command checks again; Escape unloads it as OK does.
        QTest::mouseClick(check->cmdOK, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!check && !frmChkSyn::loaded());
        frame->mnuEditChkSyn_Click();
        check = frmChkSyn::loaded();
        QCOMPARE(check->lstChkSyn->count(), 4);
        QTest::keyClick(check->lstChkSyn, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!check);

        // The window has no parent, yet it goes with the frame.
        frame->mnuEditChkSyn_Click();
        check = frmChkSyn::loaded();
        stopTessary();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!check);
    }
};

TESSARY_TEST_MAIN(tst_CogExplorer)
#include "tst_cogexplorer.moc"
