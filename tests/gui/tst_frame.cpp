// Start-up with its settings and command line, the frame's menus, layout, drops and Window menu,
// and the numbering of editor windows.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QFile>
#include <QGroupBox>
#include <QLayout>
#include <QMdiArea>
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

} // namespace

class tst_Frame : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void startsWithOneBlankWindow();
    void emptySettingsStoreGivesTheDefaults();
    void malformedSettingFallsBack_data();
    void malformedSettingFallsBack();
    void unloadWritesBothDirectories();
    void commandLineIsOnePath_data();
    void commandLineIsOnePath();
    void menuItems_data();
    void menuItems();
    void menuShortcutsWorkFromTheEditor();
    void typingMarksTheWindowOnce();
    void numberingAfterClosingAMiddleWindow_data();
    void numberingAfterClosingAMiddleWindow();
    void droppedFilesOpenOnlyTheFirst();
    void filesDraggedOverTheEditorReachTheFrame();
    void windowMenuListsTheWindows();
    void arrangeCommands_data();
    void arrangeCommands();
    void resizingMovesTreesAndAddSymbol();
};

void tst_Frame::startsWithOneBlankWindow() {
    ScriptedDialogs dialogs;
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
    QCOMPARE(frame->cmbCog->count(), 1);
    QCOMPARE(frame->cmbCog->itemText(0), QStringLiteral("Cog 1"));
    QCOMPARE(frame->cmbCog->currentText(), QStringLiteral("Choose a Cog"));
    QVERIFY(frame->tvwCog->isVisibleTo(frame));
    QVERIFY(!frame->tvwCogE->isVisibleTo(frame));
    QVERIFY(!frame->mnuEdit[2]->isEnabled());
    QVERIFY(!frame->mnuEditChkSyn->isVisible());
    QCOMPARE(mdlTessary::DefFontName, QStringLiteral("Courier New"));
    QCOMPARE(mdlTessary::DefFontSize, qint16(8));
    // The help strip and the pop-up list are there, hidden until the typing aids show them.
    QVERIFY(!w->picMain->isVisibleTo(w));
    QVERIFY(!w->picCogParams->isVisibleTo(w));
    QCOMPARE(w->lvwCogParams->headerItem()->text(0), QStringLiteral("Parameter"));
    // The text box holds bytes (no code page) and ends lines with CR LF.
    QCOMPARE(w->txtMain->SendScintilla(QsciScintillaBase::SCI_GETCODEPAGE), 0L);
    QCOMPARE(w->txtMain->SendScintilla(QsciScintillaBase::SCI_GETEOLMODE),
             long(QsciScintillaBase::SC_EOL_CRLF));
    w->txtMain->setFocus();
    w->txtMain->setSelStart(0);
    QTest::keyClick(w->txtMain, Qt::Key_Return);
    QVERIFY(textOf(w).startsWith("\r\n#"));
}

void tst_Frame::emptySettingsStoreGivesTheDefaults() {
    ScriptedDialogs dialogs;
    QVERIFY(startTessary(dialogs));
    QCOMPARE(mdlTessary::DefOpenDir, QStringLiteral(TESSARY_BIN_DIR));
    QCOMPARE(mdlTessary::DefSaveDir, QStringLiteral(TESSARY_BIN_DIR));
    QCOMPARE(mdlTessary::DefFontName, QStringLiteral("Courier New"));
    QCOMPARE(mdlTessary::DefFontSize, qint16(8));
    QVERIFY(!mdlTessary::DefFontBold);
    QVERIFY(!mdlTessary::DefFontItalic);
    const QFont font = cogWindow(1)->txtMain->font();
    QCOMPARE(font.family(), QStringLiteral("Courier New"));
    QCOMPARE(font.pointSize(), 8);
    QCOMPARE(mdlTessary::colVarTypes.size(), std::size_t(14));
    QCOMPARE(mdlTessary::colVarTypes.front(), std::string("ai"));
    QCOMPARE(mdlTessary::colVarTypes.back(), std::string("vector"));
    QVERIFY(dialogs.messages.isEmpty());
}

