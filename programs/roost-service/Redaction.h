#pragma once

#include "programs/roost-service/HttpValues.h"

#include <QByteArray>
#include <QJsonObject>

namespace roost::local {

/// `query`, or a form body, byte for byte but for the values of fields that are secret, which become "…".
QByteArray withoutSecrets(const QByteArray& query);

/// What may be told of a request: its method, its query, its headers, and its body where that is a form or
/// JSON, all without secrets.
QJsonObject describe(const Request& request);

} // namespace roost::local
