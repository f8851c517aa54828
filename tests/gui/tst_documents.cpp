// The editor windows' files: opening, editing and saving byte for byte, the modified mark, the
// close prompt, Save All, failed saves and the commands with no window open (sessions under
// tests/cases/documents); printing.
#include "harness.h"

#include <QProcess>
#include <QStandardPaths>

class tst_Documents : public QObject {
    Q_OBJECT
private slots:
    void init() { prepareTessaryTest(); }
    void cleanup() {
        session().reset();
        stopTessary();
    }

    void sessions_data() { cases::listCases({{"documents", {}}}); }
    void sessions() {
        cases::runCase({{"documents", [](auto& input, auto& a, auto&) { return session().run(input, a); }}});
    }

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
};

TESSARY_TEST_MAIN(tst_Documents)
#include "tst_documents.moc"
