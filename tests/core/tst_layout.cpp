// The layout rules by which the COG tools read a script.
#include "cog/layout.h"

#include <QtTest>

#include <string>

using cog::Pos;

namespace {

std::string bytes(const QByteArray& a) {
    return a.toStdString();
}

} // namespace

class tst_Layout : public QObject {
    Q_OBJECT
private slots:
    void findModes_data();
    void findModes();
    void markers_data();
    void markers();
    void symbolsBody_data();
    void symbolsBody();
    void symbolName_data();
    void symbolName();
    void bareName_data();
    void bareName();
    void wholeWord_data();
    void wholeWord();
    void messageBody_data();
    void messageBody();
    void writtenDeclarationLine_data();
    void writtenDeclarationLine();
    void keywordsInOrder();
};

void tst_Layout::findModes_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<QByteArray>("hay");
    QTest::addColumn<QByteArray>("needle");
    QTest::addColumn<bool>("exact");
    QTest::addColumn<int>("expected");
    QTest::newRow("first occurrence, 1-based") << 1 << QByteArray("abcabc") << QByteArray("bc") << false << 2;
    QTest::newRow("start skips an earlier one")
        << 3 << QByteArray("abcabc") << QByteArray("bc") << false << 5;
    QTest::newRow("start on the occurrence finds it")
        << 5 << QByteArray("abcabc") << QByteArray("bc") << false << 5;
    QTest::newRow("none after start") << 6 << QByteArray("abcabc") << QByteArray("bc") << false << 0;
    QTest::newRow("start past the end") << 9 << QByteArray("abc") << QByteArray("c") << false << 0;
    QTest::newRow("not found") << 1 << QByteArray("abc") << QByteArray("x") << false << 0;
    QTest::newRow("needle longer than hay") << 1 << QByteArray("ab") << QByteArray("abc") << false << 0;
    QTest::newRow("text mode ignores case")
        << 1 << QByteArray("x\nSYMBOLS") << QByteArray("\nsymbols") << false << 2;
    QTest::newRow("text mode, mixed case needle")
        << 1 << QByteArray("aEnD") << QByteArray("eNd") << false << 2;
    QTest::newRow("exact mode keeps case")
        << 1 << QByteArray("x\nEnd\nend") << QByteArray("\nend") << true << 6;
    QTest::newRow("exact mode, only wrong case") << 1 << QByteArray("END") << QByteArray("end") << true << 0;
    QTest::newRow("text mode folds Latin-1 letters")
        << 1 << QByteArray("x\xC9t\xE9") << QByteArray("\xE9T\xC9") << false << 2;
    QTest::newRow("multiplication sign is no letter")
        << 1 << QByteArray("\xD7\xF7") << QByteArray("\xF7") << false << 2;
    QTest::newRow("overlapping occurrences") << 2 << QByteArray("aaaa") << QByteArray("aa") << false << 2;
}

void tst_Layout::findModes() {
    QFETCH(int, start);
    QFETCH(QByteArray, hay);
    QFETCH(QByteArray, needle);
    QFETCH(bool, exact);
    QFETCH(int, expected);
    QCOMPARE(cog::find(start, bytes(hay), bytes(needle), exact ? cog::Mode::Exact : cog::Mode::Text),
             Pos(expected));
}

void tst_Layout::markers_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("symbols");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("secondEnd");
    const QByteArray plain = "# c\r\nsymbols\r\nint x\r\nend\r\ncode\r\nend\r\n";
    QTest::newRow("each marker is the LF before its line") << plain << 5 << 21 << 26 << 32;
    QTest::newRow("keyword on the first line is no marker")
        << QByteArray("symbols\r\nend\r\ncode\r\nend\r\n") << 0 << 9 << 14 << 20;
    QTest::newRow("a comment line before makes it one")
        << QByteArray("#\r\nsymbols\r\nend\r\n") << 3 << 12 << 0 << 0;
    QTest::newRow("indented keyword is hidden")
        << QByteArray("#\r\n symbols\r\n\tend\r\n") << 0 << 0 << 0 << 0;
    QTest::newRow("upper-case keywords count")
        << QByteArray("#\r\nSYMBOLS\r\nEnd\r\nCODE\r\nEND\r\n") << 3 << 12 << 17 << 23;
    QTest::newRow("endless before end is the end marker")
        << QByteArray("#\r\nsymbols\r\nendless\r\nend\r\n") << 3 << 12 << 0 << 21;
    QTest::newRow("codes is a code marker") << QByteArray("#\r\ncodes\r\n") << 0 << 0 << 3 << 0;
    QTest::newRow("end before symbols is still the first")
        << QByteArray("#\r\nend\r\nsymbols\r\n") << 8 << 3 << 0 << 0;
    QTest::newRow("LF alone before a keyword") << QByteArray("a\nsymbols\nend") << 2 << 10 << 0 << 0;
    QTest::newRow("no second end") << QByteArray("#\r\nsymbols\r\nend\r\ncode\r\n") << 3 << 12 << 17 << 0;
}

