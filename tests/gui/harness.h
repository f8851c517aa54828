// Starting the program inside a test, with dialogs that answer from a script and remember what
// they showed, and sessions: golden cases under tests/cases/<area>/ that drive the program as a
// user does, one command a line (see Session::run).
#pragma once

#include "app/ui/KeyedTreeView.h"
#include "app/ui/StatusBar.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmAbout.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "cog/layout.h"
#include "cog/ui/frmChkSyn.h"
#include "editor/recovery.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/NoticeBar.h"
#include "editor/ui/frmTessary.h"
#include "templates/ui/frmCGT.h"
#include "tests/cases.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDragEnterEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QPrinter>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

struct ScriptedDialogs : ui::Dialogs {
    struct Shown {
        QString text;
        int buttons = 0;
        int icon = 0;
        QString title;
        int windows = 0; // the editor windows open while it was shown
    };
    QList<Shown> messages;    // every message box, in order
    QStringList log;          // every dialog shown, with its answer, one line each
    QList<int> answers;       // answers to message boxes; vbOK / vbYes... when empty: vbOK, or vbNo
    QStringList inputAnswers; // answers to input boxes; "" (Cancel) when empty
    QStringList openAnswers;  // file names for the Open dialog; "" (Cancel) when empty
    QStringList saveAnswers;  // file names for the Save As dialog; "" (Cancel) when empty
    QString printToPdf;       // the print dialog prints into this PDF file; "" cancels it
    QList<QFont> fontAnswers; // fonts chosen in the font dialog; empty cancels it

    static QString quoted(const QString& s) {
        return '"' + QString::fromStdString(cases::esc(s.toStdString())) + '"';
    }
    static QString take(QStringList& answers) { return answers.isEmpty() ? QString() : answers.takeFirst(); }
    QString answered(const QString& dialog, const QString& answer) {
        log << dialog + " -> " + (answer.isEmpty() ? QStringLiteral("cancel") : answer);
        return answer;
    }

    int msgBox(const QString& text, int buttons, int icon, const QString& title) override {
        messages.append({text, buttons, icon, title, mdlTessary::colCogs.count()});
        const int answer = !answers.isEmpty()             ? answers.takeFirst()
                           : buttons == ui::vbYesNoCancel ? ui::vbNo
                                                          : ui::vbOK;
        static const QMap<int, QString> words{
            {ui::vbOK, "ok"}, {ui::vbCancel, "cancel"}, {ui::vbYes, "yes"}, {ui::vbNo, "no"}};
        log << "message " + quoted(text) + (buttons == ui::vbYesNoCancel ? " yes-no-cancel" : "") +
                   (icon == ui::vbCritical      ? " critical"
                    : icon == ui::vbExclamation ? " exclamation"
                                                : "") +
                   (title == ui::kTitle ? "" : " title " + quoted(title)) +
                   (answer == ui::vbOK ? QString() : " -> " + words.value(answer));
        return answer;
    }
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override {
        const QString answer = take(inputAnswers);
        log << "input " + quoted(prompt) + ' ' + quoted(title) + ' ' + quoted(defaultText) + " -> " +
                   quoted(answer);
        return answer;
    }
    QString openFileName(const QString&, const QString&) override {
        return answered("open dialog", take(openAnswers));
    }
    QString saveFileName(const QString&, const QString&, const QString&) override {
        return answered("save dialog", take(saveAnswers));
    }
    bool printDialog(QPrinter& printer) override {
        if (answered("print dialog", printToPdf).isEmpty()) return false;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(printToPdf);
        return true;
    }
    static QString described(const QFont& f) {
        return QStringLiteral("%1 %2%3%4")
            .arg(f.family())
            .arg(f.pointSizeF())
            .arg(f.bold() ? " bold" : "", f.italic() ? " italic" : "");
    }
    bool fontDialog(const QFont& initial, QFont& chosen) override {
        const bool ok = !fontAnswers.isEmpty();
        if (ok) chosen = fontAnswers.takeFirst();
        answered("font dialog from " + described(initial), ok ? described(chosen) : QString());
        return ok;
    }
    QStringList texts() const {
        QStringList t;
        for (const auto& m : messages) t << m.text;
        return t;
    }
};

