#include "app/ui/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

namespace ui {

Q_LOGGING_CATEGORY(lcUi, "tessary.ui", QtWarningMsg)

namespace {

void logMessage(QString text) {
    qCInfo(lcUi).noquote()
        << "message:"
        << text.replace(QStringLiteral("\r\n"), QStringLiteral("\\n")).replace('\n', QStringLiteral("\\n"));
}

Dialogs gRealDialogs;
Dialogs* gDialogs = &gRealDialogs;

QWidget* owner() {
    return QApplication::activeWindow();
}

// The file dialogs share one file name, as one common dialog would: each starts with the name
// chosen last in either of them.
QString gLastFileName;

QString runFileDialog(QFileDialog& dialog) {
    if (!gLastFileName.isEmpty()) dialog.selectFile(QFileInfo(gLastFileName).fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    gLastFileName = dialog.selectedFiles().first();
    return gLastFileName;
}

} // namespace

int Dialogs::msgBox(const QString& text, int buttons, int icon, const QString& title) {
    logMessage(text);
    QMessageBox box(owner());
    box.setWindowTitle(title);
    box.setText(text);
    box.setIcon(icon == vbCritical      ? QMessageBox::Critical
                : icon == vbExclamation ? QMessageBox::Warning
                                        : QMessageBox::NoIcon);
    const bool secondIsDefault = buttons & vbDefaultButton2;
    buttons &= ~vbDefaultButton2;
    if (buttons == vbYesNoCancel) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(secondIsDefault ? QMessageBox::No : QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
    } else if (buttons == vbYesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(secondIsDefault ? QMessageBox::No : QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
    }
    switch (box.exec()) {
    case QMessageBox::Yes:
        return vbYes;
    case QMessageBox::No:
        return vbNo;
    case QMessageBox::Cancel:
        return vbCancel;
    default:
        return vbOK;
    }
}

QString Dialogs::inputBox(const QString& prompt, const QString& title, const QString& defaultText) {
    bool ok = false;
    const QString answer = QInputDialog::getText(owner(), title, prompt, QLineEdit::Normal, defaultText, &ok);
    return ok ? answer : QString();
}

QString Dialogs::openFileName(const QString& dir, const QString& filter) {
    QFileDialog dialog(owner(), QString(), dir, qtFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return runFileDialog(dialog);
}

QString Dialogs::saveFileName(const QString& dir, const QString& filter, const QString& defaultSuffix) {
    QFileDialog dialog(owner(), QString(), dir, qtFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(defaultSuffix);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, false);
    return runFileDialog(dialog);
}

bool Dialogs::printDialog(QPrinter& printer) {
    QPrintDialog dialog(&printer, owner());
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintToFile, true);
    return dialog.exec() == QDialog::Accepted;
}

bool Dialogs::fontDialog(const QFont& initial, QFont& chosen) {
    bool ok = false;
    chosen = QFontDialog::getFont(&ok, initial, owner());
    return ok;
}

Dialogs& dialogs() {
    return *gDialogs;
}

void setDialogs(Dialogs* replacement) {
    gDialogs = replacement ? replacement : &gRealDialogs;
}

int MsgBox(const QString& text, int buttons, int icon, const QString& title) {
    return dialogs().msgBox(text, buttons, icon, title);
}

QString InputBox(const QString& prompt, const QString& title, const QString& defaultText) {
    return dialogs().inputBox(prompt, title, defaultText);
}

QString qtFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i];
        const QString patterns = QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        if (!description.contains(QLatin1Char('('))) description += QStringLiteral(" (%1)").arg(patterns);
        // "*.*" means every file, also those without a dot in their names.
        entries << description.replace(QStringLiteral("*.*"), QStringLiteral("*"));
    }
    return entries.join(QStringLiteral(";;"));
}

} // namespace ui
