// The font command, the Options dialog with its directory chooser, and the About box.
#include "harness.h"

#include "app/ui/frmAbout.h"
#include "app/ui/frmDir.h"
#include "app/ui/frmOptions.h"

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

// Receives the links the program asks the desktop to open.
class LinkRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

class tst_Options : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup() { stopTessary(); }

    void fontAppliesToEveryWindowAndIsStored_data();
    void fontAppliesToEveryWindowAndIsStored();
    void cancelledFontDialogChangesNothing();

    void optionsShowTheDirectories();
    void applyThenCancelKeepsTheValue_data();
    void applyThenCancelKeepsTheValue();
    void directoriesReachTheStoreWhenTheProgramEnds();
    void ctrlTabSelectsTheOnlyTab_data();
    void ctrlTabSelectsTheOnlyTab();
    void plainTabDoesNotSwitchPages();

    void chooserStartsAtTheFieldsDirectory();
    void chooserFillsOnlyItsOwnField_data();
    void chooserFillsOnlyItsOwnField();
    void chooserKeepsAFieldNamingNoDirectory();

    void aboutShowsTheVersion();
    void aboutLinksOpenThroughTheDesktop();
    void aboutClosesOnAClickOutsideItsControls();
    void helpMenuShowsTheAboutBoxModally();

private:
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
    QTemporaryDir dir_;
    LinkRecorder links_;
};

namespace {

QString stored(const QString& key) {
    QSettings settings;
    return settings.value("Defaults/" + key, "(missing)").toString();
}

// 15 twips a pixel.
constexpr int px(int twips) {
    return twips / 15;
}

} // namespace

void tst_Options::initTestCase() {
    QDesktopServices::setUrlHandler("mailto", &links_, "open");
    QDesktopServices::setUrlHandler("https", &links_, "open");
    prepareTessaryTest();
    QVERIFY(QSettings().fileName().startsWith(QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + "/"));
}

void tst_Options::cleanupTestCase() {
    QDesktopServices::unsetUrlHandler("mailto");
    QDesktopServices::unsetUrlHandler("https");
}

void tst_Options::init() {
    prepareTessaryTest();
    dialogs_ = ScriptedDialogs();
    links_.opened.clear();
    frame_ = startTessary(dialogs_);
    QVERIFY(frame_);
    QVERIFY(dir_.isValid());
}

void tst_Options::fontAppliesToEveryWindowAndIsStored_data() {
    QTest::addColumn<double>("points");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<int>("size");
    QTest::newRow("10.5 rounds to 10") << 10.5 << true << false << 10;
    QTest::newRow("11.5 rounds to 12") << 11.5 << false << true << 12;
    QTest::newRow("whole size") << 14.0 << false << false << 14;
}

void tst_Options::fontAppliesToEveryWindowAndIsStored() {
    QFETCH(double, points);
    QFETCH(bool, bold);
    QFETCH(bool, italic);
    QFETCH(int, size);
    frame_->mnuFileNew_Click();
    QFont chosen(QStringLiteral("DejaVu Sans Mono"));
    chosen.setPointSizeF(points);
    chosen.setBold(bold);
    chosen.setItalic(italic);
    dialogs_.fontAnswers << chosen;
    frame_->mnuViewFont_Click();

    QCOMPARE(mdlTessary::DefFontName, QStringLiteral("DejaVu Sans Mono"));
    QCOMPARE(int(mdlTessary::DefFontSize), size);
    QCOMPARE(mdlTessary::DefFontBold, bold);
    QCOMPARE(mdlTessary::DefFontItalic, italic);
    frame_->mnuFileNew_Click(); // a window opened later gets the font too
    QCOMPARE(mdlTessary::colCogs.count(), 3);
    for (int i = 1; i <= 3; ++i) {
        const QFont f = cogWindow(i)->txtMain->font();
        QCOMPARE(f.family(), QStringLiteral("DejaVu Sans Mono"));
        QCOMPARE(f.pointSize(), size);
        QCOMPARE(f.bold(), bold);
        QCOMPARE(f.italic(), italic);
    }
    QCOMPARE(stored("DefFontName"), QStringLiteral("DejaVu Sans Mono"));
    QCOMPARE(stored("DefFontSize"), QString::number(size));
    QCOMPARE(stored("DefFontBold"), bold ? QStringLiteral("True") : QStringLiteral("False"));
    QCOMPARE(stored("DefFontItalic"), italic ? QStringLiteral("True") : QStringLiteral("False"));
}

