// The colouring rules: which style a word, comment, string, number or label gets, and when a
// restyle after an edit may keep the styles of the lines after it.
#include "editor/coglexer.h"

#include <QtTest>

#include <string>

using editor::CogStyle;

Q_DECLARE_METATYPE(CogStyle)

class tst_CogLexer : public QObject {
    Q_OBJECT
private slots:
    void styleOfWord_data();
    void styleOfWord();
    void verbNames_data();
    void verbNames();
    void linesAreIndependent();
    void trackerStopsOnlyPastTheChange_data();
    void trackerStopsOnlyPastTheChange();
};

namespace {

std::string styles(std::string_view text, const editor::CogWords& words) {
    std::string out(text.size(), '\0');
    editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(out.data()));
    return out;
}

// The styles of the bytes of `needle` where it first occurs in `text`, or "" when they differ.
std::optional<CogStyle> styleOf(const std::string& text, const std::string& needle,
                                const editor::CogWords& words) {
    const std::size_t at = text.find(needle);
    if (at == std::string::npos) return std::nullopt;
    const std::string s = styles(text, words);
    for (std::size_t i = at; i < at + needle.size(); ++i)
        if (s[i] != s[at]) return std::nullopt;
    return static_cast<CogStyle>(s[at]);
}

} // namespace

void tst_CogLexer::styleOfWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("needle");
    QTest::addColumn<CogStyle>("style");
    QTest::newRow("hash comment to the line end")
        << QByteArray("x\r\n# a \"b\" 12\r\ny") << QByteArray("# a \"b\" 12") << CogStyle::Comment;
    QTest::newRow("slash comment after code")
        << QByteArray("stop; // if else") << QByteArray("// if else") << CogStyle::Comment;
    QTest::newRow("line end after a comment is plain")
        << QByteArray("# c\r\n") << QByteArray("\r\n") << CogStyle::Default;
    QTest::newRow("single slash is no comment")
        << QByteArray("a / b") << QByteArray("/") << CogStyle::Default;
    QTest::newRow("section word") << QByteArray("\r\nsymbols\r\n") << QByteArray("symbols")
                                  << CogStyle::Section;
    QTest::newRow("section word in capitals")
        << QByteArray("CODE\r\n") << QByteArray("CODE") << CogStyle::Section;
    QTest::newRow("end") << QByteArray("x\r\nend") << QByteArray("end") << CogStyle::Section;
    QTest::newRow("type keyword") << QByteArray("thing door") << QByteArray("thing") << CogStyle::Type;
    QTest::newRow("last type keyword") << QByteArray("vector v") << QByteArray("vector") << CogStyle::Type;
    QTest::newRow("flow keyword") << QByteArray("  while (x)") << QByteArray("while") << CogStyle::Flow;
    QTest::newRow("call") << QByteArray("call reset;") << QByteArray("call") << CogStyle::Flow;
    QTest::newRow("keyword inside a longer name is plain")
        << QByteArray("thingy = 1") << QByteArray("thingy") << CogStyle::Default;
    QTest::newRow("label at the line start")
        << QByteArray("x\r\nactivated:\r\n") << QByteArray("activated:") << CogStyle::Label;
    QTest::newRow("indented label") << QByteArray("  pulse:") << QByteArray("pulse:") << CogStyle::Label;
    QTest::newRow("name and colon later in a line is no label")
        << QByteArray("x = a ? b:c") << QByteArray("b") << CogStyle::Default;
    QTest::newRow("string") << QByteArray("Print(\"Hello\");") << QByteArray("\"Hello\"") << CogStyle::String;
    QTest::newRow("comment sign inside a string")
        << QByteArray("Print(\"#1\");") << QByteArray("\"#1\"") << CogStyle::String;
    QTest::newRow("unclosed string ends with its line")
        << QByteArray("\"abc\r\nthing") << QByteArray("thing") << CogStyle::Type;
    QTest::newRow("integer") << QByteArray("x = 42;") << QByteArray("42") << CogStyle::Number;
    QTest::newRow("decimal") << QByteArray("flex s=2.5") << QByteArray("2.5") << CogStyle::Number;
    QTest::newRow("leading point") << QByteArray("s=.5;") << QByteArray(".5") << CogStyle::Number;
    QTest::newRow("hexadecimal") << QByteArray("mask=0x1F") << QByteArray("0x1F") << CogStyle::Number;
    QTest::newRow("digits inside a name are plain")
        << QByteArray("user0") << QByteArray("user0") << CogStyle::Default;
}

