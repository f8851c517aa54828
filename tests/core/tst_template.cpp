// Reading a template's parameter table and generating the COG text from its body.
#include "templates/template.h"

#include <QtTest>

#include <string>

class tst_Template : public QObject {
    Q_OBJECT
private slots:
    void readsAndGenerates_data();
    void readsAndGenerates();
    void rejectsMalformedHeader_data();
    void rejectsMalformedHeader();
    void replacesPlaceholders_data();
    void replacesPlaceholders();
    void sizesColumns_data();
    void sizesColumns();
};

namespace {

QStringList toList(const std::vector<std::string>& v) {
    QStringList l;
    for (const auto& s : v) l << QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
    return l;
}

} // namespace

void tst_Template::readsAndGenerates_data() {
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QStringList>("rows");     // "value|name|further columns"
    QTest::addColumn<QByteArray>("generated"); // with the rows' default values
    const QStringList vn{"V", "N"};
    QTest::newRow("defaults from the rows, a third column keeps its commas")
        << QByteArray(
               "3\r\nValue,Name,Note\r\n2.5,speed,in units, per second\r\ndoor,obj,the door\r\nend\r\n")
        << QByteArray("# <%obj%> at <%SPEED%>\r\nsymbols\r\nend\r\n") << QStringList{"Value", "Name", "Note"}
        << QStringList{"2.5|speed|in units, per second", "door|obj|the door"}
        << QByteArray("# door at 2.5\r\nsymbols\r\nend\r\n");
    QTest::newRow("no rows: the body unchanged")
        << QByteArray("2\r\nValue,Name\r\nend\r\n") << QByteArray("<%x%>\r\n") << QStringList{"Value", "Name"}
        << QStringList{} << QByteArray("<%x%>\r\n");
    QTest::newRow("END in capitals closes the header")
        << QByteArray("2\r\nV,N\r\n1,a\r\nEND\r\n") << QByteArray("<%a%>2,b\r\n") << vn << QStringList{"1|a"}
        << QByteArray("12,b\r\n");
    QTest::newRow("end line in mixed case, empty body")
        << QByteArray("2\r\nV,N\r\neNd\r\n") << QByteArray() << vn << QStringList{} << QByteArray();
    QTest::newRow("titles keep blanks; last title keeps commas")
        << QByteArray("2\r\n Value , Name, of it\r\nend\r\n") << QByteArray("\r\nx")
        << QStringList{" Value ", " Name, of it"} << QStringList{} << QByteArray("\r\nx");
    QTest::newRow("an empty default value")
        << QByteArray("2\r\nV,N\r\n,name\r\nend\r\n") << QByteArray("<%name%>") << vn << QStringList{"|name"}
        << QByteArray();
    QTest::newRow("end line last in the file without CR LF")
        << QByteArray("2\r\nV,N\r\nx,a\r\nend") << QByteArray() << vn << QStringList{"x|a"} << QByteArray();
    QTest::newRow("a blank after end makes a row, not the end line")
        << QByteArray("2\r\nV,N\r\nend ,x\r\nend\r\n") << QByteArray("<%x%>") << vn << QStringList{"end |x"}
        << QByteArray("end ");
    QTest::newRow("names differing by more than case, rows in order")
        << QByteArray("2\r\nV,N\r\n1,door\r\n2,doors\r\nend\r\n") << QByteArray("<%doors%><%door%>") << vn
        << QStringList{"1|door", "2|doors"} << QByteArray("21");
    QTest::newRow("a two-digit column count")
        << QByteArray("12\r\na,b,c,d,e,f,g,h,i,j,k,l\r\n1,x,,,,,,,,,,\r\nEnd\r\n") << QByteArray("code")
        << QStringList{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"}
        << QStringList{"1|x||||||||||"} << QByteArray("code");
}

void tst_Template::readsAndGenerates() {
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, body);
    QFETCH(QStringList, titles);
    QFETCH(QStringList, rows);
    QFETCH(QByteArray, generated);
    const std::string file = (header + body).toStdString();
    const auto r = templates::readTemplate(file);
    QVERIFY2(r.ok(), r.error.describe().c_str());
    QCOMPARE(r.tmpl.columns, titles.size());
    QCOMPARE(toList(r.tmpl.titles), titles);
    QStringList got;
    for (const auto& row : r.tmpl.rows) {
        QCOMPARE(row.fields.size(), static_cast<std::size_t>(titles.size()));
        QCOMPARE(row.value, row.fields[0]);
        QCOMPARE(row.name, row.fields[1]);
        got << toList(row.fields).join('|');
    }
    QCOMPARE(got, rows);
    // The header length counts the end line's CR LF, even when the file ends without it.
    QCOMPARE(r.tmpl.ilen, static_cast<long>(header.size()) + (header.endsWith("\r\n") ? 0 : 2));
    QCOMPARE(QByteArray::fromStdString(std::string(templates::templateBody(file, r.tmpl.ilen))), body);
    QCOMPARE(QByteArray::fromStdString(
                 templates::generate(file, r.tmpl.ilen, templates::defaultAssignments(r.tmpl))),
             generated);
}

