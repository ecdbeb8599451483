#pragma once

#include "model/RoostStoreFile.h"
#include "present/RoostWidgetContent.h"

#include <optional>
#include <string>

/// From the shared file to what a widget shows. Pure; any thread.
namespace roost::RoostTimeline {

/// What to show at `now` of the account that `RoostStoreFile::accountFor` picks for `profileId`. Signed out
/// without a file, without an account and when its sign-in has ended, whatever numbers it still has. The age
/// of the numbers counts from when they were fetched, or were made when that is not known; it is 0 when that
/// lies in the future.
RoostWidgetContent::Any content(const std::optional<RoostStoreFile>& file,
                                const std::optional<std::string>& profileId, Date now);

/// The same for the account that was picked; null for none.
RoostWidgetContent::Any content(const RoostAccountRecord* account, Date now);

} // namespace roost::RoostTimeline
