// The typing aids on a real editor window: keys typed into the text box and the message list.
#include "harness.h"
#include "refdir.h"

#include "app/ui/KeyedTreeView.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

class tst_TypingAidKeys : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void popupOpensInSymbolsAfterMessageWord_data();
    void popupOpensInSymbolsAfterMessageWord();
    void popupSitsUnderTheCharacterBeforeTheCaret();
    void popupPrefixAndInsertion_data();
    void popupPrefixAndInsertion();
    void tabKeepsFocusInTheEditor();
    void arrowKeysMoveFocusIntoTheList();
    void listDoubleClick();
    void listDoubleClickWithNothingHighlighted();
    void helpLine_data();
    void helpLine();
    void selectWordCases_data();
    void selectWordCases();
    void typingOverSelection_data();
    void typingOverSelection();
    void parenthesisOverSelectionWhileHelpShown();
    void characterOverSelectionWhilePopupShown();
    void backspace_data();
    void backspace();
    void backspaceClosesPopup();
    void messagesLoadedPerWindow();

private:
    frmTessary* window(const QByteArray& text, long caret);
    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
};

namespace {

const QByteArray kRef = "t\r\n"
                        ".foo\r\n"
                        ".G\r\n"
                        "Foo(a)|Does foo\r\n"
                        "Bar(x, y)|Bars | twice\r\n"
                        "EOF\r\n";
const QByteArray kMessages = "x\r\nactivated\r\nentered\r\nstartup\r\n";
const QByteArray kSymbols = "symbols\r\nmessage\r\nend\r\n";

constexpr char kLeft = '\x02';

// Types the keys: '\b' Backspace, '\r' Enter, '\t' Tab, kLeft the Left arrow, others themselves.
void type(QWidget* target, const QByteArray& keys) {
    for (const char c : keys) {
        switch (c) {
        case '\b':
            QTest::keyClick(target, Qt::Key_Backspace);
            break;
        case '\r':
            QTest::keyClick(target, Qt::Key_Return);
            break;
        case '\t':
            QTest::keyClick(target, Qt::Key_Tab);
            break;
        case kLeft:
            QTest::keyClick(target, Qt::Key_Left);
            break;
        default:
            QTest::keyClick(target, c);
        }
    }
}

QString highlightedText(const QTreeWidget* list) {
    const auto items = list->selectedItems();
    return items.isEmpty() ? QString() : items.first()->text(0);
}

bool popupShown(const frmTessary* w) {
    return !w->picCogParams->isHidden();
}

bool helpShown(const frmTessary* w) {
    return !w->picMain->isHidden();
}

QTreeWidgetItem* listItem(const frmTessary* w, const QString& text) {
    const auto found = w->lvwCogParams->findItems(text, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

} // namespace

void tst_TypingAidKeys::init() {
    prepareTessaryTest();
    dialogs_ = ScriptedDialogs();
    dir_ = makeProgramDirectory(kRef, kMessages);
}

void tst_TypingAidKeys::cleanup() {
    stopTessary();
    dir_.reset();
}

frmTessary* tst_TypingAidKeys::window(const QByteArray& text, long caret) {
    frmMain* f = startTessary(dialogs_);
    if (!f) return nullptr;
    f->activateWindow();
    if (!QTest::qWaitForWindowActive(f)) return nullptr;
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes(text);
    w->txtMain->setSelStart(caret);
    w->txtMain->setFocus();
    return w;
}

void tst_TypingAidKeys::popupOpensInSymbolsAfterMessageWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<bool>("opens");
    QTest::newRow("message") << kSymbols << 16 << true;
    QTest::newRow("Message") << QByteArray("symbols\r\nMessage\r\nend\r\n") << 16 << true;
    QTest::newRow("messages") << QByteArray("symbols\r\nmessages\r\nend\r\n") << 17 << true;
    QTest::newRow("MyMessage after a tab")
        << QByteArray("x\r\nSymbols\r\n\tMyMessage\r\nend\r\n") << 22 << true;
    QTest::newRow("msg") << QByteArray("symbols\r\nmsg\r\nend\r\n") << 12 << false;
    QTest::newRow("in the code section")
        << QByteArray("symbols\r\nend\r\ncode\r\nmessage\r\nend\r\n") << 26 << false;
    QTest::newRow("no end line") << QByteArray("symbols\r\nmessage") << 16 << false;
    QTest::newRow("no symbols line") << QByteArray("message\r\nend\r\n") << 7 << true;
}

void tst_TypingAidKeys::popupOpensInSymbolsAfterMessageWord() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(bool, opens);
    frmTessary* w = window(text, caret);
    QVERIFY(w);
    type(w->txtMain, " ");
    QCOMPARE(popupShown(w), opens);
    QCOMPARE(textOf(w), QByteArray(text).insert(caret, ' '));
    QCOMPARE(w->txtMain->selStart(), long(caret + 1));
    QCOMPARE(w->txtMain->selLength(), 0L);
    if (opens) {
        QCOMPARE(w->lSpace, long(caret + 1));
        QCOMPARE(highlightedText(w->lvwCogParams), QString());
    }
}

