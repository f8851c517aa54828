// Renaming and deleting from the CogExplorer: the text edits and the tree updates.
#include "cog/renamedelete.h"

#include <QtTest>

#include <string>

using cog::KeyedTree;
using cog::Pos;
using S = std::string;
using Del = cog::DeleteResult::Outcome;
using Ren = cog::RenameResult::Outcome;

Q_DECLARE_METATYPE(std::string)

namespace {

// A script and the explorer tree that its structure gives, written out by hand.
const S kScript = "# counter\r\nsymbols\r\nint     count=0\r\nint     ax\r\nthing   player\r\n"
                  "message startup\r\nend\r\ncode\r\nstartup:\r\n  // count up\r\n  count = count + 1;\r\n"
                  "  recount(ax); x; ax(1);\r\n  return;\r\nend\r\n";

// Rows "parent|key|label|tag"; the root first.
KeyedTree scriptTree() {
    KeyedTree t;
    t.add(std::nullopt, "root", "counter.cog", "parent");
    for (const QByteArray row :
         {"root|symbols|symbols|parent", "root|code|code|parent", "symbols|int|int|parent",
          "int|int     count=0\r|count=0|", "int|int     ax\r|ax|", "symbols|thing|thing|parent",
          "thing|thing   player\r|player|", "code|startup:|startup|message", "symbols|message|message|parent",
          "message|message startup\r|startup|", "startup:|// count up|// count up|"}) {
        const auto f = row.split('|');
        t.add(f[0].toStdString(), f[1].toStdString(), f[2].toStdString(), f[3].toStdString());
    }
    return t;
}

// removed: the bytes the delete takes out of the text; fromTree: the node leaving the tree.
struct DeleteCase {
    const char* name;
    S text, key, removed, fromTree;
    Del outcome = Del::Deleted;
};

struct RenameCase {
    const char* name;
    S text, oldLabel, newLabel, expected;
    Ren outcome = Ren::Renamed;
};

S removeFirst(S text, const S& part) {
    return text.erase(text.find(part), part.size());
}

} // namespace

Q_DECLARE_METATYPE(RenameCase)
Q_DECLARE_METATYPE(DeleteCase)

class tst_RenameDelete : public QObject {
    Q_OBJECT
private slots:

    void rename_data() {
        QTest::addColumn<RenameCase>("c");
        const RenameCase rows[] = {
            {"first occurrence, then free-standing later ones",
             "int count\r\ncode\r\n count = 1;\r\n count;\r\n recount count\r\n", "count", "total",
             "int total\r\ncode\r\n total = 1;\r\n count;\r\n recount total\r\n"},
            {"a comment above the declaration takes the first replace", "# count things\r\nint count\r\n",
             "count", "total", "# total things\r\nint total\r\n"},
            {"node with a default value", "int x=5\r\ncode\r\n x = x + 1\r\n", "x=5", "y=5",
             "int y=5\r\ncode\r\n y = y + 1\r\n"},
            {"only the default value changed: first only", "int x=5\r\ncode\r\n x = 1\r\n", "x=5", "x=7",
             "int x=7\r\ncode\r\n x = 1\r\n"},
            {"case of later occurrences is ignored", "thing q\r\n Q = 2\r\n", "q", "m",
             "thing m\r\n m = 2\r\n"},
            {"new name holding the old one ends", "int a\r\n a = a\r\n", "a", "b a",
             "int b a\r\n b a = b a\r\n"},
            {"old label not in the text", "int x\r\n", "gone", "y", "int x\r\n", Ren::NotInText},
            {"empty new label", "int x\r\n", "x", "", "int x\r\n", Ren::Refused},
        };
        for (const auto& c : rows) QTest::newRow(c.name) << c;
    }

    void rename() {
        QFETCH(RenameCase, c);
        const auto r = cog::renameLabel(c.text, c.oldLabel, c.newLabel);
        QCOMPARE(r.outcome, c.outcome);
        QCOMPARE(editor::applyEdit(c.text, r.edit), c.expected);
    }

