// Starting the program inside a test, with dialogs that answer from a script and remember what
// they showed.
#pragma once

#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QMdiSubWindow>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

struct ScriptedDialogs : ui::Dialogs {
    struct Shown {
        QString text;
        int buttons = 0;
        int icon = 0;
        QString title;
    };
    QList<Shown> messages;     // every message box, in order
    QList<int> answers;        // answers to message boxes; vbOK / vbYes... when empty: vbOK, or vbNo
    QStringList inputAnswers;  // answers to input boxes; "" (Cancel) when empty
    QList<QStringList> inputs; // {prompt, title, default} of every input box
    QStringList openAnswers;   // file names for the Open dialog; "" (Cancel) when empty
    QStringList saveAnswers;   // file names for the Save As dialog; "" (Cancel) when empty
    QString printToPdf;        // the print dialog prints into this PDF file; "" cancels it
    QList<QFont> fontAnswers;  // fonts chosen in the font dialog; empty cancels it

    int msgBox(const QString& text, int buttons, int icon, const QString& title) override {
        messages.append({text, buttons, icon, title});
        if (!answers.isEmpty()) return answers.takeFirst();
        return buttons == ui::vbYesNoCancel ? ui::vbNo : ui::vbOK;
    }
    void notice(const QString& text, const QString& title) override {
        messages.append({text, ui::vbOKOnly, 0, title});
    }
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override {
        inputs.append({prompt, title, defaultText});
        return inputAnswers.isEmpty() ? QString() : inputAnswers.takeFirst();
    }
    QString openFileName(const QString&, const QString&) override {
        return openAnswers.isEmpty() ? QString() : openAnswers.takeFirst();
    }
    QString saveFileName(const QString&, const QString&, const QString&) override {
        return saveAnswers.isEmpty() ? QString() : saveAnswers.takeFirst();
    }
    bool printDialog(QPrinter& printer) override;
    bool fontDialog(const QFont&, QFont& chosen) override {
        if (fontAnswers.isEmpty()) return false;
        chosen = fontAnswers.takeFirst();
        return true;
    }
    QStringList texts() const {
        QStringList t;
        for (const auto& m : messages) t << m.text;
        return t;
    }
};

#include <QPrinter>
inline bool ScriptedDialogs::printDialog(QPrinter& printer) {
    if (printToPdf.isEmpty()) return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(printToPdf);
    return true;
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

// The entry of a widget test program: the settings store and the recovery copies live in a
// directory of their own, made for this run, so running a test by hand never touches the user's
// own settings or copies.
#define TESSARY_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char** argv) {                                                                        \
        QTemporaryDir config;                                                                                \
        if (!config.isValid()) return 1;                                                                     \
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));                                        \
        qputenv("XDG_DATA_HOME", QFile::encodeName(config.filePath(QStringLiteral("data"))));                \
        QApplication app(argc, argv);                                                                        \
        app.setAttribute(Qt::AA_Use96Dpi, true);                                                             \
        TestClass test;                                                                                      \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
