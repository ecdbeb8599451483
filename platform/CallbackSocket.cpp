#include "platform/CallbackSocket.h"

#include "model/Arrival.h"
#include "model/RoostLog.h"
#include "platform/PeerUser.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>
#include <QTimer>

#include <cstring>
#include <optional>
#include <utility>

namespace roost {

namespace {

constexpr int mostConnections = 8;
constexpr qint64 longestAddress = longestCallback;
constexpr qint64 longestAnswer = 16;
const QByteArray takenAnswer = QByteArrayLiteral("taken\n");
const QByteArray declinedAnswer = QByteArrayLiteral("declined\n");

std::filesystem::path socketIn(const std::filesystem::path& folder) { return folder / "callback"; }

std::optional<sockaddr_un> addressOf(const std::filesystem::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof address.sun_path) {
        return std::nullopt;
    }
    std::memcpy(address.sun_path, path.c_str(), path.native().size());
    return address;
}

/// A listening socket at `path`, for this user alone; -1 when it cannot be made.
int listenAt(const std::filesystem::path& path)
{
    const auto address = addressOf(path);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (!address || descriptor < 0 || (::unlink(path.c_str()) < 0 && errno != ENOENT) ||
        ::bind(descriptor, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) < 0 ||
        ::chmod(path.c_str(), S_IRUSR | S_IWUSR) < 0 || ::listen(descriptor, mostConnections) < 0) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        return -1;
    }
    return descriptor;
}

} // namespace

CallbackSocket::CallbackSocket(std::filesystem::path folder, Take take, std::chrono::milliseconds patience)
    : folder_(std::move(folder)),
      take_(std::move(take)),
      patience_(patience)
{
    server_.setMaxPendingConnections(mostConnections);
    connect(&server_, &QLocalServer::newConnection, this, &CallbackSocket::accept);
}

CallbackSocket::~CallbackSocket()
{
    // The socket goes while the lock is still held, so that nobody else's is removed.
    server_.close();
    if (lock_ >= 0) {
        ::unlink(socketIn(folder_).c_str());
        ::close(lock_);
    }
}

CallbackSocket::Standing CallbackSocket::listen()
{
    const std::filesystem::path lock = folder_ / "callback.lock";
    lock_ = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (lock_ < 0) {
        return Standing::unusable;
    }
    if (::flock(lock_, LOCK_EX | LOCK_NB) < 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        ::close(std::exchange(lock_, -1));
        return isHeld ? Standing::busy : Standing::unusable;
    }
    const int descriptor = listenAt(socketIn(folder_));
    if (descriptor >= 0 && server_.listen(descriptor)) {
        return Standing::listening;
    }
    if (descriptor >= 0) {
        ::unlink(socketIn(folder_).c_str());
        ::close(descriptor);
    }
    // Another process may have more luck.
    ::close(std::exchange(lock_, -1));
    return Standing::unusable;
}

void CallbackSocket::accept()
{
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (!isPeerThisUser(static_cast<int>(socket->socketDescriptor())) ||
            server_.findChildren<QLocalSocket*>().size() > mostConnections) {
            qCWarning(RoostLog::auth, "callback socket: a connection was refused");
            socket->abort();
            socket->deleteLater();
            continue;
        }
        socket->setReadBufferSize(longestAddress + 1);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(socket); });
        QTimer::singleShot(patience_, socket, [socket] { socket->abort(); });
        read(socket);
    }
}

void CallbackSocket::read(QLocalSocket* socket)
{
    if (!socket->canReadLine()) {
        if (socket->bytesAvailable() > longestAddress) {
            qCWarning(RoostLog::auth, "callback socket: an address was too long");
            socket->abort();
        }
        return;
    }
    socket->disconnect(this);
    QByteArray line = socket->readLine();
    line.chop(1);
    socket->write(take_(std::string_view(line.constData(), static_cast<std::size_t>(line.size())))
                      ? takenAnswer
                      : declinedAnswer);
    socket->disconnectFromServer();
}

QCoro::Task<Handover> sendToCallbackSocket(std::filesystem::path folder, std::string address,
                                           std::chrono::milliseconds timeout)
{
    const Arrival<Handover> end;
    QLocalSocket socket;
    socket.setReadBufferSize(longestAnswer);
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [end] { end.set(Handover::declined); });
    QObject::connect(&socket, &QLocalSocket::connected, &socket, [&socket, &address, end] {
        // The folder is ours, but the word of a folder is not enough to give a secret away.
        if (!isPeerThisUser(static_cast<int>(socket.socketDescriptor()))) {
            end.set(Handover::declined);
            return;
        }
        socket.write(QByteArray::fromStdString(address) + '\n');
    });
    const auto readAnswer = [&socket, end] {
        if (socket.canReadLine() || socket.bytesAvailable() >= longestAnswer) {
            end.set(socket.readLine() == takenAnswer ? Handover::taken : Handover::declined);
        }
    };
    QObject::connect(&socket, &QLocalSocket::readyRead, &socket, readAnswer);
    QObject::connect(&socket, &QLocalSocket::errorOccurred, &socket,
                     [end, readAnswer](QLocalSocket::LocalSocketError error) {
                         readAnswer();
                         end.set(error == QLocalSocket::PeerClosedError ? Handover::declined
                                                                        : Handover::nobody);
                     });
    timer.start(timeout);
    socket.connectToServer(QFile::decodeName(socketIn(folder).c_str()));
    const auto coming = end.coming();
    const Handover handover = co_await coming;
    socket.disconnect();
    co_return handover;
}

} // namespace roost
