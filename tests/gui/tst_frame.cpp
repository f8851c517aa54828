// The frame: start-up with its settings and command line, the menus, windows, drops, recent files
// and fonts (sessions under tests/cases/frame); the Options dialog with its directory chooser and
// the About box; a second start handing its path over; the installed program.
#include "harness.h"

#include "app/ui/OpenRequestServer.h"
#include "app/ui/frmDir.h"
#include "app/ui/frmOptions.h"

#include <QDesktopServices>
#include <QLocalSocket>
#include <QProcess>
#include <QStandardPaths>
#include <QTabBar>

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

// Starts the real program with args; true when it ended at once, successfully.
bool secondStart(const QStringList& args, const QString& workingDirectory = {}) {
    QProcess second;
    second.setWorkingDirectory(workingDirectory);
    second.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), args);
    // The frame answers from this event loop, so the wait must keep it running.
    if (!QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, 15000)) {
        second.kill();
        second.waitForFinished(5000);
        return false;
    }
    return second.exitStatus() == QProcess::NormalExit && second.exitCode() == 0;
}

// The hand-over socket's name, as the program finds it.
QString serverName() {
    QString problem;
    return openrequests::serverName(problem);
}

} // namespace

class tst_Frame : public QObject {
    Q_OBJECT
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
    QTemporaryDir dir_;
    LinkRecorder links_;

