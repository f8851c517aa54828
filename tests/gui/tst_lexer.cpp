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

    void styleBeforeAndAfterEdits_data();
    void styleBeforeAndAfterEdits();
    void randomEditsMatchAFullRestyle();
    void verbsComeFromTheLoadedReference();

private:
    frmTessary* window_ = nullptr;
    QByteArray sample_;
};

namespace {

const std::vector<std::string> sampleVerbs{"GetSenderRef", "MoveToFrame", "Print"};

// The style at position once all is styled to the end of the text, as drawing it would.
int styleAt(CogTextBox* box, long position) {
    const long styled = box->SendScintilla(QsciScintillaBase::SCI_GETENDSTYLED);
    box->SendScintilla(QsciScintillaBase::SCI_COLOURISE, static_cast<unsigned long>(styled), -1L);
    return int(box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
}

// Scintilla's styles of the whole text next to the rules applied to the whole text afresh.
void compareWithFullStyling(CogTextBox* box) {
    const std::string_view text = box->bytes();
    QByteArray expected(qsizetype(text.size()), '\0'), held;
    editor::CogWords words;
    words.setVerbs(sampleVerbs);
    editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(expected.data()));
    styleAt(box, 0);
    for (std::size_t i = 0; i < text.size(); ++i)
        held += char(box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(i)));
    QVERIFY2(held == expected, std::string(text).c_str());
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

void tst_Lexer::styleBeforeAndAfterEdits_data() {
    QTest::addColumn<QByteArray>("at");       // an edit goes before the first occurrence of this, if any
    QTest::addColumn<int>("deleted");         // bytes removed there
    QTest::addColumn<QByteArray>("inserted"); // bytes put there
    QTest::addColumn<QByteArray>("probe");    // its bytes but blanks checked in the (edited) text
    QTest::addColumn<CogStyle>("style");
    const auto row = [](const char* name, const QByteArray& at, int deleted, const QByteArray& inserted,
                        const QByteArray& probe, CogStyle style) {
        QTest::newRow(name) << at << deleted << inserted << probe << style;
    };
    const auto unedited = [&](const char* name, const QByteArray& probe, CogStyle style) {
        row(name, {}, 0, {}, probe, style);
    };
    unedited("comment line", "# Opens the", CogStyle::Comment);
    unedited("section word", "symbols", CogStyle::Section);
    unedited("type keyword", "thing", CogStyle::Type);
    unedited("verb", "MoveToFrame", CogStyle::Verb);
    unedited("string with a comment sign", "\"Door #1 opens\"", CogStyle::String);
    unedited("hexadecimal number", "0x1F", CogStyle::Number);
    unedited("message label", "reset:", CogStyle::Label);
    unedited("plain name", "count", CogStyle::Default);
    row("typing inside a comment keeps it a comment", "the switch", 0, "if ", "if the switch",
        CogStyle::Comment);
    row("removing the comment sign uncomments the line", "# Opens", 1, {}, "when", CogStyle::Default);
    row("a comment sign comments out the rest of the line", "count = 0;", 0, "// ", "count = 0;",
        CogStyle::Comment);
    row("a line break inside a comment ends it", " move it", 0, "\r\n", "move it", CogStyle::Default);
    row("joining a line to a comment comments it", "\r\n        Print", 2, " ", "Print(\"Door",
        CogStyle::Comment);
    row("closing the quote ends the string before the comment", "Door #1", 4, "\"", "#1 opens",
        CogStyle::Comment);
}

void tst_Lexer::styleBeforeAndAfterEdits() {
    QFETCH(QByteArray, at);
    QFETCH(int, deleted);
    QFETCH(QByteArray, inserted);
    QFETCH(QByteArray, probe);
    QFETCH(CogStyle, style);
    CogTextBox* box = window_->txtMain;
    styleAt(box, 0); // all styled before the edit
    QVERIFY(sample_.contains(at));
    if (!at.isEmpty()) box->replaceRange(sample_.indexOf(at), deleted, inserted);
    const long probeAt = box->textBytes().indexOf(probe);
    QVERIFY(probeAt >= 0);
    for (long i = probeAt; i < probeAt + probe.size(); ++i)
        if (box->bytes()[static_cast<std::size_t>(i)] != ' ') QCOMPARE(styleAt(box, i), int(style));
    compareWithFullStyling(box);
}

// Edits anywhere, of any kind, leave the same styles as styling the edited text afresh.
void tst_Lexer::randomEditsMatchAFullRestyle() {
    CogTextBox* box = window_->txtMain;
    const QList<QByteArray> pieces{"#",        "//",     "\"",   "\r\n", "x",     " ",
                                   "thing ",   "end",    "0x1F", ":",    "Print", "// c\r\n",
                                   "\r\n\r\n", "a:\r\n", "2.5",  "\r",   "\n"};
    std::mt19937 random(12345);
    for (int round = 0; round < 300 && !QTest::currentTestFailed(); ++round) {
        const long length = box->textLength();
        const long position = std::uniform_int_distribution<long>(0, length)(random);
        if (random() % 3 == 0)
            box->replaceRange(position, std::min(length - position, long(random() % 12 + 1)), QByteArray());
        else
            box->replaceRange(position, 0, pieces[static_cast<qsizetype>(random() % pieces.size())]);
        if (random() % 4 == 0) compareWithFullStyling(box);
    }
    compareWithFullStyling(box);
}

void tst_Lexer::verbsComeFromTheLoadedReference() {
    prepareTessaryTest();
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    CogTextBox* box = cogWindow(1)->txtMain;
    box->setTextBytes("sleep(0.5);\r\nMoveToFrame(d, 1, 2);\r\nNoSuchVerb(1);\r\n");
    QCOMPARE(styleAt(box, 0), int(CogStyle::Verb));
    QCOMPARE(styleAt(box, 13), int(CogStyle::Verb));
    QCOMPARE(styleAt(box, 36), int(CogStyle::Default));
    CogLexer::setSharedVerbs({"nosuchverb", "sleep"}); // new names restyle the text shown
    QCOMPARE(styleAt(box, 13), int(CogStyle::Default));
    QCOMPARE(styleAt(box, 36), int(CogStyle::Verb));
    QCOMPARE(styleAt(box, 0), int(CogStyle::Verb));
    stopTessary();
}

TESSARY_TEST_MAIN(tst_Lexer)
#include "tst_lexer.moc"
