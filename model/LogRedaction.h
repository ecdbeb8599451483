#pragma once

#include <QString>

namespace roost::RoostLog {

/// `line` with everything that may be secret replaced by "…" and cut to 1,000 characters: bearer tokens,
/// authorization and cookie headers, queries, fragments and user-info of addresses, the values of token,
/// code, verifier, secret and state fields in forms and JSON. Of a line much longer than that only the front
/// counts. Control characters become blanks, so that nothing can forge a second line. Any thread.
QString redacted(const QString& line);

} // namespace roost::RoostLog
