// The typing aids on a real editor window, run from the golden cases of tests/cases/keys: the
// input is the window's text; "> at CARET type KEYS [select START LENGTH type KEYS]" types keys
// (\x08 Backspace, \r Enter, \t Tab, \x02 Left) and answers with the text, the caret and the aid
// shown: the message pop-up with its highlighted name, or the help line with its depth.
#include "harness.h"
#include "refdir.h"
#include "tests/cases.h"

#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

namespace {

void type(QWidget* target, const std::string& keys) {
    static const QHash<char, Qt::Key> special{
        {'\x08', Qt::Key_Backspace}, {'\r', Qt::Key_Return}, {'\t', Qt::Key_Tab}, {'\x02', Qt::Key_Left}};
    for (const char c : keys)
        special.contains(c) ? QTest::keyClick(target, special[c]) : QTest::keyClick(target, c);
}

std::string keys(const std::string& text, const cases::Args& a, const QString&) {
    prepareTessaryTest();
    const auto dir =
        makeProgramDirectory("t\r\n.foo\r\n.G\r\nFoo(a)|Does foo\r\nBar(x, y)|Bars | twice\r\nEOF\r\n",
                             "x\r\nactivated\r\nentered\r\nstartup\r\n");
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    if (!frame || (frame->activateWindow(), !QTest::qWaitForWindowActive(frame))) return "no frame\n";
    frmTessary* w = cogWindow(1);
    w->txtMain->setTextBytes(QByteArray::fromStdString(text));
    w->txtMain->setSelStart(a.num(1));
    w->txtMain->setFocus();
    type(w->txtMain, a.at(3));
    if (a.at(4) == "select") {
        w->txtMain->setSelStart(a.num(5));
        w->txtMain->setSelLength(a.num(6));
        type(w->txtMain, a.at(8));
    }
    std::string out = cases::block(textOf(w).toStdString()) + "caret " +
                      std::to_string(w->txtMain->selStart()) +
                      (w->txtMain->hasFocus() ? "" : ", focus lost") + "\n";
    if (!w->picCogParams->isHidden()) {
        const auto items = w->lvwCogParams->selectedItems();
        out += "pop-up after " + std::to_string(w->lSpace) + ", highlights " +
               (items.isEmpty() ? "nothing" : items.first()->text(0).toStdString()) + "\n";
    }
    if (!w->picMain->isHidden())
        out += "help " + w->lblHelp->text().toStdString() + ": " + frame->txtCogDesc->text().toStdString() +
               ", depth " + std::to_string(w->intParens) + "\n";
    stopTessary();
    return out;
}

const std::map<std::string, cases::Rule> kRules{{"keys", keys}};

} // namespace

class tst_TypingAidKeys : public QObject {
    Q_OBJECT
private slots:
    void keys_data() { cases::listCases(kRules); }
    void keys() { cases::runCase(kRules); }
};

TESSARY_TEST_MAIN(tst_TypingAidKeys)
#include "tst_typingaidkeys.moc"
