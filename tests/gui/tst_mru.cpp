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
    void openingFiveFilesKeepsTheLastFour();
    void titleInSlot2MovesToTheTop();
    void sameTitleFromAnotherDirectoryKeepsTheFirst();
    void capitalisedTitleIsAnotherEntry();
    void savingAddsTheFile();
    void clickingAnEntryReopensTheFile();
    void clickingAVanishedFileKeepsTheEntry();
    void storedValuesReadBackTheSame();

private:
    QString write(const QString& name, const QByteArray& bytes = "x\r\n");
    QStringList captions() const;
    QStringList paths() const;
    QStringList stored() const;
    void start();

    QTemporaryDir dir_;
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

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

QStringList tst_Mru::captions() const {
    QStringList l;
    for (QAction* a : frame_->mnuFileMRU) l << a->text();
    return l;
}

QStringList tst_Mru::paths() const {
    QStringList l;
    for (QAction* a : frame_->mnuFileMRU) l << a->data().toString();
    return l;
}

QStringList tst_Mru::stored() const {
    QSettings settings;
    settings.beginGroup("MRU");
    QStringList l;
    for (const char* key : {"1", "2", "3", "4"}) l << settings.value(key, "(missing)").toString();
    return l;
}

void tst_Mru::emptyStoreShowsNothingAndWritesColons() {
    start();
    for (QAction* a : frame_->mnuFileMRU) QVERIFY(!a->isVisible());
    QVERIFY(!frame_->mnuFileBar6->isVisible());
    QCOMPARE(captions(), (QStringList{"&1 ", "&2 ", "&3 ", "&4 "}));
    stopTessary();
    QCOMPARE(stored(), (QStringList{":", ":", ":", ":"}));
}

void tst_Mru::loadsStoredValues_data() {
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("captions");
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QList<bool>>("visible");
    QTest::newRow("drive letter path")
        << QStringList{"a.cog:C:\\cogs\\a.cog", ":", ":", ":"} << QStringList{"&1 a.cog", "&2 ", "&3 ", "&4 "}
        << QStringList{"C:\\cogs\\a.cog", "", "", ""} << QList<bool>{true, false, false, false};
    QTest::newRow("file name and directory with colons")
        << QStringList{":", "b:c.cog:/x:y/b:c.cog", ":", ":"}
        << QStringList{"&1 ", "&2 b:c.cog", "&3 ", "&4 "} << QStringList{"", "/x:y/b:c.cog", "", ""}
        << QList<bool>{false, true, false, false};
    QTest::newRow("hand-edited value without a colon")
        << QStringList{"a.cog", "d.cog:/d/d.cog", ":", ":"} << QStringList{"&1 ", "&2 d.cog", "&3 ", "&4 "}
        << QStringList{"", "/d/d.cog", "", ""} << QList<bool>{false, true, false, false};
    QTest::newRow("ampersand in a title")
        << QStringList{"R&D.cog:/d/R&D.cog", ":", ":", ":"} << QStringList{"&1 R&&D.cog", "&2 ", "&3 ", "&4 "}
        << QStringList{"/d/R&D.cog", "", "", ""} << QList<bool>{true, false, false, false};
}

void tst_Mru::loadsStoredValues() {
    QFETCH(QStringList, values);
    QFETCH(QStringList, captions);
    QFETCH(QStringList, paths);
    QFETCH(QList<bool>, visible);
    {
        QSettings settings;
        settings.beginGroup("MRU");
        for (int k = 0; k < 4; ++k) settings.setValue(QString::number(k + 1), values[k]);
    }
    start();
    QCOMPARE(this->captions(), captions);
    QCOMPARE(this->paths(), paths);
    for (int k = 0; k < 4; ++k)
        QCOMPARE(frame_->mnuFileMRU[static_cast<std::size_t>(k)]->isVisible(), visible[k]);
    QVERIFY(frame_->mnuFileBar6->isVisible());
}

void tst_Mru::openingFiveFilesKeepsTheLastFour() {
    start();
    QStringList files;
    for (const char* name : {"a.cog", "b.cog", "c.cog", "d.cog", "e.cog"}) files << write(name);
    for (const QString& f : files) mdlTessary::OpenCogFile(f);
    QCOMPARE(captions(), (QStringList{"&1 e.cog", "&2 d.cog", "&3 c.cog", "&4 b.cog"}));
    QCOMPARE(paths(), (QStringList{files[4], files[3], files[2], files[1]}));
    for (QAction* a : frame_->mnuFileMRU) QVERIFY(a->isVisible());
    QVERIFY(frame_->mnuFileBar6->isVisible());
    stopTessary();
    QCOMPARE(stored(), (QStringList{"e.cog:" + files[4], "d.cog:" + files[3], "c.cog:" + files[2],
                                    "b.cog:" + files[1]}));
}

