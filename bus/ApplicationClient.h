#pragma once

#include "bus/Handover.h"

#include <QCoro/QCoroTask>
#include <QStringList>

#include <chrono>

namespace roost {

/// Hands `uris` to the process that has the program's name on the bus at `addresses` (as
/// `sessionBusAddresses` gives them). Each step has the time `timeout`; who does not answer in it counts as
/// `declined`. Main thread.
QCoro::Task<Handover> openOnBus(QString addresses, QStringList uris, std::chrono::milliseconds timeout);

/// Has that process come to the front, as a second start of the program does.
QCoro::Task<Handover> activateOnBus(QString addresses, std::chrono::milliseconds timeout);

} // namespace roost