// The folders of recovery copies: this program's own, or those of other programs.
inline QStringList recoveryFolders(bool own) {
    const QDir root(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/recovery");
    const QString mine = QString::number(QCoreApplication::applicationPid()) + '-';
    QStringList found;
    for (const QString& name : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (name.startsWith(mine) == own) found << root.filePath(name);
    return found;
}

// Names the settings store as the program does and reads the data files from the build's
// program directory. The settings start empty.
inline void prepareTessaryTest() {
    QCoreApplication::setOrganizationName(QStringLiteral("Tessary"));
    QCoreApplication::setApplicationName(QStringLiteral("Tessary"));
    mdlTessary::setProgramDirectory(QStringLiteral(TESSARY_BIN_DIR));
    QSettings().clear();
}

// Starts the program as its entry does, with the dialogs scripted.
inline frmMain* startTessary(ScriptedDialogs& dialogs, const QString& commandLine = {}) {
    ui::setDialogs(&dialogs);
    frmMain* frame = mdlTessary::Main(commandLine);
    if (frame && !QTest::qWaitForWindowExposed(frame)) return nullptr;
    return frame;
}

// Closes the program without save prompts (every window counts as unmodified).
inline void stopTessary() {
    if (frmMain* frame = mdlTessary::frame()) {
        for (int i = 1; i <= mdlTessary::colCogs.count(); ++i) mdlTessary::colCogs.item(i)->bMod = false;
        frame->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    ui::setDialogs(nullptr);
}

inline frmTessary* cogWindow(int index) {
    return mdlTessary::colCogs.item(index);
}

inline QByteArray textOf(frmTessary* w) {
    return w->txtMain->textBytes();
}

// Keys as typed: \x08 is Backspace, \r Enter, \t Tab, \x02 the Left arrow; other bytes are characters.
// Characters beyond ASCII (keys in UTF-8) arrive as the text of a key without a key code.
inline void typeKeys(QWidget* target, const std::string& keys) {
    static const QHash<char, Qt::Key> special{
        {'\x08', Qt::Key_Backspace}, {'\r', Qt::Key_Return}, {'\t', Qt::Key_Tab}, {'\x02', Qt::Key_Left}};
    for (const char32_t u : QString::fromStdString(keys).toUcs4()) {
        if (u >= 0x80)
            QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString::fromUcs4(&u, 1),
                                Qt::NoModifier);
        else
            special.contains(char(u)) ? QTest::keyClick(target, special[char(u)])
                                      : QTest::keyClick(target, char(u));
    }
}

// A program run by golden cases. Each line "> COMMAND ARGS" of a case is one call of run(), which
// answers with the dialogs the command showed (with their answers) and what the command prints.
// Files live in a directory of the session's own, shown as DIR, which is also the program's
// directory: it starts with copies of the shipped default.cog, messages.dat and cogref.dat.
//   Files and settings:  write NAME [BYTES [TIMES]] (the case's input without BYTES), remove NAME,
//                        mkdir NAME, fifo NAME, sparse NAME BYTES, chmod MODE NAME, file NAME,
//                        rename FROM TO, files [FOLDER], setting KEY [VALUE...], settings, limit BYTES (the
//                        largest file the next command may write), nobody COMMAND... (run as a user without
//                        privileges), copies (the recovery copies), wait MS
//   Dialogs' answers:    answer yes|no|cancel|ok..., answer input TEXT..., answer open|save|print
//                        PATH, answer font FAMILY SIZE [bold] [italic], answer template [VALUE...]
//                        (the template window is generated with these values; without the
//                        answer it is closed)
//   The frame:           start [COMMAND LINE], stop, windows, menus [MENU], menu MENU/ITEM,
//                        key KEYS..., drop [text] NAME..., show TREE, choose N (a window for the
//                        explorer), tree [TREE], click KEY, dclick KEY, label KEY TEXT [escape],
//                        add FIELD=VALUE... (Add Symbol), check [open|N|OK|Escape], window TAG,
//                        defaults, resize W H, request PATH (a second start's), status
//   The current window:  load [BYTES [TIMES]], type KEYS, compose TEXT, at [START [LENGTH]], text,
//                        search, clipboard [TEXT], aids, bars [wait], press CAPTION|hide, pause MS
class Session {
public:
    std::string run(const std::string& input, const cases::Args& a);
    // Stops the program and forgets the directory.
    void reset() {
        stopTessary();
        for (const QString& folder : recoveryFolders(true))
            for (const QString& name : QDir(folder).entryList({QStringLiteral("*.rec")}))
                QDir(folder).remove(name);
        dialogs_ = ScriptedDialogs();
        templateAnswers_.reset();
        dir_.reset();
    }
    QString path(const std::string& name) const {
        const QString n = QString::fromStdString(name);
        return n.startsWith('/') || n.isEmpty() ? n : dir_->filePath(n);
    }
    // The caret's line, the aids shown: the message pop-up with its highlighted name, the help line.
    static std::string aids(frmTessary* w);

private:
    std::string command(const std::string& input, const cases::Args& a);
    QWidget* target() const { return target_ ? target_.data() : QApplication::focusWidget(); }
    frmTessary* current() const { return mdlTessary::currentCog(); }
    KeyedTreeView* tree() const {
        frmMain* f = mdlTessary::frame();
        return f->tvwCogE->isVisible() ? f->tvwCogE : f->tvwCog;
    }
    QTreeWidgetItem* item(const std::string& key) {
        QTreeWidgetItem* i = tree()->itemFor(key);
        for (QTreeWidgetItem* p = i ? i->parent() : nullptr; p; p = p->parent()) p->setExpanded(true);
        if (i) tree()->scrollToItem(i);
        target_ = tree();
        return i;
    }
    void clickItem(const std::string& key, bool twice) {
        if (QTreeWidgetItem* i = item(key)) {
            const QPoint at = tree()->visualItemRect(i).center();
            QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, at);
            if (twice) QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, at);
        }
    }
    void modal(QWidget* m);
    std::string windows() const;
    std::string treeShown(KeyedTreeView* t) const;
    std::string menus(const QString& only) const;

    std::unique_ptr<QTemporaryDir> dir_;
    ScriptedDialogs dialogs_;
    QPointer<QWidget> target_;
    std::optional<QStringList> templateAnswers_;
    std::optional<rlim_t> limit_;
};