void tst_Mru::titleInSlot2MovesToTheTop() {
    start();
    for (const char* name : {"d.cog", "c.cog", "b.cog", "a.cog"}) mdlTessary::OpenCogFile(write(name));
    QCOMPARE(captions(), (QStringList{"&1 a.cog", "&2 b.cog", "&3 c.cog", "&4 d.cog"}));
    mdlTessary::OpenCogFile(dir_.filePath("c.cog"));
    QCOMPARE(captions(), (QStringList{"&1 c.cog", "&2 a.cog", "&3 b.cog", "&4 d.cog"}));
}

void tst_Mru::sameTitleFromAnotherDirectoryKeepsTheFirst() {
    start();
    const QString first = write("one/x.cog");
    const QString second = write("two/x.cog");
    mdlTessary::OpenCogFile(first);
    mdlTessary::OpenCogFile(second);
    QCOMPARE(captions(), (QStringList{"&1 x.cog", "&2 ", "&3 ", "&4 "}));
    QCOMPARE(paths()[0], first);
}

void tst_Mru::capitalisedTitleIsAnotherEntry() {
    start();
    mdlTessary::OpenCogFile(write("x.cog"));
    mdlTessary::OpenCogFile(write("X.COG"));
    QCOMPARE(captions(), (QStringList{"&1 X.COG", "&2 x.cog", "&3 ", "&4 "}));
}

void tst_Mru::savingAddsTheFile() {
    start();
    const QString path = dir_.filePath("saved.cog");
    dialogs_.saveAnswers << path;
    frame_->mnuFileSave_Click(); // the blank window: Save As
    QCOMPARE(captions()[0], QStringLiteral("&1 saved.cog"));
    QCOMPARE(paths()[0], path);
}

void tst_Mru::clickingAnEntryReopensTheFile() {
    start();
    const QString a = write("a.cog", "alpha\r\n");
    const QString b = write("b.cog", "beta\r\n");
    mdlTessary::OpenCogFile(a);
    mdlTessary::OpenCogFile(b);
    const int before = mdlTessary::colCogs.count();
    frame_->mnuFileMRU[1]->trigger(); // a.cog
    QCOMPARE(mdlTessary::colCogs.count(), before + 1);
    frmTessary* w = cogWindow(before + 1);
    QCOMPARE(textOf(w), QByteArray("alpha\r\n"));
    QCOMPARE(w->strFile, a);
    QCOMPARE(w->strFileTitle, QStringLiteral("a.cog"));
    QCOMPARE(w->Caption(), QStringLiteral("a.cog"));
    QVERIFY(!w->bMod);
    QCOMPARE(captions(), (QStringList{"&1 a.cog", "&2 b.cog", "&3 ", "&4 "}));
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
    QCOMPARE(captions()[0], QStringLiteral("&1 a.cog"));
    QCOMPARE(paths()[0], a);
}

void tst_Mru::storedValuesReadBackTheSame() {
    start();
    const QString odd = write("dir:with:colons/my:file&.cog");
    mdlTessary::OpenCogFile(odd);
    QCOMPARE(captions()[0], QStringLiteral("&1 my:file&&.cog"));
    stopTessary();
    const QString value = stored()[0];
    QCOMPARE(value, "my:file&.cog:" + odd);
    prepareTessaryTest(); // empties the store; the next start finds only the value written
    {
        QSettings settings;
        settings.beginGroup("MRU");
        settings.setValue("1", value);
    }
    start();
    QCOMPARE(captions()[0], QStringLiteral("&1 my:file&&.cog"));
    QCOMPARE(paths()[0], odd);
    frame_->mnuFileMRU_Click(0);
    QVERIFY(dialogs_.messages.isEmpty());
    QCOMPARE(cogWindow(mdlTessary::colCogs.count())->strFile, odd);
}

// The settings store lives in a directory of its own, made for this run.
int main(int argc, char** argv) {
    QTemporaryDir config;
    if (!config.isValid()) return 1;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Mru test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_mru.moc"
