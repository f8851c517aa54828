// The editor windows' files: opening, editing and saving byte for byte, the modified mark, the
// close prompt, Save All, saves that fail or would overwrite a file changed on disk, files that
// cannot be opened, the changed-on-disk bar, recovery copies and the commands with no window open
// (sessions under tests/cases/documents); printing; copies left by a program that was killed.
#include "harness.h"

#include "app/ui/diskfile.h"

#include <QProcess>

class tst_Documents : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() { endSessionTest(); }

    void sessions_data() { cases::listCases({{"documents", {}}}); }
    void sessions() { cases::runCase({{"documents", playSession()}}); }

    void printsTheTextToPdf() {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("print.cog")),
                      pdf = dir.filePath(QStringLiteral("print.pdf"));
        QFile cog(file);
        QVERIFY(cog.open(QIODevice::WriteOnly) &&
                cog.write("symbols\r\nthing doorway linkid=1\r\nend\r\ncode\r\nend\r\n"));
        cog.close();
        ScriptedDialogs dialogs;
        frmMain* frame = startTessary(dialogs, file);
        QVERIFY(frame);
        frame->mnuFilePrint_Click(); // the print dialog is cancelled: nothing happens
        QVERIFY(!QFile::exists(pdf));
        dialogs.printToPdf = pdf;
        frame->mnuFilePrint_Click();
        QVERIFY(dialogs.messages.isEmpty());
        QVERIFY(cases::readAll(pdf).startsWith("%PDF"));
        const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (pdftotext.isEmpty())
            QSKIP("pdftotext (poppler-utils) is not installed: the text was not checked");
        QProcess convert;
        convert.start(pdftotext, {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QVERIFY(convert.waitForFinished(20000));
        const QStringList lines =
            QString::fromUtf8(convert.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.first().trimmed(), QStringLiteral("symbols"));
        QVERIFY2(lines.filter(QStringLiteral("thing doorway linkid=1")).size() == 1,
                 qPrintable(lines.join('\n')));
        QCOMPARE(lines.filter(QStringLiteral("end")).size(), 2);
    }

    // The real program starts and is killed (or keeps running), leaving its folder of copies.
    void startUpOffersCopiesOfEndedPrograms_data() {
        QTest::addColumn<int>("answer"); // 0: the program that wrote them still runs
        QTest::newRow("Yes restores them into modified windows") << int(ui::vbYes);
        QTest::newRow("No discards them") << int(ui::vbNo);
        QTest::newRow("Cancel keeps them for the next start") << int(ui::vbCancel);
        QTest::newRow("their program still runs: not offered") << 0;
    }
    void startUpOffersCopiesOfEndedPrograms() {
        QFETCH(int, answer);
        QProcess program;
        program.start(QStringLiteral(TESSARY_BIN_DIR "/tessary"), {});
        QTRY_VERIFY_WITH_TIMEOUT(recoveryFolders(false).size() == 1, 20000);
        const QString folder = recoveryFolders(false).first();
        QTRY_VERIFY(QFile::exists(folder + QStringLiteral("/lock")));
        if (answer) program.kill(), program.waitForFinished(10000);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("door.cog"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("symbols\r\nend\r\n") > 0);
        f.close();
        const std::vector<editor::RecoveryRecord> records{{file.toStdString(), "door.cog",
                                                           diskfile::currentState(file),
                                                           "symbols\r\nthing door\r\nend\r\n"},
                                                          {"blank", "", {}, "# a new script\r\n"}};
        for (std::size_t i = 0; i < records.size(); ++i) {
            QFile copy(folder + QStringLiteral("/%1.rec").arg(i + 1));
            QVERIFY(copy.open(QIODevice::WriteOnly) &&
                    copy.write(QByteArray::fromStdString(encodeRecovery(records[i]))));
        }
        ScriptedDialogs dialogs;
        dialogs.answers << answer;
        frmMain* frame = startTessary(dialogs);
        QVERIFY(frame);
        const QStringList offered{QString::fromStdString(editor::recoveryOffer(records))};
        QCOMPARE(dialogs.texts(), answer ? offered : QStringList());
        QCOMPARE(QDir(folder).exists(), answer == ui::vbCancel || !answer);
        program.kill(), program.waitForFinished(10000);
        QDir(folder).removeRecursively();
        QCOMPARE(mdlTessary::colCogs.count(), answer == ui::vbYes ? 3 : 1);
        if (answer != ui::vbYes) return;
        const QStringList captions{QStringLiteral("door.cog*"), QStringLiteral("Cog 3*")};
        for (int i = 0; i < 2; ++i) {
            frmTessary* w = cogWindow(i + 2);
            QCOMPARE(w->Caption(), captions[i]);
            QVERIFY(w->bMod);
            QCOMPARE(w->strFile, QString::fromStdString(records[std::size_t(i)].path));
            QCOMPARE(textOf(w), QByteArray::fromStdString(records[std::size_t(i)].text));
        }
        // The restored window knows the file as the ended program last read it: it saves without a question.
        mdlTessary::strCurCog = cogWindow(2)->Tag;
        frame->mnuFileSave_Click();
        QVERIFY(dialogs.messages.size() == 1 && !cogWindow(2)->bMod);
        QCOMPARE(cases::readAll(file), QByteArray("symbols\r\nthing door\r\nend\r\n\r\n"));
    }
};

TESSARY_TEST_MAIN(tst_Documents)
#include "tst_documents.moc"
