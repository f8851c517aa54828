// Every input the fuzz targets start from, and every input that once made one of them fail, run
// through the same target bodies in the normal (and the sanitizer) build.
#define TESSARY_FUZZ_REGISTRY
#include "tests/fuzz/fuzztarget.h"

#include <QtTest>

#include <map>

namespace fuzzing {

std::map<std::string, Body>& targets() {
    static std::map<std::string, Body> t;
    return t;
}

bool registerTarget(const char* name, Body body) {
    targets().emplace(name, body);
    return true;
}

} // namespace fuzzing

#include "tests/fuzz/fuzz_addsymbol.cpp"
#include "tests/fuzz/fuzz_cli.cpp"
#include "tests/fuzz/fuzz_cogref.cpp"
#include "tests/fuzz/fuzz_colouring.cpp"
#include "tests/fuzz/fuzz_explorer.cpp"
#include "tests/fuzz/fuzz_findreplace.cpp"
#include "tests/fuzz/fuzz_firstoccurrence.cpp"
#include "tests/fuzz/fuzz_language.cpp"
#include "tests/fuzz/fuzz_layout.cpp"
#include "tests/fuzz/fuzz_lspreader.cpp"
#include "tests/fuzz/fuzz_load.cpp"
#include "tests/fuzz/fuzz_messages.cpp"
#include "tests/fuzz/fuzz_openrequest.cpp"
#include "tests/fuzz/fuzz_recentfiles.cpp"
#include "tests/fuzz/fuzz_recovery.cpp"
#include "tests/fuzz/fuzz_renamedelete.cpp"
#include "tests/fuzz/fuzz_settings.cpp"
#include "tests/fuzz/fuzz_syntaxcheck.cpp"
#include "tests/fuzz/fuzz_template.cpp"
#include "tests/fuzz/fuzz_typingaids.cpp"

class tst_FuzzRegressions : public QObject {
    Q_OBJECT
private slots:
    void everyTargetHasASeedCorpus();
    void replaysWithoutFailure_data();
    void replaysWithoutFailure();
};

void tst_FuzzRegressions::everyTargetHasASeedCorpus() {
    const QDir fuzzDir(TESSARY_SOURCE_DIR "/tests/fuzz");
    const QStringList sources = fuzzDir.entryList({"fuzz_*.cpp"}, QDir::Files);
    QCOMPARE(static_cast<std::size_t>(sources.size()), fuzzing::targets().size()); // each one included above
    for (const auto& [name, body] : fuzzing::targets()) {
        const QDir corpus(fuzzDir.filePath("corpus/" + QString::fromStdString(name)));
        QVERIFY2(!corpus.entryList(QDir::Files).isEmpty(), name.c_str());
    }
}

void tst_FuzzRegressions::replaysWithoutFailure_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("path");
    const QDir fuzzDir(TESSARY_SOURCE_DIR "/tests/fuzz");
    for (const auto& [name, body] : fuzzing::targets())
        for (const char* kind : {"corpus", "regressions"}) {
            const QDir d(fuzzDir.filePath(QString("%1/%2").arg(kind, QString::fromStdString(name))));
            for (const QString& f : d.entryList(QDir::Files, QDir::Name))
                QTest::newRow(qPrintable(QString("%1 %2 %3").arg(QString::fromStdString(name), kind, f)))
                    << QString::fromStdString(name) << d.filePath(f);
        }
}

void tst_FuzzRegressions::replaysWithoutFailure() {
    QFETCH(QString, target);
    QFETCH(QString, path);
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    fuzzing::Input in(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                      static_cast<std::size_t>(bytes.size()));
    fuzzing::targets().at(target.toStdString())(in); // a broken property aborts with its reason
}

QTEST_APPLESS_MAIN(tst_FuzzRegressions)
#include "tst_fuzzregressions.moc"
