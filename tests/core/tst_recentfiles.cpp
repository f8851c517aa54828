// The recent-files slots: how opened files move through them and how they are stored.
#include "app/recentfiles.h"

#include <QtTest>

using app::RecentFiles;

class tst_RecentFiles : public QObject {
    Q_OBJECT
private slots:
    void addFileMovesSlots_data();
    void addFileMovesSlots();
    void loadsStoredValues_data();
    void loadsStoredValues();
    void storedValueReadsBack_data();
    void storedValueReadsBack();
    void captions_data();
    void captions();
};

namespace {

// A slot written as "title|path", or "title" for "title|/c/title", or "" for an empty slot.
QString slotText(const QString& s) {
    return s.isEmpty() || s.contains('|') ? (s.isEmpty() ? "|" : s) : s + "|/c/" + s;
}

QStringList expand(const QStringList& l) {
    QStringList out;
    for (const QString& s : l) out << slotText(s);
    return out;
}

QStringList slotsOf(const RecentFiles& list) {
    QStringList l;
    for (const auto& slot : list.entries)
        l << QString::fromStdString(slot.title) + '|' + QString::fromStdString(slot.path);
    return l;
}

// A slot shows exactly when it holds a title, and the separator with any slot.
void checkVisibility(const RecentFiles& list) {
    bool any = false;
    for (const auto& slot : list.entries) {
        QCOMPARE(slot.visible, !slot.title.empty());
        any = any || slot.visible;
    }
    QCOMPARE(list.separatorVisible, any);
}

const QStringList kEmpty{"", "", "", ""};
const QStringList kFour{"a.cog", "b.cog", "c.cog", "d.cog"};

} // namespace

void tst_RecentFiles::addFileMovesSlots_data() {
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("opened"); // paths, or titles in /c/
    QTest::addColumn<QStringList>("after");
    QTest::newRow("first file into an empty list")
        << kEmpty << QStringList{"a.cog"} << QStringList{"a.cog", "", "", ""};
    QTest::newRow("five files: the first drops out")
        << kEmpty << QStringList{"a.cog", "b.cog", "c.cog", "d.cog", "e.cog"}
        << QStringList{"e.cog", "d.cog", "c.cog", "b.cog"};
    QTest::newRow("title in slot 0 changes nothing") << kFour << QStringList{"a.cog"} << kFour;
    QTest::newRow("title in slot 1 moves to the top")
        << kFour << QStringList{"b.cog"} << QStringList{"b.cog", "a.cog", "c.cog", "d.cog"};
    QTest::newRow("title in slot 2 moves to the top, slot 3 unchanged")
        << kFour << QStringList{"c.cog"} << QStringList{"c.cog", "a.cog", "b.cog", "d.cog"};
    QTest::newRow("title in slot 3 moves to the top")
        << kFour << QStringList{"d.cog"} << QStringList{"d.cog", "a.cog", "b.cog", "c.cog"};
    QTest::newRow("same title in slot 0 from another directory keeps the first path")
        << QStringList{"x.cog|/one/x.cog", "", "", ""} << QStringList{"/two/x.cog"}
        << QStringList{"x.cog|/one/x.cog", "", "", ""};
    QTest::newRow("same title in slot 2 from another directory takes the new path")
        << kFour << QStringList{"/other/c.cog"}
        << QStringList{"c.cog|/other/c.cog", "a.cog", "b.cog", "d.cog"};
    QTest::newRow("X.COG while x.cog is listed adds a second entry")
        << QStringList{"x.cog", "", "", ""} << QStringList{"X.COG"} << QStringList{"X.COG", "x.cog", "", ""};
    QTest::newRow("opening the same files again and again")
        << kEmpty << QStringList{"a.cog", "b.cog", "a.cog", "b.cog"} << QStringList{"b.cog", "a.cog", "", ""};
}

void tst_RecentFiles::addFileMovesSlots() {
    QFETCH(QStringList, before);
    QFETCH(QStringList, opened);
    QFETCH(QStringList, after);
    RecentFiles list;
    for (int k = 0; k < 4; ++k) app::loadSlot(list, k, expand(before)[k].replace('|', ':').toStdString());
    for (QString path : opened) {
        if (!path.startsWith('/')) path = "/c/" + path;
        app::addFile(list, path.toStdString(), path.section('/', -1).toStdString());
    }
    QCOMPARE(slotsOf(list), expand(after));
    checkVisibility(list);
}

