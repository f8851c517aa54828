// The File menu's commands on the editor windows.
#include "app/ui/KeyedTreeView.h"
#include "app/ui/MRU.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"

#include <QFileInfo>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPrinter>
#include <QTextDocument>

using namespace mdlTessary;

namespace {
const QString kCogFilter = QStringLiteral("COG files (*.cog)|*.cog|All files (*.*)|*.*");
}

void frmMain::mnuFileNew_Click() {
    NewCogWindow(QStringLiteral("blank"), QString());
}

void frmMain::mnuFileOpen_Click() {
    const QString path = ui::dialogs().openFileName(DefOpenDir, kCogFilter);
    if (path.isEmpty()) return;
    const QString title = QFileInfo(path).fileName();
    frmTessary* w = NewCogWindow(path, title);
    if (!LoadCogFile(w, path, title, false)) return; // the command ends silently on errors
    objMRU->AddFile(mnuFileMRU, path, title, mnuFileBar6);
    w->bMod = false;
}

void frmMain::mnuFileClose_Click() {
    frmTessary* w = currentCog();
    if (!w) return;
    if (!tvwCogE->Tag.isEmpty() && tvwCogE->Tag == w->Tag) {
        tvwCogE->clearNodes();
        nLCE.reset();
    }
    // The window's close request asks to save; windowClosed() updates the list.
    w->subWindow()->close();
}

bool frmMain::saveWindow(frmTessary* w) {
    if (w->strFile.compare(QStringLiteral("blank"), Qt::CaseInsensitive) == 0) return saveWindowAs(w);
    if (!SaveCogFile(w, w->strFile, w->strFileTitle)) return false;
    w->clearModified();
    objMRU->AddFile(mnuFileMRU, w->strFile, w->strFileTitle, mnuFileBar6);
    return true;
}

bool frmMain::saveWindowAs(frmTessary* w) {
    const QString path = ui::dialogs().saveFileName(DefSaveDir, kCogFilter, QStringLiteral("cog"));
    if (path.isEmpty()) return false; // cancelled: nothing saved, so a closing window stays open
    const QString title = QFileInfo(path).fileName();
    if (!SaveCogFile(w, path, title)) return false;
    w->setCaption(title);
    w->bMod = false;
    objMRU->AddFile(mnuFileMRU, path, title, mnuFileBar6);
    return true;
}

void frmMain::mnuFileSave_Click() {
    if (frmTessary* w = currentCog()) saveWindow(w);
}

void frmMain::mnuFileSaveAs_Click() {
    if (frmTessary* w = currentCog()) saveWindowAs(w);
}

void frmMain::mnuFileSaveAll_Click() {
    const int count = colCogs.count();
    if (count == 0) return;
    ui::MsgBox(QString::number(count));
    const QString remembered = strCurCog;
    for (int i = 1; i <= count; ++i) {
        frmTessary* w = colCogs.item(i);
        if (!w) break;
        strCurCog = w->Tag;
        ui::MsgBox(w->strFile + QLatin1Char(' ') + w->Caption());
        mnuFileSave_Click();
    }
    strCurCog = remembered;
}

void frmMain::mnuFilePrint_Click() {
    frmTessary* w = currentCog();
    if (!w) return;
    QPrinter printer;
    if (!ui::dialogs().printDialog(printer)) return;
    QTextDocument document;
    document.setDefaultFont(DefaultFont()); // the settings' font, not the window's
    const std::string_view text = w->txtMain->bytes();
    document.setPlainText(codepage::toText(text) + QStringLiteral("\r\n"));
    document.print(&printer);
    if (printer.printerState() == QPrinter::Error)
        ui::MsgBox(
            QStringLiteral("Error #1 has occured\r\nThe document could not be printed on ") +
            (printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName()) +
            QStringLiteral("\r\nTessary\r\nPlease write down the above information and email it to me."));
}

void frmMain::mnuFileExit_Click() {
    close();
}
