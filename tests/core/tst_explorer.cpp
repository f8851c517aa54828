// The explorer's reading of a COG text into its tree, where it stops, and where it points the
// user when two lines clash.
#include "cog/explorer.h"

#include <QtTest>

#include <random>

using cog::ExplorerResult;
using cog::KeyedTree;
using cog::Pos;
using Stop = ExplorerResult::Stop;

Q_DECLARE_METATYPE(ExplorerResult::Stop)

namespace {

QString node(const std::string& parent, const std::string& key, const std::string& text,
             const std::string& tag) {
    return QString::fromLatin1(parent + " > " + key + " | " + text + " | " + tag);
}

QStringList describe(const KeyedTree& tree) {
    QStringList out;
    for (const auto& n : tree.nodes()) out << node(n.hasParent ? n.parentKey : "-", n.key, n.text, n.tag);
    return out;
}

// The three nodes every non-empty tree starts with.
QStringList frame(const std::string& caption = "x.cog") {
    return {node("-", "root", caption, "parent"), node("root", "symbols", "symbols", "parent"),
            node("root", "code", "code", "parent")};
}

QString group(const std::string& keyword) {
    return node("symbols", keyword, keyword, "parent");
}

QString symbol(const std::string& keyword, const std::string& line, const std::string& name) {
    return node(keyword, line, name, "");
}

QString message(const std::string& name) {
    return node("code", name + ":", name, "message");
}

QString comment(const std::string& label, const std::string& text) {
    return node(label, text, text, "");
}

ExplorerResult build(const std::string& text) {
    return cog::buildExplorer(text, "x.cog", cog::symbolTypes());
}

// The rebuild read step by step, searching the whole text again at every step.
struct Reading {
    KeyedTree tree;
    Stop stop = Stop::None;
    std::string key;
};

Reading readStepByStep(const std::string& T, const std::vector<std::string>& keywords) {
    using cog::find;
    using cog::mid;
    Reading r;
    auto add = [&](std::string_view parent, const std::string& key, const std::string& text,
                   const std::string& tag) {
        const auto res = r.tree.add(parent, key, text, tag);
        if (res == KeyedTree::AddResult::DuplicateKey) {
            r.stop = Stop::DuplicateKey;
            r.key = key;
        } else if (res != KeyedTree::AddResult::Added) {
            r.stop = Stop::Failure;
        }
        return res == KeyedTree::AddResult::Added;
    };
    auto fail = [&] {
        r.stop = Stop::Failure;
        return r;
    };
    const Pos S = find(1, T, "\nsymbols");
    const Pos E = find(1, T, "\nend");
    std::vector<std::string> messages;
    if (S > 0 && E > 0) {
        if (E - S < 0) return fail();
        const std::string B(mid(T, S + 8, E - S));
        r.tree.add(std::nullopt, "root", "x.cog", "parent");
        r.tree.add("root", "symbols", "symbols", "parent");
        r.tree.add("root", "code", "code", "parent");
        for (const std::string& K : keywords) {
            bool grouped = false;
            Pos p = find(1, B, "\n" + K);
            Pos e = find(p + 1, B, "\r");
            while (p > 0) {
                if (e - p < 0) return fail();
                const std::string L(mid(B, p + 1, e - p));
                if (cog::equalText(K, "message")) {
                    const std::string N = cog::GetSymbolName(L, 7);
                    if (!add("code", N + ":", N, "message")) return r;
                    messages.push_back(N + ":");
                }
                if (!grouped && !add("symbols", K, K, "parent")) return r;
                grouped = true;
                if (!add(K, L, cog::GetSymbolName(L, K.size()), "")) return r;
                p = find(e + 1, B, "\n" + K);
                e = find(p + 1, B, "\r");
            }
        }
        for (const std::string& M : messages) {
            const Pos p = find(1, T, M);
            const Pos rt = find(p + 1, T, "return;");
            if (rt - p < 0) return fail();
            const std::string body(mid(T, p + static_cast<Pos>(M.size()) + 2, rt - p));
            Pos k = find(1, body, "//");
            for (;;) {
                const Pos e = find(k + 1, body, "\r");
                if (k == 0) break;
                if (e - k < 0) return fail();
                const std::string c(mid(body, k, e - k));
                if (!add(M, c, c, "")) return r;
                k = find(e + 1, body, "//");
            }
        }
    }
    if (r.tree.empty()) return fail();
    return r;
}

} // namespace

