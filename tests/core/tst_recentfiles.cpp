// The recent-files slots: how opened files move through them and how they are stored.
#include "app/recentfiles.h"

#include <QtTest>

using app::RecentFiles;

class tst_RecentFiles : public QObject {
    Q_OBJECT
private slots:
    void addFileMovesSlots_data();
    void addFileMovesSlots();
    void slotsBecomeVisibleAndStay();
    void loadsStoredValues_data();
    void loadsStoredValues();
    void storedValueReadsBack_data();
    void storedValueReadsBack();
    void captions_data();
    void captions();
};

namespace {

std::string titleOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Slots written as "title|path", an empty slot as "|".
RecentFiles listOf(const QStringList& entries) {
    RecentFiles list;
    for (int k = 0; k < entries.size(); ++k) {
        const auto parts = entries[k].split('|');
        auto& slot = list.entries[static_cast<std::size_t>(k)];
        slot.title = parts[0].toStdString();
        slot.path = parts[1].toStdString();
        slot.visible = !slot.title.empty();
        list.separatorVisible = list.separatorVisible || slot.visible;
    }
    return list;
}

QStringList slotsOf(const RecentFiles& list) {
    QStringList l;
    for (const auto& slot : list.entries)
        l << QString::fromStdString(slot.title) + '|' + QString::fromStdString(slot.path);
    return l;
}

const QStringList kEmpty{"|", "|", "|", "|"};
const QStringList kFour{"a.cog|/c/a.cog", "b.cog|/c/b.cog", "c.cog|/c/c.cog", "d.cog|/c/d.cog"};

} // namespace

void tst_RecentFiles::addFileMovesSlots_data() {
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("opened");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("first file into an empty list")
        << kEmpty << QStringList{"/c/a.cog"} << QStringList{"a.cog|/c/a.cog", "|", "|", "|"};
    QTest::newRow("five files: the first drops out")
        << kEmpty << QStringList{"/c/a.cog", "/c/b.cog", "/c/c.cog", "/c/d.cog", "/c/e.cog"}
        << QStringList{"e.cog|/c/e.cog", "d.cog|/c/d.cog", "c.cog|/c/c.cog", "b.cog|/c/b.cog"};
    QTest::newRow("title in slot 0 changes nothing") << kFour << QStringList{"/c/a.cog"} << kFour;
    QTest::newRow("title in slot 1 moves to the top")
        << kFour << QStringList{"/c/b.cog"}
        << QStringList{"b.cog|/c/b.cog", "a.cog|/c/a.cog", "c.cog|/c/c.cog", "d.cog|/c/d.cog"};
    QTest::newRow("title in slot 2 moves to the top, slot 3 unchanged")
        << kFour << QStringList{"/c/c.cog"}
        << QStringList{"c.cog|/c/c.cog", "a.cog|/c/a.cog", "b.cog|/c/b.cog", "d.cog|/c/d.cog"};
    QTest::newRow("title in slot 3 moves to the top")
        << kFour << QStringList{"/c/d.cog"}
        << QStringList{"d.cog|/c/d.cog", "a.cog|/c/a.cog", "b.cog|/c/b.cog", "c.cog|/c/c.cog"};
    QTest::newRow("same title in slot 0 from another directory keeps the first path")
        << QStringList{"x.cog|/one/x.cog", "|", "|", "|"} << QStringList{"/two/x.cog"}
        << QStringList{"x.cog|/one/x.cog", "|", "|", "|"};
    QTest::newRow("same title in slot 2 from another directory takes the new path")
        << kFour << QStringList{"/other/c.cog"}
        << QStringList{"c.cog|/other/c.cog", "a.cog|/c/a.cog", "b.cog|/c/b.cog", "d.cog|/c/d.cog"};
    QTest::newRow("X.COG while x.cog is listed adds a second entry")
        << QStringList{"x.cog|/c/x.cog", "|", "|", "|"} << QStringList{"/c/X.COG"}
        << QStringList{"X.COG|/c/X.COG", "x.cog|/c/x.cog", "|", "|"};
    QTest::newRow("opening the same file again and again")
        << kEmpty << QStringList{"/c/a.cog", "/c/b.cog", "/c/a.cog", "/c/b.cog"}
        << QStringList{"b.cog|/c/b.cog", "a.cog|/c/a.cog", "|", "|"};
}

void tst_RecentFiles::addFileMovesSlots() {
    QFETCH(QStringList, before);
    QFETCH(QStringList, opened);
    QFETCH(QStringList, after);
    RecentFiles list = listOf(before);
    for (const QString& path : opened) app::addFile(list, path.toStdString(), titleOf(path.toStdString()));
    QCOMPARE(slotsOf(list), after);
}

