// The hand-over of a path from a second start of the program to the one already running, over a
// local socket in the user's runtime folder (the request itself: app/openrequest.h).
//
// The running program's side takes one request per connection, answers and closes it; a
// connection that has not sent its request within the request timeout is dropped. At most
// kMaxConnections are served at once and kMaxWaiting more wait their turn (as bare descriptors,
// reading nothing); further ones are closed at once. A server that stops listening because the
// program ran out of file descriptors listens again once it can.
#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace openrequests {

// The socket's name in the user's private runtime folder. Empty, with the reason in problem, when
// there is none: then there is no hand-over at all, for a name in a shared folder would let
// another user receive the paths and answer in our place.
QString serverName(QString& problem);

// Hands path to the program listening on name; true when it took the path.
bool handOver(const QString& name, const QString& path);

} // namespace openrequests

class OpenRequestServer : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxConnections = 8;
    static constexpr int kMaxWaiting = 8;

    explicit OpenRequestServer(QObject* parent = nullptr);
    ~OpenRequestServer() override;

    // Listens on name; false when another program already answers there. A socket left behind by
    // a program that ended is taken over.
    bool listen(const QString& name);
    bool isListening() const;
    // How long a connection may take to send its request, in milliseconds (5 s by default).
    void setRequestTimeout(int milliseconds) { requestTimeout_ = milliseconds; }

signals:
    // A well-formed request arrived and has been answered.
    void pathReceived(const QString& path);

private:
    class Listener;

    void accept(quintptr descriptor);
    void serve(quintptr descriptor);
    void stoppedListening();
    void listenAgain();

    Listener* listener_;
    QString name_;
    QList<quintptr> waiting_;
    int open_ = 0;
    int requestTimeout_ = 5000;
    bool retryQueued_ = false;
};
