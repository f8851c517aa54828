#include "app/ui/OpenRequestServer.h"

#include "app/openrequest.h"

#include <QChildEvent>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <array>
#include <memory>
#include <unistd.h>

namespace {

// The largest request and a byte more: a read of this size sees a whole request and whatever
// follows it.
constexpr qint64 kReadSize = 16 + static_cast<qint64>(app::kMaxRequestPath);
constexpr int kListenRetryMs = 1000;

} // namespace

namespace openrequests {

QString serverName(QString& problem) {
    // Qt gives the runtime folder only when it belongs to the user and is closed to everyone else
    // (XDG_RUNTIME_DIR, or else a folder of the user's own under the temporary folder).
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!dir.isEmpty()) return dir + QStringLiteral("/tessary-execute");
    problem = QStringLiteral("there is no private runtime folder for this user (XDG_RUNTIME_DIR)");
    return {};
}

bool handOver(const QString& name, const QString& path) {
    const QByteArray utf8 = path.toUtf8();
    const std::string request = app::encodeOpenRequest(std::string_view(utf8.constData(), utf8.size()));
    if (request.empty()) return false;
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(1000)) return false;
    socket.write(request.data(), static_cast<qint64>(request.size()));
    if (!socket.waitForBytesWritten(2000)) return false;
    while (!socket.canReadLine() && socket.bytesAvailable() < 256)
        if (!socket.waitForReadyRead(5000)) return false;
    return socket.readLine(256) == "ok\n";
}

} // namespace openrequests

// The local server, with each accepted connection handed to its owner as a bare descriptor: Qt
// would otherwise keep it as a socket that reads whatever the peer sends before anyone asks.
class OpenRequestServer::Listener : public QLocalServer {
public:
    explicit Listener(OpenRequestServer* owner) : QLocalServer(owner), owner_(owner) {}

protected:
    void incomingConnection(quintptr descriptor) override { owner_->accept(descriptor); }
    // When accepting fails (no descriptor left) the local server closes for good and drops its
    // socket notifier: that child going away is the sign to listen again.
    void childEvent(QChildEvent* event) override {
        QLocalServer::childEvent(event);
        if (event->removed()) owner_->stoppedListening();
    }

private:
    OpenRequestServer* owner_;
};

OpenRequestServer::OpenRequestServer(QObject* parent) : QObject(parent), listener_(new Listener(this)) {
    listener_->setSocketOptions(QLocalServer::UserAccessOption);
}

OpenRequestServer::~OpenRequestServer() {
    for (const quintptr descriptor : waiting_) ::close(static_cast<int>(descriptor));
}

bool OpenRequestServer::listen(const QString& name) {
    name_ = name;
    if (listener_->listen(name)) return true;
    // A socket left by a program that ended without closing it: nobody answers there.
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(500)) return false;
    QLocalServer::removeServer(name);
    return listener_->listen(name);
}

bool OpenRequestServer::isListening() const {
    return listener_->socketDescriptor() != -1;
}

void OpenRequestServer::stoppedListening() {
    if (retryQueued_ || name_.isEmpty() || isListening()) return;
    retryQueued_ = true;
    QTimer::singleShot(0, this, &OpenRequestServer::listenAgain);
}

void OpenRequestServer::listenAgain() {
    retryQueued_ = false;
    if (isListening()) return;
    listener_->close(); // the failed server still holds its name
    if (listener_->listen(name_)) return;
    if (listener_->serverError() == QAbstractSocket::AddressInUseError) return; // another program took over
    retryQueued_ = true;
    QTimer::singleShot(kListenRetryMs, this, &OpenRequestServer::listenAgain);
}

void OpenRequestServer::accept(quintptr descriptor) {
    if (open_ < kMaxConnections)
        serve(descriptor);
    else if (waiting_.size() < kMaxWaiting)
        waiting_.push_back(descriptor);
    else
        ::close(static_cast<int>(descriptor)); // the peer sees the connection closed, unanswered
}

void OpenRequestServer::serve(quintptr descriptor) {
    auto* socket = new QLocalSocket(this);
    ++open_;
    connect(socket, &QObject::destroyed, this, [this] {
        --open_;
        if (!waiting_.empty() && open_ < kMaxConnections) serve(waiting_.takeFirst());
    });
    socket->setReadBufferSize(kReadSize);
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QTimer::singleShot(requestTimeout_, socket, [socket] {
        socket->abort();
        socket->deleteLater();
    });
    auto decoder = std::make_shared<app::OpenRequestDecoder>();
    connect(socket, &QLocalSocket::readyRead, this, [this, socket, decoder] {
        using State = app::OpenRequestDecoder::State;
        std::array<char, kReadSize> buffer;
        while (decoder->state() == State::Incomplete) {
            const qint64 n = socket->read(buffer.data(), kReadSize);
            if (n <= 0) return;
            decoder->feed(std::string_view(buffer.data(), static_cast<std::size_t>(n)));
        }
        disconnect(socket, &QLocalSocket::readyRead, this, nullptr);
        const bool complete = decoder->state() == State::Complete;
        socket->write(complete
                          ? QByteArray("ok\n")
                          : QByteArray("refused: ") + QByteArray::fromStdString(decoder->problem()) + '\n');
        socket->disconnectFromServer(); // once the answer is written
        if (complete) emit pathReceived(QString::fromStdString(decoder->path()));
    });
    if (!socket->setSocketDescriptor(static_cast<qintptr>(descriptor))) {
        ::close(static_cast<int>(descriptor));
        socket->deleteLater();
    }
}
