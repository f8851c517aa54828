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

namespace {

QString stored(const QString& key) {
    return QSettings().value("Defaults/" + key, "(missing)").toString();
}

// 15 twips a pixel.
constexpr int px(int twips) {
    return twips / 15;
}

void showExposed(QWidget* w) {
    w->show();
    QVERIFY(QTest::qWaitForWindowExposed(w));
}

} // namespace

class tst_Options : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QDesktopServices::setUrlHandler("mailto", &links_, "open");
        QDesktopServices::setUrlHandler("https", &links_, "open");
        prepareTessaryTest();
        QVERIFY(QSettings().fileName().startsWith(QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + "/"));
    }
    void cleanupTestCase() {
        QDesktopServices::unsetUrlHandler("mailto");
        QDesktopServices::unsetUrlHandler("https");
    }
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        links_.opened.clear();
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
        QVERIFY(dir_.isValid());
    }
    void cleanup() { stopTessary(); }

    void fontAppliesToEveryWindowAndIsStored_data() {
        QTest::addColumn<double>("points");
        QTest::addColumn<bool>("bold");
        QTest::addColumn<bool>("italic");
        QTest::addColumn<int>("size");
        QTest::newRow("10.5 rounds to 10") << 10.5 << true << false << 10;
        QTest::newRow("11.5 rounds to 12") << 11.5 << false << true << 12;
    }
    void fontAppliesToEveryWindowAndIsStored() {
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
        QCOMPARE(mdlTessary::DefFontName, chosen.family());
        QCOMPARE(int(mdlTessary::DefFontSize), size);
        QCOMPARE(mdlTessary::DefFontBold, bold);
        QCOMPARE(mdlTessary::DefFontItalic, italic);
        frame_->mnuFileNew_Click(); // a window opened later gets the font too
        QCOMPARE(mdlTessary::colCogs.count(), 3);
        for (int i = 1; i <= 3; ++i) {
            const QFont f = cogWindow(i)->txtMain->font();
            QCOMPARE(f.family(), chosen.family());
            QCOMPARE(f.pointSize(), size);
            QCOMPARE(f.bold(), bold);
            QCOMPARE(f.italic(), italic);
        }
        const auto text = [](bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); };
        QCOMPARE((QStringList{stored("DefFontName"), stored("DefFontSize"), stored("DefFontBold"),
                              stored("DefFontItalic")}),
                 (QStringList{chosen.family(), QString::number(size), text(bold), text(italic)}));
    }
    void cancelledFontDialogChangesNothing() {
        frame_->mnuViewFont_Click(); // no answer: cancelled
        QCOMPARE(mdlTessary::DefFontName, QStringLiteral("Courier New"));
        QCOMPARE(int(mdlTessary::DefFontSize), 8);
        QCOMPARE(cogWindow(1)->txtMain->font().pointSize(), 8);
        QCOMPARE(stored("DefFontSize"), QStringLiteral("(missing)"));
    }

    void applyThenCancelKeepsTheValueUntilTheEnd_data() {
        QTest::addColumn<QString>("buttons"); // pressed in order: a apply, o OK, c cancel, e Esc
        QTest::addColumn<bool>("applied");
        QTest::newRow("cancel without apply") << "c" << false;
        QTest::newRow("Esc without apply") << "e" << false;
        QTest::newRow("apply then cancel") << "ac" << true;
        QTest::newRow("apply then Esc") << "ae" << true;
        QTest::newRow("OK") << "o" << true;
    }
    void applyThenCancelKeepsTheValueUntilTheEnd() {
        QFETCH(QString, buttons);
        QFETCH(bool, applied);
        mdlTessary::DefOpenDir = "/old/open";
        mdlTessary::DefSaveDir = "/old/save";
        frmOptions options(frame_);
        showExposed(&options);
        QCOMPARE(options.tbsOptions->tabText(0), QStringLiteral("Defaults"));
        QCOMPARE(options.txtDefOpenDir->text(), QStringLiteral("/old/open"));
        QCOMPARE(options.txtDefSaveDir->text(), QStringLiteral("/old/save"));
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
        QCOMPARE(mdlTessary::DefOpenDir, applied ? "/new/open" : "/old/open");
        QCOMPARE(mdlTessary::DefSaveDir, applied ? "" : "/old/save");
        QCOMPARE(stored("DefOpenDir"), QStringLiteral("(missing)")); // stored only when the program ends
        options.setParent(nullptr);                                  // outlives the frame
        stopTessary();
        QCOMPARE(stored("DefOpenDir"), mdlTessary::DefOpenDir);
        QCOMPARE(stored("DefSaveDir"), mdlTessary::DefSaveDir);
    }
    void ctrlTabSelectsTheOnlyTab_data() {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("switches");
        QTest::newRow("Ctrl+Tab") << int(Qt::ControlModifier) << true;
        QTest::newRow("Ctrl+Shift+Tab") << int(Qt::ControlModifier | Qt::ShiftModifier) << true;
        QTest::newRow("Ctrl+Alt+Tab: Alt ignored") << int(Qt::ControlModifier | Qt::AltModifier) << true;
        QTest::newRow("plain Tab moves the focus only") << int(Qt::NoModifier) << false;
    }
    void ctrlTabSelectsTheOnlyTab() {
        QFETCH(int, modifiers);
        QFETCH(bool, switches);
        frmOptions options(frame_);
        showExposed(&options);
        options.txtDefOpenDir->setFocus();
        const auto m = Qt::KeyboardModifiers(modifiers);
        QTest::keyClick(options.txtDefOpenDir, m & Qt::ShiftModifier ? Qt::Key_Backtab : Qt::Key_Tab, m);
        QCOMPARE(options.tbsOptions->currentIndex(), 0);
        // Selecting the tab shows its page, "Author Info", in front of "Open/Save".
        QCOMPARE(options.picOptions[0]->x(), px(switches ? 210 : -20000));
        QCOMPARE(options.picOptions[1]->x(), px(240));
        if (!switches) return;
        QVERIFY(options.picOptions[0]->isEnabled());
        QWidget* front = options.childAt(options.picOptions[1]->geometry().center());
        QVERIFY(front == options.picOptions[0] || options.picOptions[0]->isAncestorOf(front));
    }

    void chooserStartsAtTheFieldsDirectory() {
        QVERIFY(QDir(dir_.path()).mkpath("beta"));
        QVERIFY(QDir(dir_.path()).mkpath("alpha"));
        const QString base = QFileInfo(dir_.path()).canonicalFilePath();
        frmOptions options(frame_);
        options.txtDefSaveDir->setText(base);
        options.txtDefOpenDir->setText(base + "/not/there");
        frmDir chooser(&options);
        chooser.SetDir(1);
        QCOMPARE(chooser.txtDir->text(), base);
        QCOMPARE(chooser.dir1Path(), base);
        QStringList shown;
        for (int i = 0; i < chooser.Dir1->count(); ++i) shown << chooser.Dir1->item(i)->text();
        QCOMPARE(shown, (QStringList{"[..]", "[alpha]", "[beta]"}));
        // The volume list holds the mounted volumes and shows the one holding the directory.
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
        // A field naming no directory is shown as it is, the list at the nearest existing one.
        chooser.SetDir(0);
        QCOMPARE(chooser.txtDir->text(), base + "/not/there");
        QCOMPARE(chooser.dir1Path(), base);
        chooser.cmdCancel_Click();
        QCOMPARE(options.txtDefOpenDir->text(), base + "/not/there");
    }
    void chooserFillsOnlyItsOwnField_data() {
        QTest::addColumn<int>("field");
        QTest::newRow("open") << 0;
        QTest::newRow("save") << 1;
        QTest::newRow("extraction") << 2;
    }
    void chooserFillsOnlyItsOwnField() {
        QFETCH(int, field);
        mdlTessary::DefOpenDir = "/o";
        mdlTessary::DefSaveDir = "/s";
        frmOptions options(frame_);
        frmDir chooser(&options);
        chooser.SetDir(field);
        chooser.txtDir->setText("/typed/by/hand");
        chooser.cmdOK_Click();
        QStringList expected{"/o", "/s", ""};
        expected[field] = "/typed/by/hand";
        QCOMPARE((QStringList{options.txtDefOpenDir->text(), options.txtDefSaveDir->text(),
                              options.txtDefExtDir->text()}),
                 expected);
        // Nothing is stored until Apply or OK, and the extraction directory never is.
        QCOMPARE(mdlTessary::DefOpenDir, QStringLiteral("/o"));
        options.cmdOK_Click();
        QCOMPARE(mdlTessary::DefOpenDir, expected[0]);
        QCOMPARE(mdlTessary::DefSaveDir, expected[1]);
    }

    void aboutShowsTheVersionAndOpensItsLinks() {
        frmAbout about(frame_);
        QCOMPARE(about.lblVersion->text(), QStringLiteral("Tessary version 0.2.0b"));
        QCOMPARE(about.lblEmail->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(about.lblWebsite->cursor().shape(), Qt::PointingHandCursor);
        showExposed(&about);
        QTest::mouseClick(about.lblEmail, Qt::LeftButton);
        QTest::mouseClick(about.lblWebsite, Qt::LeftButton);
        QCOMPARE(links_.opened.size(), 2);
        QCOMPARE(links_.opened[0].scheme(), QStringLiteral("mailto"));
        QVERIFY(about.lblEmail->text().contains('@'));
        QCOMPARE(links_.opened[0].path(), about.lblEmail->text());
        QCOMPARE(links_.opened[0].query(QUrl::FullyDecoded), QStringLiteral("subject=Tessary v0.2.0b"));
        QVERIFY(about.lblWebsite->text().startsWith("https://"));
        QCOMPARE(links_.opened[1], QUrl(about.lblWebsite->text()));
        // Link and text clicks leave the box open; a click outside its controls closes it.
        QTest::mouseClick(about.lblAbout, Qt::LeftButton);
        QTest::mouseClick(about.lblVersion, Qt::LeftButton);
        QVERIFY(about.isVisible());
        const QPoint corner(3, about.height() - 3);
        QVERIFY(!about.childAt(corner));
        QTest::mouseClick(&about, Qt::LeftButton, {}, corner);
        QVERIFY(!about.isVisible());
        QCOMPARE(links_.opened.size(), 2);
    }
    void helpMenuShowsTheAboutBoxModally() {
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

private:
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
    QTemporaryDir dir_;
    LinkRecorder links_;
};

TESSARY_TEST_MAIN(tst_Options)

#include "tst_options.moc"
