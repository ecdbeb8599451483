#pragma once

#include "tests/support/RunUntil.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSocketNotifier>

#include <memory>
#include <optional>

namespace roost::local::test {

/// What came back over one connection.
struct RawAnswer {
    QByteArray bytes;
    /// Whether the connection was torn down instead of closed.
    bool wasReset = false;

    /// Of the status line; 0 when there is none.
    int status() const;
    /// The value of the first header of that name; nothing when there is none.
    std::optional<QByteArray> header(QByteArrayView name) const;
    QByteArray body() const;
};

/// One connection to 127.0.0.1 on which a test writes what it likes. Served by the event loop of the test.
class RawClient {
public:
    explicit RawClient(quint16 port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    /// `bytes` at once; they must fit into the buffer of the connection.
    void send(const QByteArray& bytes) const;

    /// What has come so far.
    const QByteArray& received() const { return answer_.bytes; }
    bool isEnded() const { return isEnded_; }

    /// Waits until the other side ends the connection, and gives all that came.
    RawAnswer answer();

private:
    void receive();

    int socket_;
    std::unique_ptr<QSocketNotifier> readable_;
    RawAnswer answer_;
    bool isEnded_ = false;
};

/// Sends one request over a connection of its own and waits for its answer. `lines` are header lines, each
/// with its line end; "Host" and, with a body, "Content-Length" are added.
RawAnswer ask(const QByteArray& origin, const QByteArray& method, const QByteArray& target,
              const QByteArray& lines = {}, const QByteArray& body = {});

/// The request that `ask` sends.
QByteArray requestText(const QByteArray& method, const QByteArray& target, const QByteArray& lines = {},
                       const QByteArray& body = {});

/// The port in "http://127.0.0.1:PORT".
quint16 portOf(const QByteArray& origin);

} // namespace roost::local::test
