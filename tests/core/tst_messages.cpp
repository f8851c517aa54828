// The message names file behind the pop-up list.
#include "editor/messages.h"

#include <QtTest>

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
    QTest::newRow("a lone CR ends a line, blanks are kept")
        << QByteArray("x\r pulse\t\rbeta") << QStringList{" pulse\t", "beta"};
    QTest::newRow("repeated lines are kept once, at the first place, letter case counts")
        << QByteArray("x\r\nalpha\r\nbeta\r\nalpha\r\n\r\nAlpha\r\n\r\n")
        << QStringList{"alpha", "beta", "", "Alpha"};
    QTest::newRow("empty file") << QByteArray() << QStringList{};
}

void tst_Messages::readMessages() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, names);
    QStringList got;
    for (const auto& n : editor::readMessages(file.toStdString())) got << QString::fromStdString(n);
    QCOMPARE(got, names);
}

void tst_Messages::missingFileGivesEmptyList() {
    QTemporaryDir dir;
    QVERIFY(editor::loadMessages((dir.path() + "/messages.dat").toStdString()).empty());
    QVERIFY(editor::loadMessages(dir.path().toStdString()).empty()); // a directory, not a file
}

void tst_Messages::shippedListHasNoRepeats() {
    QFile file(TESSARY_BIN_DIR "/messages.dat");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const auto names = editor::loadMessages(TESSARY_BIN_DIR "/messages.dat");
    // Every line after the title is one distinct name, ended by CR LF.
    QCOMPARE(qsizetype(names.size()), bytes.count('\n') - 1);
    QCOMPARE(bytes.count('\r'), bytes.count('\n'));
    QVERIFY(std::find(names.begin(), names.end(), "startup") != names.end());
    for (const auto& n : names) QVERIFY(!n.empty() && n.find(' ') == std::string::npos);
}

QTEST_APPLESS_MAIN(tst_Messages)
#include "tst_messages.moc"
