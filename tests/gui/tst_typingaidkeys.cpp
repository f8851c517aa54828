// The typing aids on a real editor window: keys typed into the text box and the message list.
#include "harness.h"
#include "refdir.h"

#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

class tst_TypingAidKeys : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void messagePopup_data();
    void messagePopup();
    void helpLine_data();
    void helpLine();
    void keysOverSelection_data();
    void keysOverSelection();

private:
    frmTessary* window(const QByteArray& text, long caret);
    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
};

namespace {

const QByteArray kRef = "t\r\n.foo\r\n.G\r\nFoo(a)|Does foo\r\nBar(x, y)|Bars | twice\r\nEOF\r\n";
const QByteArray kSymbols = "symbols\r\nmessage\r\nend\r\n";
constexpr char kLeft = '\x02';

// Types the keys: '\b' Backspace, '\r' Enter, '\t' Tab, kLeft the Left arrow, others themselves.
void type(QWidget* target, const QByteArray& keys) {
    static const QHash<char, Qt::Key> special{
        {'\b', Qt::Key_Backspace}, {'\r', Qt::Key_Return}, {'\t', Qt::Key_Tab}, {kLeft, Qt::Key_Left}};
    for (const char c : keys)
        if (special.contains(c))
            QTest::keyClick(target, special[c]);
        else
            QTest::keyClick(target, c);
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

} // namespace

void tst_TypingAidKeys::init() {
    prepareTessaryTest();
    dialogs_ = ScriptedDialogs();
    dir_ = makeProgramDirectory(kRef, "x\r\nactivated\r\nentered\r\nstartup\r\n");
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

void tst_TypingAidKeys::messagePopup_data() {
    // The list opens on a space after a word holding "message" inside the symbols; keys typed then.
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("highlighted");
    QTest::addColumn<bool>("open");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* name, const QByteArray& text, int caret, const QByteArray& keys,
                        const char* highlighted, bool open, const QByteArray& after) {
        QTest::newRow(name) << text << caret << keys << QString(highlighted) << open << after;
    };
    const auto line2 = [](const QByteArray& line) { return "symbols\r\n" + line + "\r\nend\r\n"; };
    row("message", kSymbols, 16, " ", "", true, line2("message "));
    row("messages", line2("messages"), 17, " ", "", true, line2("messages "));
    row("MyMessage after a tab", "x\r\nSymbols\r\n\tMyMessage\r\nend\r\n", 22, " ", "", true,
        "x\r\nSymbols\r\n\tMyMessage \r\nend\r\n");
    row("msg", line2("msg"), 12, " ", "", false, line2("msg "));
    row("in the code section", "symbols\r\nend\r\ncode\r\nmessage\r\nend\r\n", 27, " ", "", false,
        "symbols\r\nend\r\ncode\r\nmessage \r\nend\r\n");
    row("no end line", "symbols\r\nmessage", 16, " ", "", false, "symbols\r\nmessage ");
    row("no symbols line", "message\r\nend\r\n", 7, " ", "", true, "message \r\nend\r\n");
    row("e highlights entered", kSymbols, 16, " e", "entered", true, line2("message e"));
    row("ex highlights nothing", kSymbols, 16, " ex", "", true, line2("message ex"));
    row("letter case ignored", kSymbols, 16, " STA", "startup", true, line2("message STA"));
    row("Enter with no match leaves the text", kSymbols, 16, " ex\r", "", false, line2("message ex\r\n"));
    row("Space inserts the match", kSymbols, 16, " st ", "", false, line2("message startup "));
    row("Tab inserts the match and keeps the focus", kSymbols, 16, " st\t", "", false,
        line2("message startup\t"));
    row("Enter inserts the match", kSymbols, 16, " st\r", "", false, line2("message startup\r\n"));
    row("the list's spelling is written", kSymbols, 16, " ENT ", "", false, line2("message entered "));
    row("text after the caret is replaced too", kSymbols, 16,
        QByteArray(" tup") + kLeft + kLeft + kLeft + "star ", "", false, line2("message startup "));
}

void tst_TypingAidKeys::messagePopup() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QByteArray, keys);
    QFETCH(QString, highlighted);
    QFETCH(bool, open);
    QFETCH(QByteArray, after);
    frmTessary* w = window(text, caret);
    QVERIFY(w);
    type(w->txtMain, keys);
    QCOMPARE(popupShown(w), open);
    QCOMPARE(highlightedText(w->lvwCogParams), highlighted);
    QCOMPARE(textOf(w), after);
    if (keys == " ") QCOMPARE(w->txtMain->selStart(), long(caret + 1));
    if (open) QCOMPARE(w->lSpace, long(caret + 1));
    QCOMPARE(w->txtMain->selLength(), 0L);
    QVERIFY(!helpShown(w));
    QVERIFY(w->txtMain->hasFocus());
}

