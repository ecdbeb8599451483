#pragma once

#include "model/WidgetStore.h"

#include <functional>
#include <optional>

/// How a process without the app's state asks for fresh numbers: a time in the shared folder, and a word to
/// whoever listens. Any process of the user; the times are told by the caller's clock.
namespace roost::RefreshSignal {

/// The name of the cross-process notification.
inline constexpr const char* notification = "world.brisken.roost.refresh-requested";

/// Tells the running app of a request made at that time. May reach nobody.
using Post = std::function<void(Date)>;

/// Writes `now` to "refresh-requested" in the store's folder, making the folder first, and then posts it,
/// also when it could not be written. Whether it could.
bool request(const WidgetStore& store, Date now, const Post& post);

/// When a refresh was last requested; nothing when there is no such file, or when it holds anything but one
/// number, in decimals with or without an exponent, that is a date.
std::optional<Date> lastRequest(const WidgetStore& store);

} // namespace roost::RefreshSignal
