// What the editor shows besides the text: line numbers in the editor font and the brace pair at
// the caret; Undo and Redo from the Edit menu; Enter's plain line break; every kind of edit
// reaching the window's change handler.
#include "harness.h"

#include <QBuffer>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QMenu>

namespace {

long send(CogTextBox* box, unsigned int msg, unsigned long w = 0, long l = 0) {
    return box->SendScintilla(msg, w, l);
}

// The pixels of the character cell at position, as drawn now.
QImage cell(CogTextBox* box, long position) {
    QCoreApplication::processEvents();
    const int x = int(send(box, QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, position));
    const int y = int(send(box, QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, position));
    const int right = int(send(box, QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, position + 1));
    const int height = int(send(box, QsciScintillaBase::SCI_TEXTHEIGHT, 0UL, 0L));
    return box->viewport()->grab(QRect(x, y, right - x, height)).toImage();
}

} // namespace

enum class EditKind { Key, Backspace, Paste, MenuUndo, MenuRedo, SelText, ReplaceRange, DirectCall };
Q_DECLARE_METATYPE(EditKind)

class tst_EditorFeatures : public QObject {
    Q_OBJECT
private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
        box_ = cogWindow(1)->txtMain;
    }
    void cleanup() { stopTessary(); }

    void lineNumberMarginFollowsFontAndLines() {
        QCOMPARE(send(box_, QsciScintillaBase::SCI_GETMARGINTYPEN, 0),
                 long(QsciScintillaBase::SC_MARGIN_NUMBER));
        const long narrow = send(box_, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
        QVERIFY(narrow > 0);
        mdlTessary::DefFontSize = 20;
        mdlTessary::DefFontItalic = true;
        mdlTessary::ApplyFont(cogWindow(1));
        for (const int style : {0, 1, 2, 5, int(QsciScintillaBase::STYLE_LINENUMBER)}) {
            QCOMPARE(send(box_, QsciScintillaBase::SCI_STYLEGETSIZE, static_cast<unsigned long>(style)), 20L);
            QCOMPARE(send(box_, QsciScintillaBase::SCI_STYLEGETITALIC, static_cast<unsigned long>(style)),
                     1L);
        }
        // The section words stay bold in any font; other names follow the font (weight stored negated).
        QCOMPARE(std::abs(send(box_, QsciScintillaBase::SCI_STYLEGETWEIGHT, 2)), long(QFont::Bold));
        QCOMPARE(std::abs(send(box_, QsciScintillaBase::SCI_STYLEGETWEIGHT, 0)), long(QFont::Normal));
        const long larger = send(box_, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
        QVERIFY(larger > narrow);
        box_->setTextBytes(QByteArray("x\r\n").repeated(123456));
        const long wide = send(box_, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
        const long digit = send(box_, QsciScintillaBase::SCI_TEXTWIDTH, QsciScintillaBase::STYLE_LINENUMBER,
                                reinterpret_cast<long>("9"));
        QVERIFY2(wide >= 7 * digit && wide > larger, "room for six digits and a spare");
    }
    void bracePairAtTheCaretIsHighlighted_data() {
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
    void bracePairAtTheCaretIsHighlighted() {
        QFETCH(int, caret);
        QFETCH(int, partner);
        QFETCH(bool, highlighted);
        box_->setTextBytes("if (f(x) == 1) {\r\n}\r\n");
        box_->setSelStart(1); // same line, no brace beside the caret
        const QImage plain = cell(box_, partner);
        box_->setSelStart(caret);
        QCOMPARE(cell(box_, partner) != plain, highlighted);
    }
    void undoRedoFromTheEditMenu() {
        const QList<QAction*> items = frame_->mnuEditm->actions();
        for (int i = 0; i < 5; ++i) QCOMPARE(items[i], frame_->mnuEdit[static_cast<std::size_t>(i)]);
        QVERIFY(items.at(items.size() - 3)->isSeparator());
        QCOMPARE(items.at(items.size() - 2), frame_->mnuEditUndo);
        QCOMPARE(items.at(items.size() - 1), frame_->mnuEditRedo);
        QCOMPARE(frame_->mnuEditUndo->shortcut(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(frame_->mnuEditRedo->shortcuts(), QKeySequence::keyBindings(QKeySequence::Redo));

        frmTessary* w = cogWindow(1);
        const QByteArray original = textOf(w);
        box_->setFocus();
        box_->setSelStart(0);
        QTest::keyClicks(box_, "abc");
        frame_->mnuEditUndo->trigger();
        QCOMPARE(textOf(w), original);
        frame_->mnuEditRedo->trigger();
        QCOMPARE(textOf(w), "abc" + original);
        // The menu acts on the current window, wherever the focus is.
        frame_->mnuFileNew_Click();
        frmTessary* second = cogWindow(2);
        second->txtMain->setSelStart(0);
        QTest::keyClicks(second->txtMain, "x");
        frame_->cmbCog->setFocus();
        frame_->mnuEditUndo->trigger();
        QCOMPARE(textOf(second), original);
        QCOMPARE(textOf(w), "abc" + original);
    }
    void enterInsertsAPlainLineBreak() {
        box_->setTextBytes("    if (x) {");
        box_->setFocus();
        box_->setSelStart(box_->textLength());
        QTest::keyClick(box_, Qt::Key_Return);
        QCOMPARE(box_->textBytes(), QByteArray("    if (x) {\r\n"));
    }
    void everyEditReachesTheChangeHandler_data() {
        QTest::addColumn<EditKind>("kind");
        QTest::addColumn<int>("caret");
        // "# s\r\nsymbols\r\nint a\r\nend\r\ncode\r\nend\r\n": LF + "symbols" at offset 4, LF + "end" at 20.
        QTest::newRow("a letter before the symbols line") << EditKind::Key << 5;
        QTest::newRow("Backspace joins the symbols line") << EditKind::Backspace << 5;
        QTest::newRow("Backspace joins the end line") << EditKind::Backspace << 21;
        QTest::newRow("pasted line break") << EditKind::Paste << 14;
        QTest::newRow("Undo from the menu") << EditKind::MenuUndo << 5;
        QTest::newRow("Redo from the menu") << EditKind::MenuRedo << 5;
        QTest::newRow("selection replaced by a call") << EditKind::SelText << 0;
        QTest::newRow("range replaced by a call") << EditKind::ReplaceRange << 19;
        QTest::newRow("Scintilla message, then the event loop") << EditKind::DirectCall << 0;
    }
    void everyEditReachesTheChangeHandler() {
        QFETCH(EditKind, kind);
        QFETCH(int, caret);
        frmTessary* w = cogWindow(1);
        box_->setTextBytes("# s\r\nsymbols\r\nint a\r\nend\r\ncode\r\nend\r\n");
        send(box_, QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
        w->clearModified();
        box_->setFocus();
        box_->setSelStart(caret);
        if (kind == EditKind::MenuUndo || kind == EditKind::MenuRedo) {
            QTest::keyClick(box_, Qt::Key_Backspace);
            w->clearModified();
        }
        if (kind == EditKind::MenuRedo) {
            frame_->mnuEditUndo->trigger();
            w->clearModified();
        }

        switch (kind) {
        case EditKind::Key:
            QTest::keyClick(box_, Qt::Key_X);
            break;
        case EditKind::Backspace:
            QTest::keyClick(box_, Qt::Key_Backspace);
            break;
        case EditKind::Paste:
            QGuiApplication::clipboard()->setText(QStringLiteral("\r\nend"));
            QTest::keyClick(box_, Qt::Key_V, Qt::ControlModifier);
            break;
        case EditKind::MenuUndo:
            frame_->mnuEditUndo->trigger();
            break;
        case EditKind::MenuRedo:
            frame_->mnuEditRedo->trigger();
            break;
        case EditKind::SelText:
            box_->setSelText("\r\nend");
            break;
        case EditKind::ReplaceRange:
            box_->replaceRange(caret, 5, "\r\nsymbols");
            break;
        case EditKind::DirectCall:
            send(box_, QsciScintillaBase::SCI_INSERTTEXT, 0UL, reinterpret_cast<long>("\r\nsymbols"));
            QCoreApplication::processEvents();
            break;
        }

        const QByteArray text = textOf(w);
        const std::string_view bytes(text.constData(), std::size_t(text.size()));
        QVERIFY(w->bMod);
        QVERIFY(w->Caption().endsWith(QLatin1Char('*')));
        QCOMPARE(w->lsym, cog::find(1, bytes, "\nsymbols"));
        QCOMPARE(w->lsymend, cog::find(1, bytes, "\nend"));
    }
    void openedFileHasNothingToUndo() {
        const QString path =
            QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).filePath(QStringLiteral("opened.cog"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("symbols\r\nend\r\n");
        file.close();
        mdlTessary::OpenCogFile(path);
        frmTessary* w = mdlTessary::currentCog();
        QVERIFY(w && w != cogWindow(1));
        frame_->mnuEditUndo->trigger();
        QCOMPARE(textOf(w), QByteArray("symbols\r\nend\r\n"));
        QVERIFY(!w->bMod);
    }
    void loadingStopsAtAReadError() {
        // A device that delivers one block and then fails, as a disk with a bad sector would.
        struct FailingDevice : QBuffer {
            int reads = 0;
            qint64 readData(char* data, qint64 size) override {
                return ++reads == 1 ? QBuffer::readData(data, size) : -1;
            }
        };
        QByteArray bytes = QByteArray("abc\r\n").repeated(300000);
        FailingDevice device;
        device.setBuffer(&bytes);
        QVERIFY(device.open(QIODevice::ReadOnly));
        QVERIFY(!box_->loadFrom(device));
        QCOMPARE(box_->textLength(), 0L);
    }

private:
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
    CogTextBox* box_ = nullptr;
};

TESSARY_TEST_MAIN(tst_EditorFeatures)
#include "tst_editorfeatures.moc"