void tst_Layout::markers() {
    QFETCH(QByteArray, text);
    QFETCH(int, symbols);
    QFETCH(int, end);
    QFETCH(int, code);
    QFETCH(int, secondEnd);
    const cog::Markers m = cog::findMarkers(bytes(text));
    QCOMPARE(m.symbols, Pos(symbols));
    QCOMPARE(m.end, Pos(end));
    QCOMPARE(m.code, Pos(code));
    QCOMPARE(m.secondEnd, Pos(secondEnd));
    QCOMPARE(cog::symbolsMarker(bytes(text)), Pos(symbols));
    QCOMPARE(cog::endMarker(bytes(text)), Pos(end));
    QCOMPARE(cog::codeMarker(bytes(text)), Pos(code));
}

void tst_Layout::symbolsBody_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("present");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("runs two bytes into the line after end")
        << QByteArray("#\r\nsymbols\r\nint x\r\nend\r\ncode\r\n") << true
        << QByteArray("\r\nint x\r\nend\r\nco");
    QTest::newRow("stops at the end of the text")
        << QByteArray("#\r\nsymbols\r\nend") << true << QByteArray("\r\nend");
    QTest::newRow("no symbols marker") << QByteArray("symbols\r\nend\r\n") << false << QByteArray();
    QTest::newRow("no end marker") << QByteArray("#\r\nsymbols\r\n") << false << QByteArray();
    QTest::newRow("end before symbols") << QByteArray("#\r\nend\r\nsymbols\r\n") << false << QByteArray();
}

void tst_Layout::symbolsBody() {
    QFETCH(QByteArray, text);
    QFETCH(bool, present);
    QFETCH(QByteArray, body);
    const std::string t = bytes(text);
    const auto got = cog::symbolsBody(t);
    QCOMPARE(got.has_value(), present);
    if (present) QCOMPARE(QByteArray(got->data(), qsizetype(got->size())), body);
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
    QTest::newRow("message") << QByteArray("message startup\r") << 7 << QByteArray("startup");
    QTest::newRow("written line") << QByteArray("int     x=5               local     linkid=3\r") << 3
                                  << QByteArray("x=5");
    QTest::newRow("no CR at all") << QByteArray("thing door") << 5 << QByteArray("door");
    QTest::newRow("trailing spaces only") << QByteArray("int x   ") << 3 << QByteArray("x");
    QTest::newRow("keyword prefix of a longer word") << QByteArray("integer x\r") << 3 << QByteArray("eger");
    QTest::newRow("n past the line") << QByteArray("ai") << 3 << QByteArray("");
}

void tst_Layout::symbolName() {
    QFETCH(QByteArray, line);
    QFETCH(int, n);
    QFETCH(QByteArray, name);
    QCOMPARE(QByteArray::fromStdString(cog::GetSymbolName(bytes(line), std::size_t(n))), name);
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
    QCOMPARE(QByteArray::fromStdString(cog::StripDefaultValue(bytes(name))), bare);
}

void tst_Layout::wholeWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("q");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("whole");
    QTest::newRow("spaces around") << QByteArray("a x b") << 3 << 1 << true;
    QTest::newRow("tab and CR") << QByteArray("a\tx\r\n") << 3 << 1 << true;
    QTest::newRow("LF before") << QByteArray("\nxy z") << 2 << 2 << true;
    QTest::newRow("part of a longer word") << QByteArray("a xy b") << 3 << 1 << false;
    QTest::newRow("letter before") << QByteArray("ax b") << 2 << 1 << false;
    QTest::newRow("parenthesis after") << QByteArray(" x(") << 2 << 1 << false;
    QTest::newRow("= after") << QByteArray(" x=5") << 2 << 1 << false;
}

