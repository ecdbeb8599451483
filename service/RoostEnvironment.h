#pragma once

#include "model/InfoDictionary.h"

#include <QUrl>

namespace roost::RoostEnvironment {

/// The origin of the service, without a path, unless the build says otherwise.
QUrl productionBase();

/// "RoostBaseURL" of `info` when it is a valid URL and no unfilled build variable; otherwise
/// `productionBase`.
QUrl baseURL(const InfoDictionary& info);

/// `base` with the path component `path` ("api/x", no leading slash) appended, one slash between, the rest of
/// the base kept byte for byte and its query and fragment dropped.
QUrl appendingPath(const QUrl& base, QStringView path);

} // namespace roost::RoostEnvironment
