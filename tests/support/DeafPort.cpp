#include "tests/support/DeafPort.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <stdexcept>

namespace roost::test {

namespace {

/// Connections that a queue of length 0 may take before the system drops what comes.
constexpr int queued = 4;

const sockaddr* generic(const sockaddr_in& address) { return std::bit_cast<const sockaddr*>(&address); }

} // namespace

DeafPort::DeafPort(quint16 port)
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(address().toIPv4Address());
    name.sin_port = htons(port);
    socklen_t length = sizeof name;
    const int listening = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockets_.push_back(listening);
    if (::bind(listening, generic(name), length) != 0 || ::listen(listening, 0) != 0 ||
        ::getsockname(listening, std::bit_cast<sockaddr*>(&name), &length) != 0) {
        throw std::runtime_error("no deaf port");
    }
    port_ = ntohs(name.sin_port);
    for (int i = 0; i < queued; ++i) {
        const int filler = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockets_.push_back(filler);
        // Comes back at once, connected or not.
        static_cast<void>(::connect(filler, generic(name), length));
    }
}

DeafPort::~DeafPort()
{
    for (const int socket : sockets_) {
        ::close(socket);
    }
}

QHostAddress DeafPort::address() { return QHostAddress(QStringLiteral("127.0.0.2")); }

} // namespace roost::test
