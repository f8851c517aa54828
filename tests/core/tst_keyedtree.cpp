// The keyed tree behind the explorer and reference trees.
#include "cog/keyedtree.h"

#include <QtTest>

using cog::KeyedTree;
using Result = KeyedTree::AddResult;

Q_DECLARE_METATYPE(KeyedTree::AddResult)

namespace {

// "parent>key" for each node in index order ("-" for no parent).
QStringList shape(const KeyedTree& tree) {
    QStringList out;
    for (const auto& n : tree.nodes())
        out << QString::fromStdString((n.hasParent ? n.parentKey : std::string("-")) + ">" + n.key);
    return out;
}

// A tree from "parent>key" entries, "-" standing for the top level; stops at the first refusal.
KeyedTree build(const QStringList& entries, Result* last = nullptr) {
    KeyedTree tree;
    for (const QString& e : entries) {
        const std::string parent = e.section('>', 0, 0).toStdString(), key = e.section('>', 1).toStdString();
        const Result r = tree.add(parent == "-" ? std::nullopt : std::optional<std::string_view>(parent), key,
                                  "text of " + key);
        if (last) *last = r;
        if (r != Result::Added) break;
    }
    return tree;
}

// Every key sits at its 1-based index.
void checkIndexes(const KeyedTree& tree, const QStringList& expected) {
    for (qsizetype i = 0; i < expected.size(); ++i)
        QCOMPARE(tree.indexOf(expected[i].section('>', 1).toStdString()), std::size_t(i + 1));
}

} // namespace

class tst_KeyedTree : public QObject {
    Q_OBJECT
private slots:
    void adding_data();
    void adding();
    void removing_data();
    void removing();
};

void tst_KeyedTree::adding_data() {
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<KeyedTree::AddResult>("lastResult");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const char* entries, Result last, const char* expected) {
        QTest::newRow(name) << QString(entries).split(' ') << last
                            << QString(expected).split(' ', Qt::SkipEmptyParts);
    };
    row("nodes keep creation order", "->root root>b root>a b>c", Result::Added, "->root root>b root>a b>c");
    row("an existing key is refused, nothing changes", "->root root>a root>a", Result::DuplicateKey,
        "->root root>a");
    row("a key is unique across parents", "->root root>a a>x root>x", Result::DuplicateKey,
        "->root root>a a>x");
    row("keys differing in case are different", "->root root>a root>A", Result::Added,
        "->root root>a root>A");
    row("an unknown parent is refused", "->root nowhere>a", Result::NoSuchParent, "->root");
}

void tst_KeyedTree::adding() {
    QFETCH(QStringList, entries);
    QFETCH(KeyedTree::AddResult, lastResult);
    QFETCH(QStringList, expected);
    Result last = Result::Added;
    const KeyedTree tree = build(entries, &last);
    QCOMPARE(last, lastResult);
    QCOMPARE(shape(tree), expected);
    checkIndexes(tree, expected);
}

void tst_KeyedTree::removing_data() {
    QTest::addColumn<QString>("removed");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("expectedShape");
    const char* tree = "->root root>s s>int int>a int>b root>code code>m m>c1";
    QTest::newRow("a leaf") << "a" << true << "->root root>s s>int int>b root>code code>m m>c1";
    QTest::newRow("a node with its whole subtree, survivors move down")
        << "s" << true << "->root root>code code>m m>c1";
    QTest::newRow("the root takes everything") << "root" << true << "";
    QTest::newRow("an unknown key changes nothing") << "zz" << false << tree;
    QTest::newRow("keys compare exactly on removal") << "A" << false << tree;
}

void tst_KeyedTree::removing() {
    QFETCH(QString, removed);
    QFETCH(bool, found);
    QFETCH(QString, expectedShape);
    const QStringList expected = expectedShape.split(' ', Qt::SkipEmptyParts);
    KeyedTree tree = build(QString("->root root>s s>int int>a int>b root>code code>m m>c1").split(' '));
    const std::string key = removed.toStdString();
    // Removing by a reference to the node's own key must not read the key after it is gone.
    const auto* node = tree.find(key);
    QCOMPARE(tree.remove(node ? node->key : key), found);
    QCOMPARE(shape(tree), expected);
    QVERIFY(!tree.contains(key));
    checkIndexes(tree, expected);
    if (found && !expected.isEmpty()) QCOMPARE(tree.add("root", key, "again"), Result::Added);
}

QTEST_APPLESS_MAIN(tst_KeyedTree)
#include "tst_keyedtree.moc"
