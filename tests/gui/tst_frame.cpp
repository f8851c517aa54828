// Start-up, the frame's menus and the editor windows' life: creating, numbering, the modified
// mark and closing.
#include "harness.h"

#include "app/ui/KeyedTreeView.h"

#include <QComboBox>
#include <QFile>
#include <QMenuBar>

class tst_Frame : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { stopTessary(); }

    void startsWithOneBlankWindow();
    void typingMarksTheWindowOnce();
    void numberingAfterClosingAMiddleWindow();
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

void tst_Frame::numberingAfterClosingAMiddleWindow() {
    ScriptedDialogs dialogs;
    frmMain* frame = startTessary(dialogs);
    frame->mnuFileNew_Click();
    frame->mnuFileNew_Click();
    QCOMPARE(mdlTessary::colCogs.count(), 3);
    mdlTessary::strCurCog = QStringLiteral("cog2");
    frame->mnuFileClose_Click();
    QCOMPARE(mdlTessary::colCogs.count(), 2);
    frame->mnuFileNew_Click(); // count + 1 is 3, which is still open
    QCOMPARE(mdlTessary::colCogs.count(), 3);
    QStringList tags;
    for (int i = 1; i <= 3; ++i) tags << cogWindow(i)->Tag;
    tags.removeDuplicates();
    QCOMPARE(tags.size(), 3);
    QCOMPARE(frame->cmbCog->count(), 3);
}

QTEST_MAIN(tst_Frame)
#include "tst_frame.moc"
