// Add Symbol: the written line, where it goes, where the caret ends, and when the explorer is
// rebuilt.
#include "cog/addsymbol.h"

#include <QtTest>

#include <string>

using cog::Pos;
using S = std::string;
using Outcome = cog::AddSymbolResult::Outcome;

Q_DECLARE_METATYPE(cog::NewSymbol)

namespace {
const S kScript = "# demo\r\nsymbols\r\nint a\r\n# sends data\r\nend\r\ncode\r\nstartup:\r\nend\r\n";
const int kEndLine = int(kScript.find("\nend") + 1), kLine = 29 + 2; // the line "int     x" + 20 blanks
} // namespace

class tst_AddSymbol : public QObject {
    Q_OBJECT
private slots:

    void writtenLine_data() {
        QTest::addColumn<cog::NewSymbol>("symbol");
        QTest::addColumn<QByteArray>("line"); // empty: refused
        QTest::newRow("name only") << cog::NewSymbol{"int", "x", "", false, ""}
                                   << "int     x" + QByteArray(20, ' ') + "\r\n";
        QTest::newRow("every field") << cog::NewSymbol{"int", "x", "5", true, "1"}
                                     << "int     x=5" + QByteArray(15, ' ') + "local     linkid=1\r\n";
        QTest::newRow("link id without local") << cog::NewSymbol{"thing", "door", "", false, "3"}
                                               << "thing     door" + QByteArray(20, ' ') + "linkid=3\r\n";
        QTest::newRow("fields written as typed") << cog::NewSymbol{"flex", " a=b", "1 2", false, ""}
                                                 << "flex      a=b=1 2" + QByteArray(20, ' ') + "\r\n";
        QTest::newRow("no type chosen") << cog::NewSymbol{"", "x", "", false, ""} << QByteArray();
        QTest::newRow("no name entered") << cog::NewSymbol{"int", "", "", false, ""} << QByteArray();
    }

    void writtenLine() {
        QFETCH(cog::NewSymbol, symbol);
        QFETCH(QByteArray, line);
        const auto r = cog::addSymbol(kScript, 0, symbol);
        QCOMPARE(r.outcome, symbol.keyword.empty() ? Outcome::NoType
                            : symbol.name.empty()  ? Outcome::NoName
                                                   : Outcome::Inserted);
        QCOMPARE(r.line, line.toStdString());
        QCOMPARE(r.edit.isEmpty(), line.isEmpty());
        if (!line.isEmpty()) QCOMPARE(r.edit, (editor::TextEdit{kEndLine, 0, line.toStdString()}));
    }

    void insertion_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("caret");
        QTest::addColumn<int>("at"); // where the line goes, -1: nowhere, the user is told
        QTest::addColumn<int>("caretAfter");
        const QByteArray script = QByteArray::fromStdString(kScript);
        const int end = int(kScript.size());
        QTest::newRow("caret in the symbols section stays") << script << 10 << kEndLine << 10;
        QTest::newRow("caret just before the insertion point stays")
            << script << kEndLine - 1 << kEndLine << kEndLine - 1;
        QTest::newRow("caret at the insertion point moves with the end line")
            << script << kEndLine << kEndLine << kEndLine + kLine;
        QTest::newRow("caret in the code section moves down") << script << end << kEndLine << end + kLine;
        QTest::newRow("an upper-case END line does not count")
            << QByteArray("symbols\r\nEND\r\ncode\r\nend\r\n") << 0 << 20 << 0;
        QTest::newRow("an endless line counts as an end line")
            << QByteArray("s\r\nint a\r\nendless\r\n") << 0 << 10 << 0;
        QTest::newRow("an indented end line does not count") << QByteArray("s\r\n end\r\n") << 3 << -1 << 3;
        QTest::newRow("an end on the first line does not count") << QByteArray("end\r\n") << 0 << -1 << 0;
    }

    void insertion() {
        QFETCH(QByteArray, text);
        QFETCH(int, caret);
        QFETCH(int, at);
        QFETCH(int, caretAfter);
        const auto r = cog::addSymbol(text.toStdString(), caret, {"int", "x", "", false, ""});
        QCOMPARE(r.outcome, at < 0 ? Outcome::NoEndLine : Outcome::Inserted);
        QCOMPARE(editor::applyEdit(text.toStdString(), r.edit),
                 (at < 0 ? text : QByteArray(text).insert(at, r.line.c_str())).toStdString());
        QCOMPARE(r.caret, Pos(caretAfter));
    }

    void explorerRebuild_data() {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<bool>("rebuild");
        QTest::newRow("same window") << "door.cog"
                                     << "door.cog" << true;
        QTest::newRow("same window, other case") << "Door.cog"
                                                 << "door.COG" << true;
        QTest::newRow("modified window") << "door.cog*"
                                         << "door.cog" << true;
        QTest::newRow("another window") << "door.cog"
                                        << "lift.cog" << false;
        QTest::newRow("modified, another window") << "door.cog*"
                                                  << "lift.cog" << false;
        QTest::newRow("unmodified caption must equal") << "mydoor.cog"
                                                       << "door.cog" << false;
        QTest::newRow("nothing chosen, modified") << "door.cog*"
                                                  << "" << true;
        QTest::newRow("nothing chosen, unmodified") << "door.cog"
                                                    << "" << false;
    }

    void explorerRebuild() {
        QFETCH(QString, caption);
        QFETCH(QString, chosen);
        QFETCH(bool, rebuild);
        QCOMPARE(cog::explorerShowsWindow(caption.toStdString(), chosen.toStdString()), rebuild);
    }
};

QTEST_APPLESS_MAIN(tst_AddSymbol)
#include "tst_addsymbol.moc"
