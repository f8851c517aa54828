// The Edit menu on real editor windows: the input boxes, the selection each command leaves, the
// shared Find Next item, the not-found message and undo of a whole Replace All.
#include "harness.h"

#include <QAction>

class tst_EditMenu : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void matchBrace_data();
    void matchBrace();
    void findWordThenFindNextUntilNotFound();
    void findWordForAnAbsentWord();
    void findWordCancelledSearchesNothing();
    void findNextAfterNotFoundStartsAgainFromTheTop();
    void findNextWithoutAWordAsksForOne();
    void replace_data();
    void replace();
    void replaceAllIsOneUndoStep();
    void searchStateBelongsToEachWindow();
    void editCommandsWithoutAWindowDoNothing();

private:
    frmTessary* windowWith(const QByteArray& text);
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

frmTessary* tst_EditMenu::windowWith(const QByteArray& text) {
    dialogs_ = ScriptedDialogs();
    frame_ = startTessary(dialogs_);
    if (!frame_) return nullptr;
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes(text);
    w->clearModified();
    mdlTessary::strCurCog = w->Tag;
    return w;
}

void tst_EditMenu::matchBrace_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<int>("selLength");
    QTest::newRow("outer pair") << QByteArray("{a{b}c}d") << 0 << 0 << 7;
    QTest::newRow("inner pair") << QByteArray("{a{b}c}d") << 2 << 2 << 3;
    QTest::newRow("unbalanced") << QByteArray("{a{b}c") << 0 << 0 << 0;
    QTest::newRow("not on a brace") << QByteArray("x{}") << 0 << 0 << 1;
}

void tst_EditMenu::matchBrace() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(int, selStart);
    QFETCH(int, selLength);
    frmTessary* w = windowWith(text);
    QVERIFY(w);
    w->txtMain->setSelStart(caret);
    frame_->mnuEdit[0]->trigger();
    QCOMPARE(w->txtMain->selStart(), long(selStart));
    QCOMPARE(w->txtMain->selLength(), long(selLength));
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_EditMenu::findWordThenFindNextUntilNotFound() {
    frmTessary* w = windowWith("my cog and Cog");
    QVERIFY(w);
    QVERIFY(!frame_->mnuEdit[2]->isEnabled());
    dialogs_.inputAnswers << QStringLiteral("COG");
    frame_->mnuEdit[1]->trigger();
    QCOMPARE(dialogs_.inputs.size(), 1);
    QCOMPARE(dialogs_.inputs[0], (QStringList{"Enter word to Find", "Find Word", ""}));
    QCOMPARE(w->txtMain->selStart(), 3L);
    QCOMPARE(w->txtMain->selText(), QByteArray("cog"));
    QVERIFY(frame_->mnuEdit[2]->isEnabled());

    frame_->mnuEdit[2]->trigger();
    QCOMPARE(w->txtMain->selStart(), 11L);
    QCOMPARE(w->txtMain->selText(), QByteArray("Cog"));
    QVERIFY(dialogs_.messages.isEmpty());

    frame_->mnuEdit[2]->trigger();
    QCOMPARE(dialogs_.messages.size(), 1);
    QCOMPARE(dialogs_.messages[0].text, QStringLiteral("\"COG\" not found."));
    QCOMPARE(dialogs_.messages[0].buttons, int(ui::vbOKOnly));
    QCOMPARE(dialogs_.messages[0].icon, 0);
    QCOMPARE(dialogs_.messages[0].title, QStringLiteral("Tessary"));
    QVERIFY(!frame_->mnuEdit[2]->isEnabled());
    QCOMPARE(w->txtMain->selStart(), 11L); // the selection stays
    QCOMPARE(w->txtMain->selLength(), 3L);
    QCOMPARE(dialogs_.inputs.size(), 1);
}

void tst_EditMenu::findWordForAnAbsentWord() {
    frmTessary* w = windowWith("alpha beta");
    QVERIFY(w);
    dialogs_.inputAnswers << QStringLiteral("gamma");
    frame_->mnuEdit[1]->trigger();
    QCOMPARE(dialogs_.texts(), QStringList{"\"gamma\" not found."});
    QVERIFY(!frame_->mnuEdit[2]->isEnabled());
    QCOMPARE(w->txtMain->selLength(), 0L);
}

void tst_EditMenu::findWordCancelledSearchesNothing() {
    frmTessary* w = windowWith("alpha beta");
    QVERIFY(w);
    w->sW = "beta";
    w->ipos = 3;
    frame_->mnuEdit[1]->trigger(); // cancelled: the empty answer
    QCOMPARE(w->sW, QByteArray());
    QCOMPARE(w->ipos, cog::Pos(3));
    QVERIFY(dialogs_.messages.isEmpty());
    QVERIFY(!frame_->mnuEdit[2]->isEnabled());
}

void tst_EditMenu::findNextAfterNotFoundStartsAgainFromTheTop() {
    frmTessary* first = windowWith("one two one");
    QVERIFY(first);
    dialogs_.inputAnswers << QStringLiteral("two");
    frame_->mnuEdit[1]->trigger();
    frame_->mnuEdit[2]->trigger(); // not found: ipos 0, Find Next disabled
    QCOMPARE(first->ipos, cog::Pos(0));
    QVERIFY(!frame_->mnuEdit[2]->isEnabled());

    frame_->mnuFileNew_Click(); // Find Word in another window enables the shared item again
    frmTessary* second = cogWindow(2);
    mdlTessary::strCurCog = second->Tag;
    second->txtMain->setTextBytes("two");
    dialogs_.inputAnswers << QStringLiteral("two");
    frame_->mnuEdit[1]->trigger();
    QVERIFY(frame_->mnuEdit[2]->isEnabled());

    mdlTessary::strCurCog = first->Tag;
    first->txtMain->setSelStart(0);
    frame_->mnuEdit[2]->trigger();
    QCOMPARE(first->txtMain->selStart(), 4L);
    QCOMPARE(first->txtMain->selText(), QByteArray("two"));
    QCOMPARE(first->ipos, cog::Pos(6));
}

