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
const QStringList kFrame{node("-", "root", "x.cog", "parent"), node("root", "symbols", "symbols", "parent"),
                         node("root", "code", "code", "parent")};

QString group(const std::string& keyword) {
    return node("symbols", keyword, keyword, "parent");
}
// A declaration "keyword name" listed under its group.
QString symbol(const std::string& keyword, const std::string& name) {
    return node(keyword, keyword + " " + name + "\r", name, "");
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

// The plain reading: every step searches the whole text again, adding nodes until one is refused.
struct Reading {
    KeyedTree tree;
    Stop stop = Stop::None;
    std::string key;
};

Reading readStepByStep(const std::string& T) {
    using cog::find;
    using cog::mid;
    Reading r;
    const auto add = [&](std::string_view parent, const std::string& key, const std::string& text,
                         const std::string& tag) {
        const auto res = r.tree.add(parent, key, text, tag);
        if (res != KeyedTree::AddResult::Added) r.stop = Stop::Failure;
        if (res == KeyedTree::AddResult::DuplicateKey) r.stop = Stop::DuplicateKey, r.key = key;
        return res == KeyedTree::AddResult::Added;
    };
    const Pos S = find(1, T, "\nsymbols"), E = find(1, T, "\nend");
    if (S > 0 && E > 0 && E >= S) {
        const std::string B(mid(T, S + 8, E - S));
        r.tree.add(std::nullopt, "root", "x.cog", "parent");
        r.tree.add("root", "symbols", "symbols", "parent");
        r.tree.add("root", "code", "code", "parent");
        std::vector<std::string> messages;
        for (const std::string& K : cog::symbolTypes()) {
            bool grouped = false;
            for (Pos p = find(1, B, "\n" + K), e = find(p + 1, B, "\r"); p > 0;
                 p = find(e + 1, B, "\n" + K), e = find(p + 1, B, "\r")) {
                if (e < p) return r.stop = Stop::Failure, r;
                const std::string L(mid(B, p + 1, e - p));
                if (K == "message") {
                    const std::string N = cog::GetSymbolName(L, 7);
                    if (!add("code", N + ":", N, "message")) return r;
                    messages.push_back(N + ":");
                }
                if (!grouped && !add("symbols", K, K, "parent")) return r;
                grouped = true;
                if (!add(K, L, cog::GetSymbolName(L, K.size()), "")) return r;
            }
        }
        for (const std::string& M : messages) {
            const Pos p = find(1, T, M), rt = find(p + 1, T, "return;");
            if (rt < p) return r.stop = Stop::Failure, r;
            const std::string body(mid(T, p + Pos(M.size()) + 2, rt - p));
            for (Pos k = find(1, body, "//"); k > 0; k = find(find(k + 1, body, "\r") + 1, body, "//")) {
                const Pos e = find(k + 1, body, "\r");
                if (e < k) return r.stop = Stop::Failure, r;
                const std::string c(mid(body, k, e - k));
                if (!add(M, c, c, "")) return r;
            }
        }
    }
    if (r.tree.empty()) r.stop = Stop::Failure;
    return r;
}

} // namespace

class tst_Explorer : public QObject {
    Q_OBJECT
private slots:
    void tree_data();
    void tree();
    void agreesWithStepByStepReading();
};

