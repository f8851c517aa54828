// The request that hands a path to the running program: each tests/cases/openrequest/NAME.req is
// the bytes a peer sends and NAME.expected what the decoder makes of them, whether the bytes come
// at once, one by one or in uneven pieces.
#include "app/openrequest.h"

#include <QtTest>

namespace {

std::string outcome(const app::OpenRequestDecoder& d) {
    switch (d.state()) {
    case app::OpenRequestDecoder::State::Complete:
        return "complete: " + d.path() + "\n";
    case app::OpenRequestDecoder::State::Refused:
        return "refused: " + d.problem() + "\n";
    case app::OpenRequestDecoder::State::Incomplete:
        break;
    }
    return "incomplete\n";
}

// The outcome when the bytes arrive in pieces of `step` bytes (and the last one shorter).
std::string decodeInPieces(std::string_view bytes, std::size_t step) {
    app::OpenRequestDecoder d;
    for (std::size_t at = 0; at < bytes.size(); at += step) d.feed(bytes.substr(at, step));
    return outcome(d);
}

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("unreadable");
}

} // namespace

class tst_OpenRequest : public QObject {
    Q_OBJECT
private slots:
    void decodes_data();
    void decodes();
    void pathsThatCannotBeSent();
};

void tst_OpenRequest::decodes_data() {
    QTest::addColumn<QString>("request");
    const QDir dir(TESSARY_SOURCE_DIR "/tests/cases/openrequest");
    for (const QString& name : dir.entryList({"*.req"}, QDir::Files, QDir::Name))
        QTest::newRow(qPrintable(name.chopped(4))) << dir.filePath(name);
}

void tst_OpenRequest::decodes() {
    QFETCH(QString, request);
    const QByteArray bytes = readAll(request);
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    QString expectedPath = request;
    expectedPath.replace(QLatin1String(".req"), QLatin1String(".expected"));
    const QByteArray expected = readAll(expectedPath);
    for (const std::size_t step : {std::size_t{1}, std::size_t{3}, std::size_t{1000}, view.size() + 1})
        QCOMPARE(QByteArray::fromStdString(decodeInPieces(view, step)), expected);
    // A request that is read whole is the one a second start sends for its path, byte for byte.
    app::OpenRequestDecoder whole;
    if (whole.feed(view) == app::OpenRequestDecoder::State::Complete)
        QCOMPARE(app::encodeOpenRequest(whole.path()), std::string(view));
}

void tst_OpenRequest::pathsThatCannotBeSent() {
    for (const std::string& path : {std::string(), std::string(app::kMaxRequestPath + 1, 'x'),
                                    std::string("/tmp/a\0b", 8), std::string("/tmp/\xE9t\xE9")})
        QCOMPARE(app::encodeOpenRequest(path), std::string());
}

QTEST_APPLESS_MAIN(tst_OpenRequest)
#include "tst_openrequest.moc"
