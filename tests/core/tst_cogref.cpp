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
    void splitTag_data();
    void splitTag();
    void find_data();
    void find();
    void groupTagIgnoresCase();
    void lookUpEntry_data();
    void lookUpEntry();
    void shippedReferenceLoadsCleanly();
};

namespace {

// The tree as "Group" for top-level nodes and "Group/Text" for entries, in index order.
QStringList outline(const cog::KeyedTree& tree) {
    QStringList out;
    for (const auto& n : tree.nodes())
        out << (n.hasParent ? QString::fromStdString(n.parentKey) + "/" : QString()) +
                   QString::fromStdString(n.text);
    return out;
}

QList<int> warningLines(const reference::CogRef& ref) {
    QList<int> lines;
    for (const auto& w : ref.warnings) lines << static_cast<int>(w.line);
    return lines;
}

const QByteArray kFindTree = "Find test\r\n"
                             ".Things\r\n"                        // 1
                             "(anon)|no name\r\n"                 // 2: empty text
                             "GetThingPos(thing)|a\r\n"           // 3
                             "SetThingPos(thing, vector)|b\r\n"   // 4
                             ".Sound\r\n"                         // 5
                             "PlaySoundThing(sound, thing)|c\r\n" // 6
                             ".Pos Group\r\n"                     // 7
                             "PosX()|d\r\n"                       // 8
                             "EOF\r\n";

} // namespace

void tst_CogRef::readerBuildsTree_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<QList<int>>("warnings");

    QTest::newRow("line 1 is ignored even when it reads EOF")
        << QByteArray("EOF\r\n.G\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G", "G/A"} << QList<int>{};
    QTest::newRow("line 1 is ignored even when it is a group line")
        << QByteArray(".First\r\n.G\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G", "G/A"} << QList<int>{};
    QTest::newRow("lower-case eof ends the file")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\neof\r\nB(y)|e\r\n.H\r\n") << QStringList{"G", "G/A"}
        << QList<int>{};
    QTest::newRow("mixed-case Eof ends the file")
        << QByteArray("t\r\n.G\r\nEof\r\nB(y)|e\r\n") << QStringList{"G"} << QList<int>{};
    QTest::newRow("EOF with a trailing blank is no terminator")
        << QByteArray("t\r\n.G\r\nEOF \r\nB(y)|e\r\nEOF\r\n") << QStringList{"G", "G/B"} << QList<int>{3};
    QTest::newRow("a group without entries has no children")
        << QByteArray("t\r\n.Empty\r\n.G\r\nA(x)|d\r\nEOF\r\n") << QStringList{"Empty", "G", "G/A"}
        << QList<int>{};
    QTest::newRow("entries belong to the nearest group above")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\n.H\r\nB(y)|e\r\nC()|f\r\nEOF\r\n")
        << QStringList{"G", "G/A", "H", "H/B", "H/C"} << QList<int>{};
    QTest::newRow("group names keep their blanks") << QByteArray("t\r\n. Sound \r\nA(x)|d\r\nEOF\r\n")
                                                   << QStringList{" Sound ", " Sound /A"} << QList<int>{};
    QTest::newRow("without EOF the file ends at its last line")
        << QByteArray("t\r\n.G\r\nA(x)|d") << QStringList{"G", "G/A"} << QList<int>{};
    QTest::newRow("a lone CR ends a line")
        << QByteArray("t\r.G\rA(x)|d\rEOF") << QStringList{"G", "G/A"} << QList<int>{};
    QTest::newRow("a lone LF stays inside the line")
        << QByteArray("t\r\n.G\nA(x)|d\r\nEOF\r\n") << QStringList{"G\nA(x)|d"} << QList<int>{};
    QTest::newRow("an empty file gives an empty tree") << QByteArray() << QStringList{} << QList<int>{};

    QTest::newRow("malformed: entry without a parenthesis")
        << QByteArray("t\r\n.G\r\nA|d\r\nB(y)|e\r\nEOF\r\n") << QStringList{"G", "G/B"} << QList<int>{3};
    QTest::newRow("malformed: entry without a bar")
        << QByteArray("t\r\n.G\r\nA(x)\r\nB(y)|e\r\nEOF\r\n") << QStringList{"G", "G/B"} << QList<int>{3};
    QTest::newRow("malformed: bar before the parenthesis")
        << QByteArray("t\r\n.G\r\nA|d (x)\r\nEOF\r\n") << QStringList{"G"} << QList<int>{3};
    QTest::newRow("malformed: empty lines")
        << QByteArray("t\r\n\r\n.G\r\n\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G", "G/A"} << QList<int>{2, 4};
    QTest::newRow("malformed: entry before any group")
        << QByteArray("t\r\nA(x)|d\r\n.G\r\nB(y)|e\r\nEOF\r\n") << QStringList{"G", "G/B"} << QList<int>{2};
    QTest::newRow("malformed: repeated entry line")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G", "G/A"} << QList<int>{4};
    QTest::newRow("malformed: repeated entry under another group")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\n.H\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G", "G/A", "H"}
        << QList<int>{5};
    QTest::newRow("malformed: repeated group, its entries join the first")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\n.H\r\n.G\r\nB(y)|e\r\nEOF\r\n")
        << QStringList{"G", "G/A", "H", "G/B"} << QList<int>{5};
    QTest::newRow("malformed: group line without a name, its entries skipped")
        << QByteArray("t\r\n.G\r\n.\r\nA(x)|d\r\nEOF\r\n") << QStringList{"G"} << QList<int>{3, 4};
    QTest::newRow("malformed: group named like an entry line")
        << QByteArray("t\r\n.G\r\nA(x)|d\r\n.A(x)|d\r\nB(y)|e\r\nEOF\r\n") << QStringList{"G", "G/A"}
        << QList<int>{4, 5};
}