inline Session& session() {
    static Session s;
    return s;
}

// The rule of a widget test program's sessions: each case of its area played by session().
inline cases::Rule playSession() {
    return [](const std::string& input, const cases::Args& args, const QString&) {
        return session().run(input, args);
    };
}

// What ends every session test: the session's state and the program.
inline void endSessionTest() {
    session().reset();
    stopTessary();
}

// A text in lines; a long one by its first and last lines, its size and a digest.
inline std::string shownText(const QByteArray& bytes) {
    const std::string b = cases::block(bytes.toStdString());
    const auto lines = std::count(b.begin(), b.end(), '\n');
    if (lines <= 40) return b;
    const auto second = b.find('\n', b.find('\n') + 1) + 1, last = b.rfind('\n', b.size() - 2) + 1;
    return b.substr(0, second) + "| ... " + std::to_string(lines) + " lines, " +
           std::to_string(bytes.size()) + " bytes, md5 " +
           QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().left(8).toStdString() + "\n" +
           b.substr(last);
}

// The text of a menu item without its access key marks.
inline QString plain(QString caption) {
    return caption.replace(QStringLiteral("&&"), QStringLiteral("\x01")).remove('&').replace('\x01', '&');
}

inline std::string Session::run(const std::string& input, const cases::Args& a) {
    if (!dir_) {
        dir_ = std::make_unique<QTemporaryDir>();
        for (const char* file : {"default.cog", "messages.dat", "cogref.dat"})
            QFile::copy(QStringLiteral(TESSARY_BIN_DIR "/") + file, dir_->filePath(file));
        mdlTessary::setProgramDirectory(dir_->path());
    }
    const qsizetype logged = dialogs_.log.size();
    QTimer watch; // a modal window shown during the command
    QObject::connect(&watch, &QTimer::timeout, [this] {
        if (QWidget* m = QApplication::activeModalWidget()) modal(m);
    });
    watch.start(10);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    if (limit_) {
        rlimit small = old;
        small.rlim_cur = *std::exchange(limit_, std::nullopt);
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
    }
    std::string out = command(input, a);
    setrlimit(RLIMIT_FSIZE, &old);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QString shown;
    for (qsizetype i = logged; i < dialogs_.log.size(); ++i) shown += dialogs_.log[i] + '\n';
    shown += QString::fromStdString(out);
    return shown.replace(dir_->path(), QStringLiteral("DIR")).toStdString();
}

