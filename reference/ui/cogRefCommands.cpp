// The reference tree: loading cogref.dat, showing and inserting entries, and the Tree menu.
#include "app/ui/KeyedTreeView.h"
#include "app/ui/dialogs.h"
#include "app/ui/diskfile.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/CogLexer.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"
#include "reference/cogref.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace {

QString fromBytes(std::string_view bytes) {
    return codepage::toText(bytes);
}

QByteArray toBytes(std::string_view bytes) {
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

bool isFoldingTag(std::string_view tag) {
    return cog::equalText(tag, "parent") || cog::equalText(tag, "message");
}

void setFoldingNodesExpanded(KeyedTreeView* tree, bool expanded) {
    for (std::size_t i = 1; i <= tree->count(); ++i) {
        const auto& node = tree->nodeAt(i);
        if (isFoldingTag(node.tag)) tree->setNodeExpanded(node.key, expanded);
    }
}

} // namespace

bool mdlTessary::LoadCogRef() {
    frmMain* f = frame();
    const QString dir = QDir::toNativeSeparators(programDirectory());
    const QString path = programDirectory() + QStringLiteral("/cogref.dat");
    if (!QFileInfo::exists(path)) {
        ui::MsgBox(QStringLiteral("cog.ref needs to be put in ") + dir, ui::vbOKOnly, 0, ui::kTitle);
        return false;
    }
    QByteArray bytes;
    if (QString reason; !diskfile::readAll(path, bytes, reason)) reportUnreadable(path, reason);
    const reference::CogRef ref = reference::readCogRef(std::string_view(bytes.constData(), bytes.size()));
    for (const auto& w : ref.warnings)
        qWarning("%s:%zu: %s", qPrintable(QDir::toNativeSeparators(path)), w.line, w.reason.c_str());
    f->tvwCog->setModel(ref.tree); // nodes come collapsed: the tree shows the group names
    // The entries' names are the verbs the editor colours.
    std::vector<std::string> verbs;
    for (const auto& node : ref.tree.nodes())
        if (!reference::isGroupTag(node.tag)) verbs.push_back(node.text);
    CogLexer::setSharedVerbs(std::move(verbs));
    if (ref.tree.empty())
        f->nLC.reset();
    else
        f->nLC = ref.tree.at(1).key;
    return true;
}

void frmMain::tvwCog_NodeClick(const std::string& key) {
    const auto* node = tvwCog->node(key);
    if (!node) return;
    nLC = key;
    // A group shows its tag, "parent"; an entry its description.
    txtCogDesc->setText(fromBytes(reference::splitTag(node->tag).description));
}

void frmMain::tvwCog_DblClick() {
    if (!nLC) return;
    const auto* node = tvwCog->node(*nLC);
    if (!node || reference::isGroupTag(node->tag)) return;
    frmTessary* w = mdlTessary::currentCog();
    if (!w) return; // every editor window is closed: nowhere to insert
    // Insert before any selection, leaving the selected text in place.
    w->txtMain->setSelLength(0);
    w->txtMain->setSelText(toBytes(reference::splitTag(node->tag).callText));
}

namespace {

// The Tree menu works on whichever tree is shown.
KeyedTreeView* targetTree(frmMain* f) {
    return f->tvwCog->isVisibleTo(f) ? f->tvwCog : f->tvwCogE;
}

// Finds the first node from index `from` on that holds the find text; selects it and acts as a
// click on it. Nothing changes when there is none.
void findFrom(frmMain* f, std::size_t from) {
    KeyedTreeView* tree = targetTree(f);
    // A find text the code page cannot hold names no node.
    const auto findText = codepage::toBytes(f->strFindText);
    if (!findText) return;
    const std::size_t found =
        reference::findNode(tree->model(), std::string_view(findText->constData(), findText->size()), from);
    if (found == 0) return;
    const std::string key = tree->nodeAt(found).key;
    tree->selectNode(key);
    if (tree == f->tvwCog)
        f->tvwCog_NodeClick(key);
    else
        f->tvwCogE_NodeClick(key);
    f->iLN = static_cast<int>(found);
}

} // namespace

void frmMain::mnuCFCollapse_Click() {
    setFoldingNodesExpanded(targetTree(this), false);
    // The explorer keeps its top level in view.
    if (tvwCogE->isVisibleTo(this) && tvwCogE->contains("root")) tvwCogE->setNodeExpanded("root", true);
}

void frmMain::mnuCFExpand_Click() {
    setFoldingNodesExpanded(targetTree(this), true);
}

void frmMain::mnuCFFind_Click() {
    strFindText = ui::InputBox(QStringLiteral("String to find"), ui::kTitle, strFindText);
    findFrom(this, 1);
}

void frmMain::mnuCFFindNext_Click() {
    findFrom(this, static_cast<std::size_t>(std::max(iLN, 0)) + 1);
}
