// The rules behind the editor's file safety, one golden file pair per case: what a window knows of
// its file against what is on disk, which files may be opened, and the recovery copies.
#include "editor/diskstate.h"
#include "editor/recovery.h"

#include <QDir>
#include <QtTest>

namespace {

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// "missing", or "SIZE MTIME HASH" with "-" for a hash not known.
editor::DiskState parseState(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() != 3) return {};
    editor::DiskState state{true, parts[0].toULongLong(), parts[1].toLongLong(), parts[2].toStdString()};
    if (state.hash == "-") state.hash.clear();
    return state;
}

editor::FileKind parseKind(const QString& word) {
    if (word == QLatin1String("regular")) return editor::FileKind::Regular;
    if (word == QLatin1String("directory")) return editor::FileKind::Directory;
    if (word == QLatin1String("missing")) return editor::FileKind::Missing;
    return editor::FileKind::Other;
}

// The answer to each line "NAME: QUESTION" of a .in file, as "NAME: ANSWER".
QString answer(const QString& rule, const QString& question) {
    if (rule == QLatin1String("compare")) { // KNOWN | NOW
        const QStringList sides = question.split(QLatin1Char('|'));
        const auto change = editor::compareDiskState(parseState(sides.value(0).trimmed()),
                                                     parseState(sides.value(1).trimmed()));
        return change == editor::DiskChange::Unchanged ? "unchanged"
               : change == editor::DiskChange::Changed ? "changed"
                                                       : "deleted";
    }
    if (rule == QLatin1String("refusal")) { // KIND SIZE MEMAVAILABLE
        const QStringList w = question.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const std::string why = editor::refusalReason(parseKind(w.value(0)), w.value(1).toULongLong(),
                                                      editor::openLimit(w.value(2).toULongLong()));
        return why.empty() ? QStringLiteral("opens") : QString::fromStdString(why);
    }
    return QStringLiteral("unknown rule ") + rule;
}

QString escaped(const std::string& bytes) {
    QString out;
    for (const unsigned char c : bytes)
        out += c == '\\'                 ? QStringLiteral("\\\\")
               : (c < 0x20 || c >= 0x7f) ? QStringLiteral("\\x%1").arg(c, 2, 16, QLatin1Char('0'))
                                         : QString(QChar(c));
    return out;
}

} // namespace

class tst_FileRules : public QObject {
    Q_OBJECT
private slots:
    void diskRules_data();
    void diskRules();
    void recoveryCopies_data();
    void recoveryCopies();
};

void tst_FileRules::diskRules_data() {
    QTest::addColumn<QString>("input");
    const QDir dir(QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/diskstate"));
    for (const QString& name : dir.entryList({QStringLiteral("*.in")}))
        QTest::newRow(qPrintable(name)) << dir.filePath(name);
}

// compare-*.in: lines "NAME: KNOWN | NOW"; refusal-*.in: lines "NAME: KIND SIZE MEMAVAILABLE";
// meminfo-*.in: a /proc/meminfo, answered by the size limit it gives.
void tst_FileRules::diskRules() {
    QFETCH(QString, input);
    const QString rule = QFileInfo(input).baseName().section(QLatin1Char('-'), 0, 0);
    const QByteArray bytes = readFile(input);
    QString got;
    if (rule == QLatin1String("meminfo")) {
        const std::uint64_t available = editor::memAvailable(bytes.toStdString());
        got = QStringLiteral("available: %1\nlimit: %2\n")
                  .arg(available)
                  .arg(QString::fromStdString(editor::describeSize(editor::openLimit(available))));
    } else {
        for (const QString& line : QString::fromUtf8(bytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (line.startsWith(QLatin1Char('#'))) continue;
            const qsizetype colon = line.indexOf(QLatin1Char(':'));
            got += line.left(colon + 1) + QLatin1Char(' ') + answer(rule, line.mid(colon + 1).trimmed()) +
                   QLatin1Char('\n');
        }
    }
    const QString expectedPath = input.chopped(3) + QStringLiteral(".out");
    QCOMPARE(got, QString::fromUtf8(readFile(expectedPath)));
}

void tst_FileRules::recoveryCopies_data() {
    QTest::addColumn<QString>("input");
    const QDir dir(QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/recovery"));
    for (const QString& name : dir.entryList({QStringLiteral("*.rec")}))
        QTest::newRow(qPrintable(name)) << dir.filePath(name);
}

// Each .rec is read back as its .out describes it ("damaged" when it is no whole copy), written
// again byte for byte, and offered at start-up in the words the .out ends with.
void tst_FileRules::recoveryCopies() {
    QFETCH(QString, input);
    const QByteArray bytes = readFile(input);
    const auto record = editor::decodeRecovery(std::string_view(bytes.constData(), bytes.size()));
    QString got = QStringLiteral("damaged\n");
    if (record) {
        QCOMPARE(QByteArray::fromStdString(editor::encodeRecovery(*record)), bytes);
        const auto& d = record->disk;
        got = QStringLiteral("path: %1\ntitle: %2\ndisk: %3 %4 %5 %6\ntext: %7\noffer:\n%8\n")
                  .arg(escaped(record->path), escaped(record->title), d.exists ? "exists" : "missing")
                  .arg(d.size)
                  .arg(d.mtimeNs)
                  .arg(d.hash.empty() ? QStringLiteral("-") : QString::fromStdString(d.hash),
                       escaped(record->text),
                       QString::fromStdString(editor::recoveryOffer({*record})).remove(QLatin1Char('\r')));
    }
    QCOMPARE(got, QString::fromUtf8(readFile(input.chopped(4) + QStringLiteral(".out"))));
}

QTEST_APPLESS_MAIN(tst_FileRules)
#include "tst_filerules.moc"
