// The template window: its parameter table, in-place editing of the values, generation into a new
// COG window, and templates that cannot be used.
#include "harness.h"

#include "templates/ui/frmCGT.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>

namespace {

const QByteArray kDoor =
    "3\r\nValue,Name,Description\r\n"
    "8.0,speed,Speed, in frames per second\r\n"
    "door.wav,snd,Sound\r\n"
    "end\r\n"
    "# door\r\nsymbols\r\nflex speed=<%SPEED%>\r\nsound s=<%snd%>\r\nend\r\ncode\r\nend\r\n";

// Runs fn on the modal window that the next command shows (nullptr when none is shown).
template <typename Fn> void onModal(Fn fn) {
    QTimer::singleShot(0, [fn] {
        QWidget* modal = QApplication::activeModalWidget();
        fn(modal);
        if (modal && modal->isVisible()) modal->close();
    });
}

QWidget* editorAt(QTreeWidget* list, int row, int column) {
    list->editItem(list->topLevelItem(row), column);
    return list->indexWidget(list->model()->index(row, column));
}

} // namespace

class tst_TemplateWindow : public QObject {
    Q_OBJECT
private slots:
    void init() {
        prepareTessaryTest();
        dialogs_ = ScriptedDialogs();
        frame_ = startTessary(dialogs_);
        QVERIFY(frame_);
        QVERIFY(dir_.isValid());
    }
    void cleanup() { stopTessary(); }