void tst_Frame::malformedSettingFallsBack_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("openDir");
    const QString bin = QStringLiteral(TESSARY_BIN_DIR);
    QTest::newRow("bold: maybe") << "DefFontBold" << QVariant("maybe") << false << false << 8 << bin;
    QTest::newRow("bold: True") << "DefFontBold" << QVariant("True") << true << false << 8 << bin;
    QTest::newRow("italic: empty") << "DefFontItalic" << QVariant("") << false << false << 8 << bin;
    QTest::newRow("size: huge") << "DefFontSize" << QVariant("huge") << false << false << 8 << bin;
    QTest::newRow("size: 10.5 rounds to even")
        << "DefFontSize" << QVariant("10.5") << false << false << 10 << bin;
    QTest::newRow("size: 70000 is out of range")
        << "DefFontSize" << QVariant("70000") << false << false << 8 << bin;
    QTest::newRow("size: 0 cannot be drawn") << "DefFontSize" << QVariant("0") << false << false << 8 << bin;
    QTest::newRow("size: 12") << "DefFontSize" << QVariant("12") << false << false << 12 << bin;
    QTest::newRow("open dir with a comma") << "DefOpenDir" << QVariant(QStringList{"/data/a", "b"}) << false
                                           << false << 8 << QStringLiteral("/data/a, b");
}

void tst_Frame::malformedSettingFallsBack() {
    QFETCH(QString, key);
    QFETCH(QVariant, stored);
    QFETCH(bool, bold);
    QFETCH(bool, italic);
    QFETCH(int, size);
    QFETCH(QString, openDir);
    QSettings().setValue(QStringLiteral("Defaults/") + key, stored);
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    QVERIFY(frame);
    QCOMPARE(mdlTessary::DefFontBold, bold);
    QCOMPARE(mdlTessary::DefFontItalic, italic);
    QCOMPARE(int(mdlTessary::DefFontSize), size);
    QCOMPARE(mdlTessary::DefOpenDir, openDir);
    QCOMPARE(mdlTessary::colCogs.count(), 1);
    QCOMPARE(cogWindow(1)->txtMain->font().pointSize(), size);
    QCOMPARE(cogWindow(1)->txtMain->font().bold(), bold);
}

void tst_Frame::unloadWritesBothDirectories() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    QCOMPARE(QSettings().childKeys(), QStringList());
    mdlTessary::DefSaveDir = QStringLiteral("/srv/cogs out");
    frame->mnuFileExit_Click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!mdlTessary::frame());
    QSettings settings;
    settings.beginGroup(QStringLiteral("Defaults"));
    // Written whether or not they changed; the font is not written here.
    QCOMPARE(settings.childKeys(), (QStringList{QStringLiteral("DefOpenDir"), QStringLiteral("DefSaveDir")}));
    QCOMPARE(settings.value(QStringLiteral("DefOpenDir")).toString(), QStringLiteral(TESSARY_BIN_DIR));
    QCOMPARE(settings.value(QStringLiteral("DefSaveDir")).toString(), QStringLiteral("/srv/cogs out"));

    // The next start reads them back.
    QVERIFY(startTessary(dialogs));
    QCOMPARE(mdlTessary::DefSaveDir, QStringLiteral("/srv/cogs out"));
}

void tst_Frame::commandLineIsOnePath_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("quoted");
    QTest::newRow("blanks kept") << QStringLiteral("my old  cog.cog") << false;
    QTest::newRow("quotation marks kept") << QStringLiteral("quoted.cog") << true;
}

