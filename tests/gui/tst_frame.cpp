// Start-up with its settings and command line, the frame's menus, layout, drops and Window menu,
// and the numbering of editor windows.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// The action captioned caption in the top-level menu captioned menu.
QAction* menuItem(frmMain* frame, const QString& menu, const QString& caption) {
    for (QAction* top : frame->menuBar()->actions())
        if (top->text() == menu && top->menu())
            for (QAction* item : top->menu()->actions())
                if (item->text() == caption) return item;
    return nullptr;
}

// The checkable entries of the Window menu, as shown.
QStringList windowList(frmMain* frame) {
    emit frame->mnuWindow->aboutToShow();
    QStringList listed;
    for (QAction* a : frame->mnuWindow->actions())
        if (a->isCheckable() && a != frame->mnuWindowTabbed)
            listed << a->text() + (a->isChecked() ? "+" : "");
    return listed;
}

} // namespace

class tst_Frame : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void startsWithOneBlankWindowAndTheDefaults() {
        ScriptedDialogs dialogs; // the settings store is empty
        frmMain* frame = startTessary(dialogs);
        QVERIFY(frame);
        QCOMPARE(frame->windowTitle(), QStringLiteral("Tessary - by Varnell"));
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        frmTessary* w = cogWindow(1);
        QCOMPARE(w->Caption(), QStringLiteral("Cog 1"));
        QCOMPARE(w->Tag, QStringLiteral("cog1"));
        QCOMPARE(w->strFile, QStringLiteral("blank"));
        QVERIFY(!w->bMod);
        QFile defaults(QStringLiteral(TESSARY_BIN_DIR "/default.cog"));
        QVERIFY(defaults.open(QIODevice::ReadOnly));
        QCOMPARE(textOf(w), defaults.readAll());
        QCOMPARE(frame->cmbCog->itemText(0), QStringLiteral("Cog 1"));
        QCOMPARE(frame->cmbCog->currentText(), QStringLiteral("Choose a Cog"));
        QVERIFY(frame->tvwCog->isVisibleTo(frame) && !frame->tvwCogE->isVisibleTo(frame));
        QVERIFY(!frame->mnuEdit[2]->isEnabled());
        QVERIFY(!frame->mnuEditChkSyn->isVisible());
        QVERIFY(!w->picMain->isVisibleTo(w) && !w->picCogParams->isVisibleTo(w));
        QCOMPARE(mdlTessary::DefOpenDir, QStringLiteral(TESSARY_BIN_DIR));
        QCOMPARE(mdlTessary::DefSaveDir, QStringLiteral(TESSARY_BIN_DIR));
        QCOMPARE(mdlTessary::DefFontName, QStringLiteral("Courier New"));
        QCOMPARE(mdlTessary::DefFontSize, qint16(8));
        QVERIFY(!mdlTessary::DefFontBold && !mdlTessary::DefFontItalic);
        QCOMPARE(w->txtMain->font().family(), QStringLiteral("Courier New"));
        QCOMPARE(w->txtMain->font().pointSize(), 8);
        QCOMPARE(mdlTessary::colVarTypes.size(), std::size_t(14));
        QVERIFY(dialogs.messages.isEmpty());
        // The text box holds bytes (no code page) and ends lines with CR LF.
        QCOMPARE(w->txtMain->SendScintilla(QsciScintillaBase::SCI_GETCODEPAGE), 0L);
        w->txtMain->setFocus();
        w->txtMain->setSelStart(0);
        QTest::keyClick(w->txtMain, Qt::Key_Return);
        QVERIFY(textOf(w).startsWith("\r\n#"));
    }
    void malformedSettingFallsBack_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("bold");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("openDir");
        const auto row = [](const char* name, const char* key, const QVariant& stored, bool bold = false,
                            int size = 8, const QString& openDir = QStringLiteral(TESSARY_BIN_DIR)) {
            QTest::newRow(name) << QString(key) << stored << bold << size << openDir;
        };
        row("bold: maybe", "DefFontBold", "maybe");
        row("bold: True", "DefFontBold", "True", true);
        row("italic: empty", "DefFontItalic", "");
        row("size: huge", "DefFontSize", "huge");
        row("size: 10.5 rounds to even", "DefFontSize", "10.5", false, 10);
        row("size: 70000 is out of range", "DefFontSize", "70000");
        row("size: 0 cannot be drawn", "DefFontSize", "0");
        row("open dir with a comma", "DefOpenDir", QStringList{"/data/a", "b"}, false, 8, "/data/a, b");
    }
    void malformedSettingFallsBack() {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(bool, bold);
        QFETCH(int, size);
        QFETCH(QString, openDir);
        QSettings().setValue(QStringLiteral("Defaults/") + key, stored);
        ScriptedDialogs dialogs;
        QVERIFY(startTessary(dialogs));
        QCOMPARE(mdlTessary::DefFontBold, bold);
        QVERIFY(!mdlTessary::DefFontItalic);
        QCOMPARE(int(mdlTessary::DefFontSize), size);
        QCOMPARE(mdlTessary::DefOpenDir, openDir);
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        QCOMPARE(cogWindow(1)->txtMain->font().pointSize(), size);
        QCOMPARE(cogWindow(1)->txtMain->font().bold(), bold);
    }
    void unloadWritesBothDirectories() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        mdlTessary::DefSaveDir = QStringLiteral("/srv/cogs out");
        frame->mnuFileExit_Click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!mdlTessary::frame());
        QSettings settings;
        settings.beginGroup(QStringLiteral("Defaults"));
        // Written whether or not they changed; the font is not written here.
        QCOMPARE(settings.childKeys(),
                 (QStringList{QStringLiteral("DefOpenDir"), QStringLiteral("DefSaveDir")}));
        QCOMPARE(settings.value(QStringLiteral("DefOpenDir")).toString(), QStringLiteral(TESSARY_BIN_DIR));
        QVERIFY(startTessary(dialogs)); // the next start reads them back
        QCOMPARE(mdlTessary::DefSaveDir, QStringLiteral("/srv/cogs out"));
    }
    void commandLineIsOnePath_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("quoted");
        QTest::newRow("blanks kept") << QStringLiteral("my old  cog.cog") << false;
        QTest::newRow("quotation marks kept") << QStringLiteral("quoted.cog") << true;
    }
    void commandLineIsOnePath() {
        QFETCH(QString, name);
        QFETCH(bool, quoted);
        QTemporaryDir dir;
        const QString file = dir.filePath(name);
        writeFile(file, "# given on the command line\r\nend\r\n");
        const QString commandLine = quoted ? QLatin1Char('"') + file + QLatin1Char('"') : file;
        ScriptedDialogs dialogs;
        QVERIFY(startTessary(dialogs, commandLine));
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        frmTessary* w = cogWindow(1);
        QCOMPARE(w->strFile, quoted ? QStringLiteral("blank") : commandLine);
        if (quoted) {
            // Not a file name: the window stays, bound to no file, and the user is told which path failed.
            QCOMPARE(dialogs.messages.size(), 1);
            QVERIFY(dialogs.messages[0].text.contains(commandLine));
            QCOMPARE(w->Caption(), QStringLiteral("Cog 1"));
        } else {
            QVERIFY(dialogs.messages.isEmpty());
            QCOMPARE(w->Caption(), name);
            QCOMPARE(textOf(w), QByteArray("# given on the command line\r\nend\r\n"));
            QVERIFY(!w->bMod);
        }
    }
    void menuItems_data() {
        QTest::addColumn<QStringList>("items"); // "caption" or "caption=shortcut", in menu order
        QTest::newRow("&File") << QStringList{"&New=Ctrl+N",   "&Open=Ctrl+O",  "Open &Template",
                                              "&Close",        "&Save=Ctrl+S",  "Save &As=F11",
                                              "Save Al&l=F12", "&Print=Ctrl+P", "E&xit"};
        QTest::newRow("&Edit") << QStringList{"Match &Brace=Ctrl+B", "&Find Word=Ctrl+F", "Find &Next=F3",
                                              "&Replace=Ctrl+R",     "Replace &All",      "Check &Syntax=F2"};
        QTest::newRow("&Tree") << QStringList{"&Collapse All", "&Expand All", "&Find=F7", "Find &Next=F8"};
        QTest::newRow("&View") << QStringList{"&Fonts", "&Options", "&Refresh Tree=F5"};
        QTest::newRow("&Window") << QStringList{"&Cascade", "Tile &Horizontal", "Tile &Vertical",
                                                "&Arrange Icons"};
        QTest::newRow("&Help") << QStringList{"&About"};
    }
    void menuItems() {
        QFETCH(QStringList, items);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        for (const QString& entry : items) {
            QAction* item =
                menuItem(frame, QString::fromLatin1(QTest::currentDataTag()), entry.section('=', 0, 0));
            QVERIFY2(item, qPrintable(entry));
            QCOMPARE(item->shortcut(), QKeySequence::fromString(entry.section('=', 1)));
        }
    }
    void menuShortcutsWorkFromTheEditor() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        QVERIFY(QTest::qWaitForWindowActive(frame));
        frmTessary* w = cogWindow(1);
        w->txtMain->setFocus();
        QTest::keyClick(w->txtMain, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        QCOMPARE(textOf(w), textOf(cogWindow(2))); // the editor did not take the key
        // The hidden Check Syntax item does not react to F2.
        QSignalSpy hidden(frame->mnuEditChkSyn, &QAction::triggered);
        cogWindow(2)->txtMain->setFocus();
        QTest::keyClick(cogWindow(2)->txtMain, Qt::Key_F2);
        QCOMPARE(hidden.count(), 0);
    }
    void numberingAfterClosingAMiddleWindow_data() {
        QTest::addColumn<QStringList>("closed");
        QTest::addColumn<QString>("newTag");
        QTest::newRow("newest closed: its number again") << QStringList{"cog4"} << QStringLiteral("cog4");
        QTest::newRow("middle closed: past the taken number")
            << QStringList{"cog2"} << QStringLiteral("cog5");
        QTest::newRow("first closed") << QStringList{"cog1"} << QStringLiteral("cog5");
        QTest::newRow("two middle ones closed") << QStringList{"cog2", "cog3"} << QStringLiteral("cog3");
    }
    void numberingAfterClosingAMiddleWindow() {
        QFETCH(QStringList, closed);
        QFETCH(QString, newTag);
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        for (int i = 0; i < 3; ++i) frame->mnuFileNew_Click();
        for (const QString& tag : closed) {
            mdlTessary::strCurCog = tag;
            frame->mnuFileClose_Click();
        }
        frame->mnuFileNew_Click();
        const int count = 5 - int(closed.size());
        QCOMPARE(mdlTessary::colCogs.count(), count);
        QCOMPARE(mdlTessary::strCurCog, newTag);
        QStringList tags;
        for (int i = 1; i <= count; ++i) tags << cogWindow(i)->Tag;
        QCOMPARE(tags.last(), newTag);
        tags.removeDuplicates();
        QCOMPARE(tags.size(), count);
        QCOMPARE(frame->cmbCog->count(), count);
        QCOMPARE(cogWindow(count)->Caption(), QStringLiteral("Cog ") + newTag.mid(3));
    }
    void droppedFilesOpenOnlyTheFirst() {
        QTemporaryDir dir;
        QList<QUrl> urls;
        for (const char* name : {"first.cog", "second.cog", "third.cog"}) {
            writeFile(dir.filePath(name), name);
            urls << QUrl::fromLocalFile(dir.filePath(name));
        }
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        QMimeData data;
        data.setUrls(urls);
        // Dragged over the editor or the frame, the files reach the frame, which opens them on the drop.
        const QPointF at(frame->width() / 2, frame->height() / 2);
        for (QWidget* target : {cogWindow(1)->txtMain->viewport(), static_cast<QWidget*>(frame)}) {
            QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &enter);
            QVERIFY(enter.isAccepted());
        }
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(frame, &drop);
        QTRY_COMPARE(mdlTessary::colCogs.count(), 2);
        QTest::qWait(50);
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        QCOMPARE(cogWindow(2)->Caption(), QStringLiteral("first.cog"));
        QCOMPARE(textOf(cogWindow(2)), QByteArray("first.cog"));
    }
    void windowMenuListsTheWindows() {
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs);
        frame->mnuFileNew_Click();
        frame->mnuFileNew_Click();
        QCOMPARE(windowList(frame), (QStringList{"&1 Cog 1", "&2 Cog 2", "&3 Cog 3+"}));
        for (QAction* a : frame->mnuWindow->actions())
            if (a->text() == QLatin1String("&2 Cog 2")) a->trigger();
        QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog2"));
        frame->mnuFileClose_Click(); // closing a window takes it off the list
        QCOMPARE(windowList(frame).size(), 2);
        QVERIFY(!windowList(frame).join(' ').contains(QStringLiteral("Cog 2")));
    }
};

TESSARY_TEST_MAIN(tst_Frame)
#include "tst_frame.moc"
