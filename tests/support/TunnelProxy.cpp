#include "tests/support/TunnelProxy.h"

#include <QTcpSocket>

#include <stdexcept>

namespace roost::test {

namespace {

void forward(QTcpSocket* from, QTcpSocket* to)
{
    QObject::connect(from, &QTcpSocket::readyRead, to, [from, to] { to->write(from->readAll()); });
    QObject::connect(from, &QTcpSocket::disconnected, to, &QTcpSocket::disconnectFromHost);
}

} // namespace

TunnelProxy::TunnelProxy(quint16 destination) : destination_(destination)
{
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { accept(); });
    if (!server_.listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("the proxy did not start");
    }
}

void TunnelProxy::accept()
{
    QTcpSocket* client = server_.nextPendingConnection();
    QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    QObject::connect(client, &QTcpSocket::readyRead, &server_, [this, client] {
        if (client->peek(client->bytesAvailable()).contains("\r\n\r\n")) {
            connectThrough(client);
        }
    });
}

void TunnelProxy::connectThrough(QTcpSocket* client)
{
    requests_.append(client->readAll());
    client->disconnect(&server_);
    auto* onward = new QTcpSocket(client);
    QObject::connect(onward, &QTcpSocket::connected, client, [client, onward] {
        client->write("HTTP/1.1 200 Connection established\r\n\r\n");
        forward(client, onward);
        forward(onward, client);
    });
    onward->connectToHost(QHostAddress(QHostAddress::LocalHost), destination_);
}

} // namespace roost::test