    // The edit and the search state a rename leaves are shown on the real tree; here the refusals.
    void renameNodeRefusals() {
        const KeyedTree tree = scriptTree();
        QCOMPARE(cog::renameNode(kScript, tree, "root", "counter.cog", "x").outcome, Ren::Refused);
        QCOMPARE(cog::renameNode(kScript, tree, "no such key", "count", "x").outcome, Ren::Refused);
        const auto same = cog::renameNode(kScript, tree, "int     ax\r", "ax", "ax");
        QVERIFY(same.outcome == Ren::Renamed && same.edit.isEmpty());
    }

    void useCheck_data() {
        QTest::addColumn<S>("text");
        QTest::addColumn<bool>("used");
        QTest::newRow("between spaces after the code marker")
            << S("a\r\nint x\r\ncode\r\n x = 1\r\n") << true;
        QTest::newRow("ax, x; x( and xx do not count")
            << S("a\r\nint x\r\ncode\r\n ax x; x(1) xx\r\n") << false;
        QTest::newRow("with a code marker the declaration does not count")
            << S("a\r\nint x\r\ncode\r\n") << false;
        QTest::newRow("without a code marker the declaration counts") << S("a\r\nint x\r\nend\r\n") << true;
        QTest::newRow("an indented code line is no marker") << S("a\r\nint x\r\n code\r\n") << true;
        QTest::newRow("case is ignored") << S("a\r\ncode\r\n X \r\n") << true;
        QTest::newRow("at the end of the text without a blank after") << S("a\r\ncode\r\n x") << false;
        QTest::newRow("absent name") << S("a\r\ncode\r\n y \r\n") << false;
    }

    void useCheck() {
        QFETCH(S, text);
        QFETCH(bool, used);
        QCOMPARE(cog::usedInCode(text, "x"), used);
    }

    void deleteNode_data() {
        QTest::addColumn<DeleteCase>("c");
        const S edited = removeFirst(kScript, "thing   player\r\n"), twice = kScript + " // count up \r\n";
        const DeleteCase rows[] = {
            {"symbol still used in the code", kScript, "int     count=0\r", "", "", Del::InUse},
            {"used only inside longer words: whole line goes", kScript, "int     ax\r", "int     ax\r\n",
             "int     ax\r"},
            {"last symbol of its type takes the group along", kScript, "thing   player\r",
             "thing   player\r\n", "thing"},
            {"only comment of a message takes the message node along", kScript, "// count up", "// count up",
             "startup:"},
            {"comments are never refused", twice, "// count up", "// count up", "startup:"},
            {"only message label: the byte after its colon, and code with it", kScript,
             "startup:", "startup:\r", "code"},
            {"type group: first occurrence of the keyword and one byte", kScript, "thing", "thing ", "thing"},
            {"root is not deleted", kScript, "root", "", "", Del::Root},
            {"node no longer in the tree", kScript, "int     gone\r", "", "", Del::NotInTree},
            {"line edited away: only the tree changes", edited, "thing   player\r", "", "thing",
             Del::KeyNotInText},
        };
        for (const auto& c : rows) QTest::newRow(c.name) << c;
    }

    void deleteNode() {
        QFETCH(DeleteCase, c);
        KeyedTree tree = scriptTree();
        const auto before = tree.count();
        const auto r = cog::deleteNode(c.text, tree, c.key);
        QCOMPARE(r.outcome, c.outcome);
        QCOMPARE(editor::applyEdit(c.text, r.edit),
                 c.removed.empty() ? c.text : removeFirst(c.text, c.removed));
        QCOMPARE(r.removeKey, c.fromTree);
        if (c.outcome == Del::Deleted) QCOMPARE(r.caret, Pos(c.text.find(c.key)));
        cog::applyDelete(tree, r);
        if (c.fromTree.empty())
            QCOMPARE(tree.count(), before);
        else
            QVERIFY(!tree.contains(c.fromTree) && !tree.contains(c.key));
    }
};

QTEST_APPLESS_MAIN(tst_RenameDelete)
#include "tst_renamedelete.moc"
