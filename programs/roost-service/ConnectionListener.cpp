#include "programs/roost-service/ConnectionListener.h"

#include <QList>
#include <QTcpSocket>

namespace roost::local {

namespace {

constexpr qsizetype longestLine = 64 * 1024;

/// A connection that keeps its first line.
class Connection final : public QTcpSocket {
public:
    explicit Connection(QObject* parent) : QTcpSocket(parent)
    {
        // Made before any other connection to this signal, and so called before the bytes are read.
        connect(this, &QTcpSocket::readyRead, this, [this] { keepFirstLine(); });
    }

    QByteArray firstLine;

private:
    void keepFirstLine()
    {
        if (complete_) {
            return;
        }
        firstLine += peek(longestLine - firstLine.size());
        const qsizetype end = firstLine.indexOf("\r\n");
        complete_ = end >= 0 || firstLine.size() >= longestLine;
        if (end >= 0) {
            firstLine.truncate(end);
        }
    }

    bool complete_ = false;
};

} // namespace

ConnectionListener::ConnectionListener(QObject* parent) : QTcpServer(parent) {}

void ConnectionListener::incomingConnection(qintptr descriptor)
{
    auto* connection = new Connection(this);
    connection->setSocketDescriptor(descriptor);
    addPendingConnection(connection);
}

RequestLine takeRequestLine(QTcpSocket& socket)
{
    auto* connection = dynamic_cast<Connection*>(&socket);
    if (connection == nullptr) {
        return {};
    }
    const QList<QByteArray> words = std::exchange(connection->firstLine, {}).split(' ');
    return words.size() == 3 ? RequestLine{words[0], words[1]} : RequestLine{};
}

} // namespace roost::local