void tst_TypingAidKeys::popupSitsUnderTheCharacterBeforeTheCaret() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " ");
    QVERIFY(popupShown(w));
    // The "e" of "message" is at index 15.
    const long x = w->txtMain->SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, 15L);
    const long y = w->txtMain->SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, 15L);
    const QPoint e = w->txtMain->viewport()->mapTo(w, QPoint(int(x), int(y)));
    QCOMPARE(w->picCogParams->x(), e.x() - 1);
    const long lineHeight = w->txtMain->SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, 1UL);
    QVERIFY(w->picCogParams->y() > e.y() + lineHeight / 2);
    QVERIFY(w->picCogParams->y() < e.y() + 3 * lineHeight);
}

void tst_TypingAidKeys::popupPrefixAndInsertion_data() {
    // The pop-up is opened by a space after "message" on line 2, then the keys are typed.
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("highlighted");
    QTest::addColumn<bool>("open");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("e highlights entered") << QByteArray("e") << "entered" << true << QByteArray("message e");
    QTest::newRow("ex highlights nothing") << QByteArray("ex") << "" << true << QByteArray("message ex");
    QTest::newRow("letter case ignored")
        << QByteArray("STA") << "startup" << true << QByteArray("message STA");
    QTest::newRow("Enter with no match leaves the text")
        << QByteArray("ex\r") << "" << false << QByteArray("message ex\r\n");
    QTest::newRow("Space inserts the match")
        << QByteArray("st ") << "" << false << QByteArray("message startup ");
    QTest::newRow("Tab inserts the match")
        << QByteArray("st\t") << "" << false << QByteArray("message startup\t");
    QTest::newRow("Enter inserts the match")
        << QByteArray("st\r") << "" << false << QByteArray("message startup\r\n");
    QTest::newRow("the list's spelling is written")
        << QByteArray("ENT ") << "" << false << QByteArray("message entered ");
    QTest::newRow("Enter with nothing typed")
        << QByteArray("\r") << "" << false << QByteArray("message \r\n");
    QTest::newRow("text after the caret is replaced too")
        << QByteArray("tup") + kLeft + kLeft + kLeft + "star "
        << "" << false << QByteArray("message startup ");
    QTest::newRow("parentheses go to the list") << QByteArray("(") << "" << true << QByteArray("message (");
}

void tst_TypingAidKeys::popupPrefixAndInsertion() {
    QFETCH(QByteArray, keys);
    QFETCH(QString, highlighted);
    QFETCH(bool, open);
    QFETCH(QByteArray, line);
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " ");
    QVERIFY(popupShown(w));
    type(w->txtMain, keys);
    QCOMPARE(popupShown(w), open);
    QCOMPARE(highlightedText(w->lvwCogParams), highlighted);
    QCOMPARE(textOf(w), "symbols\r\n" + line + "\r\nend\r\n");
    QVERIFY(!helpShown(w));
}

