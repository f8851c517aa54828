// Reading a template's parameter table and generating the COG text from its body.
#include "templates/template.h"

#include <QtTest>

#include <string>

using templates::Assignment;

class tst_Template : public QObject {
    Q_OBJECT
private slots:
    void readsHeader_data();
    void readsHeader();
    void headerLengthEndsAfterTheEndLine_data();
    void headerLengthEndsAfterTheEndLine();
    void rejectsMalformedHeader_data();
    void rejectsMalformedHeader();
    void splitsFields_data();
    void splitsFields();
    void replacesPlaceholders_data();
    void replacesPlaceholders();
    void generatesFromFile_data();
    void generatesFromFile();
    void defaultsFollowTheRows();
    void longTextWithManyPlaceholders();
    void sizesColumns_data();
    void sizesColumns();
};

namespace {

std::string bytes(const QByteArray& a) {
    return a.toStdString();
}

QStringList toList(const std::vector<std::string>& v) {
    QStringList l;
    for (const auto& s : v) l << QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
    return l;
}

// Rows as "value|name|further columns..." for comparison.
QStringList rowsOf(const templates::Template& t) {
    QStringList l;
    for (const auto& row : t.rows) l << toList(row.fields).join('|');
    return l;
}

std::vector<Assignment> assignments(const QStringList& names, const QStringList& values) {
    std::vector<Assignment> a;
    for (qsizetype i = 0; i < names.size(); ++i)
        a.emplace_back(names[i].toLatin1().toStdString(), values[i].toLatin1().toStdString());
    return a;
}

} // namespace

void tst_Template::readsHeader_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("two rows") << QByteArray("2\r\nValue,Name\r\n0,speed\r\ndoor,thing\r\nend\r\nbody") << 2
                              << QStringList{"Value", "Name"} << QStringList{"0|speed", "door|thing"};
    QTest::newRow("no rows: end line after the titles") << QByteArray("2\r\nValue,Name\r\nend\r\n<%x%>") << 2
                                                        << QStringList{"Value", "Name"} << QStringList{};
    QTest::newRow("end line in capitals closes the header")
        << QByteArray("2\r\nV,N\r\n1,a\r\nEND\r\n2,b\r\n") << 2 << QStringList{"V", "N"}
        << QStringList{"1|a"};
    QTest::newRow("end line in mixed case")
        << QByteArray("2\r\nV,N\r\neNd\r\n") << 2 << QStringList{"V", "N"} << QStringList{};
    QTest::newRow("third column keeps its commas")
        << QByteArray("3\r\nValue,Name,Description\r\n5,wait,Seconds, not frames, to wait\r\nend\r\n") << 3
        << QStringList{"Value", "Name", "Description"} << QStringList{"5|wait|Seconds, not frames, to wait"};
    QTest::newRow("titles keep blanks; last title keeps commas")
        << QByteArray("2\r\n Value , Name, of it\r\nend\r\n") << 2 << QStringList{" Value ", " Name, of it"}
        << QStringList{};
    QTest::newRow("an empty default value")
        << QByteArray("2\r\nV,N\r\n,name\r\nend\r\n") << 2 << QStringList{"V", "N"} << QStringList{"|name"};
    QTest::newRow("end line last in the file without CR LF")
        << QByteArray("2\r\nV,N\r\nx,a\r\nend") << 2 << QStringList{"V", "N"} << QStringList{"x|a"};
    QTest::newRow("a blank after end makes a row, not the end line")
        << QByteArray("2\r\nV,N\r\nend ,x\r\nend\r\n") << 2 << QStringList{"V", "N"} << QStringList{"end |x"};
    QTest::newRow("names differing by more than case are distinct")
        << QByteArray("2\r\nV,N\r\n1,door\r\n2,doors\r\nend\r\n") << 2 << QStringList{"V", "N"}
        << QStringList{"1|door", "2|doors"};
}

void tst_Template::readsHeader() {
    QFETCH(QByteArray, file);
    QFETCH(int, columns);
    QFETCH(QStringList, titles);
    QFETCH(QStringList, rows);
    const auto r = templates::readTemplate(bytes(file));
    QVERIFY2(r.ok(), r.error.describe().c_str());
    QCOMPARE(r.tmpl.columns, columns);
    QCOMPARE(toList(r.tmpl.titles), titles);
    QCOMPARE(rowsOf(r.tmpl), rows);
    for (const auto& row : r.tmpl.rows) {
        QCOMPARE(row.fields.size(), static_cast<std::size_t>(columns));
        QCOMPARE(row.value, row.fields[0]);
        QCOMPARE(row.name, row.fields[1]);
    }
}

