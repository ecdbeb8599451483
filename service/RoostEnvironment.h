#pragma once

#include "model/InfoDictionary.h"

#include <QUrl>

namespace roost::RoostEnvironment {

/// The origin of the service, without a path, unless the build says otherwise.
QUrl productionBase();

/// "RoostBaseURL" of `info` when it is a valid URL and no unfilled build variable; otherwise
/// `productionBase`.
QUrl baseURL(const InfoDictionary& info);

} // namespace roost::RoostEnvironment