void tst_CogLexer::styleOfWord() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, needle);
    QFETCH(CogStyle, style);
    const auto got = styleOf(text.toStdString(), needle.toStdString(), editor::CogWords());
    QVERIFY2(got.has_value(), "the needle's bytes differ in style");
    QCOMPARE(static_cast<int>(*got), static_cast<int>(style));
}

void tst_CogLexer::verbNames_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("needle");
    QTest::addColumn<CogStyle>("style");
    QTest::newRow("verb as written") << QByteArray("Sleep(1);") << QByteArray("Sleep") << CogStyle::Verb;
    QTest::newRow("verb in other letter case")
        << QByteArray("getsenderref()") << QByteArray("getsenderref") << CogStyle::Verb;
    QTest::newRow("unknown name") << QByteArray("DoorOpen()") << QByteArray("DoorOpen") << CogStyle::Default;
    QTest::newRow("keyword stays a keyword")
        << QByteArray("return;") << QByteArray("return") << CogStyle::Flow;
    QTest::newRow("verb in a comment") << QByteArray("# Sleep") << QByteArray("Sleep") << CogStyle::Comment;
}

void tst_CogLexer::verbNames() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, needle);
    QFETCH(CogStyle, style);
    editor::CogWords words;
    words.setVerbs({"Sleep", "GetSenderRef", "Return"});
    const auto got = styleOf(text.toStdString(), needle.toStdString(), words);
    QVERIFY(got.has_value());
    QCOMPARE(static_cast<int>(*got), static_cast<int>(style));

    // New names replace the old ones.
    words.setVerbs({"Print"});
    QCOMPARE(static_cast<int>(*styleOf("Sleep(1); Print(x)", "Sleep", words)), int(CogStyle::Default));
    QCOMPARE(static_cast<int>(*styleOf("Sleep(1); Print(x)", "Print", words)), int(CogStyle::Verb));
}

// Styling a text whole equals styling it line by line from any line start: what makes a restyle
// from the start of the changed line safe.
void tst_CogLexer::linesAreIndependent() {
    QFile file(QStringLiteral(TESSARY_TEST_DATA "/highlight.cog"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::string text = file.readAll().toStdString();
    const editor::CogWords words;
    const std::string whole = styles(text, words);
    for (std::size_t start = 0; start < text.size();
         start += editor::lineLength(std::string_view(text).substr(start)))
        QCOMPARE(styles(std::string_view(text).substr(start), words), whole.substr(start));
}

void tst_CogLexer::trackerStopsOnlyPastTheChange_data() {
    QTest::addColumn<int>("position"); // the edit's position in a text styled up to 100
    QTest::addColumn<int>("deleted");
    QTest::addColumn<int>("inserted");
    QTest::addColumn<int>("restyleStart");
    QTest::addColumn<int>("lineStart"); // where the restyle has got to
    QTest::addColumn<bool>("canStop");
    QTest::newRow("on the changed line itself") << 40 << 0 << 1 << 30 << 38 << false;
    QTest::newRow("the line start right at the end of an insertion") << 40 << 0 << 5 << 30 << 45 << false;
    QTest::newRow("after an insertion") << 40 << 0 << 5 << 30 << 50 << true;
    QTest::newRow("after a deletion") << 40 << 3 << 0 << 30 << 41 << true;
    QTest::newRow("at the position of a deletion") << 40 << 3 << 0 << 30 << 40 << false;
    QTest::newRow("beyond what was styled before") << 40 << 0 << 1 << 30 << 101 << false;
    QTest::newRow("inserted text that was never styled") << 100 << 0 << 50 << 90 << 140 << false;
}

void tst_CogLexer::trackerStopsOnlyPastTheChange() {
    QFETCH(int, position);
    QFETCH(int, deleted);
    QFETCH(int, inserted);
    QFETCH(int, restyleStart);
    QFETCH(int, lineStart);
    QFETCH(bool, canStop);
    editor::StyleTracker tracker;
    tracker.styled(0, 100);
    QVERIFY(!tracker.hasChange());
    if (deleted) tracker.deleted(position, deleted);
    if (inserted) tracker.inserted(position, inserted);
    QCOMPARE(tracker.canStopAt(lineStart), canStop);
    if (canStop) {
        tracker.styled(restyleStart, lineStart);
        QVERIFY(!tracker.hasChange());
    }
}

QTEST_APPLESS_MAIN(tst_CogLexer)
#include "tst_coglexer.moc"