class tst_Explorer : public QObject {
    Q_OBJECT
private slots:
    void tree_data();
    void tree();
    void onlyTheRootIsExpanded();
    void failureSaysWhereAndWhy_data();
    void failureSaysWhereAndWhy();
    void offendingLineIsSelected_data();
    void offendingLineIsSelected();
    void agreesWithStepByStepReading();
    void manyMessagesStayFast();
};

void tst_Explorer::tree_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<ExplorerResult::Stop>("stop");
    QTest::addColumn<QByteArray>("offendingKey");

    QTest::newRow("a new script: just the frame")
        << QByteArray("# new\r\nsymbols\r\nend\r\ncode\r\nend\r\n") << frame() << Stop::None << QByteArray();

    QTest::newRow("groups follow the keyword order, lines their file order")
        << QByteArray("#\r\nsymbols\r\nvector v\r\nthing b\r\nai a\r\ntemplate t\r\nint i2\r\nsurface s\r\n"
                      "cog c\r\nsound so\r\nflex f\r\nsector se\r\nkeyframe k\r\nmodel mo\r\nmaterial ma\r\n"
                      "int i1\r\nthing a\r\nend\r\ncode\r\nend\r\n")
        << frame() + QStringList{group("ai"),
                                 symbol("ai", "ai a\r", "a"),
                                 group("cog"),
                                 symbol("cog", "cog c\r", "c"),
                                 group("flex"),
                                 symbol("flex", "flex f\r", "f"),
                                 group("int"),
                                 symbol("int", "int i2\r", "i2"),
                                 symbol("int", "int i1\r", "i1"),
                                 group("keyframe"),
                                 symbol("keyframe", "keyframe k\r", "k"),
                                 group("material"),
                                 symbol("material", "material ma\r", "ma"),
                                 group("model"),
                                 symbol("model", "model mo\r", "mo"),
                                 group("sector"),
                                 symbol("sector", "sector se\r", "se"),
                                 group("sound"),
                                 symbol("sound", "sound so\r", "so"),
                                 group("surface"),
                                 symbol("surface", "surface s\r", "s"),
                                 group("template"),
                                 symbol("template", "template t\r", "t"),
                                 group("thing"),
                                 symbol("thing", "thing b\r", "b"),
                                 symbol("thing", "thing a\r", "a"),
                                 group("vector"),
                                 symbol("vector", "vector v\r", "v")}
        << Stop::None << QByteArray();

    QTest::newRow("a message declaration also lists the message, with its comments")
        << QByteArray("#\r\nsymbols\r\nmessage startup\r\nint x=5\tlocal\r\nend\r\ncode\r\n"
                      "startup:\r\n  // set up\r\n  x = 1; // more\r\n  return;\r\nend\r\n")
        << frame() + QStringList{group("int"),
                                 symbol("int", "int x=5\tlocal\r", "x=5"),
                                 message("startup"),
                                 group("message"),
                                 symbol("message", "message startup\r", "startup"),
                                 comment("startup:", "// set up"),
                                 comment("startup:", "// more")}
        << Stop::None << QByteArray();

    QTest::newRow("upper-case and longer keywords count, indented lines do not")
        << QByteArray("#\r\nsymbols\r\nINT A\r\n  int hidden\r\ninteger z\r\nend\r\ncode\r\nend\r\n")
        << frame() +
               QStringList{group("int"), symbol("int", "INT A\r", "A"), symbol("int", "integer z\r", "eger")}
        << Stop::None << QByteArray();

    QTest::newRow("lines differing in case are both listed")
        << QByteArray("#\r\nsymbols\r\nint a\r\nINT a\r\nend\r\n")
        << frame() + QStringList{group("int"), symbol("int", "int a\r", "a"), symbol("int", "INT a\r", "a")}
        << Stop::None << QByteArray();

    QTest::newRow("a duplicate declaration stops at the second line")
        << QByteArray("#\r\nsymbols\r\nint a\r\nint a\r\nthing t\r\nend\r\n")
        << frame() + QStringList{group("int"), symbol("int", "int a\r", "a")} << Stop::DuplicateKey
        << QByteArray("int a\r");

    QTest::newRow("a message declared twice stops at its second message node")
        << QByteArray("#\r\nsymbols\r\nmessage startup\r\nmessage startup local\r\nend\r\n")
        << frame() + QStringList{message("startup"), group("message"),
                                 symbol("message", "message startup\r", "startup")}
        << Stop::DuplicateKey << QByteArray("startup:");

    QTest::newRow("the same comment in two handlers stops at the second, earlier comments stay")
        << QByteArray(
               "#\r\nsymbols\r\nmessage startup\r\nmessage activated\r\nend\r\ncode\r\n"
               "startup:\r\n// same\r\n// first only\r\nreturn;\r\nactivated:\r\n// other\r\n// same\r\n"
               "// never read\r\nreturn;\r\nend\r\n")
        << frame() + QStringList{message("startup"),
                                 group("message"),
                                 symbol("message", "message startup\r", "startup"),
                                 message("activated"),
                                 symbol("message", "message activated\r", "activated"),
                                 comment("startup:", "// same"),
                                 comment("startup:", "// first only"),
                                 comment("activated:", "// other")}
        << Stop::DuplicateKey << QByteArray("// same");

    QTest::newRow("the same comment twice in one handler")
        << QByteArray("#\r\nsymbols\r\nmessage pulse\r\nend\r\ncode\r\npulse:\r\n// a\r\n// a\r\nreturn;\r\n")
        << frame() + QStringList{message("pulse"), group("message"),
                                 symbol("message", "message pulse\r", "pulse"), comment("pulse:", "// a")}
        << Stop::DuplicateKey << QByteArray("// a");

    QTest::newRow("a message with no label reads its comments from the start of the text")
        << QByteArray("1234567// head\r\nsymbols\r\nmessage timer\r\nend\r\ncode\r\n// in "
                      "code\r\nreturn;\r\nend\r\n")
        << frame() + QStringList{message("timer"), group("message"),
                                 symbol("message", "message timer\r", "timer"), comment("timer:", "// head"),
                                 comment("timer:", "// in code")}
        << Stop::None << QByteArray();

    QTest::newRow("a message with no label and no return; has no comments")
        << QByteArray("#\r\nsymbols\r\nmessage timer\r\nend\r\n// lost\r\n")
        << frame() +
               QStringList{message("timer"), group("message"), symbol("message", "message timer\r", "timer")}
        << Stop::None << QByteArray();

    QTest::newRow("a label met earlier in a comment is where the body starts")
        << QByteArray("#\r\nsymbols\r\nmessage startup\r\n# startup:\r\n// early\r\nend\r\ncode\r\n"
                      "startup:\r\n// late\r\nreturn;\r\nend\r\n")
        << frame() + QStringList{message("startup"), group("message"),
                                 symbol("message", "message startup\r", "startup"),
                                 comment("startup:", "// early"), comment("startup:", "// late")}
        << Stop::None << QByteArray();

    QTest::newRow("no symbols marker: empty tree") << QByteArray("symbols\r\nint a\r\nend\r\ncode\r\nend\r\n")
                                                   << QStringList{} << Stop::Failure << QByteArray();
    QTest::newRow("no end marker: empty tree")
        << QByteArray("#\r\nsymbols\r\nint a\r\n") << QStringList{} << Stop::Failure << QByteArray();
    QTest::newRow("an end line before the symbols line: empty tree")
        << QByteArray("#\r\nend\r\nsymbols\r\nint a\r\ncode\r\n") << QStringList{} << Stop::Failure
        << QByteArray();

    QTest::newRow("a declaration line without CR in the body stops after the frame")
        << QByteArray("#\nsymbols\nint a\nend\n") << frame() << Stop::Failure << QByteArray();
    QTest::newRow("a keyword in the two bytes after the end line has no CR in the body")
        << QByteArray("#\r\nsymbols\r\nint a\r\nend\r\nai\r\n") << frame() << Stop::Failure << QByteArray();
    QTest::newRow("a label with no return; after it keeps the nodes so far")
        << QByteArray(
               "#\r\nsymbols\r\nmessage startup\r\nint a\r\nend\r\ncode\r\nstartup:\r\n// c\r\nend\r\n")
        << frame() + QStringList{group("int"), symbol("int", "int a\r", "a"), message("startup"),
                                 group("message"), symbol("message", "message startup\r", "startup")}
        << Stop::Failure << QByteArray();
    QTest::newRow("a comment whose CR lies past the body keeps the earlier comments")
        << QByteArray("#\r\nsymbols\r\nmessage m\r\nend\r\ncode\r\nm:\r\n// a\r\n// b return;\r\nend\r\n")
        << frame() + QStringList{message("m"), group("message"), symbol("message", "message m\r", "m"),
                                 comment("m:", "// a")}
        << Stop::Failure << QByteArray();
}

