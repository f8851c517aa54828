// What an editor user expects: the status bar, line ends and their bar, Go to Line, typing and
// showing Windows-1252 text, tabbed windows, the second shortcuts, --help and --version, and the
// fixes of drops on the text, the Fonts dialog, relative paths, explorer Delete, typed Add Symbol
// types and the About links. Each on the real widgets.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"
#include "app/ui/MRU.h"
#include "app/ui/StatusBar.h"
#include "app/ui/frmAbout.h"
#include "editor/charset.h"
#include "editor/ui/CharsetFont.h"
#include "editor/ui/LineEndWatch.h"
#include "editor/ui/NoticeBar.h"

#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QMimeData>
#include <QPainterPath>
#include <QProcess>
#include <QPushButton>
#include <QRawFont>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QToolButton>

#include <Qsci/qscilexer.h>

namespace {

class LinkRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

// Remembers the font the Fonts dialog started on, and answers with it unchanged.
struct FontDialogs : ScriptedDialogs {
    QFont started;
    bool fontDialog(const QFont& initial, QFont& chosen) override {
        started = chosen = initial;
        return true;
    }
};

QString write(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes) {
    QFile file(dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) return {};
    return file.fileName();
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void type(QWidget* box, const QString& text) {
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, text, Qt::NoModifier);
}

const QByteArray kScript = "# declarations\r\nsymbols\r\nint     a\r\nint     b\r\nint     c\r\n"
                           "thing   door\r\nend\r\ncode\r\nend\r\n";

} // namespace

class tst_Usability : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;

    // Starts the program and opens a file holding the bytes in a new window.
    frmTessary* open(const QByteArray& bytes, const QString& name = QStringLiteral("test.cog")) {
        if (!frame_) frame_ = startTessary(dialogs_);
        if (!frame_) return nullptr;
        mdlTessary::OpenCogFile(write(dir_, name, bytes));
        frmTessary* w = cogWindow(mdlTessary::colCogs.count());
        frame_->mdiArea->setActiveSubWindow(w->subWindow());
        w->txtMain->setFocus();
        return w;
    }

private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        frame_ = nullptr;
    }
    void cleanup() { stopTessary(); }

    void statusBarAndLineEnds_data();
    void statusBarAndLineEnds();
    void hiddenLineEndBarStaysHidden();
    void lineEndsMenuConvertsBothWays();
    void goToLine_data();
    void goToLine();
    void windows1252Typing_data();
    void windows1252Typing();
    void copiedTextIsWindows1252();
    void bytes80To9FShowTheirCharacters_data();
    void bytes80To9FShowTheirCharacters();
    void tabbedWindowsAreRemembered();
    void newWindowsOpenInsideTheArea_data();
    void newWindowsOpenInsideTheArea();
    void secondShortcuts();
    void fileDroppedOnTheTextOpens();
    void fontsDialogStartsOnTheShownFont();
    void relativeCommandLinePathIsMadeAbsolute();
    void explorerDeleteActsOnTheHighlightedNode_data();
    void explorerDeleteActsOnTheHighlightedNode();
    void addSymbolTypedType_data();
    void addSymbolTypedType();
    void aboutLinksReactToTheirTextOnly();
    void helpAndVersion_data();
    void helpAndVersion();
};

void tst_Usability::statusBarAndLineEnds_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QString>("position");
    QTest::addColumn<QString>("lineEnds");
    QTest::addColumn<QString>("bar"); // the start of the bar's message; "" when it is hidden
    QTest::addColumn<QByteArray>("enter");
    const auto row = [](const char* name, const char* text, int caret, const char* position,
                        const char* lineEnds, const char* bar, const char* enter) {
        QTest::newRow(name) << QByteArray(text) << caret << position << lineEnds << bar << QByteArray(enter);
    };
    row("CR LF", "a\r\nbc\r\n", 5, "Ln 2, Col 3", "CR LF", "", "\r\n");
    row("LF", "a\nbc\n", 4, "Ln 2, Col 3", "LF", "The lines of this file end in LF alone.", "\n");
    row("CR", "a\rbc\r", 3, "Ln 2, Col 2", "CR", "The lines of this file end in CR alone.", "\r");
    row("mixed", "a\r\nb\nc", 0, "Ln 1, Col 1", "Mixed", "Some lines of this file do not end in CR LF.",
        "\r\n");
    row("no line end", "abc", 3, "Ln 1, Col 4", "CR LF", "", "\r\n");
}

