// Reading the COG reference file, and the look-up rules of the reference tree.
#include "reference/cogref.h"

#include <QtTest>

#include <fstream>
#include <iterator>

using reference::readCogRef;

class tst_CogRef : public QObject {
    Q_OBJECT
private slots:
    void readerBuildsTree_data();
    void readerBuildsTree();
    void entryNodeCarriesWholeLine();
    void find_data();
    void find();
    void groupTagIgnoresCase();
    void shippedReferenceLoadsCleanly();
};

void tst_CogRef::readerBuildsTree_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("nodes"); // "Group" for top-level nodes, "Group/Text" for entries
    QTest::addColumn<QList<int>>("warnings");
    const auto row = [](const char* name, const QByteArray& body, const QStringList& nodes,
                        QList<int> warned = {}) { QTest::newRow(name) << body << nodes << warned; };
    row("line 1 is ignored even when it reads EOF", "EOF\r\n.G\r\nA(x)|d\r\nEOF\r\n", {"G", "G/A"});
    row("lower-case eof ends the file", "t\r\n.G\r\nA(x)|d\r\neof\r\nB(y)|e\r\n.H\r\n", {"G", "G/A"});
    row("EOF with a trailing blank is no terminator", "t\r\n.G\r\nEOF \r\nB(y)|e\r\nEOF\r\n", {"G", "G/B"},
        {3});
    row("a group without entries has no children", "t\r\n.Empty\r\n.G\r\nA(x)|d\r\nEOF\r\n",
        {"Empty", "G", "G/A"});
    row("without EOF the file ends at its last line", "t\r\n.G\r\nA(x)|d", {"G", "G/A"});
    row("a lone CR ends a line", "t\r.G\rA(x)|d\rEOF", {"G", "G/A"});
    row("malformed: entry without a parenthesis", "t\r\n.G\r\nA|d\r\nB(y)|e\r\nEOF\r\n", {"G", "G/B"}, {3});
    row("malformed: entry without a bar", "t\r\n.G\r\nA(x)\r\nB(y)|e\r\nEOF\r\n", {"G", "G/B"}, {3});
    row("malformed: bar before the parenthesis", "t\r\n.G\r\nA|d (x)\r\nEOF\r\n", {"G"}, {3});
    row("malformed: empty lines", "t\r\n\r\n.G\r\n\r\nA(x)|d\r\nEOF\r\n", {"G", "G/A"}, {2, 4});
    row("malformed: entry before any group", "t\r\nA(x)|d\r\n.G\r\nB(y)|e\r\nEOF\r\n", {"G", "G/B"}, {2});
    row("malformed: repeated entry under another group", "t\r\n.G\r\nA(x)|d\r\n.H\r\nA(x)|d\r\nEOF\r\n",
        {"G", "G/A", "H"}, {5});
    row("malformed: repeated group, its entries join the first",
        "t\r\n.G\r\nA(x)|d\r\n.H\r\n.G\r\nB(y)|e\r\nEOF\r\n", {"G", "G/A", "H", "G/B"}, {5});
    row("malformed: group line without a name, its entries skipped", "t\r\n.G\r\n.\r\nA(x)|d\r\nEOF\r\n",
        {"G"}, {3, 4});
    row("malformed: group named like an entry line", "t\r\n.G\r\nA(x)|d\r\n.A(x)|d\r\nB(y)|e\r\nEOF\r\n",
        {"G", "G/A"}, {4, 5});
}

void tst_CogRef::readerBuildsTree() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, nodes);
    QFETCH(QList<int>, warnings);
    const auto ref = readCogRef(file.toStdString());
    QStringList outline;
    for (const auto& n : ref.tree.nodes()) {
        outline << (n.hasParent ? QString::fromStdString(n.parentKey) + "/" : QString()) +
                       QString::fromStdString(n.text);
        if (!n.hasParent) QCOMPARE(QString::fromStdString(n.tag), QStringLiteral("parent"));
    }
    QCOMPARE(outline, nodes);
    QList<int> warned;
    for (const auto& w : ref.warnings) {
        warned << static_cast<int>(w.line);
        QVERIFY(!w.reason.empty());
    }
    QCOMPARE(warned, warnings);
}

