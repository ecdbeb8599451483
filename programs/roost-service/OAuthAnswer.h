#pragma once

#include "programs/roost-service/HttpValues.h"

namespace roost::local {

/// An answer that no cache keeps, RFC 6749 §5.1.
Answer oauthAnswer(const QJsonObject& body, int status = 200);

/// An error in the form of RFC 6749 §5.2. `description` is one sentence for developers, printable ASCII
/// without quotation marks.
Answer oauthError(const char* error, const QString& description, int status = 400);

/// 405, with the method that is allowed.
Answer onlyMethod(const char* method);

} // namespace roost::local