// The status bar follows the caret and the line ends; a text whose lines do not all end in CR LF
// gets the bar, whose button converts them as one undo step; Enter inserts the file's line end.
void tst_Usability::statusBarAndLineEnds() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QString, position);
    QFETCH(QString, lineEnds);
    QFETCH(QString, bar);
    QFETCH(QByteArray, enter);
    frmTessary* w = open(text);
    QVERIFY(w);
    w->txtMain->setSelStart(caret);
    FrameStatusBar* status = frame_->sbrMain;
    QTRY_COMPARE(status->lblPosition->text(), position);
    QCOMPARE(status->lblLineEnds->text(), lineEnds);
    QCOMPARE(status->lblCharset->text(), QStringLiteral("Windows-1252"));
    QCOMPARE(w->barLineEnds->isVisible(), !bar.isEmpty());
    if (!bar.isEmpty()) QVERIFY(w->barLineEnds->message().startsWith(bar));

    QTest::keyClick(w->txtMain, Qt::Key_Return);
    QCOMPARE(textOf(w), QByteArray(text).insert(caret, enter));
    w->txtMain->undo();
    if (bar.isEmpty()) return;
    QTest::mouseClick(w->barLineEnds->findChild<QPushButton*>("cmdConvertLineEnds"), Qt::LeftButton);
    const QByteArray converted = textOf(w);
    QCOMPARE(converted.count("\r\n"), converted.count('\r'));
    QCOMPARE(converted.count("\r\n"), converted.count('\n'));
    QCOMPARE(converted.count("\r\n"), text.count('\r') + text.count('\n') - text.count("\r\n"));
    QVERIFY(w->barLineEnds->isHidden());
    QCOMPARE(status->lblLineEnds->text(), QStringLiteral("CR LF"));
    QCOMPARE(status->lblPosition->text(), position); // the caret stays on its line
    w->txtMain->undo();
    QCOMPARE(textOf(w), text);
    QVERIFY(w->barLineEnds->isVisible());
    for (int i = mdlTessary::colCogs.count(); i > 0; --i) cogWindow(i)->subWindow()->close();
    QTRY_VERIFY(status->lblPosition->text().isEmpty() && status->lblLineEnds->text().isEmpty());
}

void tst_Usability::hiddenLineEndBarStaysHidden() {
    frmTessary* w = open("a\nb\n");
    QVERIFY(w && w->barLineEnds->isVisible());
    QTest::mouseClick(w->barLineEnds->cmdHide, Qt::LeftButton);
    type(w->txtMain, "x");
    QTest::keyClick(w->txtMain, Qt::Key_Return);
    QVERIFY(w->barLineEnds->isHidden());
    w->ConvertLineEnds("\r\n");
    w->ConvertLineEnds("\n"); // CR LF in between: the next LF text is a new finding
    QVERIFY(w->barLineEnds->isVisible());
}

void tst_Usability::lineEndsMenuConvertsBothWays() {
    frmTessary* w = open("a\r\nb\rc\n");
    emit frame_->mnuEditLineEnds->aboutToShow();
    QVERIFY(!frame_->mnuEditLineEndsCrLf->isChecked() && !frame_->mnuEditLineEndsLf->isChecked());
    frame_->mnuEditLineEndsLf->trigger();
    QCOMPARE(textOf(w), QByteArray("a\nb\nc\n"));
    emit frame_->mnuEditLineEnds->aboutToShow();
    QVERIFY(frame_->mnuEditLineEndsLf->isChecked());
    frame_->mnuEditLineEndsCrLf->trigger();
    QCOMPARE(textOf(w), QByteArray("a\r\nb\r\nc\r\n"));
    QVERIFY(w->bMod);
}

void tst_Usability::goToLine_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("caret"); // -1: the caret stays and a message says why
    QTest::newRow("line") << "2" << 4;
    QTest::newRow("line and column") << "2:3" << 6;
    QTest::newRow("column past the line's end") << "2:99" << 9;
    QTest::newRow("line past the end") << "99" << 11;
    QTest::newRow("not a line") << "zero" << -1;
    QTest::newRow("cancelled") << "" << 1;
}

