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
    for (std::size_t i = 1; i <= tree.count(); ++i) {
        const auto& n = tree.at(i);
        out << QString::fromStdString((n.hasParent ? n.parentKey : std::string("-")) + ">" + n.key);
    }
    return out;
}

// A tree from "parent>key" entries, "-" standing for the top level; stops at the first refusal.
KeyedTree build(const QStringList& entries, Result* last = nullptr) {
    KeyedTree tree;
    for (const QString& e : entries) {
        const auto parts = e.split('>');
        const std::string parent = parts[0].toStdString();
        const Result r = tree.add(parent == "-" ? std::nullopt : std::optional<std::string_view>(parent),
                                  parts[1].toStdString(), "text of " + parts[1].toStdString());
        if (last) *last = r;
        if (r != Result::Added) break;
    }
    return tree;
}

} // namespace

class tst_KeyedTree : public QObject {
    Q_OBJECT
private slots:
    void adding_data();
    void adding();
    void removing_data();
    void removing();
    void removingByANodesOwnKey();
    void nodeFields();
    void childrenInCreationOrder();
    void clearEmptiesEverything();
};

void tst_KeyedTree::adding_data() {
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<KeyedTree::AddResult>("lastResult");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("nodes keep creation order")
        << QStringList{"->root", "root>b", "root>a", "b>c"} << Result::Added
        << QStringList{"->root", "root>b", "root>a", "b>c"};
    QTest::newRow("an existing key is refused and nothing changes")
        << QStringList{"->root", "root>a", "root>a"} << Result::DuplicateKey
        << QStringList{"->root", "root>a"};
    QTest::newRow("a key is unique across parents")
        << QStringList{"->root", "root>a", "a>x", "root>x"} << Result::DuplicateKey
        << QStringList{"->root", "root>a", "a>x"};
    QTest::newRow("keys differing in case are different")
        << QStringList{"->root", "root>a", "root>A"} << Result::Added
        << QStringList{"->root", "root>a", "root>A"};
    QTest::newRow("an unknown parent is refused")
        << QStringList{"->root", "nowhere>a"} << Result::NoSuchParent << QStringList{"->root"};
    QTest::newRow("several top-level nodes")
        << QStringList{"->a", "->b"} << Result::Added << QStringList{"->a", "->b"};
}

void tst_KeyedTree::adding() {
    QFETCH(QStringList, entries);
    QFETCH(KeyedTree::AddResult, lastResult);
    QFETCH(QStringList, expected);
    Result last = Result::Added;
    const KeyedTree tree = build(entries, &last);
    QCOMPARE(last, lastResult);
    QCOMPARE(shape(tree), expected);
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const std::string key = expected[i].section('>', 1).toStdString();
        QCOMPARE(tree.indexOf(key), std::size_t(i + 1));
        QVERIFY(tree.contains(key));
    }
}

void tst_KeyedTree::removing_data() {
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QString>("removed");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QStringList>("expected");
    const QStringList tree{"->root", "root>s", "s>int", "int>a", "int>b", "root>code", "code>m", "m>c1"};
    QTest::newRow("a leaf") << tree << "a" << true << QStringList{"->root",    "root>s", "s>int", "int>b",
                                                                  "root>code", "code>m", "m>c1"};
    QTest::newRow("a node with its whole subtree")
        << tree << "s" << true << QStringList{"->root", "root>code", "code>m", "m>c1"};
    QTest::newRow("the root takes everything") << tree << "root" << true << QStringList{};
    QTest::newRow("an unknown key changes nothing") << tree << "zz" << false << tree;
    QTest::newRow("keys compare exactly on removal") << tree << "A" << false << tree;
}

void tst_KeyedTree::removing() {
    QFETCH(QStringList, entries);
    QFETCH(QString, removed);
    QFETCH(bool, found);
    QFETCH(QStringList, expected);
    KeyedTree tree = build(entries);
    QCOMPARE(tree.remove(removed.toStdString()), found);
    QCOMPARE(shape(tree), expected);
    QVERIFY(!tree.contains(removed.toStdString()));
    // Later nodes move down in index, and lookups by key follow them.
    for (qsizetype i = 0; i < expected.size(); ++i)
        QCOMPARE(tree.indexOf(expected[i].section('>', 1).toStdString()), std::size_t(i + 1));
    // A removed key can be added again.
    if (found && !expected.isEmpty())
        QCOMPARE(tree.add("root", removed.toStdString(), "again"), Result::Added);
}

void tst_KeyedTree::removingByANodesOwnKey() {
    KeyedTree tree = build({"->root", "root>a", "a>a1", "root>b"});
    QVERIFY(tree.remove(tree.at(2).key));
    QCOMPARE(shape(tree), (QStringList{"->root", "root>b"}));
}

void tst_KeyedTree::nodeFields() {
    KeyedTree tree;
    QCOMPARE(tree.add(std::nullopt, "root", "Caption", "parent"), Result::Added);
    QCOMPARE(tree.add("root", "int x\r", "x"), Result::Added);
    const auto* root = tree.find("root");
    QVERIFY(root);
    QCOMPARE(root->text, std::string("Caption"));
    QCOMPARE(root->tag, std::string("parent"));
    QVERIFY(!root->hasParent);
    QVERIFY(!root->expanded);
    const auto* sym = tree.find("int x\r");
    QVERIFY(sym);
    QCOMPARE(sym->tag, std::string());
    QCOMPARE(sym->parentKey, std::string("root"));
    tree.at(1).expanded = true;
    QVERIFY(tree.find("root")->expanded);
    QVERIFY(!tree.find("int x"));
    QCOMPARE(tree.indexOf("nothing"), std::size_t(0));
}

void tst_KeyedTree::childrenInCreationOrder() {
    const KeyedTree tree = build({"->root", "root>z", "z>z1", "root>a", "z>z2", "->other"});
    QCOMPARE(tree.childrenOf(std::string_view("root")), (std::vector<std::size_t>{2, 4}));
    QCOMPARE(tree.childrenOf(std::string_view("z")), (std::vector<std::size_t>{3, 5}));
    QCOMPARE(tree.childrenOf(std::nullopt), (std::vector<std::size_t>{1, 6}));
    QCOMPARE(tree.childCount("z"), std::size_t(2));
    QCOMPARE(tree.childCount("a"), std::size_t(0));
}

void tst_KeyedTree::clearEmptiesEverything() {
    KeyedTree tree = build({"->root", "root>a"});
    tree.clear();
    QVERIFY(tree.empty());
    QVERIFY(!tree.contains("root"));
    QCOMPARE(tree.add(std::nullopt, "root", "again"), Result::Added);
    QCOMPARE(tree.indexOf("root"), std::size_t(1));
}

QTEST_APPLESS_MAIN(tst_KeyedTree)
#include "tst_keyedtree.moc"
