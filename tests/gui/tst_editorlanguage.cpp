// The COG language in the editor, driven with real keys and mouse events. Each case of
// tests/cases/editorlanguage is a script and the transcript of what the editor shows as the user
// acts on it; the questions:
//   (first)         the script is opened as a file; no question answers as "problems"
//   problems        the status bar's count, the Problems dock's rows, the squiggles and markers
//   click L:C [ctrl]  a click on the text (Ctrl held: go to the definition); answers the caret
//   keys TEXT...    types each TEXT; <Ctrl+Space>, <Return>, <Tab>, <Escape> are keys; answers
//                   whether the analysis is of the text typed, the caret, the caret's line and
//                   the completion list or the message pop-up when one is shown
//   rest L:C        rests the mouse on the text; answers the tooltip
//   row N [usages]  clicks row N of the Problems dock (or of the Usages tab); answers the caret
//   menu ITEM [ANSWER]  chooses an Edit or View menu item (ANSWER goes to its input box);
//                   answers the messages shown, the Usages tab when shown, and the caret
//   text            the whole text
#include "../cases.h"
#include "app/ui/StatusBar.h"
#include "editor/ui/ScriptAnalysis.h"
#include "harness.h"

#include <QDockWidget>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMenuBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QTreeWidget>

namespace {

ScriptedDialogs dialogs;
QTemporaryDir files;
bool opened = false;                     // the case's script is open
std::unique_ptr<QSignalSpy> typingPause; // the analysis announced once typing pauses

frmTessary* window() {
    return mdlTessary::currentCog();
}

long send(unsigned int msg, unsigned long w = 0, long l = 0) {
    return window()->txtMain->SendScintilla(msg, w, l);
}

std::string place(long offset) {
    const long line = send(QsciScintilla::SCI_LINEFROMPOSITION, static_cast<unsigned long>(offset));
    const long column = offset - send(QsciScintilla::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line));
    return std::to_string(line + 1) + ":" + std::to_string(column + 1);
}

long offsetOf(const std::string& lineColon) {
    const auto colon = lineColon.find(':');
    const long line = std::stol(lineColon.substr(0, colon)) - 1;
    return send(QsciScintilla::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line)) +
           std::stol(lineColon.substr(colon + 1)) - 1;
}

// The middle of the character at offset, in the text's viewport.
QPoint pointOf(long offset) {
    const long x = send(QsciScintilla::SCI_POINTXFROMPOSITION, 0UL, offset);
    const long next = send(QsciScintilla::SCI_POINTXFROMPOSITION, 0UL, offset + 1);
    const long y = send(QsciScintilla::SCI_POINTYFROMPOSITION, 0UL, offset);
    return QPoint(int(x + std::max(1L, (next - x) / 2)), int(y + send(QsciScintilla::SCI_TEXTHEIGHT) / 2));
}

std::string caret() {
    const long start = window()->txtMain->selStart(), length = window()->txtMain->selLength();
    return "caret " + place(start) + (length ? " selecting " + place(start + length) : "") + "\n";
}

std::string text(const QString& s) {
    return cases::esc(s.toStdString());
}

// The rows of a list of places: "[severity] LINE TEXT".
std::string rows(QTreeWidget* list) {
    std::string out;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = list->topLevelItem(i);
        const QString severity = item->toolTip(0).isEmpty() ? QString() : item->toolTip(0) + ' ';
        out += text(severity + item->text(0) + ' ' + item->text(1)) + "\n";
    }
    return out;
}

bool analysed() {
    return QTest::qWaitFor([] { return window()->features.analysis->isCurrent(); });
}

