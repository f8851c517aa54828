// The COG tools on the frame: the CogExplorer with rename, delete and Add Symbol, the check
// window, the reference tree and the templates (sessions under tests/cases/cogtools); the Add
// Symbol frame's controls; the template window's table and its file changing under it.
#include "harness.h"

#include <QHeaderView>

class tst_CogTools : public QObject {
    Q_OBJECT
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
    QTemporaryDir dir_;

    QString write(const QString& name, const QByteArray& bytes) {
        QFile f(dir_.filePath(name));
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() ? f.fileName() : QString();
    }
    static QWidget* editorAt(QTreeWidget* list, int row, int column) {
        list->editItem(list->topLevelItem(row), column);
        return list->indexWidget(list->model()->index(row, column));
    }

private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
    }
    void cleanup() { endSessionTest(); }

    void sessions_data() { cases::listCases({{"cogtools", {}}}); }
    void sessions() { cases::runCase({{"cogtools", playSession()}}); }

    void addSymbolControls() {
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
        QStringList items, types;
        for (int i = 0; i < frame_->cmbVarType->count(); ++i) items << frame_->cmbVarType->itemText(i);
        for (const auto& t : cog::symbolTypes()) types << QString::fromStdString(t);
        QCOMPARE(items, types);
        QCOMPARE(
            (QStringList{frame_->fraAddSym->title(), frame_->cmbVarType->currentText(),
                         frame_->cmdAddVar->text(), frame_->cmbVarType->toolTip(),
                         frame_->txtVarName->toolTip(), frame_->txtDefVal->toolTip(),
                         frame_->chkLocal->text()}),
            (QStringList{"Add Symbol", "Choose One...", "Add", "Choose the data type of the new variable",
                         "ter the name of the variable to be created", "Enter the Default Value here", ""}));
    }

    void templateWindowTable() {
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
        const QByteArray door =
            "3\r\nValue,Name,Description\r\n8.0,speed,Speed, in frames per second\r\n"
            "door.wav,snd,Sound\r\nend\r\n# door\r\nsymbols\r\nflex speed=<%SPEED%>\r\nend\r\n";
        const QString path = write("door.cgt", door);
        frmCGT window(frame_);
        QVERIFY(window.OpenCogTemplate(path));
        QCOMPARE(window.windowTitle(), QStringLiteral("Cog Template"));
        QCOMPARE(window.cmdGenCog->text(), QStringLiteral("Generate Cog"));
        QCOMPARE(window.ilen, door.indexOf("# door"));
        QTreeWidget* list = window.lvwCog;
        QCOMPARE(list->headerItem()->text(2), QStringLiteral("Description"));
        QCOMPARE((QList<int>{window.columnOfKey("col2"), window.columnOfKey("col3")}), (QList<int>{2, -1}));
        QCOMPARE(frmCGT::rowKey(1, list), QStringLiteral("snd"));
        // Columns sized by their titles, not their contents; the last takes the rest less 1000 twips.
        const QFontMetrics metrics(list->header()->font());
        const int value = list->columnWidth(0), name = list->columnWidth(1);
        QVERIFY(value >= metrics.horizontalAdvance("Value") && name >= metrics.horizontalAdvance("Name"));
        QVERIFY(value < metrics.horizontalAdvance("Description"));
        QCOMPARE(list->columnWidth(2), list->width() - 2 * list->frameWidth() - value - name - 1000 / 15);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(!editorAt(list, 1, 1) && !editorAt(list, 1, 2)); // only the value is edited in place
        list->setCurrentItem(list->topLevelItem(0), 0);
        auto* editor = qobject_cast<QLineEdit*>(editorAt(list, 0, 0));
        QVERIFY(editor);
        editor->selectAll();
        QTest::keyClicks(editor, "16");
        QTest::mouseClick(window.cmdGenCog, Qt::LeftButton); // while the value is still being typed
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        QVERIFY(textOf(cogWindow(2)).contains("flex speed=16\r\n"));

        // A template file changed or gone since it was opened creates nothing and says why.
        for (const char* problem : {"has changed since it was opened", "cannot be read any more"}) {
            frmCGT again(frame_);
            QVERIFY(again.OpenCogTemplate(path));
            QVERIFY(*problem == 'h' ? !write("door.cgt", door + "x").isEmpty() : QFile::remove(path));
            again.cmdGenCog_Click();
            QCOMPARE(mdlTessary::colCogs.count(), 2);
            const auto& m = dialogs_.messages.last();
            QVERIFY2(m.text.contains(path) && m.text.contains(problem) && m.icon == ui::vbExclamation,
                     qPrintable(m.text));
        }
        QCOMPARE(dialogs_.messages.size(), 2);
    }
};

TESSARY_TEST_MAIN(tst_CogTools)
#include "tst_cogtools.moc"