void tst_CogRef::entryNodeCarriesWholeLine() {
    const std::string line = "Foo(a, b)|Does foo | and (more)";
    const auto ref = readCogRef("title\r\n.Group\r\n" + line + "\r\nEOF\r\n");
    QCOMPARE(ref.tree.count(), std::size_t(2));
    const auto& entry = ref.tree.at(2);
    QCOMPARE(entry.key, line);
    QCOMPARE(entry.tag, line);
    QCOMPARE(entry.text, std::string("Foo"));
    QCOMPARE(entry.parentKey, std::string("Group"));
    const auto parts = reference::splitTag(entry.tag);
    QCOMPARE(std::string(parts.callText), std::string("Foo(a, b)"));
    QCOMPARE(std::string(parts.description), std::string("Does foo | and (more)"));
}

void tst_CogRef::find_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("from"); // -1: the help line's look-up of a word instead
    QTest::addColumn<int>("found");
    QTest::newRow("lower case finds upper case") << "thingpos" << 1 << 4;
    QTest::newRow("upper case finds lower case") << "SOUNDTH" << 1 << 7;
    QTest::newRow("find next goes on after the last found") << "thingpos" << 5 << 5;
    QTest::newRow("no wrap after the last match") << "thingpos" << 6 << 0;
    QTest::newRow("groups never match") << "foo" << 1 << 10;
    QTest::newRow("a text only a group holds is not found") << "pos group" << 1 << 0;
    QTest::newRow("empty text skips groups and empty texts") << "" << 1 << 4;
    QTest::newRow("nothing past the last node") << "" << 11 << 0;
    QTest::newRow("index 0 starts at the first node") << "posx" << 0 << 9;
    QTest::newRow("look-up: letter case ignored, group of that name skipped") << "FOO" << -1 << 10;
    QTest::newRow("look-up: a prefix is no match") << "Fo" << -1 << 0;
    QTest::newRow("look-up: the text before the parenthesis only") << "Foo(a)" << -1 << 0;
    QTest::newRow("look-up: empty word finds the nameless entry") << "" << -1 << 3;
}

void tst_CogRef::find() {
    QFETCH(QString, text);
    QFETCH(int, from);
    QFETCH(int, found);
    // 1 .foo, 2 .Things, 3 (x) with an empty text, 4, 5, 6 .Sound, 7, 8 .Pos Group, 9, 10 Foo.
    const auto ref =
        readCogRef("t\r\n.foo\r\n.Things\r\n(x)|nameless\r\nGetThingPos(thing)|a\r\nSetThingPos(t, v)|b\r\n"
                   ".Sound\r\nPlaySoundThing(s, t)|c\r\n.Pos Group\r\nPosX()|d\r\nFoo(a)|e\r\nEOF\r\n");
    QCOMPARE(ref.tree.count(), std::size_t(10));
    const std::string t = text.toStdString();
    QCOMPARE(from < 0 ? reference::lookUpEntry(ref.tree, t)
                      : reference::findNode(ref.tree, t, static_cast<std::size_t>(from)),
             static_cast<std::size_t>(found));
}

void tst_CogRef::groupTagIgnoresCase() {
    cog::KeyedTree tree;
    tree.add(std::nullopt, "k1", "Sound", "PARENT");
    tree.add(std::nullopt, "k2", "Sound", "Parent ");
    QCOMPARE(reference::findNode(tree, "sound", 1), std::size_t(2));
    QCOMPARE(reference::lookUpEntry(tree, "sound"), std::size_t(2));
}

void tst_CogRef::shippedReferenceLoadsCleanly() {
    std::ifstream in(TESSARY_BIN_DIR "/cogref.dat", std::ios::binary);
    QVERIFY(in);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const auto ref = readCogRef(bytes);
    for (const auto& w : ref.warnings) qWarning("line %zu: %s", w.line, w.reason.c_str());
    QVERIFY(ref.warnings.empty());
    QVERIFY(ref.tree.count() > 100);
    QVERIFY(bytes.ends_with("\r\nEOF\r\n"));
    // No two entries share a name, so the help line never hides one behind another.
    QSet<QString> names;
    for (const auto& n : ref.tree.nodes())
        if (n.hasParent) {
            const QString name = QString::fromStdString(n.text).toLower();
            QVERIFY2(!names.contains(name), qPrintable(name));
            names.insert(name);
        }
}

QTEST_APPLESS_MAIN(tst_CogRef)
#include "tst_cogref.moc"
