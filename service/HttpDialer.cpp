#include "service/HttpDialer.h"

#include "service/HostLookup.h"
#include "service/HttpErrorCodes.h"

#include <QSslSocket>

#include <algorithm>

namespace roost {

namespace {

constexpr std::chrono::milliseconds headStart{250};

/// What Qt keeps of an answer before we have read it.
constexpr qint64 readBufferSize = 64 * 1024;

} // namespace

QList<QHostAddress> inTurns(const QList<QHostAddress>& addresses)
{
    QList<QHostAddress> own;
    QList<QHostAddress> other;
    for (const QHostAddress& address : addresses) {
        (address.protocol() == addresses.front().protocol() ? own : other).append(address);
    }
    QList<QHostAddress> mixed;
    for (qsizetype i = 0; i < std::max(own.size(), other.size()); ++i) {
        mixed += own.mid(i, 1) + other.mid(i, 1);
    }
    return mixed;
}

HttpDialer::HttpDialer(HttpRoute route, Security security, Done done, QObject* parent)
    : QObject(parent),
      route_(std::move(route)),
      security_(security),
      done_(std::move(done))
{
    next_.setSingleShot(true);
    next_.setInterval(headStart);
    connect(&next_, &QTimer::timeout, this, &HttpDialer::tryNext);

    if (route_.tunnel.type() != QNetworkProxy::NoProxy) {
        // The proxy looks the name up, and there is one way to go.
        QMetaObject::invokeMethod(this, &HttpDialer::tryNext, Qt::QueuedConnection);
    } else if (!route_.addresses.isEmpty()) {
        addresses_ = inTurns(route_.addresses);
        QMetaObject::invokeMethod(this, &HttpDialer::tryNext, Qt::QueuedConnection);
    } else {
        lookUpHost(route_.host, this, [this](const QHostInfo& info) { lookedUp(info); });
    }
}

HttpDialer::~HttpDialer()
{
    for (QTcpSocket* socket : trying_) {
        socket->disconnect(this);
    }
}

void HttpDialer::lookedUp(const QHostInfo& info)
{
    if (info.addresses().isEmpty()) {
        done_(nullptr, HttpErrorCodes::ofLookup(info.error()));
        return;
    }
    addresses_ = inTurns(info.addresses());
    tryNext();
}

void HttpDialer::tryNext()
{
    QTcpSocket* socket = trying_.emplace_back(newSocket());
    connect(socket, &QTcpSocket::connected, this, [this, socket] { connected(socket); });
    connect(socket, &QTcpSocket::errorOccurred, this, [this, socket](auto error) { failed(socket, error); });
    socket->setReadBufferSize(readBufferSize);
    socket->setProxy(route_.tunnel);
    if (addresses_.isEmpty()) {
        socket->connectToHost(route_.host, route_.port);
        return;
    }
    const QHostAddress address = addresses_.takeFirst();
    if (!addresses_.isEmpty()) {
        next_.start();
    }
    socket->connectToHost(address, route_.port);
}

void HttpDialer::connected(QTcpSocket* socket)
{
    next_.stop();
    for (QTcpSocket* tried : std::exchange(trying_, {})) {
        tried->disconnect(this);
        if (tried != socket) {
            tried->abort();
        }
    }
    socket->setParent(nullptr);
    done_(std::unique_ptr<QTcpSocket>(socket), 0);
}

void HttpDialer::failed(QTcpSocket* socket, QAbstractSocket::SocketError error)
{
    // What the first address says is told: the later ones are stopgaps.
    code_ = code_ == 0 ? HttpErrorCodes::ofConnecting(error) : code_;
    socket->disconnect(this);
    socket->deleteLater();
    std::erase(trying_, socket);
    if (!addresses_.isEmpty()) {
        next_.stop();
        tryNext();
    } else if (trying_.empty()) {
        done_(nullptr, code_);
    }
}

QTcpSocket* HttpDialer::newSocket()
{
    // A TLS socket loads the TLS library, which a plain connection does not need.
    return security_ == Security::tls ? new QSslSocket(this) : new QTcpSocket(this);
}

} // namespace roost
