#include "tests/programs/roost-service/RawClient.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace roost::local::test {

int RawAnswer::status() const { return bytes.startsWith("HTTP/1.1 ") ? bytes.mid(9, 3).toInt() : 0; }

std::optional<QByteArray> RawAnswer::header(QByteArrayView name) const
{
    for (const QByteArray& line : bytes.left(bytes.indexOf("\r\n\r\n")).split('\n')) {
        if (line.left(line.indexOf(':')).compare(name, Qt::CaseInsensitive) == 0) {
            return line.mid(line.indexOf(':') + 1).trimmed();
        }
    }
    return std::nullopt;
}

QByteArray RawAnswer::body() const
{
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    return end < 0 ? QByteArray() : bytes.mid(end + 4);
}

RawClient::RawClient(quint16 port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // The kernel completes the connection before the server accepts it.
    if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ADD_FAILURE() << "nobody listens on " << port;
        isEnded_ = true;
        return;
    }
    readable_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { receive(); });
}

RawClient::~RawClient()
{
    readable_.reset();
    ::close(socket_);
}

void RawClient::send(const QByteArray& bytes) const
{
    EXPECT_EQ(::send(socket_, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL),
              bytes.size());
}

void RawClient::receive()
{
    std::array<char, 64 * 1024> buffer{};
    const ssize_t count = ::recv(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count > 0) {
        answer_.bytes.append(buffer.data(), count);
        return;
    }
    answer_.wasReset = count < 0 && errno == ECONNRESET;
    isEnded_ = true;
    readable_->setEnabled(false);
}

RawAnswer RawClient::answer()
{
    EXPECT_TRUE(roost::test::runUntil([this] { return isEnded_; }));
    return answer_;
}

QByteArray requestText(const QByteArray& method, const QByteArray& target, const QByteArray& lines,
                       const QByteArray& body)
{
    const QByteArray length =
        body.isEmpty() ? QByteArray() : "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    return method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + lines + length + "\r\n" + body;
}

RawAnswer ask(const QByteArray& origin, const QByteArray& method, const QByteArray& target,
              const QByteArray& lines, const QByteArray& body)
{
    RawClient client(portOf(origin));
    client.send(requestText(method, target, lines, body));
    return client.answer();
}

quint16 portOf(const QByteArray& origin) { return origin.mid(origin.lastIndexOf(':') + 1).toUShort(); }

} // namespace roost::local::test
