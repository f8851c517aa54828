// The incremental marker tracker must always agree with a plain search of the whole edited text.
#include "editor/firstoccurrence.h"

#include <QtTest>

#include <random>
#include <string>

using cog::Pos;

class tst_FirstOccurrence : public QObject {
    Q_OBJECT
private slots:
    void agreesWithWholeTextSearch_data();
    void agreesWithWholeTextSearch();
    void randomEditsAgree();
};

namespace {

// Applies the edit to text and returns the tracked position of needle.
Pos track(const std::string& needle, std::string& text, editor::Edit e, const std::string& insert) {
    const Pos old = cog::find(1, text, needle);
    text.replace(static_cast<std::size_t>(e.position), static_cast<std::size_t>(e.deleted), insert);
    return editor::updateFirstOccurrence(old, needle, static_cast<Pos>(text.size()), e, [&](Pos s, Pos n) {
        return std::string_view(text).substr(static_cast<std::size_t>(s), static_cast<std::size_t>(n));
    });
}

} // namespace

void tst_FirstOccurrence::agreesWithWholeTextSearch_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<QByteArray>("inserted");
    QTest::newRow("typing before the marker shifts it")
        << QByteArray("x\r\nsymbols\r\n") << 0 << 0 << QByteArray("ab");
    QTest::newRow("typing after the marker keeps it")
        << QByteArray("x\r\nsymbols\r\n") << 11 << 0 << QByteArray("ab");
    QTest::newRow("completing the keyword creates it")
        << QByteArray("x\r\nsymbol") << 9 << 0 << QByteArray("S");
    QTest::newRow("breaking the first falls back to the next")
        << QByteArray("a\nsymbols\nb\nsymbols\n") << 3 << 1 << QByteArray("");
    QTest::newRow("breaking the only one leaves none")
        << QByteArray("a\nsymbols\n") << 1 << 1 << QByteArray("");
    QTest::newRow("an earlier one typed in front")
        << QByteArray("a\nb\nsymbols") << 2 << 0 << QByteArray("Symbols\n");
    QTest::newRow("deleting everything") << QByteArray("\nsymbols") << 0 << 8 << QByteArray("");
}

void tst_FirstOccurrence::agreesWithWholeTextSearch() {
    QFETCH(QByteArray, text);
    QFETCH(int, position);
    QFETCH(int, deleted);
    QFETCH(QByteArray, inserted);
    std::string t = text.toStdString();
    const Pos got = track("\nsymbols", t, {position, deleted, inserted.size()}, inserted.toStdString());
    QCOMPARE(got, cog::find(1, t, "\nsymbols"));
}

void tst_FirstOccurrence::randomEditsAgree() {
    std::mt19937 rng(7);
    const std::string alphabet = "\nEeNnDd x";
    for (int round = 0; round < 20000; ++round) {
        std::string t;
        const int len = static_cast<int>(rng() % 24);
        for (int i = 0; i < len; ++i) t += alphabet[rng() % alphabet.size()];
        const Pos pos = static_cast<Pos>(rng() % (t.size() + 1));
        const Pos del = static_cast<Pos>(rng() % (t.size() - pos + 1));
        std::string ins;
        for (int i = static_cast<int>(rng() % 4); i > 0; --i) ins += alphabet[rng() % alphabet.size()];
        const Pos got = track("\nend", t, {pos, del, static_cast<Pos>(ins.size())}, ins);
        if (got != cog::find(1, t, "\nend")) QFAIL(qPrintable(QString::fromStdString(t)));
    }
}

QTEST_APPLESS_MAIN(tst_FirstOccurrence)
#include "tst_firstoccurrence.moc"