void tst_EditMenu::findNextWithoutAWordAsksForOne() {
    frmTessary* w = windowWith("one two");
    QVERIFY(w);
    frame_->mnuEdit[2]->setEnabled(true); // as Find Word in another window would leave it
    dialogs_.inputAnswers << QStringLiteral("two");
    frame_->mnuEdit[2]->trigger();
    QCOMPARE(dialogs_.inputs.size(), 1);
    QCOMPARE(dialogs_.inputs[0][1], QStringLiteral("Find Word"));
    QCOMPARE(w->txtMain->selText(), QByteArray("two"));
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_EditMenu::replace_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("item");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<int>("caret");
    QTest::newRow("replace: first only") << QByteArray("aXa") << 3 << "a"
                                         << "b" << QByteArray("bXa") << 1;
    QTest::newRow("replace all") << QByteArray("aXa") << 4 << "a"
                                 << "b" << QByteArray("bXb") << 3;
    QTest::newRow("replace all, shorter") << QByteArray("abab ab") << 4 << "ab"
                                          << "x" << QByteArray("xx x") << 4;
    QTest::newRow("replace all, never ending series") << QByteArray("a\r\na") << 4 << "a"
                                                      << "ba" << QByteArray("ba\r\nba") << 6;
    QTest::newRow("empty word") << QByteArray("aXa") << 4 << ""
                                << "b" << QByteArray("aXa") << 0;
    QTest::newRow("empty replacement") << QByteArray("aXa") << 4 << "a"
                                       << "" << QByteArray("aXa") << 0;
}

void tst_EditMenu::replace() {
    QFETCH(QByteArray, text);
    QFETCH(int, item);
    QFETCH(QString, word);
    QFETCH(QString, replacement);
    QFETCH(QByteArray, expected);
    QFETCH(int, caret);
    frmTessary* w = windowWith(text);
    QVERIFY(w);
    w->txtMain->setSelStart(0);
    dialogs_.inputAnswers << word << replacement;
    frame_->mnuEdit[item]->trigger();
    QCOMPARE(dialogs_.inputs.size(), 2);
    QCOMPARE(dialogs_.inputs[0], (QStringList{"Enter word to Replace", "Replace Word", ""}));
    QCOMPARE(dialogs_.inputs[1], (QStringList{"Enter word to Replace with", "Replace Word", ""}));
    QCOMPARE(textOf(w), expected);
    QCOMPARE(w->txtMain->selStart(), long(caret));
    QCOMPARE(w->txtMain->selLength(), 0L);
    QCOMPARE(w->bMod, expected != text);
    QVERIFY(dialogs_.messages.isEmpty());
    if (expected != text) QCOMPARE(w->ipos, item == 3 ? cog::Pos(2) : cog::Pos(0));
}

void tst_EditMenu::replaceAllIsOneUndoStep() {
    QByteArray text;
    for (int i = 0; i < 2000; ++i) text += "count = count + 1;\r\n";
    frmTessary* w = windowWith(text);
    QVERIFY(w);
    w->txtMain->SendScintilla(QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
    dialogs_.inputAnswers << QStringLiteral("COUNT") << QStringLiteral("total");
    frame_->mnuEdit[4]->trigger();
    QByteArray expected = text;
    expected.replace("count", "total");
    QCOMPARE(textOf(w), expected);
    w->txtMain->undo();
    QCOMPARE(textOf(w), text);
    QVERIFY(!w->txtMain->isUndoAvailable());
}

void tst_EditMenu::searchStateBelongsToEachWindow() {
    frmTessary* first = windowWith("x1 x2");
    QVERIFY(first);
    dialogs_.inputAnswers << QStringLiteral("x");
    frame_->mnuEdit[1]->trigger();
    frame_->mnuFileNew_Click();
    frmTessary* second = cogWindow(2);
    second->txtMain->setTextBytes("y1 y2 y3");
    mdlTessary::strCurCog = second->Tag;
    dialogs_.inputAnswers << QStringLiteral("y");
    frame_->mnuEdit[1]->trigger();
    frame_->mnuEdit[2]->trigger();
    QCOMPARE(second->txtMain->selStart(), 3L);

    mdlTessary::strCurCog = first->Tag;
    frame_->mnuEdit[2]->trigger(); // continues in the first window with its own word
    QCOMPARE(first->txtMain->selStart(), 3L);
    QCOMPARE(first->txtMain->selText(), QByteArray("x"));
    QCOMPARE(second->ipos, cog::Pos(5));
}

void tst_EditMenu::editCommandsWithoutAWindowDoNothing() {
    frmTessary* w = windowWith("abc");
    QVERIFY(w);
    frame_->mnuFileClose_Click();
    QCOMPARE(mdlTessary::colCogs.count(), 0);
    QVERIFY(!mdlTessary::currentCog());
    frame_->mnuEdit[2]->setEnabled(true);
    for (QAction* item : frame_->mnuEdit) item->trigger();
    QVERIFY(dialogs_.inputs.isEmpty());
    QVERIFY(dialogs_.messages.isEmpty());
}

QTEST_MAIN(tst_EditMenu)
#include "tst_editmenu.moc"
