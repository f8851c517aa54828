#include "app/ui/KeyedTreeView.h"

#include "editor/ui/codePage.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace {
constexpr int kKeyRole = Qt::UserRole + 1;
}

KeyedTreeView::KeyedTreeView(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);
    setLabelsEditable(false);
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        if (const auto key = keyOf(item)) emit nodeClicked(*key);
    });
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (const auto key = keyOf(item)) emit nodeDoubleClicked(*key);
    });
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        if (mirroring_) return;
        if (const auto key = keyOf(item))
            if (auto* n = model_.find(*key)) n->expanded = true;
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* item) {
        if (mirroring_) return;
        if (const auto key = keyOf(item))
            if (auto* n = model_.find(*key)) n->expanded = false;
    });
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
        if (mirroring_ || column != 0) return;
        const auto key = keyOf(item);
        if (!key) return;
        auto* n = model_.find(*key);
        const QString label = item->text(0);
        // A label the code page cannot hold is kept as Latin-1 here; the explorer refuses it.
        const std::string text = codepage::toBytes(label).value_or(label.toLatin1()).toStdString();
        if (!n || text == n->text) return;
        previousLabel_ = n->text;
        n->text = text;
        emit labelEdited(*key, label);
    });
}

std::optional<std::string> KeyedTreeView::keyOf(const QTreeWidgetItem* item) const {
    if (!item) return std::nullopt;
    const QByteArray key = item->data(0, kKeyRole).toByteArray();
    std::string k(key.constData(), static_cast<std::size_t>(key.size()));
    if (!model_.contains(k)) return std::nullopt;
    return k;
}

QTreeWidgetItem* KeyedTreeView::makeItem(const cog::KeyedTree::Node& node) {
    auto* item = new QTreeWidgetItem;
    item->setText(0, codepage::toText(node.text));
    item->setData(0, kKeyRole, QByteArray(node.key.data(), static_cast<qsizetype>(node.key.size())));
    if (editable_) item->setFlags(item->flags() | Qt::ItemIsEditable);
    items_[node.key] = item;
    return item;
}

cog::KeyedTree::AddResult KeyedTreeView::addNode(std::optional<std::string> parent, const std::string& key,
                                                 const std::string& text, const std::string& tag) {
    const auto result = model_.add(parent, key, text, tag);
    if (result != cog::KeyedTree::AddResult::Added) return result;
    mirroring_ = true;
    QTreeWidgetItem* item = makeItem(*model_.find(key));
    if (parent)
        itemFor(*parent)->addChild(item);
    else
        addTopLevelItem(item);
    mirroring_ = false;
    return result;
}

void KeyedTreeView::setModel(const cog::KeyedTree& tree) {
    clearNodes();
    mirroring_ = true;
    model_ = tree;
    for (const auto& node : model_.nodes()) {
        QTreeWidgetItem* item = makeItem(node);
        if (node.hasParent)
            itemFor(node.parentKey)->addChild(item);
        else
            addTopLevelItem(item);
    }
    for (const auto& node : model_.nodes())
        if (node.expanded) itemFor(node.key)->setExpanded(true);
    mirroring_ = false;
}

bool KeyedTreeView::removeNode(const std::string& key) {
    QTreeWidgetItem* item = itemFor(key);
    if (!item) return false;
    model_.remove(key);
    std::erase_if(items_, [this](const auto& entry) { return !model_.contains(entry.first); });
    mirroring_ = true;
    delete item; // takes its children with it
    mirroring_ = false;
    return true;
}

void KeyedTreeView::clearNodes() {
    mirroring_ = true;
    clear();
    mirroring_ = false;
    model_.clear();
    items_.clear();
}

void KeyedTreeView::setNodeText(const std::string& key, const std::string& text) {
    auto* n = model_.find(key);
    if (!n) return;
    n->text = text;
    mirroring_ = true;
    itemFor(key)->setText(0, codepage::toText(text));
    mirroring_ = false;
}

void KeyedTreeView::setNodeTag(const std::string& key, const std::string& tag) {
    if (auto* n = model_.find(key)) n->tag = tag;
}

void KeyedTreeView::setNodeExpanded(const std::string& key, bool expanded) {
    auto* n = model_.find(key);
    if (!n) return;
    n->expanded = expanded;
    mirroring_ = true;
    itemFor(key)->setExpanded(expanded);
    mirroring_ = false;
}

void KeyedTreeView::selectNode(const std::string& key) {
    if (QTreeWidgetItem* item = itemFor(key)) {
        setCurrentItem(item);
        scrollToItem(item);
    }
}

void KeyedTreeView::setLabelsEditable(bool editable) {
    editable_ = editable;
    mirroring_ = true;
    for (auto& [key, item] : items_)
        item->setFlags(editable ? item->flags() | Qt::ItemIsEditable : item->flags() & ~Qt::ItemIsEditable);
    mirroring_ = false;
    setEditTriggers(editable ? QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked
                             : QAbstractItemView::NoEditTriggers);
}

QTreeWidgetItem* KeyedTreeView::itemFor(const std::string& key) const {
    const auto it = items_.find(key);
    return it == items_.end() ? nullptr : it->second;
}

void KeyedTreeView::keyPressEvent(QKeyEvent* event) {
    emit keyPressed(event);
    QTreeWidget::keyPressEvent(event);
}