inline std::string Session::command(const std::string& input, const cases::Args& a) {
    const std::string& c = a.at(0);
    frmMain* frame = mdlTessary::frame();
    frmTessary* w = current();
    const auto bytes = [&](std::size_t i) {
        return a.size() > i ? QByteArray::fromStdString(a[i]).repeated(a.size() > i + 1 ? a.num(i + 1) : 1)
                            : QByteArray::fromStdString(input);
    };
    // Setting up: files, settings and the dialogs' answers.
    if (c == "write") {
        QFile f(path(a.at(1)));
        QDir().mkpath(QFileInfo(f).absolutePath());
        return f.open(QIODevice::WriteOnly) && f.write(bytes(2)) >= 0 ? "" : "not written\n";
    }
    if (c == "remove") // a file, or a folder with all it holds
        return (QFileInfo(path(a.at(1))).isDir() ? QDir(path(a.at(1))).removeRecursively()
                                                 : QFile::remove(path(a.at(1))))
                   ? ""
                   : "not removed\n";
    if (c == "rename") // replacing the file of that name, as a program that saves through a new file does
        return std::rename(qPrintable(path(a.at(1))), qPrintable(path(a.at(2)))) ? "not renamed\n" : "";
    if (c == "mkdir") return QDir().mkpath(path(a.at(1))) ? "" : "not made\n";
    if (c == "fifo") return ::mkfifo(QFile::encodeName(path(a.at(1))).constData(), 0644) ? "not made\n" : "";
    if (c == "sparse") { // a file of BYTES bytes that takes no room on the disk
        QFile f(path(a.at(1)));
        return f.open(QIODevice::WriteOnly) && f.resize(a.num(2)) ? "" : "not made\n";
    }
    if (c == "chmod")
        return ::chmod(QFile::encodeName(path(a.at(2))).constData(), mode_t(std::stol(a.at(1), nullptr, 8)))
                   ? "not changed\n"
                   : "";
    if (c == "nobody") { // the rest of the line, as a user without privileges (root passes every check)
        const bool root = ::geteuid() == 0;
        if (root && ::seteuid(65534) != 0) return "no other user\n";
        const std::string out = command(input, cases::Args{{a.begin() + 1, a.end()}});
        if (root && ::seteuid(0) != 0) return "still the other user\n";
        return out;
    }
    if (c == "wait") return QTest::qWait(int(a.num(1))), "";
    if (c == "limit") return limit_ = rlim_t(a.num(1)), "";
    if (c == "setting") {
        QStringList values;
        for (std::size_t i = 2; i < a.size(); ++i)
            values << QString::fromStdString(a[i]).replace(QStringLiteral("DIR"), dir_->path());
        const QString key = QString::fromStdString(a.at(1));
        values.size() == 1 ? QSettings().setValue(key, values[0]) : QSettings().setValue(key, values);
        return "";
    }
    if (c == "answer") {
        QStringList rest;
        for (std::size_t i = 2; i < a.size(); ++i) rest << QString::fromStdString(a[i]);
        const std::string& kind = a.at(1);
        if (kind == "input") dialogs_.inputAnswers << rest;
        if (kind == "open") dialogs_.openAnswers << path(a.at(2));
        if (kind == "save") dialogs_.saveAnswers << path(a.at(2));
        if (kind == "print") dialogs_.printToPdf = path(a.at(2));
        if (kind == "template") templateAnswers_ = rest;
        if (kind == "font") {
            QFont f(rest.value(0));
            f.setPointSizeF(rest.value(1).toDouble());
            f.setBold(rest.contains("bold"));
            f.setItalic(rest.contains("italic"));
            dialogs_.fontAnswers << f;
        }
        static const std::map<std::string, int> words{
            {"ok", ui::vbOK}, {"yes", ui::vbYes}, {"no", ui::vbNo}, {"cancel", ui::vbCancel}};
        for (std::size_t i = 1; i < a.size() && words.contains(a[i]); ++i) dialogs_.answers << words.at(a[i]);
        return "";
    }
    if (c == "settings") {
        QSettings s;
        std::string out;
        for (const QString& key : s.allKeys()) {
            const QVariant v = s.value(key);
            out += key.toStdString() + " = " +
                   (v.typeId() == QMetaType::QStringList ? "[" + v.toStringList().join(", ") : v.toString())
                       .toStdString() +
                   (v.typeId() == QMetaType::QStringList ? "]\n" : "\n");
        }
        return out.empty() ? "nothing stored\n" : out;
    }
    if (c == "copies") { // the recovery copies this program keeps, once typing has paused
        (void)QTest::qWaitFor(
            [] { // until no window waits to write its copy
                for (QTimer* t : mdlTessary::frame()
                                     ? mdlTessary::frame()->findChildren<QTimer*>("recoveryPause")
                                     : QList<QTimer*>())
                    if (t->isActive()) return false;
                return true;
            },
            5000);
        std::string out;
        for (const QString& folder : recoveryFolders(true))
            for (const QString& name : QDir(folder).entryList({"*.rec"}, QDir::Files)) {
                const auto r = editor::decodeRecovery(cases::readAll(folder + '/' + name).toStdString());
                out += r ? "copy of " + r->path + " \"" + cases::esc(r->text) + "\"\n" : "unreadable copy\n";
            }
        return out.empty() ? "no copies\n" : out;
    }
    if (c == "files")
        return QDir(a.size() > 1 ? path(a[1]) : dir_->path())
                   .entryList(QDir::Files | QDir::Hidden)
                   .join(' ')
                   .toStdString() +
               "\n";
    if (c == "file") {
        QFile f(path(a.at(1)));
        return f.open(QIODevice::ReadOnly) ? shownText(f.readAll()) : "no file\n";
    }
    if (c == "start") {
        QStringList line;
        for (std::size_t i = 1; i < a.size(); ++i) line << QString::fromStdString(a[i]);
        const QString before = QDir::currentPath(); // relative paths are read from DIR
        QDir::setCurrent(dir_->path());
        frame = startTessary(dialogs_, line.join(' ').replace(QStringLiteral("DIR"), dir_->path()));
        QDir::setCurrent(before);
        if (!frame) return "no frame\n";
        frame->activateWindow();
        if (!QTest::qWaitForWindowActive(frame)) return "not active\n";
        if (current()) current()->txtMain->setFocus();
        target_ = nullptr;
        return "";
    }
    if (c == "check") { // the check window: its findings; opening it; a click on finding N; OK; Escape
        if (a.at(1) == "open" && frame) return frame->mnuEditChkSyn_Click(), ""; // the menu item stays hidden
        frmChkSyn* check = frmChkSyn::loaded();
        if (!check) return "no check window\n";
        QListWidget* list = check->lstChkSyn;
        if (a.at(1) == "OK")
            QTest::mouseClick(check->cmdOK, Qt::LeftButton);
        else if (a.at(1) == "Escape")
            QTest::keyClick(list, Qt::Key_Escape);
        else if (a.size() > 1)
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(list->item(int(a.num(1)) - 1)).center());
        if (a.size() > 1) return "";
        std::string out = cases::esc(check->windowTitle().toStdString()) +
                          (check->isModal() || check->parentWidget() ? " (modal or owned)\n" : "\n");
        for (int i = 0; i < list->count(); ++i) out += "  " + list->item(i)->text().toStdString() + "\n";
        return out;
    }
    if (!frame) return "no frame\n";
    // The frame: its menus, windows, trees and tools.
    if (c == "stop") return stopTessary(), "";
    if (c == "windows") return windows();
    if (c == "menus") return menus(QString::fromStdString(a.at(1)));
    if (c == "menu") { // MENU/ITEM or MENU/SUBMENU/ITEM
        QList<QAction*> items = frame->menuBar()->actions();
        for (const QString& name : QString::fromStdString(a.at(1)).split('/')) {
            const auto found = std::find_if(items.begin(), items.end(),
                                            [&](QAction* i) { return plain(i->text()) == name; });
            if (found == items.end()) return "no such item\n";
            if (!(*found)->menu()) return (*found)->trigger(), "";
            emit(*found)->menu()->aboutToShow();
            items = (*found)->menu()->actions();
        }
        return "a menu, not an item\n";
    }
    if (c == "resize") return frame->resize(int(a.num(1)), int(a.num(2))), QTest::qWait(20), "";
    if (c == "request") return frame->MDIForm_LinkExecute(path(a.at(1))), ""; // a second start's path
    if (c == "status") { // the status bar, once the caret's place has been repainted
        QTest::qWait(60);
        const FrameStatusBar* b = frame->sbrMain;
        std::string out = "status \"" + b->lblPosition->text().toStdString() + "\" \"" +
                          b->lblLineEnds->text().toStdString() + "\" \"" +
                          b->lblCharset->text().toStdString() + "\"";
        if (!b->lblDiagnostics->isHidden())
            out += " diagnostics \"" + b->lblDiagnostics->text().toStdString() + "\"";
        return out +
               (b->currentMessage().isEmpty() ? "" : ", says \"" + b->currentMessage().toStdString() + "\"") +
               "\n";
    }
    if (c == "key") {
        for (std::size_t i = 1; i < a.size(); ++i) {
            const QKeyCombination k = QKeySequence(QString::fromStdString(a[i]))[0];
            QTest::keyClick(target(), k.key(), k.keyboardModifiers());
        }
        return "";
    }
    if (c == "drop") {
        QMimeData data;
        QList<QUrl> urls;
        const bool onText = a.at(1) == "text" && w; // "drop text NAME...": onto the window's text
        for (std::size_t i = onText ? 2 : 1; i < a.size(); ++i) urls << QUrl::fromLocalFile(path(a[i]));
        data.setUrls(urls);
        const QPoint at(frame->width() / 2, frame->height() / 2);
        for (QWidget* to : {w ? w->txtMain->viewport() : frame, static_cast<QWidget*>(frame)}) {
            QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(to, &enter);
            if (!enter.isAccepted()) return "refused\n";
        }
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(onText ? w->txtMain->viewport() : static_cast<QWidget*>(frame), &drop);
        QTest::qWait(50);
        return "";
    }
    if (c == "tree")
        return treeShown(a.at(1) == "CogExplorer" ? frame->tvwCogE
                         : a.at(1) == "CogRef"    ? frame->tvwCog
                                                  : tree());
    if (c == "show") { // a tree, chosen in the list with the keyboard
        const int index = frame->cmbTvwSel->findText(QString::fromStdString(a.at(1)));
        frame->cmbTvwSel->setCurrentIndex(index == 0 ? 1 : index - 1);
        QTest::keyClick(frame->cmbTvwSel, index == 0 ? Qt::Key_Up : Qt::Key_Down);
        return "";
    }
    if (c == "choose") { // the window in the list, with the keyboard
        frame->cmbCog->setCurrentIndex(int(a.num(1)) - 2);
        QTest::keyClick(frame->cmbCog, Qt::Key_Down);
        return "";
    }
    if (c == "click" || c == "dclick") return clickItem(a.at(1), c == "dclick"), "";
    if (c == "label") { // edits a node's label in place; "escape" abandons the edit
        QTreeWidgetItem* i = item(a.at(1));
        if (!i) return "no such node\n";
        if (tree()->currentItem() != i) clickItem(a.at(1), false);
        tree()->editItem(i, 0);
        QLineEdit* editor = nullptr;
        for (auto* e : tree()->viewport()->findChildren<QLineEdit*>())
            if (e->isVisible()) editor = e;
        if (!editor) return "no editor\n";
        editor->selectAll();
        QTest::keyClicks(editor, QString::fromStdString(a.at(2)));
        QTest::keyClick(editor, a.at(3) == "escape" ? Qt::Key_Escape : Qt::Key_Return);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return "";
    }
    if (c == "add") { // Add Symbol: type=T name=N value=V link=L local=yes|no, then the Add button
        for (std::size_t i = 1; i < a.size(); ++i) {
            const QString field = QString::fromStdString(a[i]).section('=', 0, 0),
                          value = QString::fromStdString(a[i]).section('=', 1);
            if (field == "type") frame->cmbVarType->setCurrentIndex(frame->cmbVarType->findText(value));
            if (field == "typed") { // typed over the type box's text
                frame->cmbVarType->lineEdit()->selectAll();
                QTest::keyClick(frame->cmbVarType->lineEdit(), Qt::Key_Delete);
                QTest::keyClicks(frame->cmbVarType->lineEdit(), value);
            }
            if (field == "local" && frame->chkLocal->isChecked() != (value == "yes"))
                QTest::mouseClick(frame->chkLocal, Qt::LeftButton, {},
                                  QPoint(2, frame->chkLocal->height() / 2));
            QLineEdit* box = field == "name"    ? frame->txtVarName
                             : field == "value" ? frame->txtDefVal
                             : field == "link"  ? frame->txtLinkID
                                                : nullptr;
            if (box) box->clear(), QTest::keyClicks(box, value);
        }
        QTest::mouseClick(frame->cmdAddVar, Qt::LeftButton);
        return "";
    }
    if (c == "window") {
        frmTessary* to = mdlTessary::colCogs.item(QString::fromStdString(a.at(1)));
        if (!to) return "no such window\n";
        frame->mdiArea->setActiveSubWindow(to->subWindow());
        mdlTessary::strCurCog = to->Tag;
        target_ = to->txtMain;
        return "";
    }
    if (c == "defaults") {
        const QFont f = mdlTessary::DefaultFont();
        std::string out = "open " + mdlTessary::DefOpenDir.toStdString() + ", save " +
                          mdlTessary::DefSaveDir.toStdString() + ", font \"" +
                          mdlTessary::DefFontName.toStdString() + "\" " +
                          std::to_string(mdlTessary::DefFontSize) + (mdlTessary::DefFontBold ? " bold" : "") +
                          (mdlTessary::DefFontItalic ? " italic" : "") + "\n";
        for (int i = 1; i <= mdlTessary::colCogs.count(); ++i) {
            const QFont shown = cogWindow(i)->txtMain->font();
            if (shown.family() != f.family() || shown.pointSize() != f.pointSize() ||
                shown.bold() != f.bold() || shown.italic() != f.italic())
                out += cogWindow(i)->Tag.toStdString() + " shows " + shown.toString().toStdString() + "\n";
        }
        return out;
    }
    if (!w) return "no window\n";
    // The current editor window.
    if (c == "load" || c == "type" || (c == "at" && a.size() > 1)) target_ = w->txtMain;
    if (c == "load") { // its text, with nothing to undo and no modified mark
        w->txtMain->setTextBytes(bytes(1));
        w->txtMain->SendScintilla(QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
        w->clearModified();
        return "";
    }
    if (c == "clipboard" && a.size() == 1)
        return "clipboard \"" + cases::esc(QGuiApplication::clipboard()->text().toStdString()) + "\"\n";
    if (c == "clipboard") return QGuiApplication::clipboard()->setText(QString::fromStdString(a.at(1))), "";
    if (c == "compose") { // text committed by an input method
        QInputMethodEvent event;
        event.setCommitString(QString::fromStdString(a.at(1)));
        return QCoreApplication::sendEvent(w->txtMain, &event), "";
    }
    if (c == "bars") { // the bars above the text; "bars wait" waits up to 5 s for one to show
        const auto shown = [w] {
            QList<NoticeBar*> bars;
            for (NoticeBar* b : w->findChildren<NoticeBar*>())
                if (b->isVisibleTo(w)) bars << b;
            return bars;
        };
        if (a.at(1) == "wait") (void)QTest::qWaitFor([&] { return !shown().isEmpty(); }, 5000);
        std::string out;
        for (NoticeBar* b : shown()) {
            out += "bar \"" + b->message().toStdString() + "\"";
            for (QPushButton* button : b->findChildren<QPushButton*>())
                if (button->isVisibleTo(b)) out += " [" + plain(button->text()).toStdString() + "]";
            out += "\n";
        }
        return out.empty() ? "no bar\n" : out;
    }
    if (c == "press") { // a button of the window's bars by its caption, or "hide" for a bar's close button
        for (NoticeBar* b : w->findChildren<NoticeBar*>())
            for (QAbstractButton* button : b->findChildren<QAbstractButton*>())
                if (b->isVisibleTo(w) && button->isVisibleTo(b) &&
                    (plain(button->text()).toStdString() == a.at(1) ||
                     (a.at(1) == "hide" && button == b->cmdHide)))
                    return QTest::mouseClick(button, Qt::LeftButton), "";
        return "no such button\n";
    }
    if (c == "pause") { // the pause in typing before a recovery copy is written, in milliseconds
        w->findChild<QTimer*>(QStringLiteral("recoveryPause"))->setInterval(int(a.num(1)));
        return "";
    }
    if (c == "type") return w->txtMain->setFocus(), typeKeys(w->txtMain, a.at(1)), "";
    if (c == "at") { // sets the selection; without a position, shows it
        if (a.size() == 1) {
            const long s = w->txtMain->selStart(), n = w->txtMain->selLength();
            return n ? "selects " + std::to_string(s) + "+" + std::to_string(n) + " \"" +
                           cases::esc(w->txtMain->selText().toStdString()) + "\"\n"
                     : "caret " + std::to_string(s) + "\n";
        }
        w->txtMain->setFocus();
        w->txtMain->setSelStart(a.num(1));
        if (a.size() > 2) w->txtMain->setSelLength(a.num(2));
        return "";
    }
    if (c == "text") {
        QFile defaults(dir_->filePath(QStringLiteral("default.cog")));
        const QByteArray text = textOf(w);
        const bool same = defaults.open(QIODevice::ReadOnly) && defaults.readAll() == text;
        return std::to_string(w->txtMain->lines()) + " lines" +
               (same ? ", the text of default.cog\n" : "\n" + shownText(text));
    }
    if (c == "search")
        return "word \"" + cases::esc(w->sW.toStdString()) + "\", replacement \"" +
               cases::esc(w->sR.toStdString()) + "\", next from " + std::to_string(w->ipos) + "\n";
    if (c == "aids") return aids(w);
    return "unknown command\n";
}

