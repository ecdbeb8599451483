#include "service/HttpExchange.h"

#include "service/HttpErrorCodes.h"
#include "service/HttpRoute.h"

#include <QSslSocket>

#include <algorithm>

namespace roost {

namespace {

/// Longer than any request, and short enough for the timer to count.
constexpr std::chrono::milliseconds longestTimeout = std::chrono::hours(24);

constexpr qint64 pieceSize = 64 * 1024;

bool isWebAddress(const QUrl& url)
{
    return (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty();
}

} // namespace

HttpExchange::HttpExchange(HttpRequest request, std::stop_token stop, QObject* parent)
    : QObject(parent),
      request_(std::move(request)),
      parser_(request_.bodies, request_.bodyLimit)
{
    if (stop.stop_requested()) {
        fail(HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled);
        return;
    }
    if (!isWebAddress(request_.url)) {
        fail(HttpFailure::Kind::notHttp, HttpErrorCodes::unknown);
        return;
    }
    timeout_.setSingleShot(true);
    timeout_.setTimerType(Qt::PreciseTimer);
    connect(&timeout_, &QTimer::timeout, this,
            [this] { fail(HttpFailure::Kind::transport, HttpErrorCodes::timedOut); });
    timeout_.start(std::clamp(request_.timeout, std::chrono::milliseconds(0), longestTimeout));
    dial();
    onStop_.emplace(std::move(stop), [this] {
        QMetaObject::invokeMethod(
            this, [this] { fail(HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled); },
            Qt::QueuedConnection);
    });
}

HttpExchange::~HttpExchange()
{
    if (socket_ != nullptr) {
        socket_->disconnect(this);
    }
}

void HttpExchange::cancelNow()
{
    fail(HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled);
    wake();
}

void HttpExchange::dial()
{
    HttpRoute route = systemRouteTo(request_.url);
    std::optional<QByteArray> bytes =
        HttpSyntax::requestBytes(request_, route.target, route.proxyAuthorization);
    if (!bytes) {
        fail(HttpFailure::Kind::transport, HttpErrorCodes::unknown);
        return;
    }
    bytes_ = *std::move(bytes);
    const bool isHttps = request_.url.scheme() == QLatin1String("https");
    dialer_ = new HttpDialer(
        std::move(route), isHttps ? HttpDialer::Security::tls : HttpDialer::Security::none,
        [this](std::unique_ptr<QTcpSocket> socket, int code) { dialed(std::move(socket), code); }, this);
}

void HttpExchange::dialed(std::unique_ptr<QTcpSocket> socket, int code)
{
    if (result_) {
        return;
    }
    if (!socket) {
        fail(HttpFailure::Kind::transport, code);
        return;
    }
    socket_ = socket.release();
    socket_->setParent(this);
    connect(socket_, &QTcpSocket::readyRead, this, &HttpExchange::read);
    connect(socket_, &QTcpSocket::errorOccurred, this, &HttpExchange::ended);
    connect(socket_, &QTcpSocket::disconnected, this,
            [this] { ended(QAbstractSocket::RemoteHostClosedError); });
    if (auto* secure = qobject_cast<QSslSocket*>(socket_)) {
        // Whatever is wrong with the certificate ends the handshake, since nobody says that it may be
        // ignored.
        connect(secure, &QSslSocket::encrypted, this, &HttpExchange::write);
        secure->setPeerVerifyName(request_.url.host(QUrl::FullyEncoded));
        secure->startClientEncryption();
    } else {
        write();
    }
}

void HttpExchange::write() { socket_->write(std::exchange(bytes_, {})); }

void HttpExchange::read()
{
    while (!result_ && socket_->bytesAvailable() > 0) {
        parser_.feed(socket_->read(std::min(pieceSize, socket_->bytesAvailable())));
        if (parser_.result()) {
            settle(*parser_.result());
        }
    }
}

void HttpExchange::ended(QAbstractSocket::SocketError error)
{
    if (result_) {
        return;
    }
    const auto* secure = qobject_cast<QSslSocket*>(socket_);
    if (secure != nullptr && !secure->isEncrypted() && error == QAbstractSocket::SslHandshakeFailedError) {
        fail(HttpFailure::Kind::transport, HttpErrorCodes::ofHandshake(secure->sslHandshakeErrors()));
        return;
    }
    read();
    if (result_) {
        return;
    }
    if (error == QAbstractSocket::RemoteHostClosedError) {
        parser_.close();
        settle(*parser_.result());
    } else {
        fail(HttpFailure::Kind::transport, HttpErrorCodes::ofTalking(error));
    }
}

void HttpExchange::settle(HttpResult result)
{
    if (result_) {
        return;
    }
    result_ = std::move(result);
    timeout_.stop();
    if (dialer_ != nullptr) {
        std::exchange(dialer_, nullptr)->deleteLater();
    }
    if (socket_ != nullptr) {
        socket_->disconnect(this);
        socket_->disconnectFromHost();
        std::exchange(socket_, nullptr)->deleteLater();
    }
    // The waiting coroutine may end with this object, which is inside a signal of its socket or timer now.
    QMetaObject::invokeMethod(this, &HttpExchange::wake, Qt::QueuedConnection);
}

void HttpExchange::fail(HttpFailure::Kind kind, int code)
{
    settle(std::unexpected(HttpFailure{kind, code}));
}

void HttpExchange::wake()
{
    if (const std::coroutine_handle<> waiting = std::exchange(waiting_, nullptr)) {
        waiting.resume();
    }
}

} // namespace roost