void tst_Explorer::tree_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<ExplorerResult::Stop>("stop");
    // For a refused key: the key, its line's caret index and the selected text; for a failure:
    // part of the reason and the caret index where the unreadable part begins.
    QTest::addColumn<QByteArray>("detail");
    QTest::addColumn<int>("selStart");
    QTest::addColumn<QByteArray>("selected");
    const auto row = [](const char* name, const QByteArray& text, const QStringList& nodes,
                        Stop stop = Stop::None, const QByteArray& detail = {}, int selStart = -1,
                        const QByteArray& selected = {}) {
        QTest::newRow(name) << text << nodes << stop << detail << selStart << selected;
    };
    const QByteArray head = "#\r\nsymbols\r\n";
    row("a new script: just the frame", "# new\r\nsymbols\r\nend\r\ncode\r\nend\r\n", kFrame);

    // Declared in scrambled order; the groups follow the keyword order, lines their file order.
    QByteArray all = head;
    for (const char* line :
         {"vector v", "thing b", "ai a", "template t", "int i2", "surface s", "cog c", "sound so", "flex f",
          "sector se", "keyframe k", "model mo", "material ma", "int i1", "thing a"})
        all += QByteArray(line) + "\r\n";
    QStringList grouped = kFrame;
    for (const char* entry : {"ai a", "cog c", "flex f", "int i2 i1", "keyframe k", "material ma", "model mo",
                              "sector se", "sound so", "surface s", "template t", "thing b a", "vector v"}) {
        const QStringList words = QString(entry).split(' ');
        grouped << group(words[0].toStdString());
        for (const QString& name : words.mid(1))
            grouped << symbol(words[0].toStdString(), name.toStdString());
    }
    row("groups in keyword order", all + "end\r\ncode\r\nend\r\n", grouped);

    row("a message declaration also lists the message, with its comments",
        head + "message startup\r\nint x=5\tlocal\r\nend\r\ncode\r\nstartup:\r\n  // set up\r\n  x = 1; // "
               "more\r\n"
               "  return;\r\nend\r\n",
        kFrame + QStringList{group("int"), node("int", "int x=5\tlocal\r", "x=5", ""), message("startup"),
                             group("message"), symbol("message", "startup"), comment("startup:", "// set up"),
                             comment("startup:", "// more")});
    row("upper-case and longer keywords count, indented lines do not",
        head + "INT A\r\n  int hidden\r\ninteger z\r\nend\r\ncode\r\nend\r\n",
        kFrame + QStringList{group("int"), node("int", "INT A\r", "A", ""),
                             node("int", "integer z\r", "eger", "")});
    row("a message with no label reads its comments from the start of the text",
        "1234567// head\r\nsymbols\r\nmessage timer\r\nend\r\ncode\r\n// in code\r\nreturn;\r\nend\r\n",
        kFrame + QStringList{message("timer"), group("message"), symbol("message", "timer"),
                             comment("timer:", "// head"), comment("timer:", "// in code")});

    row("a duplicate declaration stops at the second line", head + "int a\r\nint a\r\nthing t\r\nend\r\n",
        kFrame + QStringList{group("int"), symbol("int", "a")}, Stop::DuplicateKey, "int a\r", 19, "int a");
    row("a message declared twice stops at its second message node",
        head + "message go\r\nmessage  go\r\nend\r\n",
        kFrame + QStringList{message("go"), group("message"), symbol("message", "go")}, Stop::DuplicateKey,
        "go:", 24, "message  go");
    row("the same comment in two handlers stops at the second",
        head + "message a\r\nmessage b\r\nend\r\ncode\r\na:\r\n// c\r\nreturn;\r\nb:\r\n// "
               "c\r\nreturn;\r\nend\r\n",
        kFrame + QStringList{message("a"), group("message"), symbol("message", "a"), message("b"),
                             symbol("message", "b"), comment("a:", "// c")},
        Stop::DuplicateKey, "// c", 68, "// c");

    const QStringList go = kFrame + QStringList{message("go"), group("message"), symbol("message", "go")};
    row("no symbols marker: empty tree", "symbols\r\nint a\r\nend\r\n", {}, Stop::Failure,
        "no \"symbols\" line");
    row("no end marker: empty tree", head + "int a\r\n", {}, Stop::Failure, "no \"end\" line");
    row("an end line before the symbols line: empty tree", "#\r\nend\r\nsymbols\r\nint a\r\n", {},
        Stop::Failure, "comes before the \"symbols\" line", 3);
    row("a declaration line without CR in the body", "#\nsymbols\nint a\nend\n", kFrame, Stop::Failure,
        "no CR inside the symbols section", 10);
    row("a keyword in the two bytes after the end line", head + "int a\r\nend\r\nai\r\n", kFrame,
        Stop::Failure, "no CR inside the symbols section", 24);
    row("a label with no return; keeps the nodes so far", head + "message go\r\nend\r\ncode\r\ngo:\r\n", go,
        Stop::Failure, "the label go: has no \"return;\"", 35);
    row("a comment whose CR lies past the body",
        head + "message go\r\nend\r\ncode\r\ngo:\r\n// b return;\r\n", go, Stop::Failure,
        "the comment has no CR inside the handler of go:", 40);
}