inline void Session::modal(QWidget* m) {
    if (auto* t = qobject_cast<frmCGT*>(m)) {
        QString rows;
        for (int r = 0; r < t->lvwCog->topLevelItemCount(); ++r) {
            QStringList fields;
            for (int k = 0; k < t->lvwCog->columnCount(); ++k) fields << t->lvwCog->topLevelItem(r)->text(k);
            rows += "\n  " + fields.join(QStringLiteral(" | "));
        }
        dialogs_.log << "template window " + t->sF + rows;
        if (!templateAnswers_) {
            t->close();
            return;
        }
        for (int r = 0; r < templateAnswers_->size(); ++r)
            t->lvwCog->topLevelItem(r)->setText(0, (*templateAnswers_)[r]);
        templateAnswers_.reset();
        QTest::mouseClick(t->cmdGenCog, Qt::LeftButton);
        return;
    }
    dialogs_.log << QStringLiteral("%1 \"%2\"").arg(m->metaObject()->className(), m->windowTitle());
    if (auto* about = qobject_cast<frmAbout*>(m)) {
        dialogs_.log.last() += " " + ScriptedDialogs::quoted(about->lblVersion->text());
        QTest::mouseClick(m, Qt::LeftButton, {}, QPoint(3, 3)); // closes on a click outside its controls
    }
    if (m->isVisible()) m->close();
}