std::string problems() {
    if (typingPause && typingPause->isEmpty() && !typingPause->wait()) return "no analysis after typing\n";
    typingPause.reset();
    if (!analysed()) return "no analysis\n";
    QCoreApplication::processEvents();
    frmMain* frame = mdlTessary::frame();
    std::string out = "status: " + text(frame->sbrMain->lblDiagnostics->text()) + "\n";
    out += rows(frame->lvwProblems);
    const long length = send(QsciScintilla::SCI_GETLENGTH);
    for (const char* kind : {"error", "warning"}) {
        const int indicator = window()->txtMain->indicator(QStringLiteral("diagnostic_") + kind);
        const auto ind = static_cast<unsigned long>(indicator);
        for (long pos = 0; pos < length;) {
            const long end = std::max(pos + 1, send(QsciScintilla::SCI_INDICATOREND, ind, pos));
            if (send(QsciScintilla::SCI_INDICATORVALUEAT, ind, pos))
                out += std::string("squiggle ") + kind + " " + place(pos) + "-" + place(end) + "\n";
            pos = end;
        }
        const int marker = window()->txtMain->marker(QStringLiteral("diagnostic_") + kind);
        for (long line = 0; (line = send(QsciScintilla::SCI_MARKERNEXT, static_cast<unsigned long>(line),
                                         1L << marker)) >= 0;
             ++line)
            out += std::string("margin ") + kind + " line " + std::to_string(line + 1) + "\n";
    }
    return out;
}

void typeKeys(CogTextBox* box, const std::string& keys) {
    if (keys.size() > 2 && keys.front() == '<' && keys.back() == '>') {
        const QKeyCombination key =
            QKeySequence::fromString(QString::fromStdString(keys.substr(1, keys.size() - 2)))[0];
        QTest::keyClick(box, key.key(), key.keyboardModifiers());
    } else {
        QTest::keyClicks(box, QString::fromStdString(keys));
    }
}

// The completion list when one is shown: its length and chosen item, and every item of a short one.
std::string completionList() {
    if (!send(QsciScintilla::SCI_AUTOCACTIVE)) return "";
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* list = qobject_cast<QListWidget*>(w); list && w->isVisible()) {
            std::string out = "completion: " + std::to_string(list->count()) + " items:";
            for (int i = 0; i < list->count(); ++i)
                if (list->count() <= 6 || list->item(i)->isSelected())
                    out += (list->item(i)->isSelected() ? " [" : " ") + text(list->item(i)->text()) +
                           (list->item(i)->isSelected() ? "]" : "");
            return out + "\n";
        }
    return "completion: not shown\n";
}

std::string keys(const cases::Args& args) {
    CogTextBox* box = window()->txtMain;
    typingPause = std::make_unique<QSignalSpy>(window()->features.analysis, &ScriptAnalysis::analysed);
    for (const std::string& k : args) typeKeys(box, k);
    std::string out = std::string("analysed: ") + (window()->features.analysis->isCurrent() ? "yes" : "no") +
                      "\n" + caret();
    const long line = send(QsciScintilla::SCI_LINEFROMPOSITION, static_cast<unsigned long>(box->selStart()));
    const long start = send(QsciScintilla::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line));
    out +=
        "line: " +
        cases::esc(box->range(
            start, send(QsciScintilla::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(line)) - start)) +
        "\n";
    if (window()->picCogParams->isVisible()) out += "message pop-up shown\n";
    return out + completionList();
}

std::string rest(const std::string& at) {
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); })) return "the last tooltip stays\n";
    QWidget* viewport = window()->txtMain->viewport();
    QTest::mouseMove(viewport, pointOf(offsetOf(at)) + QPoint(0, 1));
    QTest::mouseMove(viewport, pointOf(offsetOf(at)));
    if (!QTest::qWaitFor([] { return QToolTip::isVisible(); })) return "no tooltip\n";
    std::string out;
    for (const QString& line : QToolTip::text().split('\n')) out += "tooltip: " + text(line) + "\n";
    return out;
}

QAction* menuItem(const std::string& caption) {
    for (QAction* menu : mdlTessary::frame()->menuBar()->actions())
        for (QAction* item : menu->menu()->actions())
            if (item->text().remove('&') == QString::fromStdString(caption)) return item;
    return nullptr;
}