void tst_RecentFiles::slotsBecomeVisibleAndStay() {
    RecentFiles list;
    QVERIFY(!list.separatorVisible);
    app::addFile(list, "/c/a.cog", "a.cog");
    QVERIFY(list.separatorVisible);
    QCOMPARE(list.entries[0].visible, true);
    QCOMPARE(list.entries[1].visible, false);
    app::addFile(list, "/c/b.cog", "b.cog");
    QCOMPARE(list.entries[1].visible, true);
    QCOMPARE(list.entries[2].visible, false);
    // Moving a title up within the list reveals nothing new.
    app::addFile(list, "/c/a.cog", "a.cog");
    QCOMPARE(list.entries[2].visible, false);
    for (const char* t : {"c.cog", "d.cog", "e.cog"}) app::addFile(list, std::string("/c/") + t, t);
    for (const auto& slot : list.entries) QVERIFY(slot.visible);
}

void tst_RecentFiles::loadsStoredValues_data() {
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QList<bool>>("visible");
    QTest::addColumn<bool>("separator");
    QTest::newRow("empty store") << QStringList{":", ":", ":", ":"} << kEmpty
                                 << QList<bool>{false, false, false, false} << false;
    QTest::newRow("two files") << QStringList{"a.cog:/c/a.cog", "b.cog:/c/b.cog", ":", ":"}
                               << QStringList{"a.cog|/c/a.cog", "b.cog|/c/b.cog", "|", "|"}
                               << QList<bool>{true, true, false, false} << true;
    QTest::newRow("a gap: only filled slots show")
        << QStringList{":", ":", "c.cog:/c/c.cog", ":"} << QStringList{"|", "|", "c.cog|/c/c.cog", "|"}
        << QList<bool>{false, false, true, false} << true;
    QTest::newRow("hand-edited value without a colon reads as empty")
        << QStringList{"a.cog", ":", ":", ":"} << kEmpty << QList<bool>{false, false, false, false} << false;
    QTest::newRow("a path without a title stays hidden")
        << QStringList{":/c/a.cog", ":", ":", ":"} << QStringList{"|/c/a.cog", "|", "|", "|"}
        << QList<bool>{false, false, false, false} << false;
}

void tst_RecentFiles::loadsStoredValues() {
    QFETCH(QStringList, stored);
    QFETCH(QStringList, entries);
    QFETCH(QList<bool>, visible);
    QFETCH(bool, separator);
    RecentFiles list;
    for (int k = 0; k < 4; ++k) app::loadSlot(list, k, stored[k].toStdString());
    QCOMPARE(slotsOf(list), entries);
    for (int k = 0; k < 4; ++k) QCOMPARE(list.entries[static_cast<std::size_t>(k)].visible, visible[k]);
    QCOMPARE(list.separatorVisible, separator);
}

void tst_RecentFiles::storedValueReadsBack_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("path");
    QTest::newRow("drive letter path") << "a.cog:C:\\cogs\\a.cog"
                                       << "a.cog"
                                       << "C:\\cogs\\a.cog";
    QTest::newRow("plain path") << "a.cog:/home/u/a.cog"
                                << "a.cog"
                                << "/home/u/a.cog";
    QTest::newRow("file name with a colon") << "a:b.cog:/home/u/a:b.cog"
                                            << "a:b.cog"
                                            << "/home/u/a:b.cog";
    QTest::newRow("directories with colons") << "a.cog:/mnt/c:/x:y/a.cog"
                                             << "a.cog"
                                             << "/mnt/c:/x:y/a.cog";
    QTest::newRow("several colons everywhere") << "p:q:r.cog:/d:e/f:/p:q:r.cog"
                                               << "p:q:r.cog"
                                               << "/d:e/f:/p:q:r.cog";
    QTest::newRow("file name starting with a colon") << ":a.cog:/d/:a.cog"
                                                     << ":a.cog"
                                                     << "/d/:a.cog";
    QTest::newRow("title not at the path's end: first colon") << "a.cog:/d/b:c.cog"
                                                              << "a.cog"
                                                              << "/d/b:c.cog";
    QTest::newRow("empty slot") << ":"
                                << ""
                                << "";
    QTest::newRow("no colon") << "a.cog"
                              << ""
                              << "";
    QTest::newRow("empty value") << ""
                                 << ""
                                 << "";
    QTest::newRow("title without path") << "a.cog:"
                                        << "a.cog"
                                        << "";
}

void tst_RecentFiles::storedValueReadsBack() {
    QFETCH(QString, value);
    QFETCH(QString, title);
    QFETCH(QString, path);
    const auto slot = app::parseStoredValue(value.toStdString());
    QCOMPARE(QString::fromStdString(slot.title), title);
    QCOMPARE(QString::fromStdString(slot.path), path);
    // A value with a colon is what storing the slot writes, so it reads back the same.
    if (value.contains(':')) QCOMPARE(QString::fromStdString(app::storedValue(slot)), value);
}

void tst_RecentFiles::captions_data() {
    QTest::addColumn<int>("slot");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("caption");
    QTest::newRow("first slot") << 0 << "a.cog"
                                << "&1 a.cog";
    QTest::newRow("last slot") << 3 << "d.cog"
                               << "&4 d.cog";
    QTest::newRow("empty slot") << 1 << ""
                                << "&2 ";
    QTest::newRow("ampersand shown as written") << 2 << "R&D.cog"
                                                << "&3 R&&D.cog";
    QTest::newRow("two ampersands") << 0 << "&&.cog"
                                    << "&1 &&&&.cog";
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
