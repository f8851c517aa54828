// The character set, line ends, Go to Line and command-line rules, read from tables in
// tests/cases/textrules: a row of a table is a case.
#include "app/startup.h"
#include "editor/charset.h"
#include "editor/gotoline.h"
#include "editor/lineends.h"

#include <QtTest>

namespace {

// The rows of a tab-separated table; '#' starts a comment line.
QList<QStringList> table(const QString& name) {
    QFile file(QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/textrules/") + name);
    if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(file.fileName()));
    QList<QStringList> rows;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (!line.startsWith('#') && !line.isEmpty()) rows << QString::fromUtf8(line).split('\t');
    return rows;
}

std::string unescaped(QString s) {
    return s.replace("\\r", "\r").replace("\\n", "\n").toStdString();
}

std::u16string utf16(const QString& codePoints) {
    QString s;
    for (const QString& c : codePoints.split(' ', Qt::SkipEmptyParts)) {
        const char32_t u = c.toUInt(nullptr, 16);
        s += QString::fromUcs4(&u, 1);
    }
    return s.toStdU16String();
}

QByteArray hexBytes(const QString& hex) {
    return QByteArray::fromHex(hex.toLatin1());
}

} // namespace

class tst_TextRules : public QObject {
    Q_OBJECT
private slots:
    void everyByteHasItsOwnCharacter();
    void refusedText_data();
    void refusedText();
    void lineEnds_data();
    void lineEnds();
    void lineEndsAfterEveryEdit_data() { lineEnds_data(); }
    void lineEndsAfterEveryEdit();
    void goToLine_data();
    void goToLine();
    void startRequest_data();
    void startRequest();
};

void tst_TextRules::everyByteHasItsOwnCharacter() {
    QHash<int, char32_t> high;
    for (const QStringList& row : table("charset/cp1252.txt")) {
        const QStringList f = row[0].split(' ');
        high[f[0].toInt(nullptr, 16)] = f[1].toUInt(nullptr, 16);
    }
    QCOMPARE(high.size(), 32);
    std::string all;
    for (int b = 0; b < 256; ++b) {
        const char32_t c = high.value(b, char32_t(b));
        QCOMPARE(editor::decodeByte(static_cast<unsigned char>(b)), c);
        QCOMPARE(editor::encodeChar(c), std::optional<unsigned char>(b));
        all.push_back(static_cast<char>(b));
    }
    const std::u16string text = editor::decode(all);
    const editor::Encoded back = editor::encode(text);
    QVERIFY(!back.refused);
    QCOMPARE(back.bytes, all);
}

void tst_TextRules::refusedText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("refused");
    QTest::addColumn<QByteArray>("before");
    for (const QStringList& row : table("charset/refused.txt"))
        QTest::newRow(qPrintable(row[0])) << row[0] << row[1].toInt() << hexBytes(row[2]);
}

void tst_TextRules::refusedText() {
    QFETCH(QString, text);
    QFETCH(int, refused);
    QFETCH(QByteArray, before);
    const editor::Encoded e = editor::encode(utf16(text));
    QCOMPARE(e.refused, std::optional<std::size_t>(refused));
    QCOMPARE(QByteArray::fromStdString(e.bytes), before);
}

void tst_TextRules::lineEnds_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("counts");
    QTest::addColumn<QString>("crlf");
    QTest::addColumn<QString>("lf");
    for (const QStringList& row : table("lineends.txt"))
        QTest::newRow(qPrintable(row[0].isEmpty() ? "(empty)" : row[0]))
            << row[0] << row[1] << row[2] << row[3] << row[4];
}