void tst_Usability::goToLine() {
    QFETCH(QString, typed);
    QFETCH(int, caret);
    frmTessary* w = open("l1\r\nline2\r\nl3");
    QVERIFY(QTest::qWaitForWindowActive(frame_));
    w->txtMain->setSelStart(1);
    dialogs_.inputAnswers << typed;
    QTest::keyClick(w->txtMain, Qt::Key_G, Qt::ControlModifier);
    QCOMPARE(dialogs_.inputs.size(), 1);
    QCOMPARE(dialogs_.inputs[0],
             (QStringList{"Line number, optionally followed by :column", "Go to Line", "1"}));
    QCOMPARE(w->txtMain->selStart(), long(caret < 0 ? 1 : caret));
    QCOMPARE(dialogs_.messages.size(), caret < 0 ? 1 : 0);
    QCOMPARE(textOf(w), QByteArray("l1\r\nline2\r\nl3"));
}

void tst_Usability::windows1252Typing_data() {
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes"); // what the file gains
    QTest::addColumn<QString>("refused");  // the character named in the status bar
    const auto row = [](const char* name, const char* how, const char* text, const QByteArray& bytes,
                        const char* refused = "") {
        QTest::newRow(name) << how << QString::fromUtf8(text) << bytes << QString::fromUtf8(refused);
    };
    row("euro sign typed", "key", "€", "\x80");
    row("Latin-1 letter typed", "key", "é", "\xe9");
    row("letter beyond the code page typed", "key", "Ā", "", "Ā");
    row("quotes from the input method", "input method", "“q”", "\x93q\x94");
    row("Greek from the input method", "input method", "aΔ", "", "Δ");
    row("pasted text", "paste", "x€—y", "x\x80\x97y");
    row("pasted text beyond the code page", "paste", "ok 中", "", "中");
    row("pasted emoji", "paste", "a😀", "", "😀");
    row("replacement with quotes", "replace", "“q”", "\x93q\x94");
    row("replacement beyond the code page", "replace", "Δ", "", "Δ");
}

// Typed, composed and pasted text is written in Windows-1252 and saved so; what the code page
// cannot hold is left out with a message in the status bar, never written as "?".
void tst_Usability::windows1252Typing() {
    QFETCH(QString, how);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, refused);
    frmTessary* w = open("#\r\n");
    w->txtMain->setSelStart(1);
    if (how == "key") {
        type(w->txtMain, text);
    } else if (how == "input method") {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(w->txtMain, &event);
    } else if (how == "paste") {
        QApplication::clipboard()->setText(text);
        w->txtMain->paste();
    } else {
        dialogs_.inputAnswers << "#"
                              << "#" + text;
        frame_->mnuEdit_Click(3);
    }
    QCOMPARE(textOf(w), QByteArray("#\r\n").insert(1, bytes));
    QCOMPARE(frame_->sbrMain->currentMessage().contains("\"" + refused + "\" was left out"),
             !refused.isEmpty());
    frame_->mnuFileSave_Click();
    QCOMPARE(readFile(w->strFile), QByteArray("#\r\n").insert(1, bytes) + "\r\n");
}

void tst_Usability::copiedTextIsWindows1252() {
    frmTessary* w = open("\x80\x93\xe9\x81");
    w->txtMain->selectAll();
    w->txtMain->copy();
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("€“é\u0081"));
}

void tst_Usability::bytes80To9FShowTheirCharacters_data() {
    QTest::addColumn<QString>("family");
    for (const char* family : {"DejaVu Sans Mono", "DejaVu Serif"}) QTest::newRow(family) << family;
}