void tst_Template::rejectsMalformedHeader_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");
    const struct {
        const char *name, *file;
        int line;
        const char* problem;
    } rows[] = {
        {"empty file", "", 1, "the file is empty"},
        {"count below 2", "1\r\nValue\r\nend\r\n", 1, "the column count 1 is below 2"},
        {"count followed by text", "2 columns\r\na,b\r\nend\r\n", 1,
         "the column count \"2 columns\" is not a bare whole number"},
        {"count with a leading zero", "02\r\na,b\r\nend\r\n", 1,
         "the column count \"02\" is not a bare whole number"},
        {"count too large", "12345678901\r\na,b\r\nend\r\n", 1,
         "the column count \"12345678901\" is not a bare whole number"},
        {"lines ending in LF alone", "2\nV,N\nend\nbody", 1, "the lines do not end in CR LF"},
        {"nothing after the count", "2\r\n", 2, "the file ends before the column titles"},
        {"too few titles", "3\r\nValue,Name\r\nend\r\n", 2, "2 column titles, 3 needed"},
        {"no end line", "2\r\nV,N\r\n1,a\r\n", 4, "the file ends without an end line"},
        {"row with too few fields", "3\r\nV,N,D\r\n1,a,x\r\n2,b\r\nend\r\n", 4, "2 fields, 3 needed"},
        {"row without a comma", "2\r\nV,N\r\nnothing\r\nend\r\n", 3, "1 field, 2 needed"},
        {"repeated name", "2\r\nV,N\r\n1,door\r\n2,key\r\n3,door\r\nend\r\n", 5,
         "the parameter name \"door\" repeats line 3"},
        {"repeated name in other letter case", "2\r\nV,N\r\n1,Door\r\n2,DOOR\r\nend\r\n", 4,
         "the parameter name \"DOOR\" repeats line 3"},
    };
    for (const auto& r : rows) QTest::newRow(r.name) << QByteArray(r.file) << r.line << QString(r.problem);
}

void tst_Template::rejectsMalformedHeader() {
    QFETCH(QByteArray, file);
    QFETCH(int, line);
    QFETCH(QString, problem);
    const auto r = templates::readTemplate(file.toStdString());
    QVERIFY(!r.ok());
    QCOMPARE(r.error.line, line);
    QCOMPARE(QString::fromStdString(r.error.describe()), QString("line %1: %2").arg(line).arg(problem));
}

void tst_Template::replacesPlaceholders_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("rows"); // "name=value;..."
    QTest::addColumn<QByteArray>("expected");
    const char* const rows[][4] = {
        {"every occurrence", "<%d%>=<%d%>;<%d%>", "d=7", "7=7;7"},
        {"placeholder in other letter case", "x <%DoorSpeed%> <%DOORSPEED%>", "doorspeed=4", "x 4 4"},
        {"letters beyond ASCII compared without case", "<%T\xD6R%>", "t\xF6r=1", "1"},
        {"placeholder at the first character", "<%a%>rest", "a=A", "Arest"},
        {"placeholder at the last character", "rest<%a%>", "a=A", "restA"},
        {"placeholder naming no row stays", "<%a%> <%b%>", "a=1", "1 <%b%>"},
        {"row whose placeholder does not occur is skipped", "<%b%>", "a=1;b=2", "2"},
        {"empty value removes its placeholder", "x<%a%>y", "a=", "xy"},
        {"two adjacent placeholders with an empty value", "x<%a%><%A%>y", "a=", "xy"},
        {"value containing its own placeholder is inserted once", "<%a%>.<%a%>", "a=[<%a%>]",
         "[<%a%>].[<%a%>]"},
        {"value containing a later row's placeholder is replaced", "<%a%>", "a=(<%b%>);b=B", "(B)"},
        {"value containing an earlier row's placeholder stays", "<%b%>", "a=A;b=(<%a%>)", "(<%a%>)"},
        {"search goes on after the inserted value, not inside it", "<%a%>a%>", "a=<%", "<%a%>"},
        {"a later row finds a placeholder an earlier value completed", "<%a%>b%>", "a=<%;b=B", "B"},
        {"half a placeholder, blanks inside the marks", "<%a <%a% a%> <% a%><% a %><%a%>", "a=X",
         "<%a <%a% a%> <% a%><% a %>X"},
        {"line ends and high bytes kept", "\r\n<%a%>\n\xE9\r", "a=\xFF", "\r\n\xFF\n\xE9\r"},
    };
    for (const auto& r : rows)
        QTest::newRow(r[0]) << QByteArray(r[1]) << QByteArray(r[2]) << QByteArray(r[3]);
}

void tst_Template::replacesPlaceholders() {
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, rows);
    QFETCH(QByteArray, expected);
    std::vector<templates::Assignment> a;
    for (const QByteArray& row : rows.split(';')) {
        const auto eq = row.indexOf('=');
        a.emplace_back(row.left(eq).toStdString(), row.mid(eq + 1).toStdString());
    }
    const std::string header = "2\r\nValue,Name\r\nend\r\n";
    QCOMPARE(
        QByteArray::fromStdString(templates::generate(header + body.toStdString(), long(header.size()), a)),
        expected);
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
    const auto got =
        templates::columnWidths(std::vector<double>(titles.begin(), titles.end()), list, reserve);
    QCOMPARE(QList<double>(got.begin(), got.end()), widths);
}

QTEST_APPLESS_MAIN(tst_Template)
#include "tst_template.moc"
