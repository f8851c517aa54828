// The editor window: the Edit menu, undo, Enter and the change handler (sessions under
// tests/cases/editor), the typing aids (cases under tests/cases/keys), the line numbers, the brace
// pair at the caret, the COG colouring and loading.
#include "harness.h"

#include "editor/charset.h"
#include "editor/coglexer.h"
#include "editor/ui/CharsetFont.h"
#include "editor/ui/CogLexer.h"

#include <QBuffer>
#include <QPainterPath>
#include <QRawFont>

#include <random>

using editor::CogStyle;

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
    return box->viewport()
        ->grab(QRect(x, y, right - x, int(send(box, QsciScintillaBase::SCI_TEXTHEIGHT))))
        .toImage();
}

// The style at position once all is styled to the end of the text, as drawing it would.
int styleAt(CogTextBox* box, long position) {
    const long styled = send(box, QsciScintillaBase::SCI_GETENDSTYLED);
    send(box, QsciScintillaBase::SCI_COLOURISE, static_cast<unsigned long>(styled), -1L);
    return int(send(box, QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
}

// "> at CARET type KEYS [select START LENGTH type KEYS]" on a fresh program whose window holds the
// case's input, with a small reference and message list: the text, the caret and the aids shown.
std::string keys(const std::string& text, const cases::Args& a, const QString&) {
    Session& s = session();
    s.reset();
    s.run({}, {{"write", "cogref.dat",
                "t\r\n.foo\r\n.G\r\nFoo(a)|Does foo\r\nBar(x, y)|Bars | twice\r\nEOF\r\n"}});
    s.run({}, {{"write", "messages.dat", "x\r\nactivated\r\nentered\r\nstartup\r\n"}});
    s.run(text, {{"start"}});
    s.run(text, {{"load"}});
    s.run({}, {{"at", a.at(1)}});
    s.run({}, {{"type", a.at(3)}});
    if (a.at(4) == "select") {
        s.run({}, {{"at", a.at(5), a.at(6)}});
        s.run({}, {{"type", a.at(8)}});
    }
    frmTessary* w = mdlTessary::currentCog();
    return cases::block(textOf(w).toStdString()) + "caret " + std::to_string(w->txtMain->selStart()) +
           (w->txtMain->hasFocus() ? "" : ", focus lost") + "\n" + Session::aids(w);
}

} // namespace

class tst_Editor : public QObject {
    Q_OBJECT
    ScriptedDialogs dialogs_;
    CogTextBox* box_ = nullptr;

    void start() {
        QVERIFY(startTessary(dialogs_));
        box_ = cogWindow(1)->txtMain;
    }

private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
    }
    void cleanup() {
        endSessionTest();
        CogLexer::setSharedVerbs({});
    }

    void sessions_data() { cases::listCases({{"editor", {}}, {"keys", {}}}); }
    void sessions() { cases::runCase({{"editor", playSession()}, {"keys", keys}}); }

    // Bytes 0x80-0x9F show their Windows-1252 characters: a stand-in font draws each with the
    // editor font's own outline and advance, and the editor's text uses it.
    void bytes80To9FShowTheirCharacters_data() {
        QTest::addColumn<QString>("family");
        for (const char* family : {"DejaVu Sans Mono", "DejaVu Serif"}) QTest::newRow(family) << family;
    }
    void bytes80To9FShowTheirCharacters() {
        QFETCH(QString, family);
        if (!QFontDatabase::hasFamily(family)) QSKIP("font not installed");
        const QString standIn = charsetfont::install(family);
        QRawFont made = QRawFont::fromFont(QFont(standIn)), source = QRawFont::fromFont(QFont(family));
        QCOMPARE(made.familyName(), standIn);
        made.setPixelSize(source.unitsPerEm());
        source.setPixelSize(source.unitsPerEm());
        for (char32_t byte = 0x80; byte <= 0x9F; ++byte) {
            const char32_t c = editor::decodeByte(static_cast<unsigned char>(byte));
            QCOMPARE(made.supportsCharacter(byte), c != byte);
            if (c == byte) continue;
            const auto madeGlyph = made.glyphIndexesForString(QString::fromUcs4(&byte, 1));
            const auto sourceGlyph = source.glyphIndexesForString(QString::fromUcs4(&c, 1));
            const QRectF a = made.pathForGlyph(madeGlyph[0]).boundingRect(),
                         b = source.pathForGlyph(sourceGlyph[0]).boundingRect();
            QVERIFY2(qAbs(a.left() - b.left()) + qAbs(a.top() - b.top()) + qAbs(a.right() - b.right()) +
                             qAbs(a.bottom() - b.bottom()) <=
                         4,
                     qPrintable(QString::number(byte, 16)));
            QCOMPARE(qRound(made.advancesForGlyphIndexes(madeGlyph)[0].x()),
                     qRound(source.advancesForGlyphIndexes(sourceGlyph)[0].x()));
        }
        start();
        mdlTessary::DefFontName = family;
        mdlTessary::ApplyFont(cogWindow(1));
        const QFont shown = box_->lexer()->font(0);
        QCOMPARE(shown.family(), family);
        QCOMPARE(QFontMetricsF(shown).horizontalAdvance(QChar(0x80)),
                 QFontMetricsF(shown).horizontalAdvance(QChar(0x20AC)));
    }

    void lineNumberMarginFollowsFontAndLines() {
        start();
        QCOMPARE(send(box_, QsciScintillaBase::SCI_GETMARGINTYPEN, 0),
                 long(QsciScintillaBase::SC_MARGIN_NUMBER));
        const long narrow = send(box_, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
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
        QVERIFY(narrow > 0 && larger > narrow);
        box_->setTextBytes(QByteArray("x\r\n").repeated(123456));
        const long wide = send(box_, QsciScintillaBase::SCI_GETMARGINWIDTHN, 0);
        const long digit = send(box_, QsciScintillaBase::SCI_TEXTWIDTH, QsciScintillaBase::STYLE_LINENUMBER,
                                reinterpret_cast<long>("9"));
        QVERIFY2(wide >= 7 * digit && wide > larger, "room for six digits and a spare");
    }

    void bracePairAtTheCaretIsHighlighted() {
        start();
        box_->setTextBytes("if (f(x) == 1) {\r\n}\r\n");
        // The caret after or before a brace: the partner's cell is drawn otherwise than without a pair.
        const QList<std::tuple<long, long, bool>> rows{
            {4, 13, true}, {13, 3, true}, {16, 18, true}, {6, 7, true}, {10, 13, false}};
        for (const auto& [caret, partner, highlighted] : rows) {
            box_->setSelStart(1); // same line, no brace beside the caret
            const QImage plain = cell(box_, partner);
            box_->setSelStart(caret);
            QVERIFY2((cell(box_, partner) != plain) == highlighted, qPrintable(QString::number(caret)));
        }
    }

    // Edits the program makes itself, and a message sent to the editor followed by the event
    // loop, reach the change handler as typing does: the marker positions follow.
    void editsByCallsReachTheChangeHandler() {
        start();
        frmTessary* w = cogWindow(1);
        const QByteArray text = "# s\r\nsymbols\r\nint a\r\nend\r\ncode\r\nend\r\n";
        for (int kind = 0; kind < 3; ++kind) {
            box_->setTextBytes(text);
            w->clearModified();
            box_->setSelStart(0);
            if (kind == 0) box_->setSelText("\r\nend");
            if (kind == 1) box_->replaceRange(19, 5, "\r\nsymbols");
            if (kind == 2) {
                send(box_, QsciScintillaBase::SCI_INSERTTEXT, 0UL, reinterpret_cast<long>("\r\nsymbols"));
                QCoreApplication::processEvents();
            }
            const std::string_view bytes = box_->bytes();
            QVERIFY(w->bMod && w->Caption().endsWith('*'));
            QCOMPARE(w->lsym, cog::find(1, bytes, "\nsymbols"));
            QCOMPARE(w->lsymend, cog::find(1, bytes, "\nend"));
        }
    }

    void loadingStopsAtAReadError() {
        start();
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

    // After edits anywhere, of any kind, the editor holds the styles the rules give the text afresh.
    void colouringAfterRandomEditsEqualsAFullRestyle() {
        const std::vector<std::string> verbs{"GetSenderRef", "MoveToFrame", "Print"};
        CogLexer::setSharedVerbs(verbs);
        frmTessary window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        CogTextBox* box = window.txtMain;
        box->setTextBytes(cases::readAll(TESSARY_SOURCE_DIR "/tests/cases/colouring/sample.cog"));
        editor::CogWords words;
        words.setVerbs(verbs);
        const auto compare = [&] {
            const std::string_view text = box->bytes();
            QByteArray expected(qsizetype(text.size()), '\0'), held;
            editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(expected.data()));
            styleAt(box, 0);
            for (std::size_t i = 0; i < text.size(); ++i)
                held += char(send(box, QsciScintillaBase::SCI_GETSTYLEAT, static_cast<unsigned long>(i)));
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
        start();
        box_->setTextBytes("sleep(0.5);\r\nMoveToFrame(d, 1, 2);\r\nNoSuchVerb(1);\r\n");
        QCOMPARE(styleAt(box_, 0), int(CogStyle::Verb));
        QCOMPARE(styleAt(box_, 13), int(CogStyle::Verb));
        QCOMPARE(styleAt(box_, 36), int(CogStyle::Default));
        CogLexer::setSharedVerbs({"nosuchverb", "sleep"}); // new names restyle the text shown
        QCOMPARE(styleAt(box_, 13), int(CogStyle::Default));
        QCOMPARE(styleAt(box_, 36), int(CogStyle::Verb));
    }
};

TESSARY_TEST_MAIN(tst_Editor)
#include "tst_editor.moc"
