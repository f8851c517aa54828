// The editor font's size as the font command keeps it, and how Booleans are written.
#include "app/settingsvalues.h"

#include <QtTest>

class tst_SettingsValues : public QObject {
    Q_OBJECT
private slots:
    void roundsFontSizeHalfToEven_data();
    void roundsFontSizeHalfToEven();
    void writesBooleans();
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
    QCOMPARE(int(settings::roundFontSize(points)), size);
    QCOMPARE(settings::toInt16(std::to_string(settings::roundFontSize(points)), 0),
             settings::roundFontSize(points));
}

void tst_SettingsValues::writesBooleans() {
    QCOMPARE(settings::boolText(true), std::string("True"));
    QCOMPARE(settings::boolText(false), std::string("False"));
    QCOMPARE(settings::toBool(settings::boolText(true), false), true);
    QCOMPARE(settings::toBool(settings::boolText(false), true), false);
}

QTEST_APPLESS_MAIN(tst_SettingsValues)
#include "tst_settingsvalues.moc"
