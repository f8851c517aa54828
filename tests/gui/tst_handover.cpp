// The hand-over between two starts of the program, against hostile peers: the running program's
// server on a real local socket, fed every request of tests/cases/openrequest, idle connections, a
// crowd of them and a process out of file descriptors; and a start without a private runtime
// folder, which must not put its socket anywhere else.
#include "app/ui/OpenRequestServer.h"

#include <QDirIterator>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

// A peer that sends its bytes at once and collects whatever comes back until the server closes.
struct Peer {
    QLocalSocket socket;
    QByteArray answer;
    bool closed = false;
    Peer(const QString& name, const QByteArray& request) {
        QObject::connect(&socket, &QLocalSocket::readyRead, [this] { answer += socket.readAll(); });
        QObject::connect(&socket, &QLocalSocket::disconnected, [this] { closed = true; });
        socket.connectToServer(name);
        if (!request.isEmpty()) socket.write(request);
    }
};

QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

int openDescriptors() {
    return static_cast<int>(
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
}

} // namespace

class tst_HandOver : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<OpenRequestServer> server_;
    QString name() const { return dir_->filePath(QStringLiteral("tessary-execute")); }

private slots:
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        server_ = std::make_unique<OpenRequestServer>();
        server_->setRequestTimeout(300);
        QVERIFY(server_->listen(name()));
    }
    void cleanup() {
        server_.reset();
        dir_.reset();
    }
    void answersEachRequestAndCloses_data();
    void answersEachRequestAndCloses();
    void crowdOfIdlePeers();
    void listensAgainAfterRunningOutOfDescriptors();
    void noPrivateRuntimeFolderNoSocket();
};

void tst_HandOver::answersEachRequestAndCloses_data() {
    QTest::addColumn<QString>("request");
    const QDir data(TESSARY_SOURCE_DIR "/tests/cases/openrequest");
    for (const QString& file : data.entryList({"*.req"}, QDir::Files, QDir::Name))
        QTest::newRow(qPrintable(file.chopped(4))) << data.filePath(file);
}

// The server answers as the decoder reads the bytes: "ok" and the path for a complete request,
// the refusal for a malformed one, nothing for one that never ends; and it closes the connection.
void tst_HandOver::answersEachRequestAndCloses() {
    QFETCH(QString, request);
    QByteArray expected = readAll(QString(request).replace(".req", ".expected"));
    QSignalSpy received(server_.get(), &OpenRequestServer::pathReceived);
    Peer peer(name(), readAll(request));
    QTRY_VERIFY_WITH_TIMEOUT(peer.closed, 5000);
    if (expected.startsWith("complete: ")) {
        QCOMPARE(peer.answer, QByteArray("ok\n"));
        QCOMPARE(received.size(), 1);
        QCOMPARE(received.at(0).at(0).toString().toUtf8() + '\n', expected.mid(10));
    } else {
        QCOMPARE(peer.answer, expected.startsWith("refused: ") ? expected : QByteArray());
        QCOMPARE(received.size(), 0);
    }
}

// Peers that connect and say nothing: a few are served and a few wait their turn, each dropped
// after the request timeout; the rest are turned away at once. The server holds a descriptor only
// for those it serves or keeps waiting, and once they are gone a request is answered again.
void tst_HandOver::crowdOfIdlePeers() {
    const int before = openDescriptors();
    constexpr int kIdle = 40;
    std::vector<std::unique_ptr<Peer>> idle;
    for (int i = 0; i < kIdle; ++i) idle.push_back(std::make_unique<Peer>(name(), QByteArray()));
    QTest::qWait(100);
    const auto unanswered =
        std::count_if(idle.begin(), idle.end(), [](const auto& peer) { return !peer->closed; });
    const int serverSide = openDescriptors() - before - static_cast<int>(unanswered); // one per open peer
    QVERIFY(serverSide <= OpenRequestServer::kMaxConnections + OpenRequestServer::kMaxWaiting);
    for (const auto& peer : idle) {
        QTRY_VERIFY_WITH_TIMEOUT(peer->closed, 5000);
        QCOMPARE(peer->answer, QByteArray());
    }
    Peer late(name(), "OPEN 10\n/tmp/a.cog");
    QTRY_VERIFY_WITH_TIMEOUT(late.closed, 5000);
    QCOMPARE(late.answer, QByteArray("ok\n"));
}

// With no descriptor left the local server fails to accept and stops listening; once descriptors
// are free again it listens again, and a second start still finds it.
void tst_HandOver::listensAgainAfterRunningOutOfDescriptors() {
    rlimit limit{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit saved = limit;
    limit.rlim_cur = static_cast<rlim_t>(openDescriptors() + 6);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    std::vector<std::unique_ptr<Peer>> flood;
    for (int i = 0; i < 30; ++i) flood.push_back(std::make_unique<Peer>(name(), QByteArray()));
    QTest::qWait(200);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &saved), 0);
    flood.clear();
    QTRY_VERIFY_WITH_TIMEOUT(server_->isListening(), 5000);
    Peer peer(name(), "OPEN 10\n/tmp/a.cog");
    QTRY_VERIFY_WITH_TIMEOUT(peer.closed, 5000);
    QCOMPARE(peer.answer, QByteArray("ok\n"));
}

// Without a private runtime folder (XDG_RUNTIME_DIR open to the group, and the folder Qt would
// fall back to open to all), the program says so and listens nowhere: no socket in the temporary
// folder, where another user could have answered in its place.
void tst_HandOver::noPrivateRuntimeFolderNoSocket() {
    const QString runtime = dir_->filePath("runtime"), temp = dir_->filePath("tmp");
    const QString fallback = temp + "/runtime-" + QString::fromLocal8Bit(getpwuid(geteuid())->pw_name);
    QVERIFY(QDir().mkpath(runtime) && QDir().mkpath(fallback));
    QVERIFY(QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                               QFile::ReadGroup | QFile::ExeGroup));
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_RUNTIME_DIR", runtime);
    env.insert("TMPDIR", temp);
    env.insert("XDG_CONFIG_HOME", dir_->filePath("config"));
    p.setProcessEnvironment(env);
    p.start(TESSARY_BIN_DIR "/tessary", {});
    QByteArray err;
    QTRY_VERIFY_WITH_TIMEOUT((err += p.readAllStandardError()).contains("no file is handed over"), 15000);
    QVERIFY2(err.contains("Tessary: there is no private runtime folder for this user"), err.constData());
    QTest::qWait(500); // listening would have begun by now
    for (const QString& folder : {runtime, temp})
        for (QDirIterator it(folder, QDir::AllEntries | QDir::System | QDir::Hidden,
                             QDirIterator::Subdirectories);
             it.hasNext();)
            QVERIFY2(!it.next().endsWith("tessary-execute"), qPrintable(it.filePath()));
    p.kill();
    p.waitForFinished(5000);
}

QTEST_GUILESS_MAIN(tst_HandOver)
#include "tst_handover.moc"