inline std::string Session::windows() const {
    frmMain* f = mdlTessary::frame();
    QStringList list;
    for (int i = 0; i < f->cmbCog->count(); ++i) list << f->cmbCog->itemText(i);
    QStringList captions;
    std::string out = "frame \"" + f->windowTitle().toStdString() + "\", showing " +
                      (f->tvwCogE->isVisible()  ? "CogExplorer"
                       : f->tvwCog->isVisible() ? "CogRef"
                                                : "no tree") +
                      ", list \"" + f->cmbCog->currentText().toStdString() + "\"" +
                      (f->mdiArea->viewMode() == QMdiArea::TabbedView ? ", tabbed\n" : "\n");
    for (int i = 1; i <= mdlTessary::colCogs.count(); ++i) {
        frmTessary* w = cogWindow(i);
        captions << w->Caption();
        const std::string_view text = w->txtMain->bytes();
        const QString title = w->strFile == "blank" ? QString() : mdlTessary::GetFileTitle(w->strFile);
        out += (w->Tag == mdlTessary::strCurCog ? "* " : "  ") + w->Tag.toStdString() + " \"" +
               w->Caption().toStdString() + "\" " + w->strFile.toStdString() + (w->bMod ? " modified" : "") +
               (w->strFileTitle == title ? "" : ", title \"" + w->strFileTitle.toStdString() + "\"") +
               (w->subWindow()->windowTitle() == w->Caption()
                    ? ""
                    : ", framed as " + w->subWindow()->windowTitle().toStdString()) +
               (w->subWindow()->isMaximized() ? ", maximized" : "") +
               (f->mdiArea->viewport()->rect().contains(w->subWindow()->geometry()) ? ""
                                                                                    : ", outside the area") +
               (w->lsym == cog::find(1, text, "\nsymbols") && w->lsymend == cog::find(1, text, "\nend")
                    ? ""
                    : ", markers stale") +
               "\n";
    }
    if (list != captions) out += "list holds " + list.join(QStringLiteral(" | ")).toStdString() + "\n";
    if (frmChkSyn::loaded()) out += "check window open\n";
    return out;
}

