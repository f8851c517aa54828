// Reading the settings store's texts with fallbacks, the font size as the font command keeps it,
// and how Booleans are written.
#include "app/settingsvalues.h"

#include <QtTest>

class tst_SettingsValues : public QObject {
    Q_OBJECT
private slots:
    void roundsFontSizeHalfToEven_data();
    void roundsFontSizeHalfToEven();
    void readsValuesOrFallsBack_data();
    void readsValuesOrFallsBack();
};

void tst_SettingsValues::roundsFontSizeHalfToEven_data() {
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("size");
    QTest::newRow("10.5 rounds down to even") << 10.5 << 10;
    QTest::newRow("11.5 rounds up to even") << 11.5 << 12;
    QTest::newRow("above a half") << 10.6 << 11;
    QTest::newRow("tiny size still readable") << 0.3 << 1;
    QTest::newRow("huge size held in range") << 1e9 << 32767;
}

void tst_SettingsValues::roundsFontSizeHalfToEven() {
    QFETCH(double, points);
    QFETCH(int, size);
    QCOMPARE(int(settings::roundFontSize(points)), size);
    QCOMPARE(settings::toInt16(std::to_string(settings::roundFontSize(points)), 0), size);
}

void tst_SettingsValues::readsValuesOrFallsBack_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");  // -1: falls back
    QTest::addColumn<int>("boolean"); // -1: falls back
    QTest::newRow("written True") << QString::fromStdString(settings::boolText(true)) << -1 << 1;
    QTest::newRow("written False") << QString::fromStdString(settings::boolText(false)) << -1 << 0;
    QTest::newRow("Boolean in other case, blanks around") << " tRUE\t" << -1 << 1;
    QTest::newRow("decimal rounds half to even") << "10.5" << 10 << 1;
    QTest::newRow("zero is false") << "0" << 0 << 0;
    QTest::newRow("empty") << "" << -1 << -1;
    QTest::newRow("text") << "big" << -1 << -1;
    QTest::newRow("number followed by text") << "12pt" << -1 << -1;
    QTest::newRow("beyond 16 bits") << "40000" << -1 << 1;
}

void tst_SettingsValues::readsValuesOrFallsBack() {
    QFETCH(QString, text);
    QFETCH(int, number);
    QFETCH(int, boolean);
    const std::string t = text.toStdString();
    QCOMPARE(int(settings::toInt16(t, -1)), number);
    QCOMPARE(settings::toBool(t, true), boolean != 0);
    QCOMPARE(settings::toBool(t, false), boolean == 1);
}

QTEST_APPLESS_MAIN(tst_SettingsValues)
#include "tst_settingsvalues.moc"