std::string menu(const cases::Args& args) {
    QAction* item = menuItem(args.at(0));
    if (!item) return "no such item\n";
    dialogs.messages.clear();
    dialogs.log.clear();
    mdlTessary::frame()->sbrMain->clearMessage();
    if (args.size() > 1) dialogs.inputAnswers = {QString::fromStdString(args.at(1))};
    item->trigger();
    std::string out;
    for (const QString& shown : dialogs.log)
        if (shown.startsWith("input ")) out += "asked: " + text(shown.mid(6)) + "\n";
    for (const auto& m : dialogs.messages) out += "message: " + text(m.text) + "\n";
    if (const QString status = mdlTessary::frame()->sbrMain->currentMessage(); !status.isEmpty())
        out += "status: " + text(status) + "\n";
    if (mdlTessary::frame()->dckUsages->isVisible()) out += rows(mdlTessary::frame()->lvwUsages);
    return out + caret();
}

std::string row(const cases::Args& args) {
    QTreeWidget* list =
        args.has("usages") ? mdlTessary::frame()->lvwUsages : mdlTessary::frame()->lvwProblems;
    QTreeWidgetItem* item = list->topLevelItem(int(args.num(0)) - 1);
    if (!item) return "no such row\n";
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
    return caret();
}

std::string act(const std::string& input, const cases::Args& args) {
    const std::string& what = args.at(0);
    const cases::Args rest_(cases::Args{{args.begin() + std::min<std::size_t>(1, args.size()), args.end()}});
    if (!opened) {
        opened = true;
        const QString path = files.filePath(QStringLiteral("script.cog"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(input.data(), qint64(input.size())) < 0)
            return "not written\n";
        file.close();
        mdlTessary::OpenCogFile(path);
    }
    if (what.empty() || what == "problems") return problems();
    if (what == "keys") return keys(rest_);
    if (what == "rest") return rest(args.at(1));
    if (what == "menu") return menu(rest_);
    if (what == "row") return row(rest_);
    if (what == "text") return cases::block(window()->txtMain->bytes());
    if (what == "click") {
        QTest::mouseClick(window()->txtMain->viewport(), Qt::LeftButton,
                          args.has("ctrl") ? Qt::ControlModifier : Qt::NoModifier,
                          pointOf(offsetOf(args.at(1))));
        return caret();
    }
    return "unknown question\n";
}

const std::map<std::string, cases::Rule> rules = {
    {"editorlanguage",
     [](const std::string& input, const cases::Args& args, const QString&) { return act(input, args); }}};

} // namespace

class tst_EditorLanguage : public QObject {
    Q_OBJECT
private slots:
    void init() {
        prepareTessaryTest();
        dialogs = ScriptedDialogs();
        opened = false;
        typingPause.reset();
        QVERIFY(startTessary(dialogs));
    }
    void cleanup() { stopTessary(); }

    void cases_data() { cases::listCases(rules); }
    void cases() { cases::runCase(rules); }

    void problemsDockFollowsTheViewMenuAndTheCurrentWindow() {
        frmMain* frame = mdlTessary::frame();
        QVERIFY(analysed());
        const QString blank = frame->sbrMain->lblDiagnostics->text();
        frame->mnuViewProblems->trigger();
        QVERIFY(frame->dckProblems->isHidden());
        frame->mnuViewProblems->trigger();
        QVERIFY(frame->dckProblems->isVisible());
        mdlTessary::NewCogWindow(QStringLiteral("blank"), QString());
        QTest::keyClicks(window()->txtMain, QStringLiteral("Nothing();"));
        QVERIFY(QTest::qWaitFor([&] { return frame->sbrMain->lblDiagnostics->text() != blank; }));
        frame->mdiArea->setActiveSubWindow(cogWindow(1)->subWindow());
        QCOMPARE(frame->sbrMain->lblDiagnostics->text(), blank);
    }
};

TESSARY_TEST_MAIN(tst_EditorLanguage)
#include "tst_editorlanguage.moc"