void tst_Explorer::tree() {
    QFETCH(QByteArray, text);
    QFETCH(QStringList, nodes);
    QFETCH(ExplorerResult::Stop, stop);
    QFETCH(QByteArray, offendingKey);
    const ExplorerResult result = build(text.toStdString());
    QCOMPARE(describe(result.tree), nodes);
    QCOMPARE(result.stop, stop);
    QCOMPARE(QByteArray::fromStdString(result.offendingKey), offendingKey);
    QCOMPARE(result.complete(), stop == Stop::None);
}

void tst_Explorer::onlyTheRootIsExpanded() {
    const ExplorerResult result =
        build("#\r\nsymbols\r\nmessage m\r\nend\r\ncode\r\nm:\r\n// a\r\nreturn;\r\nend\r\n");
    QCOMPARE(result.tree.count(), std::size_t(7));
    QVERIFY(result.tree.at(1).expanded);
    for (std::size_t i = 2; i <= result.tree.count(); ++i) QVERIFY(!result.tree.at(i).expanded);
}

void tst_Explorer::failureSaysWhereAndWhy_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QByteArray>("why");
    QTest::newRow("no symbols line") << QByteArray("symbols\r\nend\r\n") << -1
                                     << QByteArray("no \"symbols\" line");
    QTest::newRow("no end line") << QByteArray("#\r\nsymbols\r\n") << -1 << QByteArray("no \"end\" line");
    QTest::newRow("end above symbols: at the end line")
        << QByteArray("#\r\nend\r\nsymbols\r\n") << 3 << QByteArray("comes before the \"symbols\" line");
    QTest::newRow("declaration without CR: at the line")
        << QByteArray("#\nsymbols\nint a\nend\n") << 10 << QByteArray("no CR inside the symbols section");
    QTest::newRow("label without return;: at the label")
        << QByteArray("#\r\nsymbols\r\nmessage go\r\nend\r\ncode\r\ngo:\r\n") << 35
        << QByteArray("the label go: has no \"return;\"");
    QTest::newRow("comment without CR: at the comment")
        << QByteArray("#\r\nsymbols\r\nmessage m\r\nend\r\ncode\r\nm:\r\n// b return;\r\n") << 38
        << QByteArray("the comment has no CR inside the handler of m:");
}

