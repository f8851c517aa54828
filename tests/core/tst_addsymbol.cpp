// Add Symbol: the written line, where it goes, where the caret ends, and when the explorer is
// rebuilt.
#include "cog/addsymbol.h"

#include <QtTest>

#include <string>

using cog::Pos;
using Outcome = cog::AddSymbolResult::Outcome;

Q_DECLARE_METATYPE(std::string)
Q_DECLARE_METATYPE(Outcome)

class tst_AddSymbol : public QObject {
    Q_OBJECT
private slots:
    void writtenLine_data();
    void writtenLine();
    void insertion_data();
    void insertion();
    void explorerRebuild_data();
    void explorerRebuild();
};

namespace {
const std::string kScript =
    "# demo\r\nsymbols\r\nint a\r\n# sends data\r\nend\r\ncode\r\nstartup:\r\nend\r\n";
} // namespace

void tst_AddSymbol::writtenLine_data() {
    QTest::addColumn<std::string>("type");
    QTest::addColumn<std::string>("name");
    QTest::addColumn<std::string>("value");
    QTest::addColumn<bool>("local");
    QTest::addColumn<std::string>("linkId");
    QTest::addColumn<std::string>("line");
    QTest::newRow("name only") << std::string("int") << std::string("x") << std::string() << false
                               << std::string() << "int     x" + std::string(20, ' ') + "\r\n";
    QTest::newRow("every field") << std::string("int") << std::string("x") << std::string("5") << true
                                 << std::string("1")
                                 << "int     x=5" + std::string(15, ' ') + "local     linkid=1\r\n";
    QTest::newRow("link id without local")
        << std::string("thing") << std::string("door") << std::string() << false << std::string("3")
        << "thing     door" + std::string(20, ' ') + "linkid=3\r\n";
    QTest::newRow("fields written as typed")
        << std::string("flex") << std::string(" a=b") << std::string("1 2") << false << std::string()
        << "flex      a=b=1 2" + std::string(20, ' ') + "\r\n";
    QTest::newRow("no type chosen") << std::string() << std::string("x") << std::string() << false
                                    << std::string() << std::string();
    QTest::newRow("no name entered") << std::string("int") << std::string() << std::string() << false
                                     << std::string() << std::string();
}

void tst_AddSymbol::writtenLine() {
    QFETCH(std::string, type);
    QFETCH(std::string, name);
    QFETCH(std::string, value);
    QFETCH(bool, local);
    QFETCH(std::string, linkId);
    QFETCH(std::string, line);
    const auto r = cog::addSymbol(kScript, 0, {type, name, value, local, linkId});
    const Outcome want = type.empty() ? Outcome::NoType : name.empty() ? Outcome::NoName : Outcome::Inserted;
    QCOMPARE(r.outcome, want);
    if (want != Outcome::Inserted) {
        QVERIFY(r.edit.isEmpty());
        return;
    }
    QCOMPARE(r.line, line);
    QCOMPARE(r.edit.inserted, line);
    QCOMPARE(r.edit.removed, Pos(0));
}