    void showsTheParameterTableWithOnlyTheValueEditable() {
        frmCGT window(frame_);
        const QString path = write("door.cgt", kDoor);
        QVERIFY(window.OpenCogTemplate(path));
        QCOMPARE(window.windowTitle(), QStringLiteral("Cog Template"));
        QCOMPARE(window.cmdGenCog->text(), QStringLiteral("Generate Cog"));
        QCOMPARE(window.sF, path);
        QCOMPARE(window.ilen, kDoor.indexOf("# door"));
        QTreeWidget* list = window.lvwCog;
        QCOMPARE(list->columnCount(), 3);
        QCOMPARE(list->headerItem()->text(2), QStringLiteral("Description"));
        QCOMPARE(window.columnOfKey("col2"), 2);
        QCOMPARE(window.columnOfKey("col3"), -1);
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(frmCGT::rowKey(1, list), QStringLiteral("snd"));
        const QTreeWidgetItem* first = list->topLevelItem(0);
        QCOMPARE((QStringList{first->text(0), first->text(1), first->text(2)}),
                 (QStringList{"8.0", "speed", "Speed, in frames per second"}));
        // Columns sized by their titles, not their contents; the last takes the rest less 1000 twips.
        const QFontMetrics metrics(list->header()->font());
        const int value = list->columnWidth(0), name = list->columnWidth(1);
        QVERIFY(value >= metrics.horizontalAdvance("Value") && name >= metrics.horizontalAdvance("Name"));
        QVERIFY(value < metrics.horizontalAdvance("Description"));
        QCOMPARE(list->columnWidth(2), list->width() - 2 * list->frameWidth() - value - name - 1000 / 15);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(!editorAt(list, 1, 1));
        QVERIFY(!editorAt(list, 1, 2));
        QVERIFY(qobject_cast<QLineEdit*>(editorAt(list, 1, 0)));
    }
    void generatesANewWindow_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("values"); // typed into the first column, row by row
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("defaults") << kDoor << QStringList{}
                                  << QByteArray(
                                         "# door\r\nsymbols\r\nflex speed=8.0\r\nsound s=door.wav\r\nend\r\n"
                                         "code\r\nend\r\n");
        QTest::newRow("edited values")
            << kDoor << QStringList{"2.5", ""}
            << QByteArray("# door\r\nsymbols\r\nflex speed=2.5\r\nsound s=\r\nend\r\n"
                          "code\r\nend\r\n");
        QTest::newRow("no rows: the body unchanged") << QByteArray("2\r\nV,N\r\nEND\r\n<%x%>\r\nsymbols")
                                                     << QStringList{} << QByteArray("<%x%>\r\nsymbols");
    }
    void generatesANewWindow() {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, values);
        QFETCH(QByteArray, text);
        frmCGT window(frame_);
        QVERIFY(window.OpenCogTemplate(write("t.cgt", file)));
        for (int r = 0; r < values.size(); ++r) window.lvwCog->topLevelItem(r)->setText(0, values[r]);
        window.show();
        window.cmdGenCog_Click();
        QVERIFY(!window.isVisible());
        QCOMPARE(window.result(), int(QDialog::Accepted));
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        frmTessary* w = cogWindow(2);
        QCOMPARE(textOf(w), text);
        QCOMPARE(w->txtMain->selStart(), 0L);
        QCOMPARE(w->txtMain->selLength(), 0L);
        QCOMPARE(w->strFile, QStringLiteral("blank"));
        QCOMPARE(w->strFileTitle, QString());
        QVERIFY(w->bMod);
        QCOMPARE(w->Caption(), QStringLiteral("Cog 2*"));
        QCOMPARE(mdlTessary::strCurCog, w->Tag);
        QVERIFY(dialogs_.messages.isEmpty());
    }
    void valueTypedInPlaceIsUsed() {
        frmCGT window(frame_);
        QVERIFY(window.OpenCogTemplate(write("door.cgt", kDoor)));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.lvwCog->setCurrentItem(window.lvwCog->topLevelItem(0), 0);
        auto* editor = qobject_cast<QLineEdit*>(editorAt(window.lvwCog, 0, 0));
        QVERIFY(editor);
        editor->selectAll();
        QTest::keyClicks(editor, "16");
        QTest::mouseClick(window.cmdGenCog, Qt::LeftButton); // while the value is still being typed
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        QVERIFY(textOf(cogWindow(2)).contains("flex speed=16\r\n"));
    }
    void changedOrVanishedTemplateCreatesNothing_data() {
        QTest::addColumn<bool>("remove");
        QTest::addColumn<QString>("message");
        QTest::newRow("changed") << false << "has changed since it was opened";
        QTest::newRow("vanished") << true << "cannot be read any more";
    }
    void changedOrVanishedTemplateCreatesNothing() {
        QFETCH(bool, remove);
        QFETCH(QString, message);
        const QString path = write("door.cgt", kDoor);
        frmCGT window(frame_);
        QVERIFY(window.OpenCogTemplate(path));
        if (remove)
            QVERIFY(QFile::remove(path));
        else
            QVERIFY(!write("door.cgt", QByteArray(kDoor).replace("8.0", "9.0")).isEmpty());
        window.cmdGenCog_Click();
        QCOMPARE(mdlTessary::colCogs.count(), 1);
        QCOMPARE(dialogs_.messages.size(), 1);
        QVERIFY(dialogs_.messages[0].text.contains(path));
        QVERIFY2(dialogs_.messages[0].text.contains(message), qPrintable(dialogs_.messages[0].text));
        QCOMPARE(dialogs_.messages[0].icon, int(ui::vbExclamation));
    }
    void openTemplateMenuShowsTheWindowModally() {
        dialogs_.openAnswers << write("door.cgt", kDoor);
        bool seen = false;
        onModal([&](QWidget* modal) {
            auto* window = qobject_cast<frmCGT*>(modal);
            if (!(seen = window != nullptr)) return;
            QCOMPARE(window->parentWidget(), static_cast<QWidget*>(frame_));
            window->lvwCog->topLevelItem(0)->setText(0, "1.0");
            QTest::mouseClick(window->cmdGenCog, Qt::LeftButton);
        });
        frame_->mnuOpenTemp_Click();
        QCoreApplication::processEvents();
        QVERIFY(seen);
        QCOMPARE(mdlTessary::colCogs.count(), 2);
        QVERIFY(textOf(cogWindow(2)).contains("flex speed=1.0\r\n"));
    }
    void malformedTemplate_data() {
        QTest::addColumn<QByteArray>("file"); // empty: the Open dialog is cancelled
        QTest::addColumn<QString>("problem");
        QTest::newRow("cancelled dialog") << QByteArray() << QString();
        QTest::newRow("column count below 2")
            << QByteArray("1\r\nV\r\nend\r\n") << "line 1: the column count 1 is below 2";
        QTest::newRow("no end line") << QByteArray("2\r\nV,N\r\n1,a\r\n")
                                     << "line 4: the file ends without an end line";
        QTest::newRow("row with too few fields")
            << QByteArray("3\r\nV,N,D\r\n1,a\r\nend\r\n") << "line 3: 2 fields, 3 needed";
        QTest::newRow("repeated name") << QByteArray("2\r\nV,N\r\n1,a\r\n2,A\r\nend\r\n")
                                       << "line 4: the parameter name \"A\" repeats line 3";
    }
    // The template menu ends silently; opening it as a file (command line, recent files) tells the
    // user once, and neither shows the window or creates anything.
    void malformedTemplate() {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        const QString path = file.isEmpty() ? QString() : write("bad.cgt", file);
        if (!path.isEmpty()) dialogs_.openAnswers << path;
        bool shown = false;
        onModal([&](QWidget* modal) { shown = shown || modal; });
        frame_->mnuOpenTemp_Click();
        QCoreApplication::processEvents();
        QVERIFY(dialogs_.messages.isEmpty());
        if (!path.isEmpty()) {
            onModal([&](QWidget* modal) { shown = shown || modal; });
            mdlTessary::OpenCogFile(path);
            QCoreApplication::processEvents();
            QCOMPARE(dialogs_.messages.size(), 1);
            QVERIFY(dialogs_.messages[0].text.contains(path));
            QVERIFY2(dialogs_.messages[0].text.contains(problem), qPrintable(dialogs_.messages[0].text));
            QVERIFY(!frame_->mnuFileMRU[0]->isVisible()); // not added to the recent files
        }
        QVERIFY(!shown);
        QCOMPARE(mdlTessary::colCogs.count(), 1);
    }
    void templateFromTheCommandLineOpensTheWindow() {
        stopTessary();
        prepareTessaryTest();
        const QString path = write("DOOR.CGT", kDoor);
        bool seen = false;
        onModal([&](QWidget* modal) {
            auto* window = qobject_cast<frmCGT*>(modal);
            if ((seen = window != nullptr)) QCOMPARE(window->sF, path);
        });
        dialogs_ = ScriptedDialogs();
        frame_ = startTessary(dialogs_, path);
        QVERIFY(frame_);
        QVERIFY(seen);
        QCOMPARE(mdlTessary::colCogs.count(), 0); // closed without generating: no window at all
        QVERIFY(dialogs_.messages.isEmpty());
    }

private:
    QString write(const QString& name, const QByteArray& bytes) {
        QFile f(dir_.filePath(name));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) return {};
        return f.fileName();
    }
    QTemporaryDir dir_;
    ScriptedDialogs dialogs_;
    frmMain* frame_ = nullptr;
};

TESSARY_TEST_MAIN(tst_TemplateWindow)
#include "tst_templatewindow.moc"