void tst_Options::cancelledFontDialogChangesNothing() {
    frame_->mnuViewFont_Click(); // no answer: cancelled
    QCOMPARE(mdlTessary::DefFontName, QStringLiteral("Courier New"));
    QCOMPARE(int(mdlTessary::DefFontSize), 8);
    QCOMPARE(cogWindow(1)->txtMain->font().pointSize(), 8);
    QCOMPARE(stored("DefFontSize"), QStringLiteral("(missing)"));
    QCOMPARE(stored("DefFontName"), QStringLiteral("(missing)"));
}

void tst_Options::optionsShowTheDirectories() {
    mdlTessary::DefOpenDir = "/open/here";
    mdlTessary::DefSaveDir = "/save/there";
    frmOptions options(frame_);
    QCOMPARE(options.windowTitle(), QStringLiteral("Options"));
    QCOMPARE(options.tbsOptions->count(), 1);
    QCOMPARE(options.tbsOptions->tabText(0), QStringLiteral("Defaults"));
    QCOMPARE(options.txtDefOpenDir->text(), QStringLiteral("/open/here"));
    QCOMPARE(options.txtDefSaveDir->text(), QStringLiteral("/save/there"));
    QCOMPARE(options.txtDefExtDir->text(), QString());
    QCOMPARE(options.txtAuthName->text(), QStringLiteral("Your Name Here"));
    QCOMPARE(options.txtAuthEmail->text(), QStringLiteral("Your E-mail addy Here"));
    QCOMPARE(options.txtAuthWebsite->text(), QStringLiteral("http://"));
    QCOMPARE(options.cmdOK->text(), QStringLiteral("OK"));
    QCOMPARE(options.cmdCancel->text(), QStringLiteral("Cancel"));
    QCOMPARE(options.cmdApply->text(), QStringLiteral("Apply"));
    // The "Open/Save" page shows; the others lie outside the dialog.
    QCOMPARE(options.picOptions[1]->x(), px(240));
    for (int k : {0, 2, 3}) QCOMPARE(options.picOptions[static_cast<std::size_t>(k)]->x(), px(-20000));
    for (const auto* page : options.picOptions) {
        QCOMPARE(page->y(), px(480));
        QCOMPARE(page->width(), px(5685));
    }
}

void tst_Options::applyThenCancelKeepsTheValue_data() {
    QTest::addColumn<QString>("buttons"); // pressed in order: a apply, o OK, c cancel, e Esc
    QTest::addColumn<QString>("openDir");
    QTest::addColumn<QString>("saveDir");
    QTest::newRow("cancel without apply") << "c"
                                          << "/old/open"
                                          << "/old/save";
    QTest::newRow("Esc without apply") << "e"
                                       << "/old/open"
                                       << "/old/save";
    QTest::newRow("apply then cancel") << "ac"
                                       << "/new/open"
                                       << "";
    QTest::newRow("apply then Esc") << "ae"
                                    << "/new/open"
                                    << "";
    QTest::newRow("OK") << "o"
                        << "/new/open"
                        << "";
}

void tst_Options::applyThenCancelKeepsTheValue() {
    QFETCH(QString, buttons);
    QFETCH(QString, openDir);
    QFETCH(QString, saveDir);
    mdlTessary::DefOpenDir = "/old/open";
    mdlTessary::DefSaveDir = "/old/save";
    frmOptions options(frame_);
    options.show();
    QVERIFY(QTest::qWaitForWindowExposed(&options));
    options.txtDefOpenDir->clear();
    QTest::keyClicks(options.txtDefOpenDir, "/new/open");
    options.txtDefSaveDir->clear(); // an empty directory is taken as it is
    for (QChar b : buttons) {
        if (b == 'a') QTest::mouseClick(options.cmdApply, Qt::LeftButton);
        if (b == 'o') QTest::mouseClick(options.cmdOK, Qt::LeftButton);
        if (b == 'c') QTest::mouseClick(options.cmdCancel, Qt::LeftButton);
        if (b == 'e') QTest::keyClick(options.txtDefOpenDir, Qt::Key_Escape);
        if (b == 'a') QVERIFY(options.isVisible()); // Apply leaves the dialog open
    }
    QVERIFY(!options.isVisible());
    QCOMPARE(mdlTessary::DefOpenDir, openDir);
    QCOMPARE(mdlTessary::DefSaveDir, saveDir);
    QCOMPARE(stored("DefOpenDir"), QStringLiteral("(missing)")); // stored only when the program ends
}

