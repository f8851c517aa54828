// tessary-cli lsp, the language server, driven through its pipes by the sessions of
// tests/cases/lsp. NAME.session is a transcript, one item a line:
//   --> MESSAGE   sent with its Content-Length header; a JSON string "@FILE" stands for the text
//                 of FILE beside the session, and a body that is not JSON is sent as it is
//   ==> BYTES     sent as they are, with the escapes of tests/cases.h (\r \n \xHH)
//   <-- JSON      the next message the server sends holds these fields: an object may hold
//                 more, an array holds as many items, each holding the one given; "*" is any value
//   <== status N  the input ends here; the server has sent nothing more and ends with status N
// Lines starting with "#" and blank lines are comments.
#include "lsp/reader.h"
#include "tests/cases.h"

#include <nlohmann/json.hpp>

#include <QProcess>

using json = nlohmann::json;

namespace {

const QString kSessions = QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/lsp");

bool holds(const json& got, const json& want) {
    if (want == "*") return true;
    if (want.is_object()) {
        if (!got.is_object()) return false;
        for (const auto& [key, value] : want.items())
            if (!got.contains(key) || !holds(got[key], value)) return false;
        return true;
    }
    if (want.is_array()) {
        if (!got.is_array() || got.size() != want.size()) return false;
        for (std::size_t i = 0; i < want.size(); ++i)
            if (!holds(got[i], want[i])) return false;
        return true;
    }
    return got == want;
}

// Replaces the strings "@FILE" by the text of the file.
void substitute(json& j) {
    if (j.is_string() && j.get<std::string>().starts_with('@'))
        j = cases::readAll(kSessions + "/" + QString::fromStdString(j.get<std::string>().substr(1)))
                .toStdString();
    if (j.is_structured())
        for (auto& item : j) substitute(item);
}

} // namespace

class tst_Lsp : public QObject {
    Q_OBJECT
private slots:
    void sessions_data() {
        QTest::addColumn<QString>("name");
        for (const QString& f : QDir(kSessions).entryList({"*.session"}, QDir::Files, QDir::Name))
            QTest::newRow(qPrintable(f)) << f;
    }

    void sessions() {
        QFETCH(QString, name);
        std::string input;
        std::vector<std::pair<int, json>> expected; // line in the session, fields
        int status = -1;
        const QList<QByteArray> lines = cases::readAll(kSessions + "/" + name).split('\n');
        for (int n = 1; n <= lines.size(); ++n) {
            const std::string line = lines[n - 1].trimmed().toStdString(),
                              rest = line.substr(std::min<std::size_t>(4, line.size()));
            if (line.starts_with("--> ")) {
                json body = json::parse(rest, nullptr, false);
                if (!body.is_discarded()) substitute(body);
                const std::string text = body.is_discarded() ? rest : body.dump();
                input += "Content-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text;
            } else if (line.starts_with("==> ")) {
                input += cases::unescape(rest);
            } else if (line.starts_with("<-- ")) {
                expected.emplace_back(n, json::parse(rest));
            } else if (line.starts_with("<== status ")) {
                status = std::stoi(line.substr(11));
            } else {
                QVERIFY2(line.empty() || line.starts_with('#'),
                         qPrintable(QString("line %1: %2").arg(n).arg(line.c_str())));
            }
        }
        QProcess server;
        server.start(QStringLiteral(TESSARY_BIN_DIR "/tessary-cli"), {"lsp"});
        QVERIFY(server.waitForStarted());
        server.write(input.data(), qint64(input.size()));
        server.closeWriteChannel();
        QVERIFY2(server.waitForFinished(30000), "the server did not end at the end of its input");
        QCOMPARE(server.readAllStandardError(), QByteArray());

        lsp::MessageReader reader;
        reader.feed(server.readAllStandardOutput().toStdString());
        std::size_t i = 0;
        while (const auto frame = reader.next()) {
            QVERIFY2(frame->kind == lsp::Frame::Kind::Body, "a message with a bad header");
            const json got = json::parse(frame->body, nullptr, false);
            QVERIFY2(i < expected.size(),
                     qPrintable("more than expected: " + QString::fromStdString(got.dump())));
            QVERIFY2(holds(got, expected[i].second),
                     qPrintable(QString("line %1 wants %2\n   got %3")
                                    .arg(expected[i].first)
                                    .arg(QString::fromStdString(expected[i].second.dump()),
                                         QString::fromStdString(got.dump()))));
            ++i;
        }
        QVERIFY(!reader.holdsPart());
        if (i < expected.size())
            QFAIL(qPrintable(QString("nothing came for line %1").arg(expected[i].first)));
        QCOMPARE(server.exitCode(), status);
    }
};

QTEST_GUILESS_MAIN(tst_Lsp)
#include "tst_lsp.moc"
