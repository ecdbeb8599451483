#include "programs/brisken-roost/OpenCallbackCommand.h"

#include "model/RoostLog.h"
#include "platform/CallbackReceiver.h"

namespace roost {

QCoro::Task<CommandResult> runOpenCallback(OpenCallbackCommand command, QProcessEnvironment environment,
                                           std::chrono::milliseconds timeout)
{
    auto handing = handOverCallback(environment, command.address, timeout);
    switch (co_await handing) {
    case Handover::taken:
        break;
    case Handover::declined:
        qCWarning(RoostLog::auth, "callback not delivered: the sign-in that it belongs to is over");
        break;
    case Handover::nobody:
    case Handover::noWay:
        qCWarning(RoostLog::auth, "callback not delivered: no sign-in is waiting");
        break;
    }
    co_return CommandResult{};
}

} // namespace roost
