#pragma once

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace roost {

/// Lets the calls of this user's processes through, those of one caller in their order, and refuses all
/// others with `RoostBus::notAllowed`. The bus is asked once who a caller is; calls wait for that, so many at
/// a time. For one connection. Held by `std::shared_ptr`, and kept alive by its tasks; main thread.
class SameUserGate final : public std::enable_shared_from_this<SameUserGate> {
public:
    /// Further calls of unknown callers are refused at once.
    static constexpr std::size_t mostWaiting = 1000;

    using Pass = std::function<void(const QDBusMessage&)>;

    /// `pass` is called from the event loop, until `close`.
    SameUserGate(QDBusConnection connection, Pass pass);
    SameUserGate(const SameUserGate&) = delete;
    SameUserGate& operator=(const SameUserGate&) = delete;

    void take(const QDBusMessage& call);

    /// Nothing gets through any more, and nothing is answered.
    void close() { isOpen_ = false; }

private:
    static QCoro::Task<void> identify(std::shared_ptr<SameUserGate> self, QString caller);

    QDBusConnection connection_;
    Pass pass_;
    bool isOpen_ = true;
    /// The unique names of callers that are processes of this user; the bus never gives one twice.
    std::set<QString> known_;
    /// Calls of those about whom the bus is being asked.
    std::map<QString, std::vector<QDBusMessage>> waiting_;
    std::size_t waitingCount_ = 0;
};

} // namespace roost
