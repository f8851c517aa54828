// Renaming and deleting from the CogExplorer: the text edits and the tree updates.
#include "cog/renamedelete.h"

#include <QtTest>

#include <string>

using cog::KeyedTree;
using cog::Pos;
using Del = cog::DeleteResult::Outcome;
using Ren = cog::RenameResult::Outcome;

Q_DECLARE_METATYPE(std::string)
Q_DECLARE_METATYPE(Del)
Q_DECLARE_METATYPE(Ren)

class tst_RenameDelete : public QObject {
    Q_OBJECT
private slots:
    void rename_data();
    void rename();
    void renameLeavesTheSearchWhereTheSeriesStopped();
    void useCheck_data();
    void useCheck();
    void deleteNode_data();
    void deleteNode();
    void deleteTwiceLeavesTreeAlone();
};

namespace {

// A script and the explorer tree that its structure gives, written out by hand.
const std::string kScript = "# counter\r\n"
                            "symbols\r\n"
                            "int     count=0\r\n"
                            "int     ax\r\n"
                            "thing   player\r\n"
                            "message startup\r\n"
                            "end\r\n"
                            "code\r\n"
                            "startup:\r\n"
                            "  // count up\r\n"
                            "  count = count + 1;\r\n"
                            "  recount(ax); x; ax(1);\r\n"
                            "  return;\r\n"
                            "end\r\n";

KeyedTree scriptTree() {
    KeyedTree t;
    t.add(std::nullopt, "root", "counter.cog", "parent");
    t.add("root", "symbols", "symbols", "parent");
    t.add("root", "code", "code", "parent");
    t.add("symbols", "int", "int", "parent");
    t.add("int", "int     count=0\r", "count=0");
    t.add("int", "int     ax\r", "ax");
    t.add("symbols", "thing", "thing", "parent");
    t.add("thing", "thing   player\r", "player");
    t.add("code", "startup:", "startup", "message");
    t.add("symbols", "message", "message", "parent");
    t.add("message", "message startup\r", "startup");
    t.add("startup:", "// count up", "// count up");
    return t;
}

std::string removeLine(std::string text, const std::string& line) {
    text.erase(text.find(line), line.size());
    return text;
}

} // namespace

void tst_RenameDelete::rename_data() {
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("oldLabel");
    QTest::addColumn<std::string>("newLabel");
    QTest::addColumn<Ren>("outcome");
    QTest::addColumn<std::string>("expected");
    QTest::newRow("first occurrence, then free-standing later ones")
        << std::string("int count\r\ncode\r\n count = 1;\r\n count;\r\n recount count\r\n")
        << std::string("count") << std::string("total") << Ren::Renamed
        << std::string("int total\r\ncode\r\n total = 1;\r\n count;\r\n recount total\r\n");
    QTest::newRow("a comment above the declaration takes the first replace")
        << std::string("# count things\r\nint count\r\n") << std::string("count") << std::string("total")
        << Ren::Renamed << std::string("# total things\r\nint total\r\n");
    QTest::newRow("node with a default value")
        << std::string("int x=5\r\ncode\r\n x = x + 1\r\n") << std::string("x=5") << std::string("y=5")
        << Ren::Renamed << std::string("int y=5\r\ncode\r\n y = y + 1\r\n");
    QTest::newRow("only the default value changed")
        << std::string("int x=5\r\ncode\r\n x = 1\r\n") << std::string("x=5") << std::string("x=7")
        << Ren::Renamed << std::string("int x=7\r\ncode\r\n x = 1\r\n");
    QTest::newRow("case of later occurrences is ignored")
        << std::string("thing q\r\n Q = 2\r\n") << std::string("q") << std::string("m") << Ren::Renamed
        << std::string("thing m\r\n m = 2\r\n");
    QTest::newRow("new name holding the old one ends")
        << std::string("int a\r\n a = a\r\n") << std::string("a") << std::string("b a") << Ren::Renamed
        << std::string("int b a\r\n b a = b a\r\n");
    QTest::newRow("old label not in the text")
        << std::string("int x\r\n") << std::string("gone") << std::string("y") << Ren::NotInText
        << std::string("int x\r\n");
    QTest::newRow("empty new label") << std::string("int x\r\n") << std::string("x") << std::string("")
                                     << Ren::Refused << std::string("int x\r\n");
}

void tst_RenameDelete::rename() {
    QFETCH(std::string, text);
    QFETCH(std::string, oldLabel);
    QFETCH(std::string, newLabel);
    QFETCH(Ren, outcome);
    QFETCH(std::string, expected);
    const auto r = cog::renameLabel(text, oldLabel, newLabel);
    QCOMPARE(r.outcome, outcome);
    QCOMPARE(editor::applyEdit(text, r.edit), expected);
    QCOMPARE(r.keepsNewLabel(), outcome == Ren::Renamed);
}

void tst_RenameDelete::renameLeavesTheSearchWhereTheSeriesStopped() {
    const KeyedTree tree = scriptTree();
    const auto r = cog::renameNode(kScript, tree, "int     count=0\r", "count=0", "total=0");
    QCOMPARE(r.outcome, Ren::Renamed);
    const std::string after = editor::applyEdit(kScript, r.edit);
    QVERIFY(after.find("int     total=0\r\n") != std::string::npos);
    QVERIFY(after.find("  total = total + 1;") != std::string::npos);
    QVERIFY(after.find("// total up") != std::string::npos); // free-standing in the comment too
    QVERIFY(after.find("recount(ax)") != std::string::npos);
    QVERIFY(r.search);
    QCOMPARE(r.search->word, std::string("count"));
    QCOMPARE(r.search->replacement, std::string("total"));
    QCOMPARE(r.search->ipos, Pos(0));

    QCOMPARE(cog::renameNode(kScript, tree, "root", "counter.cog", "x").outcome, Ren::Refused);
    QCOMPARE(cog::renameNode(kScript, tree, "no such key", "count", "x").outcome, Ren::Refused);
    const auto same = cog::renameNode(kScript, tree, "int     ax\r", "ax", "ax");
    QCOMPARE(same.outcome, Ren::Renamed);
    QVERIFY(same.edit.isEmpty());
}