void tst_TypingAidKeys::tabKeepsFocusInTheEditor() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    QVERIFY(w->txtMain->hasFocus());
    type(w->txtMain, " st");
    QVERIFY(popupShown(w));
    type(w->txtMain, "\t");
    QVERIFY(!popupShown(w));
    QVERIFY(w->txtMain->hasFocus());
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage startup\t\r\nend\r\n"));
}

void tst_TypingAidKeys::arrowKeysMoveFocusIntoTheList() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " st");
    QTest::keyClick(w->txtMain, Qt::Key_Down);
    QVERIFY(w->lvwCogParams->hasFocus());
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage st\r\nend\r\n")); // the key was not passed on
    QTest::keyClick(w->lvwCogParams, Qt::Key_Up);
    QTest::keyClick(w->lvwCogParams, Qt::Key_Up);
    QCOMPARE(highlightedText(w->lvwCogParams), QStringLiteral("activated"));
    // A character in the list moves the highlight but is not typed.
    QTest::keyClick(w->lvwCogParams, 'e');
    QCOMPARE(highlightedText(w->lvwCogParams), QString()); // "ste" matches nothing
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage st\r\nend\r\n"));
    // Enter writes the prefix match, not the item reached with the arrows.
    QTest::keyClick(w->lvwCogParams, Qt::Key_Return);
    QVERIFY(!popupShown(w));
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage startup\r\nend\r\n"));
    QVERIFY(w->txtMain->hasFocus());
    // Keys reaching the list after it closed do nothing to the text.
    QTest::keyClick(w->lvwCogParams, 'z');
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage startup\r\nend\r\n"));
}

void tst_TypingAidKeys::listDoubleClick() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " e");
    QTreeWidgetItem* item = listItem(w, "startup");
    QVERIFY(item);
    const QPoint at = w->lvwCogParams->visualItemRect(item).center();
    QTest::mouseClick(w->lvwCogParams->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(w->lvwCogParams->viewport(), Qt::LeftButton, {}, at);
    QVERIFY(!popupShown(w));
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage startup\r\nend\r\n"));
    QCOMPARE(highlightedText(w->lvwCogParams), QString());
}

void tst_TypingAidKeys::listDoubleClickWithNothingHighlighted() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " ent");
    w->lvwCogParams->clearSelection();
    w->lvwCogParams_DblClick();
    QVERIFY(!popupShown(w));
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage entered\r\nend\r\n"));
}

void tst_TypingAidKeys::helpLine_data() {
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("parens");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("opening after a name") << QByteArray("Foo(") << true << 0 << QByteArray("Foo(");
    QTest::newRow("name in other letter case") << QByteArray("fOO(") << true << 0 << QByteArray("fOO(");
    QTest::newRow("nested pair") << QByteArray("Foo(()") << true << 0 << QByteArray("Foo(()");
    QTest::newRow("closing at depth 0 hides") << QByteArray("Foo(())") << false << 0 << QByteArray("Foo(())");
    QTest::newRow("deeper nesting") << QByteArray("Foo(((") << true << 2 << QByteArray("Foo(((");
    QTest::newRow("Backspace over the closing one shows it again")
        << QByteArray("Foo(())\b") << true << 0 << QByteArray("Foo(()");
    QTest::newRow("Backspace over an inner closing one")
        << QByteArray("Foo(())\b\b") << true << 1 << QByteArray("Foo((");
    QTest::newRow("Backspace back over the opening one hides")
        << QByteArray("Foo(())\b\b\b\b") << false << 0 << QByteArray("Foo");
    QTest::newRow("Backspace over an inner opening one")
        << QByteArray("Foo((\b") << true << 0 << QByteArray("Foo(");
    QTest::newRow("other characters leave it")
        << QByteArray("Foo(a, b") << true << 0 << QByteArray("Foo(a, b");
    QTest::newRow("an unknown name shows nothing") << QByteArray("Zap(") << false << 0 << QByteArray("Zap(");
    QTest::newRow("a group name shows nothing") << QByteArray("g(") << false << 0 << QByteArray("g(");
    QTest::newRow("after a blank") << QByteArray("x = Bar(") << true << 0 << QByteArray("x = Bar(");
}

