// A tree widget that mirrors a cog::KeyedTree: nodes are added, found and removed by key and by
// 1-based index in creation order, each carries a tag, and the tree itself carries a Tag.
#pragma once

#include "cog/keyedtree.h"

#include <QTreeWidget>

#include <optional>
#include <string>
#include <unordered_map>

class KeyedTreeView : public QTreeWidget {
    Q_OBJECT
public:
    explicit KeyedTreeView(QWidget* parent = nullptr);

    const cog::KeyedTree& model() const { return model_; }

    // Adds a node at the top level (no parent) or as the last child of the node keyed parent.
    cog::KeyedTree::AddResult addNode(std::optional<std::string> parent, const std::string& key,
                                      const std::string& text, const std::string& tag = {});
    // Replaces all nodes by those of tree (expanded flags included).
    void setModel(const cog::KeyedTree& tree);
    bool removeNode(const std::string& key); // with its subtree
    void clearNodes();

    std::size_t count() const { return model_.count(); }
    bool contains(const std::string& key) const { return model_.contains(key); }
    const cog::KeyedTree::Node* node(const std::string& key) const { return model_.find(key); }
    const cog::KeyedTree::Node& nodeAt(std::size_t index) const { return model_.at(index); } // 1-based
    std::size_t indexOf(const std::string& key) const { return model_.indexOf(key); }

    void setNodeText(const std::string& key, const std::string& text);
    void setNodeTag(const std::string& key, const std::string& tag);
    void setNodeExpanded(const std::string& key, bool expanded);
    void selectNode(const std::string& key);

    QTreeWidgetItem* itemFor(const std::string& key) const;
    std::optional<std::string> keyOf(const QTreeWidgetItem* item) const;

    // Whether the user may edit node labels in place (F2 or a click on the selected node).
    void setLabelsEditable(bool editable);

    // The label that the node of the last labelEdited signal had before the edit.
    const std::string& previousLabel() const { return previousLabel_; }

    // The tree's own tag (the key of the window whose structure it shows).
    QString Tag;

signals:
    void nodeClicked(const std::string& key);
    void nodeDoubleClicked(const std::string& key);
    // The user finished editing a node's label; the label already shows newText.
    void labelEdited(const std::string& key, const QString& newText);
    void keyPressed(QKeyEvent* event); // before the tree's own handling

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QTreeWidgetItem* makeItem(const cog::KeyedTree::Node& node);

    cog::KeyedTree model_;
    std::unordered_map<std::string, QTreeWidgetItem*> items_;
    bool mirroring_ = false; // true while the widget is changed from the model
    bool editable_ = false;
    std::string previousLabel_;
};
