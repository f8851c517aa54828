// The recent-files menu: filled from the settings store at start, updated as files are opened
// and saved, written back when the program ends, and reopening a file with one click.
#include "harness.h"

#include "app/ui/MRU.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

class tst_Mru : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { stopTessary(); }

    void emptyStoreShowsNothingAndWritesColons();
    void loadsStoredValues_data();
    void loadsStoredValues();
    void openedAndSavedFilesMoveThroughTheSlots();
    void clickingAnEntryReopensTheFile();
    void clickingAVanishedFileKeepsTheEntry();

private:
    QString write(const QString& name, const QByteArray& bytes = "x\r\n");
    QStringList entries() const; // "caption|path" per slot
    void start();

    QTemporaryDir dir_;
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

namespace {

QStringList stored() {
    QSettings settings;
    QStringList l;
    for (const char* key : {"1", "2", "3", "4"})
        l << settings.value(QString("MRU/") + key, "(missing)").toString();
    return l;
}

void store(const QStringList& values) {
    QSettings settings;
    for (int k = 0; k < values.size(); ++k) settings.setValue("MRU/" + QString::number(k + 1), values[k]);
}

} // namespace

void tst_Mru::initTestCase() {
    prepareTessaryTest();
    QVERIFY(QSettings().fileName().startsWith(QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + "/"));
}

void tst_Mru::init() {
    prepareTessaryTest();
    dialogs_ = ScriptedDialogs();
    frame_ = nullptr;
    QVERIFY(dir_.isValid());
}

void tst_Mru::start() {
    frame_ = startTessary(dialogs_);
    QVERIFY(frame_);
}

QString tst_Mru::write(const QString& name, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(dir_.filePath(name)).absolutePath());
    QFile f(dir_.filePath(name));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) return {};
    return f.fileName();
}

QStringList tst_Mru::entries() const {
    QStringList l;
    for (QAction* a : frame_->mnuFileMRU) l << a->text() + '|' + a->data().toString();
    return l;
}

void tst_Mru::emptyStoreShowsNothingAndWritesColons() {
    start();
    for (QAction* a : frame_->mnuFileMRU) QVERIFY(!a->isVisible());
    QVERIFY(!frame_->mnuFileBar6->isVisible());
    QCOMPARE(entries(), (QStringList{"&1 |", "&2 |", "&3 |", "&4 |"}));
    stopTessary();
    QCOMPARE(stored(), (QStringList{":", ":", ":", ":"}));
}

void tst_Mru::loadsStoredValues_data() {
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("drive letter path") << QStringList{"a.cog:C:\\cogs\\a.cog", ":", ":", ":"}
                                       << QStringList{"&1 a.cog|C:\\cogs\\a.cog", "&2 |", "&3 |", "&4 |"};

    QTest::newRow("ampersand in a title") << QStringList{"R&D.cog:/d/R&D.cog", ":", ":", ":"}
                                          << QStringList{"&1 R&&D.cog|/d/R&D.cog", "&2 |", "&3 |", "&4 |"};
}

void tst_Mru::loadsStoredValues() {
    QFETCH(QStringList, values);
    QFETCH(QStringList, entries);
    store(values);
    start();
    QCOMPARE(this->entries(), entries);
    for (int k = 0; k < 4; ++k)
        QCOMPARE(frame_->mnuFileMRU[static_cast<std::size_t>(k)]->isVisible(), !entries[k].endsWith('|'));
    QVERIFY(frame_->mnuFileBar6->isVisible());
}

void tst_Mru::openedAndSavedFilesMoveThroughTheSlots() {
    start();
    QStringList f;
    for (const char* name : {"a.cog", "b.cog", "c.cog", "d.cog", "e.cog"}) f << write(name);
    for (const QString& path : f) mdlTessary::OpenCogFile(path);
    const auto entry = [&](int k, const QString& t) {
        return QString("&%1 %2|%3").arg(k).arg(t, dir_.filePath(t));
    };
    QCOMPARE(entries(),
             (QStringList{entry(1, "e.cog"), entry(2, "d.cog"), entry(3, "c.cog"), entry(4, "b.cog")}));
    for (QAction* a : frame_->mnuFileMRU) QVERIFY(a->isVisible());
    mdlTessary::OpenCogFile(f[2]);                 // found in slot 2: to the top
    mdlTessary::OpenCogFile(write("other/c.cog")); // same title in slot 0: the first path stays
    mdlTessary::OpenCogFile(write("C.COG"));       // another title than c.cog
    QCOMPARE(entries(),
             (QStringList{entry(1, "C.COG"), entry(2, "c.cog"), entry(3, "e.cog"), entry(4, "d.cog")}));
    dialogs_.saveAnswers << dir_.filePath("saved.cog");
    frame_->mnuFileNew_Click();
    frame_->mnuFileSave_Click(); // a blank window: Save As
    QCOMPARE(entries()[0], entry(1, "saved.cog"));
    stopTessary();
    QCOMPARE(stored(), (QStringList{"saved.cog:" + dir_.filePath("saved.cog"),
                                    "C.COG:" + dir_.filePath("C.COG"), "c.cog:" + f[2], "e.cog:" + f[4]}));
}

void tst_Mru::clickingAnEntryReopensTheFile() {
    start();
    const QString a = write("a.cog", "alpha\r\n");
    mdlTessary::OpenCogFile(a);
    mdlTessary::OpenCogFile(write("b.cog", "beta\r\n"));
    const int before = mdlTessary::colCogs.count();
    frame_->mnuFileMRU[1]->trigger(); // a.cog
    QCOMPARE(mdlTessary::colCogs.count(), before + 1);
    frmTessary* w = cogWindow(before + 1);
    QCOMPARE(textOf(w), QByteArray("alpha\r\n"));
    QCOMPARE(w->strFile, a);
    QCOMPARE(w->Caption(), QStringLiteral("a.cog"));
    QVERIFY(!w->bMod);
    QCOMPARE(entries()[0], "&1 a.cog|" + a);
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_Mru::clickingAVanishedFileKeepsTheEntry() {
    start();
    const QString a = write("a.cog");
    mdlTessary::OpenCogFile(a);
    QVERIFY(QFile::remove(a));
    const int before = mdlTessary::colCogs.count();
    frame_->mnuFileMRU_Click(0);
    QCOMPARE(dialogs_.messages.size(), 1);
    QCOMPARE(dialogs_.messages[0].text, QStringLiteral("File does not exist."));
    QCOMPARE(dialogs_.messages[0].icon, int(ui::vbExclamation));
    QCOMPARE(dialogs_.messages[0].title, QStringLiteral("Tessary"));
    QCOMPARE(mdlTessary::colCogs.count(), before);
    QCOMPARE(entries()[0], "&1 a.cog|" + a);
}

TESSARY_TEST_MAIN(tst_Mru)

#include "tst_mru.moc"