void tst_Template::headerLengthEndsAfterTheEndLine_data() {
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no rows") << QByteArray("2\r\nValue,Name\r\nend\r\n") << QByteArray("# x\r\nsymbols\r\n");
    QTest::newRow("rows and a two-digit count")
        << QByteArray("12\r\na,b,c,d,e,f,g,h,i,j,k,l\r\n1,x,,,,,,,,,,\r\nEnd\r\n") << QByteArray("code");
    QTest::newRow("empty body") << QByteArray("2\r\nV,N\r\n1,a\r\nend\r\n") << QByteArray();
    QTest::newRow("body starting with a blank line")
        << QByteArray("2\r\nV,N\r\nend\r\n") << QByteArray("\r\nx");
}

void tst_Template::headerLengthEndsAfterTheEndLine() {
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, body);
    const std::string file = bytes(header + body);
    const auto r = templates::readTemplate(file);
    QVERIFY2(r.ok(), r.error.describe().c_str());
    QCOMPARE(r.tmpl.ilen, static_cast<long>(header.size()));
    QCOMPARE(std::string(templates::templateBody(file, r.tmpl.ilen)), bytes(body));
}

void tst_Template::rejectsMalformedHeader_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");
    QTest::newRow("empty file") << QByteArray() << 1 << "the file is empty";
    QTest::newRow("count below 2") << QByteArray("1\r\nValue\r\nend\r\n") << 1
                                   << "the column count 1 is below 2";
    QTest::newRow("count 0") << QByteArray("0\r\n,\r\nend\r\n") << 1 << "the column count 0 is below 2";
    QTest::newRow("negative count") << QByteArray("-3\r\na,b\r\nend\r\n") << 1
                                    << "the column count -3 is below 2";
    QTest::newRow("count followed by text") << QByteArray("2 columns\r\na,b\r\nend\r\n") << 1
                                            << "the column count \"2 columns\" is not a bare whole number";
    QTest::newRow("count with a leading zero")
        << QByteArray("02\r\na,b\r\nend\r\n") << 1 << "the column count \"02\" is not a bare whole number";
    QTest::newRow("count too large") << QByteArray("12345678901\r\na,b\r\nend\r\n") << 1
                                     << "the column count \"12345678901\" is not a bare whole number";
    QTest::newRow("lines ending in LF alone")
        << QByteArray("2\nV,N\nend\nbody") << 1 << "the lines do not end in CR LF";
    QTest::newRow("nothing after the count")
        << QByteArray("2\r\n") << 2 << "the file ends before the column titles";
    QTest::newRow("too few titles") << QByteArray("3\r\nValue,Name\r\nend\r\n") << 2
                                    << "2 column titles, 3 needed";
    QTest::newRow("no end line") << QByteArray("2\r\nV,N\r\n1,a\r\n") << 4
                                 << "the file ends without an end line";
    QTest::newRow("no end line, last line unterminated")
        << QByteArray("2\r\nV,N\r\n1,a") << 4 << "the file ends without an end line";
    QTest::newRow("row with too few fields")
        << QByteArray("3\r\nV,N,D\r\n1,a,x\r\n2,b\r\nend\r\n") << 4 << "2 fields, 3 needed";
    QTest::newRow("row without a comma")
        << QByteArray("2\r\nV,N\r\nnothing\r\nend\r\n") << 3 << "1 field, 2 needed";
    QTest::newRow("repeated name") << QByteArray("2\r\nV,N\r\n1,door\r\n2,key\r\n3,door\r\nend\r\n") << 5
                                   << "the parameter name \"door\" repeats line 3";
    QTest::newRow("repeated name in other letter case")
        << QByteArray("2\r\nV,N\r\n1,Door\r\n2,DOOR\r\nend\r\n") << 4
        << "the parameter name \"DOOR\" repeats line 3";
}

void tst_Template::rejectsMalformedHeader() {
    QFETCH(QByteArray, file);
    QFETCH(int, line);
    QFETCH(QString, problem);
    const auto r = templates::readTemplate(bytes(file));
    QVERIFY(!r.ok());
    QCOMPARE(r.error.line, line);
    QCOMPARE(QString::fromStdString(r.error.problem), problem);
    QCOMPARE(QString::fromStdString(r.error.describe()), QString("line %1: %2").arg(line).arg(problem));
}

