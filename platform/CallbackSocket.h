#pragma once

#include "bus/Handover.h"

#include <QCoro/QCoroTask>
#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace roost {

/// A Unix socket on which a waiting process takes one address per connection: the address and a line feed
/// come in, "taken" or "declined" and a line feed go out. Talks to processes of this user only, one at a
/// time per folder. Main thread.
class CallbackSocket final : public QObject {
    Q_OBJECT

public:
    /// Whether the address was waited for. Nothing about it is certain but its length.
    using Take = std::function<bool(std::string_view)>;

    enum class Standing {
        listening,
        /// Another process waits already.
        busy,
        /// There is no folder, or the socket cannot be made in it.
        unusable,
    };

    /// `patience` is how long a connection may take to say its address.
    CallbackSocket(std::filesystem::path folder, Take take,
                   std::chrono::milliseconds patience = std::chrono::seconds(5));
    /// Ends listening and removes the socket.
    ~CallbackSocket() override;

    /// Begins to listen; what a dead process has left behind is replaced. Once.
    Standing listen();

private:
    void accept();
    void read(QLocalSocket* socket);

    std::filesystem::path folder_;
    Take take_;
    std::chrono::milliseconds patience_;
    /// Holds the lock that says who may listen.
    int lock_ = -1;
    QLocalServer server_;
};

/// Hands `address` to the process that listens in `folder`, all in all within `timeout`. `nobody` when none
/// does, `declined` when it says so, says nothing, or belongs to another user.
QCoro::Task<Handover> sendToCallbackSocket(std::filesystem::path folder, std::string address,
                                           std::chrono::milliseconds timeout);

} // namespace roost