void tst_RecentFiles::loadsStoredValues_data() {
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("empty store") << QStringList{":", ":", ":", ":"} << kEmpty;
    QTest::newRow("a gap between files")
        << QStringList{"a.cog:/c/a.cog", ":", "c.cog:/c/c.cog", ":"} << QStringList{"a.cog", "", "c.cog", ""};
    QTest::newRow("hand-edited value without a colon reads as empty")
        << QStringList{"a.cog", ":", ":", ":"} << kEmpty;
    QTest::newRow("a path without a title stays hidden")
        << QStringList{":/c/a.cog", ":", ":", ":"} << QStringList{"|/c/a.cog", "", "", ""};
}

void tst_RecentFiles::loadsStoredValues() {
    QFETCH(QStringList, stored);
    QFETCH(QStringList, entries);
    RecentFiles list;
    for (int k = 0; k < 4; ++k) app::loadSlot(list, k, stored[k].toStdString());
    QCOMPARE(slotsOf(list), expand(entries));
    checkVisibility(list);
}

void tst_RecentFiles::storedValueReadsBack_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("slot"); // title|path
    const char* const rows[][3] = {
        {"drive letter path", "a.cog:C:\\cogs\\a.cog", "a.cog|C:\\cogs\\a.cog"},
        {"plain path", "a.cog:/home/u/a.cog", "a.cog|/home/u/a.cog"},
        {"file name with a colon", "a:b.cog:/home/u/a:b.cog", "a:b.cog|/home/u/a:b.cog"},
        {"directories with colons", "a.cog:/mnt/c:/x:y/a.cog", "a.cog|/mnt/c:/x:y/a.cog"},
        {"several colons everywhere", "p:q:r.cog:/d:e/f:/p:q:r.cog", "p:q:r.cog|/d:e/f:/p:q:r.cog"},
        {"file name starting with a colon", ":a.cog:/d/:a.cog", ":a.cog|/d/:a.cog"},
        {"title not at the path's end: first colon", "a.cog:/d/b:c.cog", "a.cog|/d/b:c.cog"},
        {"empty slot", ":", "|"},
        {"no colon", "a.cog", "|"},
        {"empty value", "", "|"},
        {"title without path", "a.cog:", "a.cog|"},
    };
    for (const auto& r : rows) QTest::newRow(r[0]) << QString(r[1]) << QString(r[2]);
}

void tst_RecentFiles::storedValueReadsBack() {
    QFETCH(QString, value);
    QFETCH(QString, slot);
    const auto s = app::parseStoredValue(value.toStdString());
    QCOMPARE(QString::fromStdString(s.title) + '|' + QString::fromStdString(s.path), slot);
    // A value with a colon is what storing the slot writes, so it reads back the same.
    if (value.contains(':')) QCOMPARE(QString::fromStdString(app::storedValue(s)), value);
}

void tst_RecentFiles::captions_data() {
    QTest::addColumn<int>("slot");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("caption");
    QTest::newRow("last slot") << 3 << QString("d.cog") << QString("&4 d.cog");
    QTest::newRow("empty slot") << 1 << QString() << QString("&2 ");
    QTest::newRow("ampersand shown as written") << 2 << QString("R&D.cog") << QString("&3 R&&D.cog");
    QTest::newRow("two ampersands") << 0 << QString("&&.cog") << QString("&1 &&&&.cog");
}

void tst_RecentFiles::captions() {
    QFETCH(int, slot);
    QFETCH(QString, title);
    QFETCH(QString, caption);
    QCOMPARE(QString::fromStdString(app::slotCaption(slot, title.toStdString())), caption);
    QCOMPARE(QString::fromStdString(app::titleOfCaption(caption.toStdString())), title);
    QCOMPARE(QString::fromStdString(app::slotKey(slot)), QString::number(slot + 1));
}

QTEST_APPLESS_MAIN(tst_RecentFiles)
#include "tst_recentfiles.moc"