// The stand-in font draws each byte's character with the editor font's own outline and advance,
// and the editor's text uses it.
void tst_Usability::bytes80To9FShowTheirCharacters() {
    QFETCH(QString, family);
    if (!QFontDatabase::hasFamily(family)) QSKIP("font not installed");
    const QString standIn = charsetfont::install(family);
    QVERIFY(!standIn.isEmpty());
    QRawFont made = QRawFont::fromFont(QFont(standIn)), source = QRawFont::fromFont(QFont(family));
    QCOMPARE(made.familyName(), standIn);
    made.setPixelSize(source.unitsPerEm());
    source.setPixelSize(source.unitsPerEm());
    for (char32_t byte = 0x80; byte <= 0x9F; ++byte) {
        const char32_t c = editor::decodeByte(static_cast<unsigned char>(byte));
        QCOMPARE(made.supportsCharacter(byte), c != byte);
        if (c == byte) continue;
        const auto madeGlyph = made.glyphIndexesForString(QString::fromUcs4(&byte, 1));
        const auto sourceGlyph = source.glyphIndexesForString(QString::fromUcs4(&c, 1));
        const QRectF a = made.pathForGlyph(madeGlyph[0]).boundingRect();
        const QRectF b = source.pathForGlyph(sourceGlyph[0]).boundingRect();
        QVERIFY2(qAbs(a.left() - b.left()) + qAbs(a.top() - b.top()) + qAbs(a.right() - b.right()) +
                         qAbs(a.bottom() - b.bottom()) <=
                     4,
                 qPrintable(QString::number(byte, 16)));
        QCOMPARE(qRound(made.advancesForGlyphIndexes(madeGlyph)[0].x()),
                 qRound(source.advancesForGlyphIndexes(sourceGlyph)[0].x()));
    }
    frame_ = startTessary(dialogs_);
    mdlTessary::DefFontName = family;
    frmTessary* w = open("\x80");
    const QFont shown = w->txtMain->lexer()->font(0);
    QCOMPARE(shown.family(), family);
    QCOMPARE(QFontMetricsF(shown).horizontalAdvance(QChar(0x80)),
             QFontMetricsF(shown).horizontalAdvance(QChar(0x20AC)));
}

void tst_Usability::tabbedWindowsAreRemembered() {
    frame_ = startTessary(dialogs_);
    QCOMPARE(frame_->mdiArea->viewMode(), QMdiArea::SubWindowView);
    QVERIFY(!frame_->mnuWindowTabbed->isChecked());
    frame_->mnuWindowTabbed->trigger();
    QCOMPARE(frame_->mdiArea->viewMode(), QMdiArea::TabbedView);
    QCOMPARE(QSettings().value("Window/TabbedWindows").toString(), QStringLiteral("True"));
    stopTessary();
    frame_ = startTessary(dialogs_);
    QVERIFY(frame_->mnuWindowTabbed->isChecked());
    QCOMPARE(frame_->mdiArea->viewMode(), QMdiArea::TabbedView);
    QVERIFY(!frame_->mnuWindowCascade->isEnabled() && !frame_->mnuWindowTileVertical->isEnabled());
    frame_->mnuFileNew_Click();
    QVERIFY(cogWindow(2)->subWindow()->isMaximized());
    frame_->mnuWindowTabbed->trigger();
    QCOMPARE(frame_->mdiArea->viewMode(), QMdiArea::SubWindowView);
    QVERIFY(!cogWindow(2)->subWindow()->isMaximized());
    QVERIFY(frame_->mnuWindowCascade->isEnabled());
    QCOMPARE(QSettings().value("Window/TabbedWindows").toString(), QStringLiteral("False"));
}

void tst_Usability::newWindowsOpenInsideTheArea_data() {
    QTest::addColumn<QSize>("frameSize");
    QTest::newRow("as designed") << QSize(720, 520);
    QTest::newRow("small frame") << QSize(560, 420);
    QTest::newRow("smaller than a window") << QSize(420, 330);
}

void tst_Usability::newWindowsOpenInsideTheArea() {
    QFETCH(QSize, frameSize);
    frame_ = startTessary(dialogs_);
    frame_->resize(frameSize);
    QTest::qWait(20);
    const QRect area = frame_->mdiArea->viewport()->rect();
    for (int i = 0; i < 6; ++i) {
        frame_->mnuFileNew_Click();
        QVERIFY2(area.contains(cogWindow(i + 2)->subWindow()->geometry()), qPrintable(QString::number(i)));
    }
}

