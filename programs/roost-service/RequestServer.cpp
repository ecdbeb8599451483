#include "programs/roost-service/RequestServer.h"

#include "programs/roost-service/AnswerWriter.h"
#include "programs/roost-service/ConnectionListener.h"

#include <QHostAddress>
#include <QHttpServerRequest>
#include <QTcpSocket>

namespace roost::local {

namespace {

bool namesLoopback(const Request& request)
{
    const std::optional<QByteArray> host = request.header("Host");
    if (!host) {
        return false;
    }
    const QByteArray name = host->split(':').first().toLower();
    return name == "127.0.0.1" || name == "localhost";
}

Answer misdirected()
{
    return textAnswer("This service answers on the loopback address only.\n", "text/plain", 421);
}

} // namespace

RequestServer::RequestServer(Handler handler)
    : handler_(std::move(handler)),
      listener_(new ConnectionListener(this))
{
}

RequestServer::~RequestServer() = default;

std::expected<quint16, QString> RequestServer::listen(quint16 port)
{
    if (!listener_->listen(QHostAddress(QHostAddress::LocalHost), port)) {
        return std::unexpected(
            QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(port).arg(listener_->errorString()));
    }
    bind(listener_);
    return listener_->serverPort();
}

void RequestServer::encrypt(const QSslConfiguration& identity) { listener_->encrypt(identity); }

bool RequestServer::handleRequest(const QHttpServerRequest& received, QTcpSocket* socket)
{
    const RequestLine line = takeRequestLine(*socket);
    if (line.method.isEmpty()) {
        // The second request of a connection whose first one is being answered.
        return true;
    }
    Request request;
    request.method = line.method;
    const qsizetype mark = line.target.indexOf('?');
    request.path = mark < 0 ? line.target : line.target.first(mark);
    request.query = mark < 0 ? QByteArray() : line.target.sliced(mark + 1);
    for (const auto& [name, value] : received.headers()) {
        request.headers.emplace_back(name, value);
    }
    request.body = received.body();

    Reply reply = namesLoopback(request) ? handler_(request) : Reply{misdirected, {}, nullptr};
    // Owned by the connection.
    new AnswerWriter(*socket, std::move(reply));
    return true;
}

void RequestServer::missingHandler(const QHttpServerRequest& /*request*/, QTcpSocket* socket)
{
    socket->disconnectFromHost();
}

} // namespace roost::local