void tst_Template::splitsFields_data() {
    QTest::addColumn<int>("n");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("fields");
    QTest::newRow("two fields") << 2 << QByteArray("a,b") << QStringList{"a", "b"};
    QTest::newRow("last field keeps further commas")
        << 2 << QByteArray("a,b,c,d") << QStringList{"a", "b,c,d"};
    QTest::newRow("middle fields between commas")
        << 4 << QByteArray("a,b,c,d,e") << QStringList{"a", "b", "c", "d,e"};
    QTest::newRow("empty fields") << 3 << QByteArray(",,") << QStringList{"", "", ""};
    QTest::newRow("nothing trimmed") << 2 << QByteArray(" a , b ") << QStringList{" a ", " b "};
    QTest::newRow("missing fields are empty") << 3 << QByteArray("a") << QStringList{"a", "", ""};
    QTest::newRow("empty line") << 2 << QByteArray() << QStringList{"", ""};
}

void tst_Template::splitsFields() {
    QFETCH(int, n);
    QFETCH(QByteArray, line);
    QFETCH(QStringList, fields);
    std::vector<std::string> got{"stale", "stale", "stale", "stale", "stale", "kept"};
    templates::SplitFields(n, got, bytes(line));
    QCOMPARE(got.back(), std::string("kept")); // only elements 0 to n-1 are filled
    got.resize(static_cast<std::size_t>(n));
    QCOMPARE(toList(got), fields);
}

void tst_Template::replacesPlaceholders_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("no rows leave the body unchanged")
        << QByteArray("a <%x%> b") << QStringList{} << QStringList{} << QByteArray("a <%x%> b");
    QTest::newRow("every occurrence")
        << QByteArray("<%d%>=<%d%>;<%d%>") << QStringList{"d"} << QStringList{"7"} << QByteArray("7=7;7");
    QTest::newRow("placeholder in other letter case")
        << QByteArray("x <%DoorSpeed%> <%DOORSPEED%>") << QStringList{"doorspeed"} << QStringList{"4"}
        << QByteArray("x 4 4");
    QTest::newRow("letters beyond ASCII compared without case")
        << QByteArray("<%T\xD6R%>") << QStringList{QString::fromLatin1("t\xF6r")} << QStringList{"1"}
        << QByteArray("1");
    QTest::newRow("placeholder at the first character")
        << QByteArray("<%a%>rest") << QStringList{"a"} << QStringList{"A"} << QByteArray("Arest");
    QTest::newRow("placeholder at the last character")
        << QByteArray("rest<%a%>") << QStringList{"a"} << QStringList{"A"} << QByteArray("restA");
    QTest::newRow("placeholder naming no row stays")
        << QByteArray("<%a%> <%b%>") << QStringList{"a"} << QStringList{"1"} << QByteArray("1 <%b%>");
    QTest::newRow("row whose placeholder does not occur is skipped")
        << QByteArray("<%b%>") << QStringList{"a", "b"} << QStringList{"1", "2"} << QByteArray("2");
    QTest::newRow("empty value removes its placeholder")
        << QByteArray("x<%a%>y") << QStringList{"a"} << QStringList{""} << QByteArray("xy");
    QTest::newRow("two adjacent placeholders with an empty value")
        << QByteArray("x<%a%><%A%>y") << QStringList{"a"} << QStringList{""} << QByteArray("xy");
    QTest::newRow("value containing its own placeholder is inserted once")
        << QByteArray("<%a%>.<%a%>") << QStringList{"a"} << QStringList{"[<%a%>]"}
        << QByteArray("[<%a%>].[<%a%>]");
    QTest::newRow("value containing a later row's placeholder is replaced")
        << QByteArray("<%a%>") << QStringList{"a", "b"} << QStringList{"(<%b%>)", "B"} << QByteArray("(B)");
    QTest::newRow("value containing an earlier row's placeholder stays")
        << QByteArray("<%b%>") << QStringList{"a", "b"} << QStringList{"A", "(<%a%>)"}
        << QByteArray("(<%a%>)");
    QTest::newRow("search goes on after the inserted value, not inside it")
        << QByteArray("<%a%>a%>") << QStringList{"a"} << QStringList{"<%"} << QByteArray("<%a%>");
    QTest::newRow("a later row finds a placeholder an earlier value completed")
        << QByteArray("<%a%>b%>") << QStringList{"a", "b"} << QStringList{"<%", "B"} << QByteArray("B");
    QTest::newRow("half a placeholder is left alone")
        << QByteArray("<%a <%a% a%> <% a%>") << QStringList{"a"} << QStringList{"X"}
        << QByteArray("<%a <%a% a%> <% a%>");
    QTest::newRow("no blanks are added inside the marks")
        << QByteArray("<% a %><%a%>") << QStringList{"a"} << QStringList{"X"} << QByteArray("<% a %>X");
    QTest::newRow("line ends and high bytes kept")
        << QByteArray("\r\n<%a%>\n\xE9\r") << QStringList{"a"} << QStringList{QString::fromLatin1("\xFF")}
        << QByteArray("\r\n\xFF\n\xE9\r");
}

