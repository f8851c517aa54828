// The rules behind the editor's typing aids.
#include "editor/typingaids.h"

#include "cog/layout.h"

#include <QtTest>

using editor::Range;

class tst_TypingAids : public QObject {
    Q_OBJECT
private slots:
    void selectWordOnTheCaretLine();
    void symbolsRange_data();
    void symbolsRange();
    void popupPrefix_data();
    void popupPrefix();
    void helpLineDepth_data();
    void helpLineDepth();
};

// The editor hands SelectWord only the caret's line and the line break before it: the same range as
// the whole text gives.
void tst_TypingAids::selectWordOnTheCaretLine() {
    for (const std::string t :
         {"a b\r\n foo\tbar\r\n\r\nx  yy", "  ab\r\ncd", "ab\ncd ef\n\tg", "ab\rcd\r\r "}) {
        for (long caret = 0; caret <= static_cast<long>(t.size()); ++caret) {
            long start = caret;
            while (start > 0 && t[start - 1] != '\n' && t[start - 1] != '\r') --start;
            const long from = start > 0 ? start - 1 : 0;
            QCOMPARE(editor::selectWordRangeIn(std::string_view(t).substr(from, caret - from), from, caret),
                     editor::selectWordRange(t, caret));
        }
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
    QTest::newRow("at the end marker's line feed") << cog << 25 << false;
    QTest::newRow("symbols on the first line starts the range at 1")
        << QByteArray("symbols\r\nmessage\r\nend\r\n") << 1 << true;
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

void tst_TypingAids::popupPrefix_data() {
    QTest::addColumn<QByteArray>("line"); // line 2, after "message" and the space that opened the list
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<int>("replaceLength");
    QTest::newRow("nothing typed") << QByteArray("\r\nend") << "" << 0;
    QTest::newRow("spaces around are trimmed") << QByteArray("  st  \r\nend") << "st" << 6;
    QTest::newRow("tabs stay") << QByteArray("\tst\r\nend") << "\tst" << 3;
    QTest::newRow("no line end: up to the end of the text") << QByteArray("stx y") << "stx y" << 5;
}

void tst_TypingAids::popupPrefix() {
    QFETCH(QByteArray, line);
    QFETCH(QString, prefix);
    QFETCH(int, replaceLength);
    const std::string t = "symbols\r\nmessage " + line.toStdString();
    const long lSpace = 17;
    const std::string_view fromSpace = std::string_view(t).substr(lSpace - 1);
    QCOMPARE(QString::fromStdString(editor::popupPrefix(fromSpace)), prefix);
    // The character being typed joins the end, even after trailing spaces were dropped.
    QCOMPARE(QString::fromStdString(editor::popupPrefix(fromSpace, 'q')), prefix + "q");
    const Range r = editor::insertRange(fromSpace, lSpace);
    QCOMPARE(r.length, static_cast<long>(replaceLength));
    if (r.length > 0) QCOMPARE(r.start, lSpace);
}

void tst_TypingAids::helpLineDepth_data() {
    // 'o' "(" after a reference name, 'n' "(" after an unknown word, 'c' ")" typed,
    // 'O' Backspace over "(", 'C' Backspace over ")".
    QTest::addColumn<QString>("events");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("parens");
    QTest::newRow("unknown name shows nothing") << "n" << false << 0;
    QTest::newRow("closing at depth 0 hides it") << "oocc" << false << 0;
    QTest::newRow("hidden, Backspace over ) restores it") << "ooccC" << true << 0;
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

QTEST_APPLESS_MAIN(tst_TypingAids)
#include "tst_typingaids.moc"
