// COG colouring on a real editor window: the styles Scintilla holds for a sample file, and the
// restyling after edits inside and across comments, strings and lines.
#include "harness.h"

#include "editor/coglexer.h"
#include "editor/ui/CogLexer.h"

#include <QFile>

#include <random>

using editor::CogStyle;

Q_DECLARE_METATYPE(CogStyle)

class tst_Lexer : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void styleInSampleFile_data();
    void styleInSampleFile();
    void restyleAfterEdit_data();
    void restyleAfterEdit();
    void randomEditsMatchAFullRestyle();
    void newVerbNamesRestyleTheText();
    void verbsComeFromTheLoadedReference();

private:
    frmTessary* window_ = nullptr;
    QByteArray sample_;
};

namespace {

const std::vector<std::string> sampleVerbs{"GetSenderRef", "MoveToFrame", "Print"};

// Styles what is not styled yet, to the end of the text, as drawing it would.
void styleToEnd(CogTextBox* box) {
    const long styled = box->SendScintilla(QsciScintillaBase::SCI_GETENDSTYLED);
    box->SendScintilla(QsciScintillaBase::SCI_COLOURISE, static_cast<unsigned long>(styled), -1L);
}

CogStyle styleAt(CogTextBox* box, long position) {
    styleToEnd(box);
    return static_cast<CogStyle>(
        box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
}

// Scintilla's styles of the whole text next to the rules applied to the whole text afresh.
void compareWithFullStyling(CogTextBox* box) {
    styleToEnd(box);
    const std::string_view text = box->bytes();
    std::string expected(text.size(), '\0');
    editor::CogWords words;
    words.setVerbs(sampleVerbs);
    editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(expected.data()));
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto held =
            box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(i));
        if (held != static_cast<unsigned char>(expected[i]))
            QFAIL(
                qPrintable(QStringLiteral("style %1 instead of %2 at %3 in:\n%4")
                               .arg(held)
                               .arg(int(expected[i]))
                               .arg(i)
                               .arg(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())))));
    }
}

} // namespace

void tst_Lexer::init() {
    CogLexer::setSharedVerbs(sampleVerbs);
    QFile file(QStringLiteral(TESSARY_TEST_DATA "/highlight.cog"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    sample_ = file.readAll();
    window_ = new frmTessary;
    window_->resize(600, 400);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_));
    window_->txtMain->setTextBytes(sample_);
}

void tst_Lexer::cleanup() {
    delete window_;
    window_ = nullptr;
    CogLexer::setSharedVerbs({});
}

void tst_Lexer::styleInSampleFile_data() {
    QTest::addColumn<QByteArray>("needle");
    QTest::addColumn<int>("offset"); // into the needle
    QTest::addColumn<CogStyle>("style");
    QTest::newRow("comment line") << QByteArray("# Opens") << 3 << CogStyle::Comment;
    QTest::newRow("comment after code") << QByteArray("// move it") << 5 << CogStyle::Comment;
    QTest::newRow("section word") << QByteArray("symbols") << 0 << CogStyle::Section;
    QTest::newRow("type keyword") << QByteArray("thing ") << 2 << CogStyle::Type;
    QTest::newRow("flow keyword") << QByteArray("else") << 0 << CogStyle::Flow;
    QTest::newRow("verb") << QByteArray("MoveToFrame") << 4 << CogStyle::Verb;
    QTest::newRow("string with a comment sign") << QByteArray("\"Door #1") << 6 << CogStyle::String;
    QTest::newRow("decimal number") << QByteArray("2.5") << 1 << CogStyle::Number;
    QTest::newRow("hexadecimal number") << QByteArray("0x1F") << 3 << CogStyle::Number;
    QTest::newRow("message label") << QByteArray("reset:") << 5 << CogStyle::Label;
    QTest::newRow("plain name") << QByteArray("door)") << 1 << CogStyle::Default;
}

void tst_Lexer::styleInSampleFile() {
    QFETCH(QByteArray, needle);
    QFETCH(int, offset);
    QFETCH(CogStyle, style);
    const long at = sample_.indexOf(needle);
    QVERIFY(at >= 0);
    QCOMPARE(int(styleAt(window_->txtMain, at + offset)), int(style));
}