void tst_Template::replacesPlaceholders() {
    QFETCH(QByteArray, body);
    QFETCH(QStringList, names);
    QFETCH(QStringList, values);
    QFETCH(QByteArray, expected);
    const std::string header = "2\r\nValue,Name\r\nend\r\n";
    const std::string file = header + bytes(body);
    QCOMPARE(QByteArray::fromStdString(
                 templates::generate(file, static_cast<long>(header.size()), assignments(names, values))),
             expected);
}

void tst_Template::generatesFromFile_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("defaults from the rows")
        << QByteArray("3\r\nValue,Name,Note\r\n2.5,speed,in units, per second\r\ndoor,obj,the door\r\nend\r\n"
                      "# <%obj%> at <%SPEED%>\r\nsymbols\r\nend\r\n")
        << QByteArray("# door at 2.5\r\nsymbols\r\nend\r\n");
    QTest::newRow("end line in capitals") << QByteArray("2\r\nV,N\r\n1,a\r\nEND\r\n<%a%>") << QByteArray("1");
    QTest::newRow("no rows: the body unchanged")
        << QByteArray("2\r\nV,N\r\nend\r\n<%a%>\r\n") << QByteArray("<%a%>\r\n");
}

void tst_Template::generatesFromFile() {
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, expected);
    const std::string f = bytes(file);
    const auto r = templates::readTemplate(f);
    QVERIFY2(r.ok(), r.error.describe().c_str());
    QCOMPARE(
        QByteArray::fromStdString(templates::generate(f, r.tmpl.ilen, templates::defaultAssignments(r.tmpl))),
        expected);
}

void tst_Template::defaultsFollowTheRows() {
    const auto r = templates::readTemplate("2\r\nV,N\r\n1,b\r\n2,a\r\nend\r\n");
    QVERIFY(r.ok());
    const auto a = templates::defaultAssignments(r.tmpl);
    QCOMPARE(a, (std::vector<Assignment>{{"b", "1"}, {"a", "2"}}));
}

void tst_Template::longTextWithManyPlaceholders() {
    // A large body full of placeholders, each replaced by a value that is itself a placeholder:
    // every occurrence is replaced once and the values are never searched again.
    std::string body;
    for (int i = 0; i < 200000; ++i) body += "<%p%>";
    const std::string header = "2\r\nV,N\r\nend\r\n";
    const std::string out =
        templates::generate(header + body, static_cast<long>(header.size()), {{"P", "<%p%>!"}});
    QCOMPARE(out.size(), body.size() + 200000);
    QCOMPARE(out.substr(0, 12), std::string("<%p%>!<%p%>!"));
}

void tst_Template::sizesColumns_data() {
    QTest::addColumn<QList<double>>("titles");
    QTest::addColumn<double>("list");
    QTest::addColumn<double>("reserve");
    QTest::addColumn<QList<double>>("widths");
    QTest::newRow("two columns") << QList<double>{600, 800} << 5000.0 << 1000.0 << QList<double>{600, 3400};
    QTest::newRow("running sum rounded after each addition")
        << QList<double>{10.4, 20.4, 30} << 1000.0 << 100.0 << QList<double>{10.4, 20.4, 870};
    QTest::newRow("a half rounds down to even")
        << QList<double>{2.5, 1, 7} << 100.0 << 0.0 << QList<double>{2.5, 1, 97};
    QTest::newRow("a half rounds up to even")
        << QList<double>{3.5, 1, 7} << 100.0 << 0.0 << QList<double>{3.5, 1, 95};
    QTest::newRow("narrow list gives a negative last width")
        << QList<double>{600, 600} << 1000.0 << 500.0 << QList<double>{600, -100};
}

void tst_Template::sizesColumns() {
    QFETCH(QList<double>, titles);
    QFETCH(double, list);
    QFETCH(double, reserve);
    QFETCH(QList<double>, widths);
    const std::vector<double> got =
        templates::columnWidths(std::vector<double>(titles.begin(), titles.end()), list, reserve);
    QCOMPARE(QList<double>(got.begin(), got.end()), widths);
}

QTEST_APPLESS_MAIN(tst_Template)
#include "tst_template.moc"