void tst_AddSymbol::insertion_data() {
    QTest::addColumn<std::string>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<std::string>("before"); // the text that must directly precede the new line
    QTest::addColumn<int>("caretAfter");
    const int endLine = static_cast<int>(kScript.find("\nend") + 1);
    const Pos lineLength = 29 + 2;
    QTest::newRow("caret in the symbols section stays")
        << kScript << 10 << Outcome::Inserted << std::string("# sends data\r\n") << 10;
    QTest::newRow("caret just before the insertion point stays")
        << kScript << endLine - 1 << Outcome::Inserted << std::string("# sends data\r\n") << endLine - 1;
    QTest::newRow("caret at the insertion point moves with the end line")
        << kScript << endLine << Outcome::Inserted << std::string("# sends data\r\n")
        << static_cast<int>(endLine + lineLength);
    QTest::newRow("caret in the code section moves down")
        << kScript << static_cast<int>(kScript.size()) << Outcome::Inserted << std::string("# sends data\r\n")
        << static_cast<int>(kScript.size() + lineLength);
    QTest::newRow("an upper-case END line does not count")
        << std::string("symbols\r\nEND\r\ncode\r\nend\r\n") << 0 << Outcome::Inserted
        << std::string("END\r\ncode\r\n") << 0;
    QTest::newRow("an endless line counts as an end line")
        << std::string("s\r\nint a\r\nendless\r\n") << 0 << Outcome::Inserted << std::string("int a\r\n")
        << 0;
    QTest::newRow("an indented end line does not count")
        << std::string("s\r\n end\r\n") << 3 << Outcome::NoEndLine << std::string() << 3;
    QTest::newRow("an end on the first line does not count")
        << std::string("end\r\n") << 0 << Outcome::NoEndLine << std::string() << 0;
}

void tst_AddSymbol::insertion() {
    QFETCH(std::string, text);
    QFETCH(int, caret);
    QFETCH(Outcome, outcome);
    QFETCH(std::string, before);
    QFETCH(int, caretAfter);
    const auto r = cog::addSymbol(text, caret, {"int", "x", "", false, ""});
    QCOMPARE(r.outcome, outcome);
    QCOMPARE(r.caret, Pos(caretAfter));
    if (outcome != Outcome::Inserted) {
        QVERIFY(r.edit.isEmpty());
        return;
    }
    const std::string after = editor::applyEdit(text, r.edit);
    const auto at = after.find(r.line);
    QVERIFY(at != std::string::npos);
    QCOMPARE(after.substr(at - before.size(), before.size()), before);
    QCOMPARE(after.substr(at + r.line.size()), text.substr(at)); // directly above the line it was put before
    QCOMPARE(after.substr(at + r.line.size(), 3), std::string("end"));
    // The caret stands before the same bytes as before.
    if (static_cast<std::size_t>(caret) >= at)
        QCOMPARE(after.substr(static_cast<std::size_t>(r.caret)),
                 text.substr(static_cast<std::size_t>(caret)));
    else
        QCOMPARE(after.substr(static_cast<std::size_t>(r.caret), at - static_cast<std::size_t>(caret)),
                 text.substr(static_cast<std::size_t>(caret), at - static_cast<std::size_t>(caret)));
}

void tst_AddSymbol::explorerRebuild_data() {
    QTest::addColumn<QByteArray>("caption");
    QTest::addColumn<QByteArray>("chosen");
    QTest::addColumn<bool>("rebuild");
    QTest::newRow("same window") << QByteArray("door.cog") << QByteArray("door.cog") << true;
    QTest::newRow("same window, other case") << QByteArray("Door.cog") << QByteArray("door.COG") << true;
    QTest::newRow("modified window") << QByteArray("door.cog*") << QByteArray("door.cog") << true;
    QTest::newRow("another window") << QByteArray("door.cog") << QByteArray("lift.cog") << false;
    QTest::newRow("modified, another window") << QByteArray("door.cog*") << QByteArray("lift.cog") << false;
    QTest::newRow("unmodified caption must equal")
        << QByteArray("mydoor.cog") << QByteArray("door.cog") << false;
    QTest::newRow("nothing chosen, modified") << QByteArray("door.cog*") << QByteArray("") << true;
    QTest::newRow("nothing chosen, unmodified") << QByteArray("door.cog") << QByteArray("") << false;
}

void tst_AddSymbol::explorerRebuild() {
    QFETCH(QByteArray, caption);
    QFETCH(QByteArray, chosen);
    QFETCH(bool, rebuild);
    QCOMPARE(cog::explorerShowsWindow(caption.toStdString(), chosen.toStdString()), rebuild);
}

QTEST_APPLESS_MAIN(tst_AddSymbol)
#include "tst_addsymbol.moc"