void tst_Options::directoriesReachTheStoreWhenTheProgramEnds() {
    {
        frmOptions options(frame_);
        options.txtDefOpenDir->setText("/cogs/in");
        options.txtDefSaveDir->setText("/cogs/out");
        options.cmdOK_Click();
    }
    stopTessary();
    QCOMPARE(stored("DefOpenDir"), QStringLiteral("/cogs/in"));
    QCOMPARE(stored("DefSaveDir"), QStringLiteral("/cogs/out"));
}

void tst_Options::ctrlTabSelectsTheOnlyTab_data() {
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Ctrl+Tab") << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+Shift+Tab") << int(Qt::ControlModifier | Qt::ShiftModifier);
    QTest::newRow("Ctrl+Alt+Tab: Alt ignored") << int(Qt::ControlModifier | Qt::AltModifier);
}

void tst_Options::ctrlTabSelectsTheOnlyTab() {
    QFETCH(int, modifiers);
    frmOptions options(frame_);
    options.show();
    QVERIFY(QTest::qWaitForWindowExposed(&options));
    options.txtDefOpenDir->setFocus();
    const auto m = Qt::KeyboardModifiers(modifiers);
    QTest::keyClick(options.txtDefOpenDir, m & Qt::ShiftModifier ? Qt::Key_Backtab : Qt::Key_Tab, m);
    QCOMPARE(options.tbsOptions->currentIndex(), 0);
    // Selecting the tab shows its page, "Author Info", in front of "Open/Save".
    QCOMPARE(options.picOptions[0]->x(), px(210));
    QVERIFY(options.picOptions[0]->isEnabled());
    QCOMPARE(options.picOptions[1]->x(), px(240));
    QWidget* front = options.childAt(options.picOptions[1]->geometry().center());
    QVERIFY(front == options.picOptions[0] || options.picOptions[0]->isAncestorOf(front));
}

void tst_Options::plainTabDoesNotSwitchPages() {
    frmOptions options(frame_);
    options.show();
    QVERIFY(QTest::qWaitForWindowExposed(&options));
    options.txtDefOpenDir->setFocus();
    QTest::keyClick(options.txtDefOpenDir, Qt::Key_Tab);
    QCOMPARE(options.picOptions[0]->x(), px(-20000));
    QVERIFY(options.Form_KeyDown(9, 2));
    QVERIFY(!options.Form_KeyDown(9, 0));
    QVERIFY(!options.Form_KeyDown(9, 1));
    QVERIFY(!options.Form_KeyDown(13, 2));
}

void tst_Options::chooserStartsAtTheFieldsDirectory() {
    QVERIFY(QDir(dir_.path()).mkpath("beta"));
    QVERIFY(QDir(dir_.path()).mkpath("alpha"));
    const QString base = QFileInfo(dir_.path()).canonicalFilePath();
    frmOptions options(frame_);
    options.txtDefSaveDir->setText(base);
    frmDir chooser(&options);
    QCOMPARE(chooser.windowTitle(), QStringLiteral("Choose Directory"));
    QCOMPARE(chooser.cmdOk->text(), QStringLiteral("Ok"));
    QCOMPARE(chooser.cmdCancel->text(), QStringLiteral("Cancel"));
    chooser.SetDir(1);
    QCOMPARE(chooser.txtDir->text(), base);
    QCOMPARE(chooser.dir1Path(), base);
    QStringList shown;
    for (int i = 0; i < chooser.Dir1->count(); ++i) shown << chooser.Dir1->item(i)->text();
    QCOMPARE(shown, (QStringList{"[..]", "[alpha]", "[beta]"}));
    // The volume list holds the mounted volumes and shows the one holding the directory.
    QVERIFY(chooser.Drive1->count() >= 1);
    QVERIFY(chooser.Drive1->currentIndex() >= 0);
    QVERIFY(base.startsWith(chooser.Drive1->currentText()));
    // Opening a directory shows it and puts its path in the text box.
    emit chooser.Dir1->itemActivated(chooser.Dir1->item(1));
    QCOMPARE(chooser.txtDir->text(), base + "/alpha");
    emit chooser.Dir1->itemActivated(chooser.Dir1->item(0));
    QCOMPARE(chooser.txtDir->text(), base);
    // Choosing a volume shows its root.
    chooser.Drive1->setCurrentIndex(chooser.Drive1->findText(QDir::rootPath()));
    chooser.Drive1_Change();
    QCOMPARE(chooser.txtDir->text(), QDir::rootPath());
}

void tst_Options::chooserFillsOnlyItsOwnField_data() {
    QTest::addColumn<int>("field");
    QTest::newRow("open") << 0;
    QTest::newRow("save") << 1;
    QTest::newRow("extraction") << 2;
}