void tst_Usability::secondShortcuts() {
    frmTessary* w = open("text");
    QVERIFY(QTest::qWaitForWindowActive(frame_));
    const QString target = dir_.filePath("saved as.cog");
    dialogs_.saveAnswers << target;
    QTest::keyClick(w->txtMain, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(readFile(target), QByteArray("text\r\n"));
    QCOMPARE(w->Caption(), QStringLiteral("saved as.cog"));
    QSignalSpy exit(frame_->mnuFileExit, &QAction::triggered);
    QTest::keyClick(w->txtMain, Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(exit.size(), 1);
    QTRY_VERIFY(!mdlTessary::frame());
}

void tst_Usability::fileDroppedOnTheTextOpens() {
    frmTessary* w = open("target");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(write(dir_, "dropped.cog", "dropped")),
                  QUrl::fromLocalFile(write(dir_, "second.cog", "second"))});
    QWidget* text = w->txtMain->viewport();
    const QPoint at = text->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(text, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(text, &drop);
    QVERIFY(drop.isAccepted());
    QTRY_COMPARE(mdlTessary::colCogs.count(), 3); // the blank window, the target, the first dropped file
    QCOMPARE(textOf(cogWindow(3)), QByteArray("dropped"));
    QCOMPARE(textOf(w), QByteArray("target")); // nothing inserted into the text
}

void tst_Usability::fontsDialogStartsOnTheShownFont() {
    FontDialogs fonts;
    frame_ = startTessary(fonts);
    const QString shownBefore = QFontInfo(cogWindow(1)->txtMain->lexer()->font(0)).family();
    frame_->mnuViewFont_Click();
    QCOMPARE(fonts.started.family(), QFontInfo(mdlTessary::DefaultFont()).family());
    QCOMPARE(fonts.started.family(), shownBefore);
    QCOMPARE(fonts.started.pointSize(), 8);
    QCOMPARE(QFontInfo(cogWindow(1)->txtMain->lexer()->font(0)).family(), shownBefore);
}

void tst_Usability::relativeCommandLinePathIsMadeAbsolute() {
    write(dir_, "relative.cog", "relative");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir_.path()));
    frame_ = startTessary(dialogs_, "relative.cog");
    QDir::setCurrent(before);
    QVERIFY(frame_);
    frmTessary* w = cogWindow(1);
    QCOMPARE(w->strFile, dir_.filePath("relative.cog"));
    QCOMPARE(textOf(w), QByteArray("relative"));
    QCOMPARE(frame_->mnuFileMRU[0]->data().toString(), dir_.filePath("relative.cog"));
    type(w->txtMain, "x");
    frame_->mnuFileSave_Click(); // saved where it was read, whatever the directory now
    QCOMPARE(readFile(dir_.filePath("relative.cog")), QByteArray("xrelative\r\n"));
}

void tst_Usability::explorerDeleteActsOnTheHighlightedNode_data() {
    QTest::addColumn<QString>("how");
    QTest::newRow("clicked") << "click";
    QTest::newRow("reached with the arrow keys") << "arrows";
    QTest::newRow("again right after a delete") << "twice";
}

void tst_Usability::explorerDeleteActsOnTheHighlightedNode() {
    QFETCH(QString, how);
    frmTessary* w = open(kScript);
    frame_->cmbTvwSel->setCurrentIndex(1);
    frame_->cmbTvwSel_Click();
    frame_->cmbCog->setCurrentIndex(mdlTessary::colCogs.indexOf(w->Tag) - 1);
    frame_->cmbCog_Click();
    KeyedTreeView* tree = frame_->tvwCogE;
    tree->expandAll();
    tree->setFocus();
    const auto deleteHighlighted = [&] {
        const auto key = tree->keyOf(tree->currentItem());
        QVERIFY(key && key->starts_with("int"));
        const QByteArray before = textOf(w);
        QTest::keyClick(tree, Qt::Key_Delete);
        QCOMPARE(textOf(w), QByteArray(before).replace(QByteArray::fromStdString(*key) + '\n', ""));
        QVERIFY(!tree->contains(*key));
    };
    QTreeWidgetItem* a = tree->itemFor("int     a\r");
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(a).center());
    if (how == "arrows") QTest::keyClick(tree, Qt::Key_Down);
    QCOMPARE(*tree->keyOf(tree->currentItem()), std::string(how == "arrows" ? "int     b\r" : "int     a\r"));
    deleteHighlighted();
    if (how == "twice") deleteHighlighted();
    QVERIFY(dialogs_.messages.isEmpty());
}

void tst_Usability::addSymbolTypedType_data() {
    QTest::addColumn<QString>("typed"); // into the type box after picking "int"
    QTest::addColumn<QString>("line");  // the start of the line written; "" for the message
    QTest::newRow("picked, not typed") << ""
                                       << "int     x";
    QTest::newRow("a type of the list, typed in capitals") << "THING"
                                                           << "thing     x";
    QTest::newRow("not a type") << "integer"
                                << "";
    QTest::newRow("emptied") << " "
                             << "";
}