void tst_TypingAidKeys::helpLine() {
    QFETCH(QByteArray, keys);
    QFETCH(bool, shown);
    QFETCH(int, parens);
    QFETCH(QByteArray, text);
    frmTessary* w = window("", 0);
    QVERIFY(w);
    type(w->txtMain, keys);
    QCOMPARE(textOf(w), text);
    QCOMPARE(helpShown(w), shown);
    QCOMPARE(w->intParens, parens);
    QCOMPARE(w->txtMain->selStart(), long(text.size()));
    frmMain* f = mdlTessary::frame();
    if (keys.startsWith("Foo") || keys.startsWith("fOO")) {
        QCOMPARE(w->lblHelp->text(), QStringLiteral("Foo(a)"));
        QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Does foo"));
    } else if (shown) {
        QCOMPARE(w->lblHelp->text(), QStringLiteral("Bar(x, y)"));
        QCOMPARE(f->txtCogDesc->text(), QStringLiteral("Bars | twice"));
    }
}

void tst_TypingAidKeys::selectWordCases_data() {
    // "(" looks up the word SelectWord selects before the caret.
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("shown");
    QTest::newRow("scan to the start takes the leading blank") << QByteArray(" Foo") << false;
    QTest::newRow("the word after a blank") << QByteArray("a Foo") << true;
    QTest::newRow("a blank before the caret alone") << QByteArray("Foo ") << false;
    QTest::newRow("the word after a line break") << QByteArray("x\r\nFoo") << true;
    QTest::newRow("the whole text when it is the word") << QByteArray("Foo") << true;
}

void tst_TypingAidKeys::selectWordCases() {
    QFETCH(QByteArray, text);
    QFETCH(bool, shown);
    frmTessary* w = window(text, text.size());
    QVERIFY(w);
    type(w->txtMain, "(");
    QCOMPARE(helpShown(w), shown);
    QCOMPARE(textOf(w), text + "(");
    QCOMPARE(w->txtMain->selStart(), long(text.size() + 1));
}

void tst_TypingAidKeys::typingOverSelection_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<int>("selLength");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("caret");
    QTest::newRow("a letter goes before the selection")
        << QByteArray("xabcy") << 1 << 3 << QByteArray("Z") << QByteArray("xZabcy") << 2;
    QTest::newRow("Enter goes before the selection")
        << QByteArray("xabcy") << 1 << 3 << QByteArray("\r") << QByteArray("x\r\nabcy") << 3;
    QTest::newRow("a space outside the symbols replaces it")
        << QByteArray("xabcy") << 1 << 3 << QByteArray(" ") << QByteArray("x y") << 2;
    QTest::newRow(") at depth 0 replaces it")
        << QByteArray("xabcy") << 1 << 3 << QByteArray(")") << QByteArray("x)y") << 2;
    QTest::newRow("a space inside the symbols goes before it")
        << QByteArray("symbols\r\nxabcy\r\nend") << 10 << 3 << QByteArray(" ")
        << QByteArray("symbols\r\nx abcy\r\nend") << 11;
}

void tst_TypingAidKeys::typingOverSelection() {
    QFETCH(QByteArray, text);
    QFETCH(int, selStart);
    QFETCH(int, selLength);
    QFETCH(QByteArray, keys);
    QFETCH(QByteArray, after);
    QFETCH(int, caret);
    frmTessary* w = window(text, selStart);
    QVERIFY(w);
    w->txtMain->setSelLength(selLength);
    type(w->txtMain, keys);
    QCOMPARE(textOf(w), after);
    QCOMPARE(w->txtMain->selStart(), long(caret));
}

