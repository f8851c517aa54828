// What the editor shows besides the text: line numbers in the editor font, the current line, the
// brace pair at the caret; and Undo and Redo from the Edit menu and the keyboard.
#include "harness.h"

#include <QComboBox>
#include <QImage>
#include <QMenu>

class tst_EditorFeatures : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void lineNumberMarginGrowsWithTheLines();
    void editorFontReachesMarginAndStyles();
    void currentLineIsHighlighted();
    void bracePairAtTheCaretIsHighlighted_data();
    void bracePairAtTheCaretIsHighlighted();
    void editMenuKeepsItsItemsAndEndsWithUndoRedo();
    void undoRedoFromTheMenu();
    void editorKeysUndoOneStep();
    void enterStillInsertsAPlainLineBreak();
};

namespace {

long send(CogTextBox* box, unsigned int msg, unsigned long w = 0, long l = 0) {
    return box->SendScintilla(msg, w, l);
}

// The pixels of the character cell at position, as drawn now.
QImage cell(CogTextBox* box, long position) {
    QCoreApplication::processEvents();
    const int x = static_cast<int>(send(box, QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, position));
    const int y = static_cast<int>(send(box, QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, position));
    const int right =
        static_cast<int>(send(box, QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, position + 1));
    const int height = static_cast<int>(send(box, QsciScintillaBase::SCI_TEXTHEIGHT, 0UL, 0L));
    return box->viewport()->grab(QRect(x, y, right - x, height)).toImage();
}

} // namespace

void tst_EditorFeatures::lineNumberMarginGrowsWithTheLines() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    QCOMPARE(send(box, QsciScintillaBase::SCI_GETMARGINTYPEN, 0), long(QsciScintillaBase::SC_MARGIN_NUMBER));
    const long narrow = send(box, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
    QVERIFY(narrow > 0);
    box->setTextBytes(QByteArray("x\r\n").repeated(123456));
    const long wide = send(box, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
    const long digit = send(box, QsciScintillaBase::SCI_TEXTWIDTH, QsciScintillaBase::STYLE_LINENUMBER,
                            reinterpret_cast<long>("9"));
    QVERIFY2(wide >= 7 * digit, "room for six digits and a spare");
    QVERIFY(wide > narrow);
}

void tst_EditorFeatures::editorFontReachesMarginAndStyles() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    frmTessary* w = cogWindow(1);
    const long before = send(w->txtMain, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
    mdlTessary::DefFontSize = 20;
    mdlTessary::DefFontItalic = true;
    mdlTessary::ApplyFont(w);
    for (const int style : {0, 1, 2, 5, int(QsciScintillaBase::STYLE_LINENUMBER)}) {
        QCOMPARE(send(w->txtMain, QsciScintillaBase::SCI_STYLEGETSIZE, static_cast<unsigned long>(style)),
                 20L);
        QCOMPARE(send(w->txtMain, QsciScintillaBase::SCI_STYLEGETITALIC, static_cast<unsigned long>(style)),
                 1L);
    }
    // The section words stay bold in any font; other names follow the font.
    // (The weight is stored negated, in the toolkit's scale.)
    const auto weight = [&](unsigned long style) {
        return std::abs(send(w->txtMain, QsciScintillaBase::SCI_STYLEGETWEIGHT, style));
    };
    QCOMPARE(weight(2), long(QFont::Bold));
    QCOMPARE(weight(0), long(QFont::Normal));
    QVERIFY(send(w->txtMain, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0) > before);
}

void tst_EditorFeatures::currentLineIsHighlighted() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    box->setTextBytes("abc\r\nabc\r\n");
    QCOMPARE(send(box, QsciScintillaBase::SCI_GETCARETLINEVISIBLE), 1L);
    box->setSelStart(0);
    const QImage onCurrent = cell(box, 1);
    const QImage elsewhere = cell(box, 6);
    QVERIFY(onCurrent != elsewhere);
    box->setSelStart(5);
    QCOMPARE(cell(box, 6), onCurrent);
}

