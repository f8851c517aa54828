#include "app/ui/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

namespace ui {

namespace {

Dialogs gRealDialogs;
Dialogs* gDialogs = &gRealDialogs;

QWidget* owner() {
    return QApplication::activeWindow();
}

} // namespace

int Dialogs::msgBox(const QString& text, int buttons, int icon, const QString& title) {
    QMessageBox box(owner());
    box.setWindowTitle(title);
    box.setText(text);
    box.setIcon(icon == vbCritical      ? QMessageBox::Critical
                : icon == vbExclamation ? QMessageBox::Warning
                                        : QMessageBox::NoIcon);
    if (buttons == vbYesNoCancel) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
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
    return QFileDialog::getOpenFileName(owner(), QString(), dir, qtFilter(filter));
}

QString Dialogs::saveFileName(const QString& dir, const QString& filter, const QString& defaultSuffix) {
    QFileDialog dialog(owner(), QString(), dir, qtFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(defaultSuffix);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, false);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().first();
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