inline std::string Session::treeShown(KeyedTreeView* t) const {
    frmMain* f = mdlTessary::frame();
    const bool explorer = t == f->tvwCogE;
    const auto current = explorer ? f->nLCE : f->nLC;
    const auto selected = t->keyOf(t->currentItem());
    std::string out = (explorer ? "CogExplorer of " + t->Tag.toStdString() : std::string("CogRef")) +
                      ", current " + (current ? cases::esc(*current) : "none") +
                      (selected == current ? "" : ", selected " + cases::esc(selected.value_or("none"))) +
                      (explorer ? "" : ", description \"" + f->txtCogDesc->text().toStdString() + "\"") +
                      "\n";
    std::function<void(QTreeWidgetItem*, int)> show = [&](QTreeWidgetItem* i, int depth) {
        const std::string key = *t->keyOf(i);
        const auto* node = t->node(key);
        out += std::string(std::size_t(depth) * 2 + 2, ' ') + cases::esc(i->text(0).toStdString()) +
               (key == i->text(0).toStdString() ? "" : " [" + cases::esc(key) + "]") +
               (i->isExpanded() && i->childCount() ? " +" : "") +
               (node->text == i->text(0).toStdString() && node->expanded == i->isExpanded()
                    ? ""
                    : " (model differs)") +
               "\n";
        for (int k = 0; k < i->childCount(); ++k) show(i->child(k), depth + 1);
    };
    for (int k = 0; k < t->topLevelItemCount(); ++k) show(t->topLevelItem(k), 0);
    return out;
}