    void start() {
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
    }

private slots:
    void initTestCase() {
        QDesktopServices::setUrlHandler("mailto", &links_, "open");
        QDesktopServices::setUrlHandler("https", &links_, "open");
    }
    void cleanupTestCase() {
        QDesktopServices::unsetUrlHandler("mailto");
        QDesktopServices::unsetUrlHandler("https");
    }
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
    }
    void cleanup() { endSessionTest(); }

    void sessions_data() { cases::listCases({{"frame", {}}}); }
    void sessions() { cases::runCase({{"frame", playSession()}}); }

    void optionsApplyOkAndCancel_data() {
        QTest::addColumn<QString>("buttons"); // pressed in order: a Apply, o OK, c Cancel, e Esc
        QTest::addColumn<bool>("applied");
        QTest::newRow("Cancel without Apply") << "c" << false;
        QTest::newRow("Esc without Apply") << "e" << false;
        QTest::newRow("Apply, then Cancel") << "ac" << true;
        QTest::newRow("Apply, then Esc") << "ae" << true;
        QTest::newRow("OK") << "o" << true;
    }
    void optionsApplyOkAndCancel() {
        QFETCH(QString, buttons);
        QFETCH(bool, applied);
        start();
        mdlTessary::DefOpenDir = "/old/open";
        mdlTessary::DefSaveDir = "/old/save";
        frmOptions options(frame_);
        options.show();
        QVERIFY(QTest::qWaitForWindowExposed(&options));
        QCOMPARE(options.tbsOptions->tabText(0), QStringLiteral("Defaults"));
        QCOMPARE(options.txtDefSaveDir->text(), QStringLiteral("/old/save"));
        options.txtDefOpenDir->clear();
        QTest::keyClicks(options.txtDefOpenDir, "/new/open");
        options.txtDefSaveDir->clear(); // an empty directory is taken as it is
        for (QChar b : buttons) {
            if (b == 'e')
                QTest::keyClick(options.txtDefOpenDir, Qt::Key_Escape);
            else
                QTest::mouseClick(b == 'a'   ? options.cmdApply
                                  : b == 'o' ? options.cmdOK
                                             : options.cmdCancel,
                                  Qt::LeftButton);
            QCOMPARE(options.isVisible(), b == 'a'); // Apply leaves the dialog open
        }
        QCOMPARE(mdlTessary::DefOpenDir, applied ? "/new/open" : "/old/open");
        QCOMPARE(mdlTessary::DefSaveDir, applied ? "" : "/old/save");
        QCOMPARE(stored("DefOpenDir"), QStringLiteral("(missing)")); // stored only when the program ends
        options.setParent(nullptr);                                  // outlives the frame
        stopTessary();
        QCOMPARE(stored("DefOpenDir"), mdlTessary::DefOpenDir);
        QCOMPARE(stored("DefSaveDir"), mdlTessary::DefSaveDir);
    }
    void optionsCtrlTabSelectsTheOnlyTab_data() {
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("switches");
        QTest::newRow("Ctrl+Tab") << int(Qt::ControlModifier) << true;
        QTest::newRow("Ctrl+Shift+Tab") << int(Qt::ControlModifier | Qt::ShiftModifier) << true;
        QTest::newRow("Ctrl+Alt+Tab: Alt ignored") << int(Qt::ControlModifier | Qt::AltModifier) << true;
        QTest::newRow("plain Tab moves the focus only") << int(Qt::NoModifier) << false;
    }
    void optionsCtrlTabSelectsTheOnlyTab() {
        QFETCH(int, modifiers);
        QFETCH(bool, switches);
        start();
        frmOptions options(frame_);
        options.show();
        QVERIFY(QTest::qWaitForWindowExposed(&options));
        const auto m = Qt::KeyboardModifiers(modifiers);
        QTest::keyClick(options.txtDefOpenDir, m & Qt::ShiftModifier ? Qt::Key_Backtab : Qt::Key_Tab, m);
        QCOMPARE(options.tbsOptions->currentIndex(), 0);
        // Selecting the tab shows its page, "Author Info", in front of "Open/Save" (15 twips a pixel).
        QCOMPARE(options.picOptions[0]->x(), (switches ? 210 : -20000) / 15);
        QCOMPARE(options.picOptions[1]->x(), 240 / 15);
        QWidget* front = options.childAt(options.picOptions[1]->geometry().center());
        QCOMPARE(front == options.picOptions[0] || options.picOptions[0]->isAncestorOf(front), switches);
    }
    void chooserStartsAtTheFieldsDirectory() {
        start();
        QVERIFY(QDir(dir_.path()).mkpath("beta") && QDir(dir_.path()).mkpath("alpha"));
        const QString base = QFileInfo(dir_.path()).canonicalFilePath();
        frmOptions options(frame_);
        options.txtDefSaveDir->setText(base);
        options.txtDefOpenDir->setText(base + "/not/there");
        frmDir chooser(&options);
        chooser.SetDir(1);
        QCOMPARE(chooser.txtDir->text(), base);
        QStringList shown;
        for (int i = 0; i < chooser.Dir1->count(); ++i) shown << chooser.Dir1->item(i)->text();
        QCOMPARE(shown, (QStringList{"[..]", "[alpha]", "[beta]"}));
        // The volume list holds the mounted volumes and shows the one holding the directory.
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
    void chooserFillsOnlyItsOwnField() {
        start();
        for (int field = 0; field < 3; ++field) {
            mdlTessary::DefOpenDir = "/o";
            mdlTessary::DefSaveDir = "/s";
            frmOptions options(frame_);
            frmDir chooser(&options);
            chooser.SetDir(field);
            chooser.txtDir->setText("/typed");
            chooser.cmdOK_Click();
            QStringList expected{"/o", "/s", ""};
            expected[field] = "/typed";
            QCOMPARE((QStringList{options.txtDefOpenDir->text(), options.txtDefSaveDir->text(),
                                  options.txtDefExtDir->text()}),
                     expected);
            // Nothing is stored until Apply or OK, and the extraction directory never is.
            QCOMPARE(mdlTessary::DefOpenDir, QStringLiteral("/o"));
            options.cmdOK_Click();
            QCOMPARE((QStringList{mdlTessary::DefOpenDir, mdlTessary::DefSaveDir}), expected.mid(0, 2));
        }
    }
    void aboutOpensItsLinksAndClosesOnAClickOutside() {
        start();
        frmAbout about(frame_);
        about.show();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        links_.opened.clear();
        for (QLabel* label : {about.lblEmail, about.lblWebsite}) {
            QCOMPARE(label->cursor().shape(), Qt::PointingHandCursor);
            QCOMPARE(label->width(), label->sizeHint().width()); // only its text reacts
            QTest::mouseClick(label, Qt::LeftButton);
        }
        QCOMPARE(links_.opened.size(), 2);
        QCOMPARE(links_.opened[0].toString(QUrl::FullyDecoded),
                 "mailto:" + about.lblEmail->text() + "?subject=Tessary v0.2.0b");
        QVERIFY(about.lblWebsite->text().startsWith("https://"));
        QCOMPARE(links_.opened[1], QUrl(about.lblWebsite->text()));
        // Clicks on its texts leave the box open; a click outside its controls closes it.
        QTest::mouseClick(about.lblAbout, Qt::LeftButton);
        QTest::mouseClick(about.lblVersion, Qt::LeftButton);
        const QPoint beside(about.lblEmail->geometry().right() + 12, about.lblEmail->geometry().center().y());
        QVERIFY(about.isVisible() && beside.x() < about.width() && !about.childAt(beside));
        QTest::mouseClick(&about, Qt::LeftButton, {}, beside);
        QVERIFY(!about.isVisible());
        QCOMPARE(links_.opened.size(), 2);
    }

    // The running program is this test's frame, listening as the program does; the second start
    // is the real program. The frame first shows the path (the scripted box answers OK), then opens it.
    void secondStartHandsThePathOver_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("relative");
        QTest::newRow("one argument with blanks") << QStringList{"my old cog.cog"} << false;
        QTest::newRow("blanks between arguments kept") << QStringList{"my", "old", "cog.cog"} << false;
        QTest::newRow("relative to the second start") << QStringList{"my old cog.cog"} << true;
    }
    void secondStartHandsThePathOver() {
        QFETCH(QStringList, args);
        QFETCH(bool, relative);
        const QString file = dir_.filePath(QStringLiteral("my old cog.cog"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("symbols\r\nend\r\n") > 0);
        f.close();
        start();
        QVERIFY(frame_->listenForExecuteRequests(serverName()));
        if (!relative) args.first().prepend(dir_.path() + '/');
        QVERIFY(secondStart(args, relative ? dir_.path() : QString()));
        QTRY_COMPARE_WITH_TIMEOUT(mdlTessary::colCogs.count(), 2, 15000);
        QCOMPARE(dialogs_.texts(), QStringList{file});
        QCOMPARE(dialogs_.messages[0].windows, 1);
        QCOMPARE(cogWindow(2)->strFile, file);
        QCOMPARE(textOf(cogWindow(2)), QByteArray("symbols\r\nend\r\n"));
    }

    // A program that was killed leaves its socket behind; the next one takes it over. The killed
    // one is the real program, watched through what it logs: it shows no box at start.
    void socketLeftByAKilledProgramIsTakenOver() {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("tessary.ui.info=true"));
        QProcess first;
        first.setProcessEnvironment(env);
        first.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), {});
        QLocalSocket probe;
        QVERIFY(QTest::qWaitFor(
            [&] {
                probe.connectToServer(serverName());
                return probe.waitForConnected(100) || first.state() == QProcess::NotRunning;
            },
            30000));
        first.kill();
        QVERIFY(first.waitForFinished(5000));
        QVERIFY2(first.readAllStandardError().contains("windows: Cog 1"), "the first start did not start");
        QVERIFY(QFileInfo::exists(serverName())); // left behind
        start();
        QVERIFY2(frame_->listenForExecuteRequests(serverName()), "the socket was not taken over");
        const QString none = dir_.filePath(QStringLiteral("none.cog"));
        QVERIFY(secondStart({none}));
        QTRY_COMPARE_WITH_TIMEOUT(dialogs_.texts().value(0), none, 15000);
    }

    // An installed Tessary, under any prefix, finds its data files: it starts with one blank
    // window and shows no message (a missing reference would be one).
    void installedProgramFindsItsData() {
        const QString cmake = QStandardPaths::findExecutable(QStringLiteral("cmake"));
        if (cmake.isEmpty()) QSKIP("cmake is not on the PATH");
        QTemporaryDir prefix;
        QProcess install;
        install.setProcessChannelMode(QProcess::MergedChannels);
        install.start(cmake, {"--install", TESSARY_BIN_DIR "/..", "--prefix", prefix.path()});
        QVERIFY(install.waitForFinished(120000));
        QVERIFY2(install.exitCode() == 0, install.readAll().constData());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_LOGGING_RULES", "tessary.ui.info=true");
        env.insert("QT_MESSAGE_PATTERN", "%{category}: %{message}");
        QProcess tessary;
        tessary.setProcessEnvironment(env);
        tessary.setWorkingDirectory(dir_.path()); // nowhere near the build tree
        tessary.start(prefix.filePath(QStringLiteral("bin/tessary")), {});
        QString logged;
        QTRY_VERIFY_WITH_TIMEOUT((logged += tessary.readAllStandardError()).contains("windows: Cog 1") ||
                                     tessary.state() == QProcess::NotRunning,
                                 30000);
        tessary.kill();
        tessary.waitForFinished(5000);
        QCOMPARE(logged.split('\n').filter("tessary.ui: "), QStringList{"tessary.ui: windows: Cog 1"});
    }
};

TESSARY_TEST_MAIN(tst_Frame)
#include "tst_frame.moc"