void tst_CogRef::readerBuildsTree() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, nodes);
    QFETCH(QList<int>, warnings);
    const auto ref = readCogRef(std::string_view(file.constData(), static_cast<std::size_t>(file.size())));
    QCOMPARE(outline(ref.tree), nodes);
    QCOMPARE(warningLines(ref), warnings);
    for (const auto& w : ref.warnings) QVERIFY(!w.reason.empty());
    for (const auto& n : ref.tree.nodes())
        if (!n.hasParent) QCOMPARE(QString::fromStdString(n.tag), QStringLiteral("parent"));
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
    QVERIFY(!entry.expanded);
    const auto parts = reference::splitTag(entry.tag);
    QCOMPARE(std::string(parts.callText), std::string("Foo(a, b)"));
    QCOMPARE(std::string(parts.description), std::string("Does foo | and (more)"));
}

void tst_CogRef::splitTag_data() {
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("callText");
    QTest::addColumn<QString>("description");
    QTest::newRow("entry") << "Sleep(flex)|Waits"
                           << "Sleep(flex)"
                           << "Waits";
    QTest::newRow("bar inside the description") << "A(x)|one|two"
                                                << "A(x)"
                                                << "one|two";
    QTest::newRow("empty description") << "A(x)|"
                                       << "A(x)"
                                       << "";
    QTest::newRow("no bar: the whole tag for both") << "A(x) waits"
                                                    << "A(x) waits"
                                                    << "A(x) waits";
    QTest::newRow("a group shows its tag") << "parent"
                                           << "parent"
                                           << "parent";
}

void tst_CogRef::splitTag() {
    QFETCH(QString, tag);
    QFETCH(QString, callText);
    QFETCH(QString, description);
    const std::string t = tag.toStdString();
    const auto parts = reference::splitTag(t);
    QCOMPARE(QString::fromStdString(std::string(parts.callText)), callText);
    QCOMPARE(QString::fromStdString(std::string(parts.description)), description);
}

void tst_CogRef::find_data() {
    QTest::addColumn<QString>("findText");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("found");
    QTest::newRow("lower case finds upper case") << "thingpos" << 1 << 3;
    QTest::newRow("upper case finds lower case") << "SOUNDTH" << 1 << 6;
    QTest::newRow("find next goes on after the last found") << "thingpos" << 4 << 4;
    QTest::newRow("no wrap after the last match") << "thingpos" << 5 << 0;
    QTest::newRow("groups never match") << "sound" << 1 << 6;
    QTest::newRow("a text only a group holds is not found") << "pos group" << 1 << 0;
    QTest::newRow("empty text skips groups and empty texts") << "" << 1 << 3;
    QTest::newRow("empty text from the middle") << "" << 7 << 8;
    QTest::newRow("nothing past the last node") << "" << 9 << 0;
    QTest::newRow("index 0 starts at the first node") << "posx" << 0 << 8;
    QTest::newRow("absent text") << "zzz" << 1 << 0;
}

void tst_CogRef::find() {
    QFETCH(QString, findText);
    QFETCH(int, from);
    QFETCH(int, found);
    const auto ref = readCogRef(kFindTree.toStdString());
    QCOMPARE(ref.tree.count(), std::size_t(8));
    QCOMPARE(reference::findNode(ref.tree, findText.toStdString(), static_cast<std::size_t>(from)),
             static_cast<std::size_t>(found));
}

void tst_CogRef::groupTagIgnoresCase() {
    cog::KeyedTree tree;
    tree.add(std::nullopt, "k1", "Sound", "PARENT");
    tree.add(std::nullopt, "k2", "Sound", "Parent ");
    QCOMPARE(reference::findNode(tree, "sound", 1), std::size_t(2));
    QCOMPARE(reference::lookUpEntry(tree, "sound"), std::size_t(2));
}

void tst_CogRef::lookUpEntry_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("found");
    QTest::newRow("letter case ignored, group of that name skipped") << "FOO" << 3;
    QTest::newRow("exact text") << "Bar" << 4;
    QTest::newRow("a prefix is no match") << "Fo" << 0;
    QTest::newRow("the text before the parenthesis only") << "Foo(a)" << 0;
    QTest::newRow("empty word finds the nameless entry") << "" << 5;
}

void tst_CogRef::lookUpEntry() {
    QFETCH(QString, word);
    QFETCH(int, found);
    const auto ref = readCogRef("t\r\n.foo\r\n.G\r\nFoo(a)|Does foo\r\nBar()|b\r\n(x)|nameless\r\nEOF\r\n");
    QCOMPARE(reference::lookUpEntry(ref.tree, word.toStdString()), static_cast<std::size_t>(found));
}

void tst_CogRef::shippedReferenceLoadsCleanly() {
    std::ifstream in(TESSARY_BIN_DIR "/cogref.dat", std::ios::binary);
    QVERIFY(in);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const auto ref = readCogRef(bytes);
    for (const auto& w : ref.warnings) qWarning("line %zu: %s", w.line, w.reason.c_str());
    QVERIFY(ref.warnings.empty());
    QVERIFY(ref.tree.count() > 100);
    // Every line ends at CR LF and the file ends with its terminator line.
    QVERIFY(bytes.ends_with("\r\nEOF\r\n"));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] == '\n') QVERIFY(i > 0 && bytes[i - 1] == '\r');
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
