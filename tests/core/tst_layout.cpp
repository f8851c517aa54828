// The layout rules by which the COG tools read a script.
#include "cog/layout.h"

#include <QtTest>

#include <string>

using cog::Pos;

class tst_Layout : public QObject {
    Q_OBJECT
private slots:
    void findModes_data();
    void findModes();
    void markers_data();
    void markers();
    void symbolName_data();
    void symbolName();
    void bareName_data();
    void bareName();
};

void tst_Layout::findModes_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<QByteArray>("hay");
    QTest::addColumn<QByteArray>("needle");
    QTest::addColumn<bool>("exact");
    QTest::addColumn<int>("expected");
    QTest::newRow("start skips an earlier one")
        << 3 << QByteArray("abcabc") << QByteArray("bc") << false << 5;
    QTest::newRow("start on the occurrence finds it")
        << 5 << QByteArray("abcabc") << QByteArray("bc") << false << 5;
    QTest::newRow("start past the end") << 9 << QByteArray("abc") << QByteArray("c") << false << 0;
    QTest::newRow("needle longer than hay") << 1 << QByteArray("ab") << QByteArray("abc") << false << 0;
    QTest::newRow("text mode ignores case")
        << 1 << QByteArray("x\nSYMBOLS") << QByteArray("\nsymbols") << false << 2;
    QTest::newRow("exact mode keeps case")
        << 1 << QByteArray("x\nEnd\nend") << QByteArray("\nend") << true << 6;
    QTest::newRow("text mode folds Latin-1 letters")
        << 1 << QByteArray("x\xC9t\xE9") << QByteArray("\xE9T\xC9") << false << 2;
    QTest::newRow("multiplication sign is no letter")
        << 1 << QByteArray("\xD7\xF7") << QByteArray("\xF7") << false << 2;
}

void tst_Layout::findModes() {
    QFETCH(int, start);
    QFETCH(QByteArray, hay);
    QFETCH(QByteArray, needle);
    QFETCH(bool, exact);
    QFETCH(int, expected);
    QCOMPARE(
        cog::find(start, hay.toStdString(), needle.toStdString(), exact ? cog::Mode::Exact : cog::Mode::Text),
        Pos(expected));
}

void tst_Layout::markers_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QList<int>>("expected"); // symbols, end, code, second end
    QTest::newRow("each marker is the LF before its line")
        << QByteArray("# c\r\nsymbols\r\nint x\r\nend\r\ncode\r\nend\r\n") << QList<int>{5, 21, 26, 32};
    QTest::newRow("keyword on the first line is no marker")
        << QByteArray("symbols\r\nend\r\ncode\r\nend\r\n") << QList<int>{0, 9, 14, 20};
    QTest::newRow("a comment line before makes it one")
        << QByteArray("#\r\nsymbols\r\nend\r\n") << QList<int>{3, 12, 0, 0};
    QTest::newRow("indented keyword is hidden")
        << QByteArray("#\r\n symbols\r\n\tend\r\n") << QList<int>{0, 0, 0, 0};
    QTest::newRow("upper-case keywords count")
        << QByteArray("#\r\nSYMBOLS\r\nEnd\r\nCODE\r\nEND\r\n") << QList<int>{3, 12, 17, 23};
    QTest::newRow("endless before end is the end marker")
        << QByteArray("#\r\nsymbols\r\nendless\r\nend\r\n") << QList<int>{3, 12, 0, 21};
    QTest::newRow("codes is a code marker") << QByteArray("#\r\ncodes\r\n") << QList<int>{0, 0, 3, 0};
    QTest::newRow("end before symbols is still the first")
        << QByteArray("#\r\nend\r\nsymbols\r\n") << QList<int>{8, 3, 0, 0};
    QTest::newRow("LF alone before a keyword") << QByteArray("a\nsymbols\nend") << QList<int>{2, 10, 0, 0};
}

void tst_Layout::markers() {
    QFETCH(QByteArray, text);
    QFETCH(QList<int>, expected);
    const std::string t = text.toStdString();
    const cog::Markers m = cog::findMarkers(t);
    QCOMPARE((QList<int>{int(m.symbols), int(m.end), int(m.code), int(m.secondEnd)}), expected);
    QCOMPARE((QList<int>{int(cog::symbolsMarker(t)), int(cog::endMarker(t)), int(cog::codeMarker(t))}),
             expected.first(3));
}

void tst_Layout::symbolName_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("n");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("space") << QByteArray("int x\r") << 3 << QByteArray("x");
    QTest::newRow("tab") << QByteArray("int\tx\r") << 3 << QByteArray("x");
    QTest::newRow("spaces then tabs") << QByteArray("int  \t\tx\r") << 3 << QByteArray("x");
    QTest::newRow("= belongs to the name") << QByteArray("int x=5 local\r") << 3 << QByteArray("x=5");
    QTest::newRow("tab later keeps spaces in the name")
        << QByteArray("int x = 5\t# c\r") << 3 << QByteArray("x = 5");
    QTest::newRow("bare keyword") << QByteArray("int\r") << 3 << QByteArray("");
    QTest::newRow("no CR at all") << QByteArray("thing door") << 5 << QByteArray("door");
    QTest::newRow("keyword prefix of a longer word") << QByteArray("integer x\r") << 3 << QByteArray("eger");
    QTest::newRow("n past the line") << QByteArray("ai") << 3 << QByteArray("");
}

void tst_Layout::symbolName() {
    QFETCH(QByteArray, line);
    QFETCH(int, n);
    QFETCH(QByteArray, name);
    QCOMPARE(QByteArray::fromStdString(cog::GetSymbolName(line.toStdString(), std::size_t(n))), name);
}

void tst_Layout::bareName_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("bare");
    QTest::newRow("no =") << QByteArray("x") << QByteArray("x");
    QTest::newRow("default value") << QByteArray("x=5") << QByteArray("x");
    QTest::newRow("several =") << QByteArray("x=y=z") << QByteArray("x");
    QTest::newRow("leading =") << QByteArray("=5") << QByteArray("");
}

void tst_Layout::bareName() {
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, bare);
    QCOMPARE(QByteArray::fromStdString(cog::StripDefaultValue(name.toStdString())), bare);
}

QTEST_APPLESS_MAIN(tst_Layout)
#include "tst_layout.moc"