void tst_RenameDelete::useCheck_data() {
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("name");
    QTest::addColumn<bool>("used");
    QTest::newRow("between spaces after the code marker")
        << std::string("a\r\nint x\r\ncode\r\n x = 1\r\n") << std::string("x") << true;
    QTest::newRow("only inside longer words after the code marker")
        << std::string("a\r\nint x\r\ncode\r\n ax x; x(1) xx\r\n") << std::string("x") << false;
    QTest::newRow("with a code marker the declaration does not count")
        << std::string("a\r\nint x\r\ncode\r\n") << std::string("x") << false;
    QTest::newRow("without a code marker the declaration counts")
        << std::string("a\r\nint x\r\nend\r\n") << std::string("x") << true;
    QTest::newRow("an indented code line is no marker")
        << std::string("a\r\nint x\r\n code\r\n") << std::string("x") << true;
    QTest::newRow("case is ignored") << std::string("a\r\ncode\r\n X \r\n") << std::string("x") << true;
    QTest::newRow("at the end of the text without a blank after")
        << std::string("a\r\ncode\r\n x") << std::string("x") << false;
    QTest::newRow("absent name") << std::string("a\r\ncode\r\n") << std::string("y") << false;
}

void tst_RenameDelete::useCheck() {
    QFETCH(std::string, text);
    QFETCH(std::string, name);
    QFETCH(bool, used);
    QCOMPARE(cog::usedInCode(text, name), used);
}

void tst_RenameDelete::deleteNode_data() {
    QTest::addColumn<std::string>("key");
    QTest::addColumn<Del>("outcome");
    QTest::addColumn<std::string>("expected");
    QTest::addColumn<std::string>("removedFromTree");
    QTest::newRow("symbol still used in the code")
        << std::string("int     count=0\r") << Del::InUse << kScript << std::string();
    QTest::newRow("symbol used only inside longer words: whole line goes")
        << std::string("int     ax\r") << Del::Deleted << removeLine(kScript, "int     ax\r\n")
        << std::string("int     ax\r");
    QTest::newRow("last symbol of its type takes the group along")
        << std::string("thing   player\r") << Del::Deleted << removeLine(kScript, "thing   player\r\n")
        << std::string("thing");
    QTest::newRow("only comment of a message takes the message node along")
        << std::string("// count up") << Del::Deleted << removeLine(kScript, "// count up")
        << std::string("startup:");
    QTest::newRow("only message label: the byte after its colon, and code with it")
        << std::string("startup:") << Del::Deleted << removeLine(kScript, "startup:\r")
        << std::string("code");
    QTest::newRow("type group: first occurrence of the keyword and one byte")
        << std::string("thing") << Del::Deleted << removeLine(kScript, "thing ") << std::string("thing");
    QTest::newRow("root is not deleted") << std::string("root") << Del::Root << kScript << std::string();
    QTest::newRow("node no longer in the tree")
        << std::string("int     gone\r") << Del::NotInTree << kScript << std::string();
}

void tst_RenameDelete::deleteNode() {
    QFETCH(std::string, key);
    QFETCH(Del, outcome);
    QFETCH(std::string, expected);
    QFETCH(std::string, removedFromTree);
    KeyedTree tree = scriptTree();
    const auto before = tree.count();
    const auto r = cog::deleteNode(kScript, tree, key);
    QCOMPARE(r.outcome, outcome);
    QCOMPARE(editor::applyEdit(kScript, r.edit), expected);
    QCOMPARE(r.removeKey, removedFromTree);
    if (outcome == Del::Deleted) QCOMPARE(r.caret, Pos(kScript.find(key)));
    cog::applyDelete(tree, r);
    if (removedFromTree.empty())
        QCOMPARE(tree.count(), before);
    else
        QVERIFY(!tree.contains(removedFromTree) && !tree.contains(key));
}

void tst_RenameDelete::deleteTwiceLeavesTreeAlone() {
    KeyedTree tree = scriptTree();
    std::string text = kScript;
    const std::string key = "int     ax\r";
    auto r = cog::deleteNode(text, tree, key);
    text = editor::applyEdit(text, r.edit);
    cog::applyDelete(tree, r);
    const auto count = tree.count();
    r = cog::deleteNode(text, tree, key);
    QCOMPARE(r.outcome, Del::NotInTree);
    QVERIFY(r.edit.isEmpty());
    cog::applyDelete(tree, r);
    QCOMPARE(tree.count(), count);

    // A node whose line was edited away since the tree was built leaves the tree, the text stays.
    const std::string edited = removeLine(text, "thing   player\r\n");
    r = cog::deleteNode(edited, tree, "thing   player\r");
    QCOMPARE(r.outcome, Del::KeyNotInText);
    QVERIFY(r.edit.isEmpty());
    QCOMPARE(r.removeKey, std::string("thing"));

    // The comment's text also stands, free-standing, in the code: comments are never refused.
    const std::string twice = kScript + " // count up \r\n";
    QCOMPARE(cog::deleteNode(twice, tree, "// count up").outcome, Del::Deleted);
}

QTEST_APPLESS_MAIN(tst_RenameDelete)
#include "tst_renamedelete.moc"