void tst_Options::chooserFillsOnlyItsOwnField() {
    QFETCH(int, field);
    mdlTessary::DefOpenDir = "/o";
    mdlTessary::DefSaveDir = "/s";
    frmOptions options(frame_);
    frmDir chooser(&options);
    chooser.SetDir(field);
    chooser.txtDir->setText("/typed/by/hand");
    chooser.cmdOK_Click();
    QStringList boxes{options.txtDefOpenDir->text(), options.txtDefSaveDir->text(),
                      options.txtDefExtDir->text()};
    QStringList expected{"/o", "/s", ""};
    expected[field] = "/typed/by/hand";
    QCOMPARE(boxes, expected);
    // Nothing is stored until Apply or OK, and the extraction directory never is.
    QCOMPARE(mdlTessary::DefOpenDir, QStringLiteral("/o"));
    options.cmdOK_Click();
    QCOMPARE(mdlTessary::DefOpenDir, expected[0]);
    QCOMPARE(mdlTessary::DefSaveDir, expected[1]);
}

void tst_Options::chooserKeepsAFieldNamingNoDirectory() {
    frmOptions options(frame_);
    const QString missing = dir_.path() + "/not/there";
    options.txtDefOpenDir->setText(missing);
    frmDir chooser(&options);
    chooser.SetDir(0);
    QCOMPARE(chooser.txtDir->text(), missing);
    QCOMPARE(chooser.dir1Path(), QFileInfo(dir_.path()).canonicalFilePath());
    chooser.cmdCancel_Click();
    QCOMPARE(options.txtDefOpenDir->text(), missing);
}

void tst_Options::aboutShowsTheVersion() {
    frmAbout about(frame_);
    QCOMPARE(about.windowTitle(), QStringLiteral("About Tessary"));
    QCOMPARE(about.lblVersion->text(), QStringLiteral("Tessary version 0.2.0b"));
    QVERIFY(about.lblAbout->text().size() > 40);
    QVERIFY(about.lblEmail->text().contains('@'));
    QVERIFY(about.lblWebsite->text().startsWith("https://"));
    QCOMPARE(about.lblEmail->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(about.lblWebsite->cursor().shape(), Qt::PointingHandCursor);
}

void tst_Options::aboutLinksOpenThroughTheDesktop() {
    frmAbout about(frame_);
    about.show();
    QVERIFY(QTest::qWaitForWindowExposed(&about));
    QTest::mouseClick(about.lblEmail, Qt::LeftButton);
    QTest::mouseClick(about.lblWebsite, Qt::LeftButton);
    QCOMPARE(links_.opened.size(), 2);
    QCOMPARE(links_.opened[0].scheme(), QStringLiteral("mailto"));
    QCOMPARE(links_.opened[0].path(), about.lblEmail->text());
    QCOMPARE(links_.opened[0].query(QUrl::FullyDecoded), QStringLiteral("subject=Tessary v0.2.0b"));
    QCOMPARE(links_.opened[1], QUrl(about.lblWebsite->text()));
    QVERIFY(about.isVisible()); // a link click does not close the box
}

void tst_Options::aboutClosesOnAClickOutsideItsControls() {
    frmAbout about(frame_);
    about.show();
    QVERIFY(QTest::qWaitForWindowExposed(&about));
    QTest::mouseClick(about.lblAbout, Qt::LeftButton);
    QVERIFY(about.isVisible());
    QTest::mouseClick(about.lblVersion, Qt::LeftButton);
    QVERIFY(about.isVisible());
    const QPoint corner(3, about.height() - 3);
    QVERIFY(!about.childAt(corner));
    QTest::mouseClick(&about, Qt::LeftButton, {}, corner);
    QVERIFY(!about.isVisible());
    QVERIFY(links_.opened.isEmpty());
}

void tst_Options::helpMenuShowsTheAboutBoxModally() {
    QString shown;
    QTimer::singleShot(0, [&] {
        if (auto* about = qobject_cast<frmAbout*>(QApplication::activeModalWidget())) {
            shown = about->lblVersion->text();
            QTest::mouseClick(about, Qt::LeftButton, {}, QPoint(3, 3));
        }
    });
    frame_->mnuHelp[0]->trigger();
    QCoreApplication::processEvents();
    QCOMPARE(shown, QStringLiteral("Tessary version 0.2.0b"));
    QVERIFY(!QApplication::activeModalWidget());
}

// The settings store lives in a directory of its own, made for this run.
int main(int argc, char** argv) {
    QTemporaryDir config;
    if (!config.isValid()) return 1;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    QApplication app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    tst_Options test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_options.moc"
