#include "app/ui/MRU.h"

#include "app/recentfiles.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/frmTessary.h"

#include <QAction>
#include <QFileInfo>
#include <QSettings>

namespace {

const QString kGroup = QStringLiteral("MRU");

// The slots as the menu shows them.
app::RecentFiles readMenu(const std::array<QAction*, 4>& items, const QAction* bar) {
    app::RecentFiles list;
    for (std::size_t k = 0; k < items.size(); ++k) {
        auto& slot = list.entries[k];
        slot.title = app::titleOfCaption(items[k]->text().toStdString());
        slot.path = items[k]->data().toString().toStdString();
        slot.visible = items[k]->isVisible();
    }
    list.separatorVisible = bar && bar->isVisible();
    return list;
}

// Items and the separator only ever become visible.
void writeMenu(const app::RecentFiles& list, std::array<QAction*, 4>& items, QAction* bar) {
    for (std::size_t k = 0; k < items.size(); ++k) {
        const auto& slot = list.entries[k];
        items[k]->setText(QString::fromStdString(app::slotCaption(static_cast<int>(k), slot.title)));
        items[k]->setData(QString::fromStdString(slot.path));
        if (slot.visible) items[k]->setVisible(true);
    }
    if (bar && list.separatorVisible) bar->setVisible(true);
}

} // namespace

void MRU::LoadMRU(std::array<QAction*, 4>& mnuFileMRU, QAction* mnuFileBar6) {
    app::RecentFiles list = readMenu(mnuFileMRU, mnuFileBar6);
    QSettings settings;
    settings.beginGroup(kGroup);
    for (int k = 0; k < app::RecentFiles::kSlots; ++k) {
        const QString value =
            settings.value(QString::fromStdString(app::slotKey(k)), QStringLiteral(":")).toString();
        app::loadSlot(list, k, value.toStdString());
    }
    writeMenu(list, mnuFileMRU, mnuFileBar6);
}

void MRU::SaveMRU(std::array<QAction*, 4>& mnuFileMRU) {
    const app::RecentFiles list = readMenu(mnuFileMRU, nullptr);
    QSettings settings;
    settings.beginGroup(kGroup);
    for (int k = 0; k < app::RecentFiles::kSlots; ++k)
        settings.setValue(
            QString::fromStdString(app::slotKey(k)),
            QString::fromStdString(app::storedValue(list.entries[static_cast<std::size_t>(k)])));
}

void MRU::AddFile(std::array<QAction*, 4>& mnuFileMRU, const QString& path, const QString& title,
                  QAction* mnuFileBar6) {
    app::RecentFiles list = readMenu(mnuFileMRU, mnuFileBar6);
    app::addFile(list, path.toStdString(), title.toStdString());
    writeMenu(list, mnuFileMRU, mnuFileBar6);
}

void frmMain::mnuFileMRU_Click(int index) {
    if (index < 0 || index >= static_cast<int>(mnuFileMRU.size())) return;
    QAction* item = mnuFileMRU[static_cast<std::size_t>(index)];
    const QString path = item->data().toString();
    const QString title = QString::fromStdString(app::titleOfCaption(item->text().toStdString()));
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        ui::MsgBox(QStringLiteral("File does not exist."), ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    frmTessary* w = mdlTessary::NewCogWindow(path, title);
    if (!mdlTessary::LoadCogFile(w, path, title)) return;
    mdlTessary::objMRU->AddFile(mnuFileMRU, path, title, mnuFileBar6);
    w->clearModified();
}
