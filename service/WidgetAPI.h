#pragma once

#include "model/RoostSnapshot.h"
#include "service/HttpSession.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QUrl>

#include <optional>
#include <stop_token>
#include <variant>

namespace roost {

/// The one client of the service's data endpoint: fetches a profile's snapshot and classifies every possible
/// answer. Knows nothing of token lifetimes, profiles or storage; never retries. An immutable value on a
/// session that must outlive its tasks; main thread; several fetches may run at once.
class WidgetAPI {
public:
    /// Status 200 with a body that decoded.
    struct Snapshot {
        RoostSnapshot snapshot;
        bool operator==(const Snapshot&) const = default;
    };
    /// The service is busy or failing: status 429 or 5xx. `retryAfter` in seconds as sent: unclamped,
    /// possibly negative or not finite.
    struct Unavailable {
        std::optional<double> retryAfter;
        bool operator==(const Unavailable&) const = default;
    };
    /// Status 401: the access token was not accepted.
    struct Unauthorized {
        bool operator==(const Unauthorized&) const = default;
    };
    /// Status 403: the token is valid but may not read this profile.
    struct Forbidden {
        bool operator==(const Forbidden&) const = default;
    };
    /// The request failed in transport, or was stopped.
    struct Unreachable {
        bool operator==(const Unreachable&) const = default;
    };
    /// Anything else: no HTTP, an unexpected status, a body of status 200 that is too large or does not
    /// decode.
    struct Malformed {
        bool operator==(const Malformed&) const = default;
    };

    using Result = std::variant<Snapshot, Unavailable, Unauthorized, Forbidden, Unreachable, Malformed>;

    /// The most that is taken of a snapshot, in bytes after decompression.
    static constexpr qint64 bodyLimit = 4 * 1024 * 1024;

    WidgetAPI(QUrl baseURL, HttpSession& session);

    /// The snapshot that `accessToken` may read, within 30 seconds. A stop comes back as `Unreachable`.
    QCoro::Task<Result> fetch(QString accessToken, std::stop_token stop) const;

private:
    QUrl baseURL_;
    HttpSession* session_;
};

/// The text of a "Retry-After" header as a number of seconds, by the rules of `strtod` in the C locale over
/// the whole text: hexadecimal, infinite and not-a-number texts are read, outer blanks and dates are not.
std::optional<double> parseRetryAfter(QByteArrayView text);

} // namespace roost
