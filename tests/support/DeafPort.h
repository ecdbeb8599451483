#pragma once

#include <QHostAddress>

#include <vector>

namespace roost::test {

/// A port on 127.0.0.2 that neither takes a connection nor refuses it, like a host behind a network that
/// swallows packets.
class DeafPort {
public:
    /// `port` 0 takes any. Throws when there is none.
    explicit DeafPort(quint16 port = 0);
    ~DeafPort();

    DeafPort(const DeafPort&) = delete;
    DeafPort& operator=(const DeafPort&) = delete;

    static QHostAddress address();
    quint16 port() const { return port_; }

private:
    quint16 port_ = 0;
    /// The listening one first, then those that fill its queue.
    std::vector<int> sockets_;
};

} // namespace roost::test