void tst_Explorer::tree() {
    QFETCH(QByteArray, text);
    QFETCH(QStringList, nodes);
    QFETCH(ExplorerResult::Stop, stop);
    QFETCH(QByteArray, detail);
    QFETCH(int, selStart);
    QFETCH(QByteArray, selected);
    const std::string t = text.toStdString();
    const ExplorerResult result = build(t);
    QCOMPARE(describe(result.tree), nodes);
    QCOMPARE(result.stop, stop);
    // Only the root is expanded.
    for (std::size_t i = 1; i <= result.tree.count(); ++i) QCOMPARE(result.tree.at(i).expanded, i == 1);
    if (stop == Stop::None) return;
    QCOMPARE(result.selStart, Pos(selStart));
    if (stop == Stop::Failure)
        QVERIFY2(QByteArray::fromStdString(result.failure).contains(detail), result.failure.c_str());
    else {
        QCOMPARE(QByteArray::fromStdString(result.offendingKey), detail);
        QCOMPARE(QByteArray::fromStdString(t.substr(std::size_t(selStart), std::size_t(result.selLength))),
                 selected);
    }
}

void tst_Explorer::agreesWithStepByStepReading() {
    // Texts made of lines that the rules care about, mostly CR LF separated, sometimes broken.
    const std::vector<std::string> lines{
        "symbols",         "end",       "code", "int a", "int b",   "INT a",  "message m", "message n",
        "Message m local", "thing t",   "m:",   "n:",    "return;", "// c",   "// d",      "  // c",
        "x = 1; // d",     "integer z", "ai",   "# m:",  "endless", " int a", "",          "m: // c return;"};
    const std::vector<std::string> breaks{"\r\n", "\r\n", "\r\n", "\r\n", "\n", "\r", " "};
    std::mt19937 rng(11);
    int stops[3] = {0, 0, 0}, commentClashes = 0;
    for (int round = 0; round < 30000; ++round) {
        std::string t = rng() % 4 ? "#\r\nsymbols\r\n" : "";
        const auto addLines = [&](int most) {
            for (int i = static_cast<int>(rng() % (most + 1)); i > 0; --i)
                t += lines[rng() % lines.size()] + breaks[rng() % breaks.size()];
        };
        addLines(6);
        if (rng() % 4) t += "end\r\ncode\r\n";
        addLines(10);
        if (rng() % 2) t += "return;\r\nend\r\n";
        const ExplorerResult got = build(t);
        const Reading want = readStepByStep(t);
        ++stops[static_cast<int>(got.stop)];
        if (describe(got.tree) != describe(want.tree) || got.stop != want.stop ||
            got.offendingKey != want.key)
            QFAIL(qPrintable("differs on: " +
                             QString::fromLatin1(QByteArray::fromStdString(t).toPercentEncoding())));
        if (got.stop == Stop::DuplicateKey) {
            commentClashes += got.offendingKey.starts_with("//");
            const std::string sel = t.substr(std::size_t(got.selStart), std::size_t(got.selLength));
            QVERIFY2(sel + "\r" == got.offendingKey || sel == got.offendingKey ||
                         cog::equalText(sel.substr(0, 7), "message"),
                     sel.c_str());
        }
    }
    // The generated texts reach every outcome often enough to mean something.
    QVERIFY(stops[0] > 1000 && stops[1] > 1000 && stops[2] > 1000);
    QVERIFY(commentClashes > 100);
}

QTEST_APPLESS_MAIN(tst_Explorer)
#include "tst_explorer.moc"
