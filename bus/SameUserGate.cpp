#include "bus/SameUserGate.h"

#include "bus/BusCall.h"
#include "bus/RoostBus.h"

#include <unistd.h>

namespace roost {

namespace {

constexpr std::chrono::seconds patience{5};
/// Callers that left are not struck off one by one: when there are so many, all are asked about again.
constexpr std::size_t mostKnown = 256;

} // namespace

SameUserGate::SameUserGate(QDBusConnection connection, Pass pass)
    : connection_(std::move(connection)),
      pass_(std::move(pass))
{
}

void SameUserGate::take(const QDBusMessage& call)
{
    if (!isOpen_) {
        return;
    }
    const QString caller = call.service();
    if (known_.contains(caller)) {
        pass_(call);
        return;
    }
    if (waitingCount_ >= mostWaiting) {
        answerOnBus(connection_, call,
                    call.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many calls.")));
        return;
    }
    std::vector<QDBusMessage>& calls = waiting_[caller];
    calls.push_back(call);
    ++waitingCount_;
    if (calls.size() == 1) {
        identify(shared_from_this(), caller);
    }
}

QCoro::Task<void> SameUserGate::identify(std::shared_ptr<SameUserGate> self, QString caller)
{
    auto asking =
        callBusDaemon(self->connection_, QStringLiteral("GetConnectionUnixUser"), {caller}, patience);
    const QDBusMessage user = co_await asking;
    const std::vector<QDBusMessage> calls = self->waiting_.extract(caller).mapped();
    self->waitingCount_ -= calls.size();
    const bool isOurs = user.type() == QDBusMessage::ReplyMessage && user.signature() == QLatin1String("u") &&
                        user.arguments().at(0).toUInt() == ::geteuid();
    if (isOurs) {
        if (self->known_.size() >= mostKnown) {
            self->known_.clear();
        }
        self->known_.insert(caller);
    }
    for (const QDBusMessage& call : calls) {
        // Whoever gets a call may close the gate.
        if (!self->isOpen_) {
            co_return;
        }
        if (isOurs) {
            self->pass_(call);
        } else {
            answerOnBus(
                self->connection_, call,
                call.createErrorReply(RoostBus::notAllowed, QStringLiteral("This belongs to another user.")));
        }
    }
}

} // namespace roost