void tst_Explorer::failureSaysWhereAndWhy() {
    QFETCH(QByteArray, text);
    QFETCH(int, caret);
    QFETCH(QByteArray, why);
    const ExplorerResult result = build(text.toStdString());
    QCOMPARE(result.stop, Stop::Failure);
    QCOMPARE(result.selStart, Pos(caret));
    QVERIFY2(QByteArray::fromStdString(result.failure).contains(why), result.failure.c_str());
}

void tst_Explorer::offendingLineIsSelected_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<QByteArray>("selected");
    QTest::addColumn<QByteArray>("anchor");
    QTest::newRow("second of two equal declarations")
        << QByteArray("#\r\nsymbols\r\nint a\r\nint a\r\nend\r\n") << 19 << QByteArray("int a")
        << QByteArray("int");
    QTest::newRow("second declaration of a message")
        << QByteArray("#\r\nsymbols\r\nmessage go\r\nmessage  go\r\nend\r\n") << 24
        << QByteArray("message  go") << QByteArray("message");
    QTest::newRow("second of two equal comments, in the later handler")
        << QByteArray("#\r\nsymbols\r\nmessage a\r\nmessage b\r\nend\r\ncode\r\na:\r\n// c\r\nreturn;\r\n"
                      "b:\r\n// c\r\nreturn;\r\nend\r\n")
        << 68 << QByteArray("// c") << QByteArray("b:");
}

