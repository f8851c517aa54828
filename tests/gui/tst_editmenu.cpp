// The Edit menu on real editor windows: the input boxes, the selection each command leaves, the
// shared Find Next item, the not-found message and undo of a whole Replace All.
#include "harness.h"

#include <QAction>

class tst_EditMenu : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    // Match Brace (item 0), Replace (3) and Replace All (4) from the caret: the text and the selection left.
    void command_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("caret");
        QTest::addColumn<int>("item");
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<int>("selStart");
        QTest::addColumn<int>("selLength");
        const QByteArray nested("{a{b}c}d"), aXa("aXa");
        QTest::newRow("match brace: inner pair") << nested << 2 << 0 << QStringList{} << nested << 2 << 3;
        QTest::newRow("replace: first only")
            << aXa << 0 << 3 << QStringList{"a", "b"} << QByteArray("bXa") << 1 << 0;
        QTest::newRow("replace all, never ending series")
            << QByteArray("a\r\na") << 0 << 4 << QStringList{"a", "ba"} << QByteArray("ba\r\nba") << 6 << 0;
    }

    void command() {
        QFETCH(QByteArray, text);
        QFETCH(int, caret);
        QFETCH(int, item);
        QFETCH(QStringList, answers);
        QFETCH(QByteArray, expected);
        QFETCH(int, selStart);
        QFETCH(int, selLength);
        frmTessary* w = windowWith(text);
        QVERIFY(w);
        w->txtMain->setSelStart(caret);
        edit(item, answers);
        QCOMPARE(dialogs_.inputs,
                 (item == 0 ? QList<QStringList>{}
                            : QList<QStringList>{{"Enter word to Replace", "Replace Word", ""},
                                                 {"Enter word to Replace with", "Replace Word", ""}}));
        QCOMPARE(textOf(w), expected);
        QCOMPARE(w->txtMain->selStart(), long(selStart));
        QCOMPARE(w->txtMain->selLength(), long(selLength));
        QCOMPARE(w->bMod, expected != text);
        QVERIFY(dialogs_.messages.isEmpty());
        if (expected != text) QCOMPARE(w->ipos, item == 3 ? cog::Pos(2) : cog::Pos(0));
    }

    void findWordThenFindNextUntilNotFoundAndCancelled() {
        frmTessary* w = windowWith("my cog and Cog");
        QVERIFY(w);
        QVERIFY(!frame_->mnuEdit[2]->isEnabled());
        edit(1, {"COG"});
        QCOMPARE(dialogs_.inputs, (QList<QStringList>{{"Enter word to Find", "Find Word", ""}}));
        QCOMPARE(selection(w), (std::pair{3L, QByteArray("cog")}));
        QVERIFY(frame_->mnuEdit[2]->isEnabled());
        edit(2);
        QCOMPARE(selection(w), (std::pair{11L, QByteArray("Cog")}));
        QVERIFY(dialogs_.messages.isEmpty());
        edit(2);
        QCOMPARE(dialogs_.messages.size(), 1);
        const auto& m = dialogs_.messages[0];
        QCOMPARE((QStringList{m.text, m.title}), (QStringList{"\"COG\" not found.", "Tessary"}));
        QCOMPARE((QList<int>{m.buttons, m.icon}), (QList<int>{ui::vbOKOnly, 0}));
        QVERIFY(!frame_->mnuEdit[2]->isEnabled());
        QCOMPARE(w->txtMain->selStart(), 11L); // the selection stays
        QCOMPARE(w->txtMain->selLength(), 3L);
        QCOMPARE(dialogs_.inputs.size(), 1);

        edit(1, {"gamma"});
        QCOMPARE(dialogs_.texts().last(), QStringLiteral("\"gamma\" not found."));
        QVERIFY(!frame_->mnuEdit[2]->isEnabled());
        w->ipos = 3;
        edit(1, {""}); // cancelled: nothing searched
        QCOMPARE(dialogs_.messages.size(), 2);
        QCOMPARE(w->sW, QByteArray());
        QCOMPARE(w->ipos, cog::Pos(3));
        QVERIFY(!frame_->mnuEdit[2]->isEnabled());
        frame_->mnuEdit[2]->setEnabled(true); // as Find Word in another window would leave it
        edit(2, {"Cog"});                     // no word yet: Find Next asks for one
        QCOMPARE(dialogs_.inputs.size(), 4);
        QCOMPARE(dialogs_.inputs.last(), (QStringList{"Enter word to Find", "Find Word", ""}));
        QCOMPARE(selection(w), (std::pair{3L, QByteArray("cog")}));
        QCOMPARE(dialogs_.messages.size(), 2);
    }

    void findNextStartsAgainAfterNotFoundAndKeepsEachWindowsWord() {
        frmTessary* first = windowWith("x1 x2");
        QVERIFY(first);
        edit(1, {"x"});
        edit(2);
        edit(2); // not found: ipos 0, Find Next disabled
        QCOMPARE(first->ipos, cog::Pos(0));
        QVERIFY(!frame_->mnuEdit[2]->isEnabled());

        frame_->mnuFileNew_Click(); // Find Word in another window enables the shared item again
        frmTessary* second = cogWindow(2);
        second->txtMain->setTextBytes("y1 y2 y3");
        mdlTessary::strCurCog = second->Tag;
        edit(1, {"y"});
        edit(2);
        QCOMPARE(second->txtMain->selStart(), 3L);
        QVERIFY(frame_->mnuEdit[2]->isEnabled());

        mdlTessary::strCurCog = first->Tag;
        first->txtMain->setSelStart(4);
        edit(2); // from the top, with the first window's own word
        QCOMPARE(selection(first), (std::pair{0L, QByteArray("x")}));
        QCOMPARE(first->ipos, cog::Pos(2));
        QCOMPARE(second->ipos, cog::Pos(5));
    }

    void replaceAllIsOneUndoStep() {
        const QByteArray text = QByteArray("count = count + 1;\r\n").repeated(2000);
        frmTessary* w = windowWith(text);
        QVERIFY(w);
        w->txtMain->SendScintilla(QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
        edit(4, {"COUNT", "total"});
        QCOMPARE(textOf(w), QByteArray(text).replace("count", "total"));
        w->txtMain->undo();
        QCOMPARE(textOf(w), text);
        QVERIFY(!w->txtMain->isUndoAvailable());
    }

    void editCommandsWithoutAWindowDoNothing() {
        QVERIFY(windowWith("abc"));
        frame_->mnuFileClose_Click();
        QVERIFY(!mdlTessary::currentCog());
        frame_->mnuEdit[2]->setEnabled(true);
        for (QAction* item : frame_->mnuEdit) item->trigger();
        QVERIFY(dialogs_.inputs.isEmpty());
        QVERIFY(dialogs_.messages.isEmpty());
    }

private:
    frmTessary* windowWith(const QByteArray& text) {
        dialogs_ = ScriptedDialogs();
        frame_ = startTessary(dialogs_);
        if (!frame_) return nullptr;
        frmTessary* w = cogWindow(1);
        w->txtMain->setTextBytes(text);
        w->clearModified();
        mdlTessary::strCurCog = w->Tag;
        return w;
    }
    static std::pair<long, QByteArray> selection(frmTessary* w) {
        return {w->txtMain->selStart(), w->txtMain->selText()};
    }
    void edit(int item, const QStringList& answers = {}) {
        dialogs_.inputAnswers << answers;
        frame_->mnuEdit[item]->trigger();
    }
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

TESSARY_TEST_MAIN(tst_EditMenu)
#include "tst_editmenu.moc"
