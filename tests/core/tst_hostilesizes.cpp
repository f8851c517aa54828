// Inputs of hostile size, on the real code. Each is large enough that work growing with the
// square of the input would run far past this test's time limit (tests/CMakeLists.txt), while
// work in proportion to the input ends within a few seconds even in the sanitizer build.
#include "runcli.h"
#include "templates/template.h"

#include <QtTest>

class tst_HostileSizes : public QObject {
    Q_OBJECT
private slots:
    void outlineOfManyHandlers_data();
    void outlineOfManyHandlers();
    void templateWithManyParameters();
};

void tst_HostileSizes::outlineOfManyHandlers_data() {
    QTest::addColumn<bool>("json");
    QTest::newRow("tree") << false;
    QTest::newRow("json") << true;
}

// 100,000 message handlers, each declared, labelled and commented: 5 MB, 300,004 nodes.
void tst_HostileSizes::outlineOfManyHandlers() {
    QFETCH(bool, json);
    constexpr int kHandlers = 100000;
    QByteArray declarations, handlers;
    for (int i = 0; i < kHandlers; ++i) {
        declarations += "message m" + QByteArray::number(i) + "\r\n";
        handlers +=
            "m" + QByteArray::number(i) + ":\r\n  // step " + QByteArray::number(i) + "\r\n  return;\r\n";
    }
    QTemporaryDir dir;
    QFile file(dir.filePath("many.cog"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# many\r\nsymbols\r\n" + declarations + "end\r\ncode\r\n" + handlers + "end\r\n");
    file.close();
    const CliRun r = runTessaryCli(
        json ? QStringList{"outline", "--json", "many.cog"} : QStringList{"outline", "many.cog"}, dir.path());
    QCOMPARE(r.status, 0);
    QCOMPARE(r.out.count('\n'), json ? 1 : 3 * kHandlers + 4);
    QVERIFY(r.out.contains(json ? "\"key\": \"// step 99999\"" : "\n      // step 99999\n"));
}

// 80,000 parameters whose names differ only in their last bytes, then one that repeats the first.
void tst_HostileSizes::templateWithManyParameters() {
    constexpr int kRows = 80000;
    const std::string prefix(248, 'p');
    std::string bytes = "2\r\nValue,Name\r\n";
    for (int i = 0; i < kRows; ++i) bytes += "v," + prefix + std::to_string(10000000 + i) + "\r\n";
    bytes += "v," + std::string(248, 'P') + "10000000\r\nend\r\n";
    const templates::ReadResult r = templates::readTemplate(bytes);
    QCOMPARE(r.error.line, long(kRows + 3));
    QCOMPARE(r.error.problem.substr(r.error.problem.size() - 14), std::string("repeats line 3"));
}

QTEST_GUILESS_MAIN(tst_HostileSizes)
#include "tst_hostilesizes.moc"
