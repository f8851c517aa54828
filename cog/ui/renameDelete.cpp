// Renaming a symbol by editing its label in the explorer, and deleting a declaration, label or
// comment with the Delete key, on the window chosen in the window list.
#include "cog/renamedelete.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QComboBox>

namespace {

// The window whose structure the explorer shows: the one chosen in the window list, as long as
// the tree was built from it.
frmTessary* explorerWindow(frmMain* f) {
    const int i = f->cmbCog->currentIndex();
    if (i < 0) return nullptr;
    frmTessary* w = mdlTessary::colCogs.item(f->cmbCog->itemData(i).toInt());
    if (!w || w->Tag != f->tvwCogE->Tag) return nullptr;
    return w;
}

void applyToBox(CogTextBox* box, const editor::TextEdit& e) {
    if (e.isEmpty()) return;
    box->replaceRange(e.start, e.removed,
                      QByteArray::fromRawData(e.inserted.data(), static_cast<qsizetype>(e.inserted.size())));
}

} // namespace

void frmMain::tvwCogE_AfterLabelEdit(const std::string& key, const QString& newString) {
    nLCE = key; // the node being edited is the current one
    const std::string oldLabel = tvwCogE->previousLabel();
    frmTessary* W = explorerWindow(this);
    const auto newLabel = codePageBytes(newString);
    cog::RenameResult r;
    if (W && newLabel)
        r = cog::renameNode(W->txtMain->bytes(), tvwCogE->model(), key, oldLabel, newLabel->toStdString());
    if (!r.keepsNewLabel()) {
        // Nothing was renamed in the text, so the node keeps its old label.
        tvwCogE->setNodeText(key, oldLabel);
        return;
    }
    applyToBox(W->txtMain, r.edit);
    if (r.selection) {
        W->txtMain->setSelStart(r.selection->start);
        W->txtMain->setSelLength(r.selection->length);
    }
    if (r.search) {
        W->ipos = r.search->ipos;
        W->sW = QByteArray::fromStdString(r.search->word);
        W->sR = QByteArray::fromStdString(r.search->replacement);
    }
}

void frmMain::tvwCogE_KeyDown(int keyCode, int) {
    if (keyCode != 46) return;
    // Delete acts on the highlighted node, however it was reached (a click, the arrow keys, or
    // the tree's own move after the previous delete).
    if (const auto highlighted = tvwCogE->keyOf(tvwCogE->currentItem())) nLCE = highlighted;
    if (!nLCE) return;
    frmTessary* W = explorerWindow(this);
    if (!W) return;
    const auto r = cog::deleteNode(W->txtMain->bytes(), tvwCogE->model(), *nLCE);
    if (r.outcome == cog::DeleteResult::Outcome::InUse) {
        ui::MsgBox(QStringLiteral("Can not delete: symbol is present in code section"), ui::vbOKOnly,
                   ui::vbCritical);
        return;
    }
    if (r.outcome == cog::DeleteResult::Outcome::Deleted) {
        applyToBox(W->txtMain, r.edit);
        W->txtMain->setSelStart(r.caret);
    }
    if (!r.removeKey.empty()) tvwCogE->removeNode(r.removeKey);
    if (QTreeWidgetItem* next = tvwCogE->currentItem()) next->setSelected(true); // shown highlighted
}
