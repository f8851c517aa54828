// The message names file behind the pop-up list.
#include "editor/messages.h"

#include <QtTest>

#include <fstream>
#include <iterator>

class tst_Messages : public QObject {
    Q_OBJECT
private slots:
    void readMessages_data();
    void readMessages();
    void missingFileGivesEmptyList();
    void shippedListHasNoRepeats();
};

void tst_Messages::readMessages_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("first line dropped, no empty item at the end")
        << QByteArray("x\r\nalpha\r\nbeta\r\n") << QStringList{"alpha", "beta"};
    QTest::newRow("last line without a line end")
        << QByteArray("x\r\nalpha\r\nbeta") << QStringList{"alpha", "beta"};
    QTest::newRow("a lone CR ends a line") << QByteArray("x\ralpha\rbeta\r") << QStringList{"alpha", "beta"};
    QTest::newRow("a lone LF stays in the line") << QByteArray("x\r\nal\npha\r\n") << QStringList{"al\npha"};
    QTest::newRow("blanks and tabs are kept") << QByteArray("x\r\n pulse\t\r\n") << QStringList{" pulse\t"};
    QTest::newRow("a blank line is an empty item")
        << QByteArray("x\r\nalpha\r\n\r\nbeta\r\n") << QStringList{"alpha", "", "beta"};
    QTest::newRow("repeated lines are kept once, at the first place")
        << QByteArray("x\r\nalpha\r\nbeta\r\nalpha\r\nbeta\r\ngamma\r\n")
        << QStringList{"alpha", "beta", "gamma"};
    QTest::newRow("letter case makes lines different")
        << QByteArray("x\r\nalpha\r\nAlpha\r\n") << QStringList{"alpha", "Alpha"};
    QTest::newRow("only the first line") << QByteArray("x\r\n") << QStringList{};
    QTest::newRow("empty file") << QByteArray() << QStringList{};
}

void tst_Messages::readMessages() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, names);
    QStringList got;
    for (const auto& n :
         editor::readMessages(std::string_view(file.constData(), static_cast<std::size_t>(file.size()))))
        got << QString::fromStdString(n);
    QCOMPARE(got, names);
}

void tst_Messages::missingFileGivesEmptyList() {
    QTemporaryDir dir;
    QVERIFY(editor::loadMessages((dir.path() + "/messages.dat").toStdString()).empty());
    QVERIFY(editor::loadMessages(dir.path().toStdString()).empty()); // a directory, not a file
}

void tst_Messages::shippedListHasNoRepeats() {
    const std::string path = TESSARY_BIN_DIR "/messages.dat";
    std::ifstream in(path, std::ios::binary);
    QVERIFY(in);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const auto names = editor::loadMessages(path);
    // Every line after the title is one distinct name, ended by CR LF.
    const auto lines = std::count(bytes.begin(), bytes.end(), '\n');
    QCOMPARE(static_cast<long>(names.size()), static_cast<long>(lines - 1));
    QCOMPARE(std::count(bytes.begin(), bytes.end(), '\r'), lines);
    QVERIFY(std::find(names.begin(), names.end(), "startup") != names.end());
    for (const auto& n : names) QVERIFY(!n.empty() && n.find(' ') == std::string::npos);
}

QTEST_APPLESS_MAIN(tst_Messages)
#include "tst_messages.moc"