void tst_TypingAidKeys::helpLine_data() {
    // "(" looks up the word SelectWord selects before the caret.
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("parens");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* name, const QByteArray& keys, bool shown, int parens,
                        const QByteArray& text) { QTest::newRow(name) << keys << shown << parens << text; };
    row("name in other letter case", "fOO(", true, 0, "fOO(");
    row("nested pair", "Foo(()", true, 0, "Foo(()");
    row("closing at depth 0 hides", "Foo(())", false, 0, "Foo(())");
    row("deeper nesting", "Foo(((", true, 2, "Foo(((");
    row("Backspace over the closing one shows it again", "Foo(())\b", true, 0, "Foo(()");
    row("Backspace over an inner closing one", "Foo(())\b\b", true, 1, "Foo((");
    row("Backspace back over the opening one hides", "Foo(())\b\b\b\b", false, 0, "Foo");
    row("Backspace over an inner opening one", "Foo((\b", true, 0, "Foo(");
    row("other characters leave it", "Foo(a, b", true, 0, "Foo(a, b");
    row("an unknown name shows nothing", "Zap(", false, 0, "Zap(");
    row("a group name shows nothing", "g(", false, 0, "g(");
    row("SelectWord: the word after a blank", "x = Bar(", true, 0, "x = Bar(");
    row("SelectWord: the word after a line break", "x\rFoo(", true, 0, "x\r\nFoo(");
    row("SelectWord: scan to the start takes the leading blank", " Foo(", false, 0, " Foo(");
    row("SelectWord: a blank before the caret alone", "Foo (", false, 0, "Foo (");
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
    const bool bar = keys.contains("Bar");
    if (shown) {
        QCOMPARE(w->lblHelp->text(), bar ? QStringLiteral("Bar(x, y)") : QStringLiteral("Foo(a)"));
        QCOMPARE(mdlTessary::frame()->txtCogDesc->text(),
                 bar ? QStringLiteral("Bars | twice") : QStringLiteral("Does foo"));
    }
}

void tst_TypingAidKeys::keysOverSelection_data() {
    // The text and its caret, keys typed there, then a selection and the keys typed over it.
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<int>("selLength");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<int>("caretAfter");
    QTest::addColumn<bool>("aidShown"); // the pop-up or the help line
    const auto row = [](const char* name, const QByteArray& text, int caret, const QByteArray& before,
                        int selStart, int selLength, const QByteArray& keys, const QByteArray& after,
                        int caretAfter, bool aid = false) {
        QTest::newRow(name) << text << caret << before << selStart << selLength << keys << after << caretAfter
                            << aid;
    };
    row("a letter goes before the selection", "xabcy", 0, "", 1, 3, "Z", "xZabcy", 2);
    row("Enter goes before the selection", "xabcy", 0, "", 1, 3, "\r", "x\r\nabcy", 3);
    row("a space outside the symbols replaces it", "xabcy", 0, "", 1, 3, " ", "x y", 2);
    row(") at depth 0 replaces it", "xabcy", 0, "", 1, 3, ")", "x)y", 2);
    row("a space inside the symbols goes before it", "symbols\r\nxabcy\r\nend", 0, "", 10, 3, " ",
        "symbols\r\nx abcy\r\nend", 11);
    row("( over a selection while the help is shown", "", 0, "Foo(xyz", 4, 3, "(", "Foo((", 5, true);
    row("a letter over a selection while the pop-up is shown", kSymbols, 16, " abc", 17, 3, "e",
        "symbols\r\nmessage e\r\nend\r\n", 18, true);
    row("Backspace deletes the selection", "xabcy", 0, "", 1, 3, "\b", "xy", 1);
    row("Backspace joins a line to the previous one", "ab\r\ncd", 0, "", 4, 0, "\b", "abcd", 2);
    row("Backspace at index 0 does nothing", "abc", 0, "", 0, 0, "\b", "abc", 0);
    row("Backspace over a selection holding parentheses", "x(y)", 0, "", 1, 3, "\b", "x", 1);
    row("Backspace closes the pop-up, then deletes before the selection", kSymbols, 16, " st", 18, 1, "\b",
        "symbols\r\nmessage t\r\nend\r\n", 17);
}

void tst_TypingAidKeys::keysOverSelection() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QByteArray, before);
    QFETCH(int, selStart);
    QFETCH(int, selLength);
    QFETCH(QByteArray, keys);
    QFETCH(QByteArray, after);
    QFETCH(int, caretAfter);
    QFETCH(bool, aidShown);
    frmTessary* w = window(text, caret);
    QVERIFY(w);
    type(w->txtMain, before);
    w->txtMain->setSelStart(selStart);
    w->txtMain->setSelLength(selLength);
    type(w->txtMain, keys);
    QCOMPARE(textOf(w), after);
    QCOMPARE(w->txtMain->selStart(), long(caretAfter));
    QCOMPARE(popupShown(w) || helpShown(w), aidShown);
    QCOMPARE(w->intParens, aidShown && helpShown(w) ? 1 : 0);
}

TESSARY_TEST_MAIN(tst_TypingAidKeys)
#include "tst_typingaidkeys.moc"