inline std::string Session::menus(const QString& only) const {
    std::string out;
    for (QAction* m : mdlTessary::frame()->menuBar()->actions()) {
        if (!m->menu() || (!only.isEmpty() && plain(m->text()) != only)) continue;
        std::function<void(QMenu*, std::string)> list = [&](QMenu* menu, const std::string& indent) {
            emit menu->aboutToShow();
            for (QAction* item : menu->actions()) {
                QStringList keys;
                for (const QKeySequence& k : item->shortcuts()) keys << k.toString();
                out += indent + (item->isSeparator() ? "---" : item->text().toStdString()) +
                       (keys.isEmpty() ? "" : "  " + keys.join(QStringLiteral(", ")).toStdString()) +
                       (item->data().toString().isEmpty() ? ""
                                                          : " -> " + item->data().toString().toStdString()) +
                       (item->isEnabled() ? "" : " (disabled)") + (item->isVisible() ? "" : " (hidden)") +
                       (item->isChecked() ? " (checked)" : "") + "\n";
                if (item->menu()) list(item->menu(), indent + "  ");
            }
        };
        out += m->text().toStdString() + "\n";
        list(m->menu(), "  ");
    }
    return out;
}

inline std::string Session::aids(frmTessary* w) {
    std::string out;
    if (!w->picCogParams->isHidden()) {
        const auto items = w->lvwCogParams->selectedItems();
        out += "pop-up after " + std::to_string(w->lSpace) + ", highlights " +
               (items.isEmpty() ? "nothing" : items.first()->text(0).toStdString()) + "\n";
    }
    if (!w->picMain->isHidden())
        out += "help " + w->lblHelp->text().toStdString() + ": " +
               mdlTessary::frame()->txtCogDesc->text().toStdString() + ", depth " +
               std::to_string(w->intParens) + "\n";
    return out;
}

// The entry of a widget test program: the settings store, the recovery copies and the runtime
// directory (where the program listens for paths handed over) live in directories of their own,
// made for this run, so running a test by hand never touches the user's own settings or copies or
// a running Tessary. Messages of the system (a failed write) are in English.
#define TESSARY_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char** argv) {                                                                        \
        QTemporaryDir config, runtime;                                                                       \
        if (!config.isValid() || !runtime.isValid()) return 1;                                               \
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));                                        \
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));                                       \
        qputenv("XDG_DATA_HOME", QFile::encodeName(config.filePath(QStringLiteral("data"))));                \
        qputenv("LC_ALL", "C");                                                                              \
        QApplication app(argc, argv);                                                                        \
        app.setAttribute(Qt::AA_Use96Dpi, true);                                                             \
        TestClass test;                                                                                      \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