void tst_TextRules::lineEnds() {
    QFETCH(QString, text);
    QFETCH(QString, style);
    QFETCH(QString, counts);
    QFETCH(QString, crlf);
    QFETCH(QString, lf);
    const std::string t = unescaped(text);
    const editor::LineEndCounts c = editor::countLineEnds(t);
    QCOMPARE(QString::fromLatin1(editor::styleName(editor::styleOf(c))), style);
    QCOMPARE(QStringLiteral("%1 %2 %3").arg(c.crlf).arg(c.lf).arg(c.cr), counts);
    for (const auto& [eol, expected] : {std::pair{"\r\n", crlf}, std::pair{"\n", lf}}) {
        editor::Pos caret = 0;
        QCOMPARE(editor::convertLineEnds(t, eol, caret), unescaped(expected));
        // A caret at each byte lands on the same line, at the same column or the line's end.
        for (editor::Pos at = 0; at <= editor::Pos(t.size()); ++at) {
            editor::Pos moved = at;
            const std::string out = editor::convertLineEnds(t, eol, moved);
            const auto lineOf = [](const std::string& s, editor::Pos p) {
                const editor::LineEndCounts c =
                    editor::countLineEnds(std::string_view(s).substr(0, std::size_t(p)));
                return c.crlf + c.lf + c.cr;
            };
            const bool insidePair = at > 0 && t[std::size_t(at - 1)] == '\r' && std::size_t(at) < t.size() &&
                                    t[std::size_t(at)] == '\n';
            QCOMPARE(lineOf(out, moved), lineOf(t, at) - (insidePair ? 1 : 0));
        }
    }
}

// After any deletion of a range and any insertion of line-end bytes, the counts kept from the
// edited bytes alone equal a count of the whole text.
void tst_TextRules::lineEndsAfterEveryEdit() {
    QFETCH(QString, text);
    const std::string original = unescaped(text) + "\r";
    for (std::size_t at = 0; at <= original.size(); ++at)
        for (std::size_t length = 0; at + length <= original.size(); ++length)
            for (const std::string inserted : {"", "\r", "\n", "\r\n", "x\n"}) {
                std::string t = original;
                editor::LineEndTracker tracker;
                tracker.reset(t);
                const editor::RangeReader read = [&t](editor::Pos s, editor::Pos n) {
                    return std::string_view(t).substr(std::size_t(s), std::size_t(n));
                };
                const editor::Edit edit{editor::Pos(at), editor::Pos(length), editor::Pos(inserted.size())};
                tracker.beforeEdit(edit, editor::Pos(t.size()), read);
                t.replace(at, length, inserted);
                tracker.afterEdit(edit, editor::Pos(t.size()), read);
                QVERIFY2(tracker.counts() == editor::countLineEnds(t), qPrintable(QString::fromStdString(t)));
            }
}

void tst_TextRules::goToLine_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    for (const QStringList& row : table("gotoline.txt"))
        QTest::newRow(qPrintable(row[0].isEmpty() ? "(nothing)" : row[0])) << row[0] << row[1];
}

void tst_TextRules::goToLine() {
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    const auto r = editor::parseLineColumn(typed.toStdString());
    QCOMPARE(r ? QStringLiteral("%1:%2").arg(r->line).arg(r->column) : QStringLiteral("refused"), expected);
}

void tst_TextRules::startRequest_data() {
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("expected");
    for (const QStringList& row : table("startrequest.txt"))
        QTest::newRow(qPrintable(row[0] + " " + row[1])) << row[0] << (row[1] == "yes") << row[2];
}

void tst_TextRules::startRequest() {
    QFETCH(QString, commandLine);
    QFETCH(bool, exists);
    QFETCH(QString, expected);
    const char* names[] = {"open", "help", "version"};
    QCOMPARE(QString::fromLatin1(names[int(app::startRequest(commandLine.toStdString(), exists))]), expected);
    QVERIFY(app::usageText().starts_with("Usage: tessary [FILE]\n"));
    QCOMPARE(app::versionText("1.2.3"), std::string("tessary 1.2.3\n"));
}

QTEST_APPLESS_MAIN(tst_TextRules)
#include "tst_textrules.moc"