void tst_Lexer::restyleAfterEdit_data() {
    QTest::addColumn<QByteArray>("at");       // the edit goes before the first occurrence of this
    QTest::addColumn<int>("deleted");         // bytes removed there
    QTest::addColumn<QByteArray>("inserted"); // bytes put there
    QTest::addColumn<QByteArray>("probe");    // checked in the edited text
    QTest::addColumn<CogStyle>("style");
    QTest::newRow("typing inside a comment keeps it a comment")
        << QByteArray("the switch") << 0 << QByteArray("if ") << QByteArray("if the switch")
        << CogStyle::Comment;
    QTest::newRow("removing the comment sign uncomments the line")
        << QByteArray("# Opens") << 1 << QByteArray() << QByteArray("when") << CogStyle::Default;
    QTest::newRow("a comment sign comments out the rest of the line")
        << QByteArray("count = 0;") << 0 << QByteArray("// ") << QByteArray("count = 0;")
        << CogStyle::Comment;
    QTest::newRow("a line break inside a comment ends it")
        << QByteArray(" move it") << 0 << QByteArray("\r\n") << QByteArray("move it") << CogStyle::Default;
    QTest::newRow("joining a line to a comment comments it")
        << QByteArray("\r\n        Print") << 2 << QByteArray(" ") << QByteArray("Print(\"Door")
        << CogStyle::Comment;
    QTest::newRow("an opening quote turns the rest of the line into a string")
        << QByteArray("speed); //") << 0 << QByteArray("\"") << QByteArray("speed);") << CogStyle::String;
    QTest::newRow("closing the quote ends the string before the comment")
        << QByteArray("Door #1") << 4 << QByteArray("\"") << QByteArray("#1 opens") << CogStyle::Comment;
    QTest::newRow("a new label line")
        << QByteArray("reset:") << 0 << QByteArray("pulse:\r\n") << QByteArray("pulse:") << CogStyle::Label;
}

void tst_Lexer::restyleAfterEdit() {
    QFETCH(QByteArray, at);
    QFETCH(int, deleted);
    QFETCH(QByteArray, inserted);
    QFETCH(QByteArray, probe);
    QFETCH(CogStyle, style);
    CogTextBox* box = window_->txtMain;
    styleToEnd(box); // all styled before the edit
    const long position = sample_.indexOf(at);
    QVERIFY(position >= 0);
    box->replaceRange(position, deleted, inserted);
    const long probeAt = box->textBytes().indexOf(probe);
    QVERIFY(probeAt >= 0);
    for (long i = probeAt; i < probeAt + probe.size(); ++i)
        if (box->bytes()[static_cast<std::size_t>(i)] != ' ') QCOMPARE(int(styleAt(box, i)), int(style));
    compareWithFullStyling(box);
}

// Edits anywhere, of any kind, leave the same styles as styling the edited text afresh.
void tst_Lexer::randomEditsMatchAFullRestyle() {
    CogTextBox* box = window_->txtMain;
    const QList<QByteArray> pieces{"#",        "//",     "\"",   "\r\n", "x",     " ",
                                   "thing ",   "end",    "0x1F", ":",    "Print", "// c\r\n",
                                   "\r\n\r\n", "a:\r\n", "2.5",  "\r",   "\n"};
    std::mt19937 random(12345);
    for (int round = 0; round < 300; ++round) {
        const long length = box->textLength();
        const long position = std::uniform_int_distribution<long>(0, length)(random);
        if (random() % 3 == 0) {
            const long deleted =
                std::min(length - position, std::uniform_int_distribution<long>(1, 12)(random));
            box->replaceRange(position, deleted, QByteArray());
        } else {
            const QByteArray piece = pieces[static_cast<qsizetype>(random() % pieces.size())];
            box->replaceRange(position, 0, piece);
        }
        if (random() % 4 == 0) compareWithFullStyling(box);
        if (QTest::currentTestFailed()) return;
    }
    compareWithFullStyling(box);
}

void tst_Lexer::newVerbNamesRestyleTheText() {
    CogTextBox* box = window_->txtMain;
    const long at = sample_.indexOf("MoveToFrame");
    QCOMPARE(int(styleAt(box, at)), int(CogStyle::Verb));
    CogLexer::setSharedVerbs({"movetoframe", "stop"});
    QCOMPARE(int(styleAt(box, sample_.indexOf("Print("))), int(CogStyle::Default));
    QCOMPARE(int(styleAt(box, at)), int(CogStyle::Verb));
    QCOMPARE(int(styleAt(box, sample_.indexOf("stop;"))), int(CogStyle::Flow));
    // A window opened later colours with the same names.
    frmTessary later;
    later.txtMain->setTextBytes("Print(x); MoveToFrame(d, 1, 2);");
    QCOMPARE(int(styleAt(later.txtMain, 0)), int(CogStyle::Default));
    QCOMPARE(int(styleAt(later.txtMain, 10)), int(CogStyle::Verb));
}

void tst_Lexer::verbsComeFromTheLoadedReference() {
    prepareTessaryTest();
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    const QByteArray text = "sleep(0.5);\r\nMoveToFrame(d, 1, 2);\r\nNoSuchVerb(1);\r\nGetSenderRef();\r\n";
    box->setTextBytes(text);
    QCOMPARE(int(styleAt(box, text.indexOf("sleep"))), int(CogStyle::Verb));
    QCOMPARE(int(styleAt(box, text.indexOf("MoveToFrame"))), int(CogStyle::Verb));
    QCOMPARE(int(styleAt(box, text.indexOf("GetSenderRef"))), int(CogStyle::Verb));
    QCOMPARE(int(styleAt(box, text.indexOf("NoSuchVerb"))), int(CogStyle::Default));
    stopTessary();
}

QTEST_MAIN(tst_Lexer)
#include "tst_lexer.moc"