void tst_Usability::addSymbolTypedType() {
    QFETCH(QString, typed);
    QFETCH(QString, line);
    frmTessary* w = open(kScript);
    frame_->cmbVarType->setCurrentIndex(frame_->cmbVarType->findText("int"));
    if (!typed.isEmpty()) {
        frame_->cmbVarType->lineEdit()->selectAll();
        QTest::keyClicks(frame_->cmbVarType->lineEdit(), typed.trimmed());
        if (typed.trimmed().isEmpty()) QTest::keyClick(frame_->cmbVarType->lineEdit(), Qt::Key_Delete);
    }
    QTest::keyClicks(frame_->txtVarName, "x");
    QTest::mouseClick(frame_->cmdAddVar, Qt::LeftButton);
    if (line.isEmpty()) {
        QCOMPARE(dialogs_.texts(), QStringList{"You must choose a type!"});
        QCOMPARE(textOf(w), kScript);
        QCOMPARE(frame_->cmbVarType->currentText(), typed.trimmed()); // the box keeps what was typed
    } else {
        QVERIFY(dialogs_.messages.isEmpty());
        QVERIFY(textOf(w).contains("\r\n" + line.toLatin1()));
    }
}

void tst_Usability::aboutLinksReactToTheirTextOnly() {
    frame_ = startTessary(dialogs_);
    LinkRecorder links;
    QDesktopServices::setUrlHandler("mailto", &links, "open");
    QDesktopServices::setUrlHandler("https", &links, "open");
    frmAbout about(frame_);
    about.show();
    QVERIFY(QTest::qWaitForWindowExposed(&about));
    for (QLabel* link : {about.lblEmail, about.lblWebsite}) {
        QCOMPARE(link->width(), link->sizeHint().width()); // as wide as its text
        QTest::mouseClick(link, Qt::LeftButton);
    }
    QCOMPARE(links.opened.size(), 2);
    const QPoint beside(about.lblEmail->geometry().right() + 12, about.lblEmail->geometry().center().y());
    QVERIFY(beside.x() < about.width() && !about.childAt(beside));
    QTest::mouseClick(&about, Qt::LeftButton, {}, beside);
    QVERIFY(!about.isVisible());
    QCOMPARE(links.opened.size(), 2);
    QDesktopServices::unsetUrlHandler("mailto");
    QDesktopServices::unsetUrlHandler("https");
}

void tst_Usability::helpAndVersion_data() {
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("fileExists");
    QTest::addColumn<QString>("printed"); // what standard output matches; "" when the file opens
    QTest::newRow("--help") << "--help" << false << "^Usage: tessary \\[FILE\\]\n(.*\n)+$";
    QTest::newRow("--version") << "--version" << false << "^tessary [0-9]+\\.[0-9]+\\.[0-9]+\n$";
    QTest::newRow("a file named --help") << "--help" << true << "";
}

// Without a display: --help and --version need none; a file of that name opens.
void tst_Usability::helpAndVersion() {
    QFETCH(QString, argument);
    QFETCH(bool, fileExists);
    QFETCH(QString, printed);
    QTemporaryDir home;
    if (fileExists) write(home, argument, "opened");
    QProcess tessary;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "none-such"); // a window would fail to start
    if (fileExists) {
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("XDG_RUNTIME_DIR", home.path());
        env.insert("XDG_CONFIG_HOME", home.path());
        env.insert("QT_LOGGING_RULES", "tessary.ui.info=true"); // the window list on stderr
    }
    tessary.setProcessEnvironment(env);
    tessary.setWorkingDirectory(home.path());
    tessary.start(TESSARY_BIN_DIR "/tessary", {argument});
    QVERIFY(tessary.waitForStarted());
    if (!fileExists) {
        QVERIFY(tessary.waitForFinished(10000));
        QCOMPARE(tessary.exitCode(), 0);
        const QString out = QString::fromUtf8(tessary.readAllStandardOutput());
        QVERIFY2(QRegularExpression(printed).match(out).hasMatch(), qPrintable(out));
        return;
    }
    QByteArray logged;
    QTRY_VERIFY_WITH_TIMEOUT(
        (logged += tessary.readAllStandardError()).contains("windows: " + argument.toLatin1()), 15000);
    QVERIFY(tessary.readAllStandardOutput().isEmpty());
    tessary.kill();
    tessary.waitForFinished();
}

TESSARY_TEST_MAIN(tst_Usability)
#include "tst_usability.moc"
