// COG colouring on a real editor window: after edits anywhere, of any kind, Scintilla holds the
// styles the rules give the edited text afresh; the verbs come from the loaded reference.
#include "harness.h"

#include "editor/coglexer.h"
#include "editor/ui/CogLexer.h"

#include <random>

using editor::CogStyle;

namespace {

// The style at position once all is styled to the end of the text, as drawing it would.
int styleAt(CogTextBox* box, long position) {
    const long styled = box->SendScintilla(QsciScintillaBase::SCI_GETENDSTYLED);
    box->SendScintilla(QsciScintillaBase::SCI_COLOURISE, static_cast<unsigned long>(styled), -1L);
    return int(box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
}

} // namespace

class tst_Lexer : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() {
        stopTessary();
        CogLexer::setSharedVerbs({});
    }

    void randomEditsMatchAFullRestyle() {
        const std::vector<std::string> verbs{"GetSenderRef", "MoveToFrame", "Print"};
        CogLexer::setSharedVerbs(verbs);
        frmTessary window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        CogTextBox* box = window.txtMain;
        QFile sample(QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/colouring/sample.cog"));
        QVERIFY(sample.open(QIODevice::ReadOnly));
        box->setTextBytes(sample.readAll());
        editor::CogWords words;
        words.setVerbs(verbs);
        const auto compare = [&] {
            const std::string_view text = box->bytes();
            QByteArray expected(qsizetype(text.size()), '\0'), held;
            editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(expected.data()));
            styleAt(box, 0);
            for (std::size_t i = 0; i < text.size(); ++i)
                held += char(
                    box->SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(i)));
            QVERIFY2(held == expected, std::string(text).c_str());
        };
        const QList<QByteArray> pieces{"#",        "//",     "\"",   "\r\n", "x",     " ",
                                       "thing ",   "end",    "0x1F", ":",    "Print", "// c\r\n",
                                       "\r\n\r\n", "a:\r\n", "2.5",  "\r",   "\n"};
        std::mt19937 random(12345);
        for (int round = 0; round < 300 && !QTest::currentTestFailed(); ++round) {
            const long length = box->textLength();
            const long position = std::uniform_int_distribution<long>(0, length)(random);
            if (random() % 3 == 0)
                box->replaceRange(position, std::min(length - position, long(random() % 12 + 1)),
                                  QByteArray());
            else
                box->replaceRange(position, 0, pieces[static_cast<qsizetype>(random() % pieces.size())]);
            if (random() % 4 == 0) compare();
        }
        compare();
    }

    void verbsComeFromTheLoadedReference() {
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
    }
};

TESSARY_TEST_MAIN(tst_Lexer)
#include "tst_lexer.moc"