void tst_TypingAidKeys::parenthesisOverSelectionWhileHelpShown() {
    frmTessary* w = window("", 0);
    QVERIFY(w);
    type(w->txtMain, "Foo(xyz");
    w->txtMain->setSelStart(4);
    w->txtMain->setSelLength(3);
    type(w->txtMain, "(");
    QCOMPARE(textOf(w), QByteArray("Foo(("));
    QCOMPARE(w->intParens, 1);
    QVERIFY(helpShown(w));
}

void tst_TypingAidKeys::characterOverSelectionWhilePopupShown() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " abc");
    w->txtMain->setSelStart(17);
    w->txtMain->setSelLength(3);
    type(w->txtMain, "e");
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage e\r\nend\r\n"));
    QVERIFY(popupShown(w));
}

void tst_TypingAidKeys::backspace_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<int>("selLength");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("caret");
    QTest::newRow("deletes the selection") << QByteArray("xabcy") << 1 << 3 << QByteArray("xy") << 1;
    QTest::newRow("joins a line to the previous one")
        << QByteArray("ab\r\ncd") << 4 << 0 << QByteArray("abcd") << 2;
    QTest::newRow("at index 0 does nothing") << QByteArray("abc") << 0 << 0 << QByteArray("abc") << 0;
    QTest::newRow("one character") << QByteArray("abc") << 2 << 0 << QByteArray("ac") << 1;
    QTest::newRow("a selection holding parentheses") << QByteArray("x(y)") << 1 << 3 << QByteArray("x") << 1;
}

void tst_TypingAidKeys::backspace() {
    QFETCH(QByteArray, text);
    QFETCH(int, selStart);
    QFETCH(int, selLength);
    QFETCH(QByteArray, after);
    QFETCH(int, caret);
    frmTessary* w = window(text, selStart);
    QVERIFY(w);
    w->txtMain->setSelLength(selLength);
    type(w->txtMain, "\b");
    QCOMPARE(textOf(w), after);
    QCOMPARE(w->txtMain->selStart(), long(caret));
    QCOMPARE(w->intParens, 0);
    QVERIFY(!helpShown(w));
}

void tst_TypingAidKeys::backspaceClosesPopup() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    type(w->txtMain, " st");
    w->txtMain->setSelStart(18);
    w->txtMain->setSelLength(1);
    type(w->txtMain, "\b");
    QVERIFY(!popupShown(w));
    // The selection shrinks to its start and the character before it goes.
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessage t\r\nend\r\n"));
    type(w->txtMain, "\b");
    QCOMPARE(textOf(w), QByteArray("symbols\r\nmessaget\r\nend\r\n"));
}

void tst_TypingAidKeys::messagesLoadedPerWindow() {
    frmTessary* w = window(kSymbols, 16);
    QVERIFY(w);
    QCOMPARE(w->lvwCogParams->topLevelItemCount(), 3);
    QCOMPARE(w->lvwCogParams->headerItem()->text(0), QStringLiteral("Parameter"));
    QFile::remove(dir_->filePath("messages.dat"));
    mdlTessary::frame()->mnuFileNew_Click();
    frmTessary* second = cogWindow(2);
    QCOMPARE(second->lvwCogParams->topLevelItemCount(), 0);
    QCOMPARE(w->lvwCogParams->topLevelItemCount(), 3);
    // With an empty list the pop-up still opens and closes without touching the text.
    second->txtMain->setTextBytes(kSymbols);
    second->txtMain->setSelStart(16);
    type(second->txtMain, " st ");
    QVERIFY(!popupShown(second));
    QCOMPARE(textOf(second), QByteArray("symbols\r\nmessage st \r\nend\r\n"));
}

QTEST_MAIN(tst_TypingAidKeys)
#include "tst_typingaidkeys.moc"
