// The rules behind the editor's typing aids.
#include "editor/typingaids.h"

#include "cog/layout.h"

#include <QtTest>

using editor::Range;

class tst_TypingAids : public QObject {
    Q_OBJECT
private slots:
    void selectWord_data();
    void selectWord();
    void selectWordOnTheCaretLine_data();
    void selectWordOnTheCaretLine();
    void symbolsRange_data();
    void symbolsRange();
    void opensPopup_data();
    void opensPopup();
    void popupPrefix_data();
    void popupPrefix();
    void matchPrefix_data();
    void matchPrefix();
    void helpLineDepth_data();
    void helpLineDepth();
    void backspace_data();
    void backspace();
};

Q_DECLARE_METATYPE(editor::Backspace)

void tst_TypingAids::selectWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::newRow("scan reaching the start includes a leading blank") << QByteArray(" foo") << 4 << 0 << 4;
    QTest::newRow("run of non-delimiters ending at the caret") << QByteArray("a foo") << 5 << 2 << 3;
    QTest::newRow("a delimiter before the caret is selected alone") << QByteArray("foo ") << 4 << 3 << 1;
    QTest::newRow("caret 0 selects nothing") << QByteArray("foo") << 0 << 0 << 0;
    QTest::newRow("caret 1 selects the first byte") << QByteArray(" foo") << 1 << 0 << 1;
    QTest::newRow("word at the start of a later line") << QByteArray("ab\r\ncd x") << 6 << 4 << 2;
    QTest::newRow("tab delimits") << QByteArray("a\tmessage") << 9 << 2 << 7;
    QTest::newRow("a line feed before the caret") << QByteArray("ab\r\n") << 4 << 3 << 1;
    QTest::newRow("caret inside a word") << QByteArray("x foobar") << 5 << 2 << 3;
}

void tst_TypingAids::selectWord() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(int, start);
    QFETCH(int, length);
    QCOMPARE(editor::selectWordRange(text.toStdString(), caret), (Range{start, length}));
}

// The editor hands SelectWord only the caret's line and the line break before it.
void tst_TypingAids::selectWordOnTheCaretLine_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("CR LF lines") << QByteArray("a b\r\n foo\tbar\r\n\r\nx  yy");
    QTest::newRow("blank-led first line") << QByteArray("  ab\r\ncd");
    QTest::newRow("bare line feeds") << QByteArray("ab\ncd ef\n\tg");
    QTest::newRow("lone carriage returns") << QByteArray("ab\rcd\r\r ");
}

void tst_TypingAids::selectWordOnTheCaretLine() {
    QFETCH(QByteArray, text);
    const std::string t = text.toStdString();
    for (long caret = 0; caret <= static_cast<long>(t.size()); ++caret) {
        long lineStart = caret;
        while (lineStart > 0 && t[lineStart - 1] != '\n' && t[lineStart - 1] != '\r') --lineStart;
        const long windowStart = lineStart > 0 ? lineStart - 1 : 0;
        const std::string_view window = std::string_view(t).substr(windowStart, caret - windowStart);
        QCOMPARE(editor::selectWordRangeIn(window, windowStart, caret), editor::selectWordRange(t, caret));
    }
}

void tst_TypingAids::symbolsRange_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<bool>("inside");
    const QByteArray cog = "# c\r\nsymbols\r\nmessage x\r\nend\r\ncode\r\nend\r\n";
    QTest::newRow("on a declaration line") << cog << 16 << true;
    QTest::newRow("at the start of the symbols line") << cog << 5 << false;
    QTest::newRow("after the first letter of symbols") << cog << 6 << true;
    QTest::newRow("before the symbols line") << cog << 4 << false;
    QTest::newRow("at the end marker's line feed") << cog << 25 << false;
    QTest::newRow("in the code section") << cog << 33 << false;
    QTest::newRow("symbols on the first line starts the range at 1")
        << QByteArray("symbols\r\nmessage\r\nend\r\n") << 1 << true;
    QTest::newRow("symbols on the first line, caret 0")
        << QByteArray("symbols\r\nmessage\r\nend\r\n") << 0 << false;
    QTest::newRow("no end line: empty range") << QByteArray("symbols\r\nmessage x\r\n") << 12 << false;
    QTest::newRow("end before symbols: empty range")
        << QByteArray("x\r\nend\r\nsymbols\r\nmessage\r\n") << 16 << false;
    QTest::newRow("a longer word beginning with end counts")
        << QByteArray("x\r\nsymbols\r\nendx\r\nmessage\r\nend\r\n") << 20 << false;
}