void tst_EditorFeatures::bracePairAtTheCaretIsHighlighted_data() {
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("partner");
    QTest::addColumn<bool>("highlighted");
    // "if (f(x) == 1) {\r\n}": the caret after or before a brace, the partner's position.
    QTest::newRow("after the opening parenthesis") << 4 << 13 << true;
    QTest::newRow("before the closing parenthesis") << 13 << 3 << true;
    QTest::newRow("after the opening curly brace") << 16 << 18 << true;
    QTest::newRow("inner pair") << 6 << 7 << true;
    QTest::newRow("no brace beside the caret") << 10 << 13 << false;
}

void tst_EditorFeatures::bracePairAtTheCaretIsHighlighted() {
    QFETCH(int, caret);
    QFETCH(int, partner);
    QFETCH(bool, highlighted);
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    box->setTextBytes("if (f(x) == 1) {\r\n}\r\n");
    box->setSelStart(1); // same line, no brace beside the caret
    const QImage plain = cell(box, partner);
    box->setSelStart(caret);
    QCOMPARE(cell(box, partner) != plain, highlighted);
}

void tst_EditorFeatures::editMenuKeepsItsItemsAndEndsWithUndoRedo() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    QVERIFY(frame);
    const QList<QAction*> items = frame->mnuEditm->actions();
    for (int i = 0; i < 5; ++i) QCOMPARE(items[i], frame->mnuEdit[static_cast<std::size_t>(i)]);
    QCOMPARE(frame->mnuEdit[0]->text(), QStringLiteral("Match &Brace"));
    QCOMPARE(items.at(items.size() - 2), frame->mnuEditUndo);
    QCOMPARE(items.at(items.size() - 1), frame->mnuEditRedo);
    QVERIFY(items.at(items.size() - 3)->isSeparator());
    QCOMPARE(frame->mnuEditUndo->shortcut(), QKeySequence(QKeySequence::Undo));
    QCOMPARE(frame->mnuEditRedo->shortcuts(), QKeySequence::keyBindings(QKeySequence::Redo));
}

void tst_EditorFeatures::undoRedoFromTheMenu() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    QVERIFY(frame);
    frmTessary* w = cogWindow(1);
    const QByteArray original = textOf(w);
    w->txtMain->setFocus();
    w->txtMain->setSelStart(0);
    QTest::keyClicks(w->txtMain, "abc");
    QCOMPARE(textOf(w), "abc" + original);
    frame->mnuEditUndo->trigger();
    QCOMPARE(textOf(w), original);
    frame->mnuEditRedo->trigger();
    QCOMPARE(textOf(w), "abc" + original);
    // The menu acts on the current window, wherever the focus is.
    frame->mnuFileNew_Click();
    frmTessary* second = cogWindow(2);
    second->txtMain->setSelStart(0);
    QTest::keyClicks(second->txtMain, "x");
    frame->cmbCog->setFocus();
    frame->mnuEditUndo->trigger();
    QCOMPARE(textOf(second), original);
    QCOMPARE(textOf(w), "abc" + original);
}

void tst_EditorFeatures::editorKeysUndoOneStep() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    frmTessary* w = cogWindow(1);
    w->setFocus();
    w->txtMain->setFocus();
    w->txtMain->setSelStart(0);
    const QByteArray original = textOf(w);
    QTest::keyClicks(w->txtMain, "abc");
    w->txtMain->setSelStart(0);
    QTest::keyClicks(w->txtMain, "x");
    QTest::keyClick(w->txtMain, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(textOf(w), "abc" + original);
    QTest::keyClick(w->txtMain, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(textOf(w), "xabc" + original);
}

void tst_EditorFeatures::enterStillInsertsAPlainLineBreak() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    box->setTextBytes("    if (x) {");
    box->setFocus();
    box->setSelStart(box->textLength());
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->textBytes(), QByteArray("    if (x) {\r\n"));
}

QTEST_MAIN(tst_EditorFeatures)
#include "tst_editorfeatures.moc"