void tst_Frame::commandLineIsOnePath() {
    QFETCH(QString, name);
    QFETCH(bool, quoted);
    QTemporaryDir dir;
    const QString file = dir.filePath(name);
    writeFile(file, "# given on the command line\r\nend\r\n");
    const QString commandLine = quoted ? QLatin1Char('"') + file + QLatin1Char('"') : file;
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs, commandLine);
    QVERIFY(frame);
    QCOMPARE(mdlTessary::colCogs.count(), 1);
    frmTessary* w = cogWindow(1);
    QCOMPARE(w->strFile, commandLine);
    if (quoted) {
        // Not a file name: the window stays, and the user is told which path failed.
        QCOMPARE(dialogs.messages.size(), 1);
        QVERIFY(dialogs.messages[0].text.contains(commandLine));
        QCOMPARE(w->Caption(), name + QLatin1Char('"'));
    } else {
        QVERIFY(dialogs.messages.isEmpty());
        QCOMPARE(w->Caption(), name);
        QCOMPARE(textOf(w), QByteArray("# given on the command line\r\nend\r\n"));
        QVERIFY(!w->bMod);
    }
    QVERIFY(frame->tvwCog->isVisibleTo(frame));
}

void tst_Frame::menuItems_data() {
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QKeySequence>("shortcut");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("visible");
    const auto row = [](const char* menu, const char* caption, QKeySequence key, bool enabled = true,
                        bool visible = true) {
        QTest::newRow(caption) << QString(menu) << QString(caption) << key << enabled << visible;
    };
    row("&File", "&New", QKeySequence(Qt::CTRL | Qt::Key_N));
    row("&File", "&Open", QKeySequence(Qt::CTRL | Qt::Key_O));
    row("&File", "Open &Template", {});
    row("&File", "&Close", {});
    row("&File", "&Save", QKeySequence(Qt::CTRL | Qt::Key_S));
    row("&File", "Save &As", QKeySequence(Qt::Key_F11));
    row("&File", "Save Al&l", QKeySequence(Qt::Key_F12));
    row("&File", "&Print", QKeySequence(Qt::CTRL | Qt::Key_P));
    row("&File", "E&xit", {});
    row("&Edit", "Match &Brace", QKeySequence(Qt::CTRL | Qt::Key_B));
    row("&Edit", "&Find Word", QKeySequence(Qt::CTRL | Qt::Key_F));
    row("&Edit", "Find &Next", QKeySequence(Qt::Key_F3), false);
    row("&Edit", "&Replace", QKeySequence(Qt::CTRL | Qt::Key_R));
    row("&Edit", "Replace &All", {});
    row("&Edit", "Check &Syntax", QKeySequence(Qt::Key_F2), false, false);
    row("&Tree", "&Collapse All", {});
    row("&Tree", "&Expand All", {});
    row("&Tree", "&Find", QKeySequence(Qt::Key_F7));
    row("&Tree", "Find &Next", QKeySequence(Qt::Key_F8));
    row("&View", "&Fonts", {});
    row("&View", "&Options", {});
    row("&View", "&Refresh Tree", QKeySequence(Qt::Key_F5));
    row("&Window", "&Cascade", {});
    row("&Window", "Tile &Horizontal", {});
    row("&Window", "Tile &Vertical", {});
    row("&Window", "&Arrange Icons", {});
    row("&Help", "&About", {});
}

void tst_Frame::menuItems() {
    QFETCH(QString, menu);
    QFETCH(QString, caption);
    QFETCH(QKeySequence, shortcut);
    QFETCH(bool, enabled);
    QFETCH(bool, visible);
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    QAction* item = menuItem(frame, menu, caption);
    QVERIFY(item);
    QCOMPARE(item->shortcut(), shortcut);
    QCOMPARE(item->isEnabled(), enabled);
    QCOMPARE(item->isVisible(), visible);
}