void tst_TypingAids::symbolsRange() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(bool, inside);
    const std::string t = text.toStdString();
    QCOMPARE(editor::insideSymbols(cog::symbolsMarker(t), cog::endMarker(t), caret), inside);
}

void tst_TypingAids::opensPopup_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("opens");
    QTest::newRow("message") << "message" << true;
    QTest::newRow("capitalised") << "Message" << true;
    QTest::newRow("plural") << "messages" << true;
    QTest::newRow("inside a longer name") << "MyMessage" << true;
    QTest::newRow("abbreviation") << "msg" << false;
    QTest::newRow("split word") << "mess age" << false;
}

void tst_TypingAids::opensPopup() {
    QFETCH(QString, word);
    QFETCH(bool, opens);
    QCOMPARE(editor::opensMessagePopup(word.toStdString()), opens);
}

void tst_TypingAids::popupPrefix_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("replaceLength");
    // The pop-up opened by the space after "message" on line 2: lSpace = 17.
    QTest::newRow("typed letters") << QByteArray("symbols\r\nmessage st\r\nend") << "st" << 2;
    QTest::newRow("nothing typed") << QByteArray("symbols\r\nmessage \r\nend") << "" << 0;
    QTest::newRow("spaces around are trimmed") << QByteArray("symbols\r\nmessage   st  \r\nend") << "st" << 6;
    QTest::newRow("tabs stay") << QByteArray("symbols\r\nmessage \tst\r\nend") << "\tst" << 3;
    QTest::newRow("text after the caret on the line counts")
        << QByteArray("symbols\r\nmessage stx y\r\nend") << "stx y" << 5;
    QTest::newRow("no line end: up to the end of the text")
        << QByteArray("symbols\r\nmessage ab") << "ab" << 2;
    QTest::newRow("text shorter than lSpace") << QByteArray("symbols\r\nmess") << "" << 0;
}

void tst_TypingAids::popupPrefix() {
    QFETCH(QByteArray, text);
    QFETCH(QString, prefix);
    QFETCH(int, replaceLength);
    const std::string t = text.toStdString();
    const long lSpace = 17;
    const std::string_view fromSpace =
        std::string_view(t).substr(std::min<std::size_t>(lSpace - 1, t.size()));
    QCOMPARE(QString::fromStdString(editor::popupPrefix(fromSpace)), prefix);
    // The character being typed joins the end, even after trailing spaces were dropped.
    QCOMPARE(QString::fromStdString(editor::popupPrefix(fromSpace, 'q')), prefix + "q");
    const Range r = editor::insertRange(fromSpace, lSpace);
    QCOMPARE(r.length, static_cast<long>(replaceLength));
    if (r.length > 0) QCOMPARE(r.start, lSpace);
}

void tst_TypingAids::matchPrefix_data() {
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("index");
    QTest::newRow("first letter") << "e" << 1;
    QTest::newRow("no item begins so") << "ex" << -1;
    QTest::newRow("letter case ignored") << "ST" << 2;
    QTest::newRow("first in list order") << "a" << 0;
    QTest::newRow("empty prefix: the first item") << "" << 0;
    QTest::newRow("longer than every item") << "startupx" << -1;
    QTest::newRow("whole item") << "entered" << 1;
}

