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

} // namespace

void tst_CogLexer::styleOfWord_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("needle"); // all its bytes get the style
    QTest::addColumn<CogStyle>("style");
    const auto row = [](const char* name, const char* text, const char* needle, CogStyle style) {
        QTest::newRow(name) << QByteArray(text) << QByteArray(needle) << style;
    };
    row("line end after a comment is plain", "# c\r\n", "\r\n", CogStyle::Default);
    row("single slash is no comment", "a / b", "/", CogStyle::Default);
    row("a lone CR ends a comment as the editor's lines do", "# c\rthing", "thing", CogStyle::Type);
    row("a lone LF ends a comment", "# c\nthing", "thing", CogStyle::Type);
    row("section word in capitals", "CODE\r\n", "CODE", CogStyle::Section);
    row("keyword inside a longer name is plain", "thingy = 1", "thingy", CogStyle::Default);
    row("indented label", "  pulse:", "pulse:", CogStyle::Label);
    row("name and colon later in a line is no label", "x = a ? b:c", "b", CogStyle::Default);
    row("unclosed string ends with its line", "\"abc\r\nthing", "thing", CogStyle::Type);
    row("leading point", "s=.5;", ".5", CogStyle::Number);
    row("digits inside a name are plain", "user0", "user0", CogStyle::Default);
    row("verb in other letter case", "getsenderref()", "getsenderref", CogStyle::Verb);
    row("keyword stays a keyword though a verb", "return;", "return", CogStyle::Flow);
    row("verb in a comment", "# Sleep", "Sleep", CogStyle::Comment);
}

void tst_CogLexer::styleOfWord() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, needle);
    QFETCH(CogStyle, style);
    editor::CogWords words;
    words.setVerbs({"Sleep", "GetSenderRef", "Return"});
    const auto at = text.indexOf(needle);
    QVERIFY(at >= 0);
    const std::string s = styles(text.toStdString(), words);
    QCOMPARE(QByteArray::fromStdString(s.substr(at, needle.size())), QByteArray(needle.size(), char(style)));
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
    QTest::addColumn<int>("styledTo"); // what was styled before the edit, from 0
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<int>("inserted");
    QTest::addColumn<int>("restyleStart");
    QTest::addColumn<int>("lineStart"); // where the restyle has got to
    QTest::addColumn<bool>("canStop");
    QTest::newRow("on the changed line itself") << 100 << 40 << 0 << 1 << 30 << 38 << false;
    QTest::newRow("the line start right at the end of an insertion")
        << 100 << 40 << 0 << 5 << 30 << 45 << false;
    QTest::newRow("after an insertion") << 100 << 40 << 0 << 5 << 30 << 50 << true;
    QTest::newRow("after a deletion") << 100 << 40 << 3 << 0 << 30 << 41 << true;
    QTest::newRow("at the position of a deletion") << 100 << 40 << 3 << 0 << 30 << 40 << false;
    QTest::newRow("beyond what was styled before") << 100 << 40 << 0 << 1 << 30 << 101 << false;
    QTest::newRow("inserted text that was never styled") << 100 << 100 << 0 << 50 << 90 << 140 << false;
    // A text put in whole and styled to its end leaves nothing changed.
    QTest::newRow("after a new text styled to its end") << -1000 << 500 << 0 << 1 << 490 << 520 << true;
    QTest::newRow("a new text styled to its end, the edited line")
        << -1000 << 500 << 0 << 1 << 490 << 501 << false;
}

void tst_CogLexer::trackerStopsOnlyPastTheChange() {
    QFETCH(int, styledTo);
    QFETCH(int, position);
    QFETCH(int, deleted);
    QFETCH(int, inserted);
    QFETCH(int, restyleStart);
    QFETCH(int, lineStart);
    QFETCH(bool, canStop);
    editor::StyleTracker tracker;
    if (styledTo < 0) { // a negative length: the text is put in whole first
        tracker.inserted(0, -styledTo);
        QVERIFY(!tracker.canStopAt(-styledTo / 2));
    }
    tracker.styled(0, std::abs(styledTo));
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
