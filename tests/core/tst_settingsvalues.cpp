// Settings texts read back into values, and the editor's font size rounding.
#include "app/settingsvalues.h"

#include <QtTest>

class tst_SettingsValues : public QObject {
    Q_OBJECT
private slots:
    void roundsFontSizeHalfToEven_data();
    void roundsFontSizeHalfToEven();
    void readsBooleans_data();
    void readsBooleans();
    void readsSmallNumbers_data();
    void readsSmallNumbers();
};

void tst_SettingsValues::roundsFontSizeHalfToEven_data() {
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("size");
    QTest::newRow("10.5 rounds down to even") << 10.5 << 10;
    QTest::newRow("11.5 rounds up to even") << 11.5 << 12;
    QTest::newRow("below a half") << 10.4 << 10;
    QTest::newRow("above a half") << 10.6 << 11;
    QTest::newRow("whole size unchanged") << 9.0 << 9;
    QTest::newRow("tiny size still readable") << 0.3 << 1;
    QTest::newRow("huge size held in range") << 1e9 << 32767;
}

void tst_SettingsValues::roundsFontSizeHalfToEven() {
    QFETCH(double, points);
    QFETCH(int, size);
    QCOMPARE(int(app::roundFontSize(points)), size);
}

void tst_SettingsValues::readsBooleans_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fallback");
    QTest::addColumn<bool>("value");
    QTest::newRow("True") << "True" << false << true;
    QTest::newRow("False") << "False" << true << false;
    QTest::newRow("letter case ignored") << "tRUE" << false << true;
    QTest::newRow("number zero") << "0" << true << false;
    QTest::newRow("other number") << "-1" << false << true;
    QTest::newRow("other text keeps the fallback") << "yes" << false << false;
    QTest::newRow("empty keeps the fallback") << "" << true << true;
}

void tst_SettingsValues::readsBooleans() {
    QFETCH(QString, text);
    QFETCH(bool, fallback);
    QFETCH(bool, value);
    QCOMPARE(app::parseBool(text.toStdString(), fallback), value);
    QCOMPARE(QString::fromStdString(app::boolText(value)), value ? QString("True") : QString("False"));
}

void tst_SettingsValues::readsSmallNumbers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("plain") << "12" << 12;
    QTest::newRow("blanks around") << " 14 " << 14;
    QTest::newRow("largest") << "32767" << 32767;
    QTest::newRow("out of range keeps the fallback") << "32768" << 8;
    QTest::newRow("fraction keeps the fallback") << "10.5" << 8;
    QTest::newRow("text keeps the fallback") << "big" << 8;
}

void tst_SettingsValues::readsSmallNumbers() {
    QFETCH(QString, text);
    QFETCH(int, value);
    QCOMPARE(int(app::parseInt16(text.toStdString(), 8)), value);
}

QTEST_APPLESS_MAIN(tst_SettingsValues)
#include "tst_settingsvalues.moc"
