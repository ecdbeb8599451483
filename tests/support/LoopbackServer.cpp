#include "tests/support/LoopbackServer.h"

#include <sys/socket.h>

#include <QPointer>
#include <QSslServer>
#include <QTimer>

#include <stdexcept>

namespace roost::test {

namespace {

/// How much of a flood lies ready for the client.
constexpr qint64 floodDepth = 256 * 1024;

/// The length of the first whole request in `bytes`, or 0 when none is whole.
qsizetype requestLength(const QByteArray& bytes)
{
    const qsizetype head = bytes.indexOf("\r\n\r\n");
    if (head < 0) {
        return 0;
    }
    qsizetype length = head + 4;
    for (const QByteArray& line : bytes.first(head).split('\n')) {
        if (line.toLower().startsWith("content-length:")) {
            length += line.mid(line.indexOf(':') + 1).trimmed().toInt();
        }
    }
    return length <= bytes.size() ? length : 0;
}

} // namespace

/// One client: a child of its socket, with which it goes.
class LoopbackServer::Connection : public QObject {
public:
    Connection(LoopbackServer& server, QTcpSocket* socket) : QObject(socket), server_(server), socket_(socket)
    {
        connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
        connect(socket, &QTcpSocket::bytesWritten, this, &Connection::flood);
        connect(socket, &QTcpSocket::disconnected, this, [this] {
            --server_.openConnections_;
            socket_->deleteLater();
        });
        pause_.setSingleShot(true);
        pause_.setTimerType(Qt::PreciseTimer);
        connect(&pause_, &QTimer::timeout, this, &Connection::run);
        read();
    }

private:
    void read()
    {
        received_ += socket_->readAll();
        const qsizetype length = requestLength(received_);
        if (length == 0 || !script_.empty()) {
            return;
        }
        server_.requests_.append(received_.first(length));
        received_.remove(0, length);
        script_ = server_.nextScript();
        run();
    }

    /// Does steps of the script until one of them takes time.
    void run()
    {
        const QPointer<Connection> self(this);
        while (self && !script_.empty() && !pause_.isActive() && !isFlooding_) {
            Step step = std::move(script_.front());
            script_.erase(script_.begin());
            std::visit([this](auto& s) { take(s); }, step);
        }
        if (self && script_.empty() && !received_.isEmpty()) {
            read();
        }
    }

    void take(Send& step) { socket_->write(step.bytes); }

    void take(Drip& step)
    {
        if (step.bytes.isEmpty()) {
            return;
        }
        socket_->write(step.bytes.first(1));
        script_.insert(script_.begin(), Drip{step.bytes.sliced(1), step.pause});
        pause_.start(step.pause);
    }

    void take(Flood& step)
    {
        isFlooding_ = true;
        flood_ = step.bytes;
        flood();
    }

    void take(Pause& step) { pause_.start(step.duration); }

    void take(Do& step) { step.what(); }

    void take(Hang&) { script_ = {Pause{std::chrono::hours(1)}}; }

    void take(Close&)
    {
        script_.clear();
        socket_->disconnectFromHost();
    }

    void take(Reset&)
    {
        // A socket that may not linger is closed by a reset.
        const linger none{.l_onoff = 1, .l_linger = 0};
        ::setsockopt(static_cast<int>(socket_->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
                     sizeof none);
        script_.clear();
        socket_->abort();
    }

    void flood()
    {
        while (isFlooding_ && socket_->bytesToWrite() < floodDepth &&
               socket_->state() == QAbstractSocket::ConnectedState) {
            socket_->write(flood_);
        }
    }

    LoopbackServer& server_;
    QTcpSocket* socket_;
    QTimer pause_;
    QByteArray received_;
    Script script_;
    QByteArray flood_;
    bool isFlooding_ = false;
};

LoopbackServer::LoopbackServer(std::optional<QSslConfiguration> tls) : isTls_(tls.has_value())
{
    if (tls) {
        auto secure = std::make_unique<QSslServer>();
        secure->setSslConfiguration(*tls);
        server_ = std::move(secure);
    } else {
        server_ = std::make_unique<QTcpServer>();
    }
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(),
                     [this] { accept(); });
    if (!server_->listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("the loopback server did not start");
    }
}

LoopbackServer::~LoopbackServer() = default;

void LoopbackServer::answer(Script script) { scripts_.append(std::move(script)); }

quint16 LoopbackServer::port() const { return server_->serverPort(); }

QUrl LoopbackServer::url(const QString& path) const
{
    const QString scheme = isTls_ ? QStringLiteral("https") : QStringLiteral("http");
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(port()).arg(path));
}

LoopbackServer::Script LoopbackServer::nextScript()
{
    if (scripts_.isEmpty()) {
        return {Hang{}};
    }
    return scripts_.size() == 1 ? scripts_.front() : scripts_.takeFirst();
}

void LoopbackServer::accept()
{
    while (QTcpSocket* socket = server_->nextPendingConnection()) {
        ++connections_;
        ++openConnections_;
        socket->write(greeting_);
        new Connection(*this, socket);
    }
}

QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& headers)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Test\r\n" + headers +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

} // namespace roost::test