void tst_TypingAids::matchPrefix() {
    QFETCH(QString, prefix);
    QFETCH(int, index);
    const std::vector<std::string> items{"activated", "entered", "startup", "activate"};
    QCOMPARE(editor::matchPrefix(items, prefix.toStdString()), index);
}

void tst_TypingAids::helpLineDepth_data() {
    // Events: 'o' "(" typed after a reference name, 'n' "(" typed after an unknown word,
    // 'c' ")" typed, 'O' Backspace over "(", 'C' Backspace over ")".
    QTest::addColumn<QString>("events");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("parens");
    QTest::newRow("opening after a name shows it") << "o" << true << 0;
    QTest::newRow("unknown name shows nothing") << "n" << false << 0;
    QTest::newRow("nested pair keeps it shown") << "ooc" << true << 0;
    QTest::newRow("closing at depth 0 hides it") << "oocc" << false << 0;
    QTest::newRow("nested depth counts") << "ooo" << true << 2;
    QTest::newRow("Backspace over the closing one shows it again") << "oC" << true << 1;
    QTest::newRow("Backspace over ) after it was hidden") << "occ" << false << 0;
    QTest::newRow("hidden, Backspace over ) restores it") << "ooccC" << true << 0;
    QTest::newRow("Backspace over an inner ) counts it again") << "oocC" << true << 1;
    QTest::newRow("Backspace over the opening one hides it") << "oO" << false << 0;
    QTest::newRow("Backspace over a nested ( lowers the depth") << "ooO" << true << 0;
    QTest::newRow("whole round trip") << "ooccCCOO" << false << 0;
    QTest::newRow(") with nothing shown stays hidden") << "c" << false << 0;
    QTest::newRow("Backspace over ) at depth 0 shows the last texts") << "C" << true << 0;
    QTest::newRow("depth never negative") << "occcOO" << false << 0;
}

void tst_TypingAids::helpLineDepth() {
    QFETCH(QString, events);
    QFETCH(bool, shown);
    QFETCH(int, parens);
    editor::HelpLine h;
    for (const QChar e : events) {
        switch (e.toLatin1()) {
        case 'o':
            if (editor::openParenTyped(h) == editor::OpenParen::LookUp) h.shown = true;
            break;
        case 'n':
            editor::openParenTyped(h);
            break;
        case 'c':
            editor::closeParenTyped(h);
            break;
        case 'O':
            editor::openParenDeleted(h);
            break;
        case 'C':
            editor::closeParenDeleted(h);
            break;
        }
        QVERIFY(h.parens >= 0);
    }
    QCOMPARE(h, (editor::HelpLine{shown, parens}));
}

void tst_TypingAids::backspace_data() {
    QTest::addColumn<bool>("popup");
    QTest::addColumn<int>("selLength");
    QTest::addColumn<int>("caret");
    QTest::addColumn<char>("before");
    QTest::addColumn<editor::Backspace>("kind");
    QTest::newRow("pop-up shown wins over a selection")
        << true << 3 << 5 << 'x' << editor::Backspace::ClosePopup;
    QTest::newRow("selection") << false << 3 << 5 << '(' << editor::Backspace::DeleteSelection;
    QTest::newRow("caret at 0") << false << 0 << 0 << '\0' << editor::Backspace::Nothing;
    QTest::newRow("after a line break") << false << 0 << 5 << '\n' << editor::Backspace::JoinLines;
    QTest::newRow("a parenthesis") << false << 0 << 5 << ')' << editor::Backspace::DeleteChar;
}

void tst_TypingAids::backspace() {
    QFETCH(bool, popup);
    QFETCH(int, selLength);
    QFETCH(int, caret);
    QFETCH(char, before);
    QFETCH(editor::Backspace, kind);
    QCOMPARE(editor::classifyBackspace(popup, selLength, caret, before), kind);
}

QTEST_APPLESS_MAIN(tst_TypingAids)
#include "tst_typingaids.moc"
