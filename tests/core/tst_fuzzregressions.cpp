// Every input the fuzz targets start from, and every input that once made one of them fail, run
// through the same target bodies in the normal (and the sanitizer) build. The build compiles every
// tests/fuzz/fuzz_*.cpp into this test, where each one enters itself in the table of targets.
#include "tests/fuzz/fuzztarget.h"

#include <QtTest>

class tst_FuzzRegressions : public QObject {
    Q_OBJECT
    const QDir fuzz_{TESSARY_SOURCE_DIR "/tests/fuzz"};

private slots:
    void everyTargetHasASeedCorpus() {
        QCOMPARE(std::size_t(fuzz_.entryList({"fuzz_*.cpp"}, QDir::Files).size()), fuzzing::targets().size());
        for (const auto& [name, body] : fuzzing::targets())
            QVERIFY2(!QDir(fuzz_.filePath(QString::fromStdString("corpus/" + name))).isEmpty(QDir::Files),
                     name.c_str());
    }
    void replaysWithoutFailure_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("path");
        for (const auto& [name, body] : fuzzing::targets())
            for (const char* kind : {"corpus", "regressions"}) {
                const QDir d(fuzz_.filePath(QString("%1/%2").arg(kind, QString::fromStdString(name))));
                for (const QString& f : d.entryList(QDir::Files, QDir::Name))
                    QTest::newRow(qPrintable(QString("%1 %2 %3").arg(QString::fromStdString(name), kind, f)))
                        << QString::fromStdString(name) << d.filePath(f);
            }
    }
    void replaysWithoutFailure() {
        QFETCH(QString, target);
        QFETCH(QString, path);
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray bytes = f.readAll();
        fuzzing::Input in(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                          std::size_t(bytes.size()));
        fuzzing::targets().at(target.toStdString())(in); // a broken property aborts with its reason
    }
};

QTEST_APPLESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