void tst_Layout::wholeWord() {
    QFETCH(QByteArray, text);
    QFETCH(int, q);
    QFETCH(int, length);
    QFETCH(bool, whole);
    QCOMPARE(cog::isWholeWord(bytes(text), q, std::size_t(length)), whole);
}

void tst_Layout::messageBody_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<bool>("present");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("skips label and line break, ends past return;")
        << QByteArray("startup:\r\n// a\r\nreturn;\r\n") << QByteArray("startup:") << true
        << QByteArray("// a\r\nreturn;\r\n");
    QTest::newRow("label taken at its first occurrence")
        << QByteArray("# startup: x\r\nstartup:\r\nreturn;") << QByteArray("startup:") << true
        << QByteArray("\r\nstartup:\r\nreturn;");
    QTest::newRow("label without return;")
        << QByteArray("startup:\r\n// a\r\n") << QByteArray("startup:") << false << QByteArray();
    QTest::newRow("label not found: from the start to the first return;")
        << QByteArray("abc// c\r\nreturn;") << QByteArray("x:") << true << QByteArray("// c\r\nretu");
    QTest::newRow("label not found, no return;: empty")
        << QByteArray("ab// c\r\n") << QByteArray("x:") << true << QByteArray();
}

void tst_Layout::messageBody() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, label);
    QFETCH(bool, present);
    QFETCH(QByteArray, body);
    const std::string t = bytes(text);
    const auto got = cog::messageBody(t, bytes(label), cog::find(1, t, bytes(label)));
    QCOMPARE(got.has_value(), present);
    if (present) QCOMPARE(QByteArray(got->data(), qsizetype(got->size())), body);
}

void tst_Layout::writtenDeclarationLine_data() {
    QTest::addColumn<QByteArray>("keyword");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("local");
    QTest::addColumn<QByteArray>("linkId");
    QTest::addColumn<QByteArray>("line");
    const QByteArray s5(5, ' '), s15(15, ' ');
    QTest::newRow("name only") << QByteArray("flex") << QByteArray("speed") << QByteArray() << false
                               << QByteArray() << "flex" + s5 + "speed" + QByteArray(20, ' ') + "\r\n";
    QTest::newRow("everything") << QByteArray("int") << QByteArray("x") << QByteArray("5") << true
                                << QByteArray("3")
                                << "int" + s5 + "x=5" + s15 + "local" + s5 + "linkid=3\r\n";
    QTest::newRow("link id without local")
        << QByteArray("thing") << QByteArray("door") << QByteArray() << false << QByteArray("1")
        << "thing" + s5 + "door" + s15 + s5 + "linkid=1\r\n";
    QTest::newRow("written as typed") << QByteArray("int") << QByteArray(" a b") << QByteArray("1 2") << false
                                      << QByteArray() << "int" + s5 + " a b=1 2" + s15 + s5 + "\r\n";
}

void tst_Layout::writtenDeclarationLine() {
    QFETCH(QByteArray, keyword);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    QFETCH(bool, local);
    QFETCH(QByteArray, linkId);
    QFETCH(QByteArray, line);
    const std::string got =
        cog::declarationLine(bytes(keyword), bytes(name), bytes(value), local, bytes(linkId));
    QCOMPARE(QByteArray::fromStdString(got), line);
    // Read back, the name carries its default value and the bare name drops it.
    const std::string readName = cog::GetSymbolName(got, std::size_t(keyword.size()));
    if (!name.contains(' ')) QCOMPARE(QByteArray::fromStdString(cog::StripDefaultValue(readName)), name);
}

void tst_Layout::keywordsInOrder() {
    const std::vector<std::string> expected{"ai",       "cog",      "flex",  "int",    "keyframe",
                                            "material", "message",  "model", "sector", "sound",
                                            "surface",  "template", "thing", "vector"};
    QCOMPARE(cog::symbolTypes(), expected);
    for (const auto& a : expected)
        for (const auto& b : expected)
            if (a != b) QVERIFY2(!b.starts_with(a), (a + " is a prefix of " + b).c_str());
}

QTEST_APPLESS_MAIN(tst_Layout)
#include "tst_layout.moc"
