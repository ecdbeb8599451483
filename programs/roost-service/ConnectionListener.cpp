#include "programs/roost-service/ConnectionListener.h"

#include <QList>
#include <QSslSocket>
#include <QTcpSocket>

namespace roost::local {

namespace {

constexpr qsizetype longestLine = 64 * 1024;

/// The first line of what comes over a connection.
class FirstLine {
public:
    void keep(QTcpSocket& socket)
    {
        if (complete_) {
            return;
        }
        text += socket.peek(longestLine - text.size());
        const qsizetype end = text.indexOf("\r\n");
        complete_ = end >= 0 || text.size() >= longestLine;
        if (end >= 0) {
            text.truncate(end);
        }
    }

    QByteArray text;

private:
    bool complete_ = false;
};

/// A connection that keeps its first line.
template <class Socket>
class Connection final : public Socket, public FirstLine {
public:
    explicit Connection(QObject* parent) : Socket(parent)
    {
        // Made before any other connection to this signal, and so called before the bytes are read.
        QObject::connect(this, &QTcpSocket::readyRead, this, [this] { keep(*this); });
    }
};

} // namespace

ConnectionListener::ConnectionListener(QObject* parent) : QTcpServer(parent) {}

void ConnectionListener::incomingConnection(qintptr descriptor)
{
    if (identity_) {
        auto* connection = new Connection<QSslSocket>(this);
        connection->setSslConfiguration(*identity_);
        connection->setSocketDescriptor(descriptor);
        connection->startServerEncryption();
        addPendingConnection(connection);
    } else {
        auto* connection = new Connection<QTcpSocket>(this);
        connection->setSocketDescriptor(descriptor);
        addPendingConnection(connection);
    }
}

RequestLine takeRequestLine(QTcpSocket& socket)
{
    auto* line = dynamic_cast<FirstLine*>(&socket);
    if (line == nullptr) {
        return {};
    }
    const QList<QByteArray> words = std::exchange(line->text, {}).split(' ');
    return words.size() == 3 ? RequestLine{words[0], words[1]} : RequestLine{};
}

} // namespace roost::local