void tst_Explorer::offendingLineIsSelected() {
    QFETCH(QByteArray, text);
    QFETCH(int, selStart);
    QFETCH(QByteArray, selected);
    QFETCH(QByteArray, anchor);
    const std::string t = text.toStdString();
    const ExplorerResult result = build(t);
    QCOMPARE(result.stop, Stop::DuplicateKey);
    QCOMPARE(result.selStart, Pos(selStart));
    QCOMPARE(QByteArray::fromStdString(t.substr(std::size_t(result.selStart), std::size_t(result.selLength))),
             selected);
    QCOMPARE(QByteArray::fromStdString(result.anchor), anchor);
    // The anchor and the offset inside the scanned body point into the same line.
    const Pos near = cog::find(1, t, result.anchor) + result.anchorOffset;
    QVERIFY(near > 0 && near <= Pos(t.size()));
}

void tst_Explorer::agreesWithStepByStepReading() {
    // Texts made of lines that the rules care about, mostly CR LF separated, sometimes broken.
    const std::vector<std::string> lines{
        "symbols",         "end",       "code", "int a", "int b",   "INT a",  "message m", "message n",
        "Message m local", "thing t",   "m:",   "n:",    "return;", "// c",   "// d",      "  // c",
        "x = 1; // d",     "integer z", "ai",   "# m:",  "endless", " int a", "",          "m: // c return;"};
    const std::vector<std::string> breaks{"\r\n", "\r\n", "\r\n", "\r\n", "\n", "\r", " "};
    std::mt19937 rng(11);
    int stops[3] = {0, 0, 0};
    int commentClashes = 0;
    for (int round = 0; round < 30000; ++round) {
        std::string t = rng() % 4 ? "#\r\nsymbols\r\n" : "";
        auto addLines = [&](int most) {
            for (int i = static_cast<int>(rng() % (most + 1)); i > 0; --i)
                t += lines[rng() % lines.size()] + breaks[rng() % breaks.size()];
        };
        addLines(6);
        if (rng() % 4) t += "end\r\ncode\r\n";
        addLines(10);
        if (rng() % 2) t += "return;\r\nend\r\n";
        const ExplorerResult got = build(t);
        const Reading want = readStepByStep(t, cog::symbolTypes());
        ++stops[static_cast<int>(got.stop)];
        if (describe(got.tree) != describe(want.tree) || got.stop != want.stop ||
            got.offendingKey != want.key)
            QFAIL(qPrintable("differs on: " +
                             QString::fromLatin1(QByteArray::fromStdString(t).toPercentEncoding())));
        if (got.stop == Stop::DuplicateKey) {
            commentClashes += got.offendingKey.starts_with("//");
            const std::string sel = t.substr(std::size_t(got.selStart), std::size_t(got.selLength));
            const bool sameLine = sel + "\r" == got.offendingKey || sel == got.offendingKey ||
                                  cog::equalText(sel.substr(0, 7), "message");
            if (!sameLine) QFAIL(qPrintable("selection " + QString::fromStdString(sel)));
        }
    }
    // The generated texts reach every outcome often enough to mean something.
    QVERIFY(stops[0] > 1000 && stops[1] > 1000 && stops[2] > 1000);
    QVERIFY(commentClashes > 100);
}

void tst_Explorer::manyMessagesStayFast() {
    // Thousands of handlers: the labels and their bodies are found without rescanning the text
    // once per message (the comparison of the step-by-step reading proves the same result).
    std::string t = "#\r\nsymbols\r\n";
    const int count = 4000;
    for (int i = 0; i < count; ++i) t += "message m" + std::to_string(i) + "\r\n";
    t += "end\r\ncode\r\n";
    for (int i = 0; i < count; ++i)
        t += "m" + std::to_string(i) + ":\r\n// c" + std::to_string(i) + "\r\nreturn;\r\n";
    t += "end\r\n";
    const ExplorerResult result = build(t);
    QCOMPARE(result.stop, Stop::None);
    QCOMPARE(result.tree.count(), std::size_t(3 + 1 + 3 * count));
}

QTEST_APPLESS_MAIN(tst_Explorer)
#include "tst_explorer.moc"
