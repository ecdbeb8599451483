#pragma once

#include "model/WidgetStore.h"

#include <QCoro/QCoroTask>
#include <QString>

#include <chrono>

/// What a refresh button does that stands outside the app.
namespace roost::RefreshRoostIntent {

/// Asks the running app for fresh numbers: by a note in the folder of `store`, which an app that starts later
/// finds as well, and by a word on the session bus at `busAddresses` (as `sessionBusAddresses` gives them),
/// which has the time `timeout` for each step. Whether the note could be written. Main thread.
QCoro::Task<bool> perform(WidgetStore store, Date now, QString busAddresses,
                          std::chrono::milliseconds timeout);

} // namespace roost::RefreshRoostIntent