void tst_Frame::menuShortcutsWorkFromTheEditor() {
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

void tst_Frame::typingMarksTheWindowOnce() {
    ScriptedDialogs dialogs;
    startTessary(dialogs);
    frmTessary* w = cogWindow(1);
    w->txtMain->setFocus();
    QTest::keyClicks(w->txtMain, "ab");
    QVERIFY(w->bMod);
    QCOMPARE(w->Caption(), QStringLiteral("Cog 1*"));
}

void tst_Frame::numberingAfterClosingAMiddleWindow_data() {
    QTest::addColumn<QStringList>("closed");
    QTest::addColumn<QString>("newTag");
    QTest::newRow("newest closed: its number again") << QStringList{"cog4"} << QStringLiteral("cog4");
    QTest::newRow("middle closed: past the taken number") << QStringList{"cog2"} << QStringLiteral("cog5");
    QTest::newRow("first closed") << QStringList{"cog1"} << QStringLiteral("cog5");
    QTest::newRow("two middle ones closed") << QStringList{"cog2", "cog3"} << QStringLiteral("cog3");
}

void tst_Frame::numberingAfterClosingAMiddleWindow() {
    QFETCH(QStringList, closed);
    QFETCH(QString, newTag);
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    frame->mnuFileNew_Click();
    frame->mnuFileNew_Click();
    frame->mnuFileNew_Click();
    QCOMPARE(mdlTessary::colCogs.count(), 4);
    for (const QString& tag : closed) {
        mdlTessary::strCurCog = tag;
        frame->mnuFileClose_Click();
    }
    frame->mnuFileNew_Click();
    const int count = 4 - int(closed.size()) + 1;
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

void tst_Frame::droppedFilesOpenOnlyTheFirst() {
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
    const QPointF at(frame->width() / 2, frame->height() / 2);
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frame, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frame, &drop);
    QTRY_COMPARE(mdlTessary::colCogs.count(), 2);
    QTest::qWait(50);
    QCOMPARE(mdlTessary::colCogs.count(), 2);
    QCOMPARE(cogWindow(2)->Caption(), QStringLiteral("first.cog"));
    QCOMPARE(textOf(cogWindow(2)), QByteArray("first.cog"));

    // Dropped text is not a file list: nothing opens.
    QMimeData text;
    text.setText(QStringLiteral("symbols"));
    QDropEvent textDrop(at, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(frame, &textDrop);
    QTest::qWait(50);
    QCOMPARE(mdlTessary::colCogs.count(), 2);
}

void tst_Frame::filesDraggedOverTheEditorReachTheFrame() {
    ScriptedDialogs dialogs;
    startTessary(dialogs);
    QWidget* editor = cogWindow(1)->txtMain->viewport();
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/x.cog"))});
    files.setText(QStringLiteral("/tmp/x.cog"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(editor, &enter);
    QVERIFY(enter.isAccepted()); // by the frame, which opens it on the drop
    QCOMPARE(textOf(cogWindow(1)).contains("/tmp/x.cog"), false);
}

void tst_Frame::windowMenuListsTheWindows() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    frame->mnuFileNew_Click();
    frame->mnuFileNew_Click();
    emit frame->mnuWindow->aboutToShow();
    QStringList listed;
    QAction* second = nullptr;
    for (QAction* a : frame->mnuWindow->actions()) {
        if (!a->isCheckable()) continue;
        listed << a->text();
        if (a->text().endsWith(QStringLiteral("Cog 2"))) second = a;
        QCOMPARE(a->isChecked(), a->text().endsWith(QStringLiteral("Cog 3")));
    }
    QCOMPARE(listed, (QStringList{"&1 Cog 1", "&2 Cog 2", "&3 Cog 3"}));
    QVERIFY(second);
    second->trigger();
    QCOMPARE(mdlTessary::strCurCog, QStringLiteral("cog2"));

    // Closing a window takes it off the list.
    frame->mnuFileClose_Click();
    emit frame->mnuWindow->aboutToShow();
    listed.clear();
    for (QAction* a : frame->mnuWindow->actions())
        if (a->isCheckable()) listed << a->text();
    QCOMPARE(listed, (QStringList{"&1 Cog 1", "&2 Cog 3"}));
}

void tst_Frame::arrangeCommands_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("Cascade") << QStringLiteral("&Cascade");
    QTest::newRow("Tile Horizontal") << QStringLiteral("Tile &Horizontal");
    QTest::newRow("Tile Vertical") << QStringLiteral("Tile &Vertical");
    QTest::newRow("Arrange Icons") << QStringLiteral("&Arrange Icons");
}

void tst_Frame::arrangeCommands() {
    QFETCH(QString, command);
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    frame->mnuFileNew_Click();
    frame->mnuFileNew_Click();
    const QList<QMdiSubWindow*> subs = frame->mdiArea->subWindowList();
    QCOMPARE(subs.size(), 3);
    const bool icons = command == QLatin1String("&Arrange Icons");
    if (icons) {
        subs[0]->showMinimized();
        subs[2]->showMinimized();
        subs[0]->move(40, 40);
        subs[2]->move(90, 10);
    }
    menuItem(frame, QStringLiteral("&Window"), command)->trigger();
    QApplication::processEvents();
    const QRect area = frame->mdiArea->viewport()->rect();
    const QRect a = subs[0]->geometry(), b = subs[1]->geometry(), c = subs[2]->geometry();
    if (command == QLatin1String("&Cascade")) {
        QVERIFY(b.left() > a.left() && b.top() > a.top());
        QVERIFY(c.left() > b.left() && c.top() > b.top());
    } else if (command == QLatin1String("Tile &Horizontal")) {
        for (const QRect& r : {a, b, c}) QCOMPARE(r.width(), area.width());
        QCOMPARE(a.top(), 0);
        QVERIFY(b.top() >= a.bottom() && c.top() >= b.bottom());
        QVERIFY(c.bottom() <= area.bottom());
    } else if (command == QLatin1String("Tile &Vertical")) {
        for (const QRect& r : {a, b, c}) QCOMPARE(r.height(), area.height());
        QCOMPARE(a.left(), 0);
        QVERIFY(b.left() >= a.right() && c.left() >= b.right());
        QVERIFY(c.right() <= area.right());
    } else {
        // The minimized windows line up along the bottom; the other one stays where it was.
        QCOMPARE(a.bottom(), area.bottom());
        QCOMPARE(c.bottom(), area.bottom());
        QVERIFY(!a.intersects(c));
        QVERIFY(!subs[1]->isMinimized());
    }
}

void tst_Frame::resizingMovesTreesAndAddSymbol() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    const auto settle = [] { QApplication::processEvents(); };
    frame->resize(900, 760);
    settle();
    const int tall = frame->tvwCog->height();
    QCOMPARE(frame->fraAddSym->y(),
             frame->tvwCog->geometry().bottom() + 1 + frame->picCogRef->layout()->spacing());
    frame->resize(900, 660);
    settle();
    QCOMPARE(frame->tvwCog->height(), tall - 100);
    QCOMPARE(frame->fraAddSym->y(),
             frame->tvwCog->geometry().bottom() + 1 + frame->picCogRef->layout()->spacing());
    // The description line stays along the bottom, full width.
    QCOMPARE(frame->picCogDesc->geometry().bottom(), frame->centralWidget()->height() - 1);

    // The explorer tree takes the same place.
    frame->cmbTvwSel->setCurrentIndex(1);
    frame->cmbTvwSel_Click();
    settle();
    QCOMPARE(frame->tvwCogE->geometry(),
             QRect(frame->tvwCog->x(), frame->tvwCog->y(), frame->tvwCog->width(), tall - 100));
    frame->resize(900, 860);
    settle();
    QCOMPARE(frame->tvwCogE->height(), tall + 100);
    QCOMPARE(frame->fraAddSym->y(),
             frame->tvwCogE->geometry().bottom() + 1 + frame->picCogRef->layout()->spacing());
}

QTEST_MAIN(tst_Frame)
#include "tst_frame.moc"
