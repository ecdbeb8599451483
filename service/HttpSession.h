#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QUrl>

#include <chrono>
#include <expected>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace roost {

/// One request. Whoever makes it has percent-encoded the address already; it is sent as it stands.
struct HttpRequest {
    enum class Method { get, post };

    /// Which answers' bodies are waited for. The others are complete with their headers, whatever their
    /// bodies do.
    enum class Bodies { all, onlyOfStatus200 };

    Method method = Method::get;
    /// http or https, with a host. A fragment and user information are not sent.
    QUrl url;
    /// Names are tokens (RFC 9110 §5.6.2), values hold no control characters: a request with others is never
    /// sent and fails as `transport` with code 0. Host, Connection, Content-Length and Accept-Encoding are
    /// the session's.
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    /// Sent with `post` only.
    QByteArray body;
    /// From the call to the last byte of the answer.
    std::chrono::milliseconds timeout{60'000};
    Bodies bodies = Bodies::all;
    /// The most that is taken of an answer's body, in bytes after decompression.
    qint64 bodyLimit = 256 * 1024;
};

struct HttpResponse {
    int status = 0;
    /// As received, in order: names in the case that was received, values without the white space around them
    /// that RFC 9110 §5.5 leaves out.
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    /// Decompressed; empty where the request did not ask for it.
    QByteArray body;

    /// The value of the first header of that name, in any case; nothing when there is none.
    std::optional<QByteArray> header(QByteArrayView name) const;

    bool operator==(const HttpResponse&) const = default;
};

/// Why no whole answer came.
struct HttpFailure {
    enum class Kind {
        /// The caller asked to stop.
        cancelled,
        /// No answer, or one that broke off: network, name, TLS, time-out.
        transport,
        /// An answer whose body is larger than `HttpRequest::bodyLimit`.
        bodyTooLarge,
        /// What came back is not HTTP/1.x, or is broken in itself: a head of more than 64 KiB, a content
        /// coding that nobody asked for or that cannot be undone. Or the address is not http or https.
        notHttp,
    };

    Kind kind = Kind::transport;
    /// The code for log lines: -999 cancelled, -1001 timed out, -1003 host not found, -1004 cannot connect,
    /// -1005 connection lost, -1009 offline, -1103 body over the limit, -1200 to -1206 TLS, 0 anything else.
    int code = 0;

    bool operator==(const HttpFailure&) const = default;
};

using HttpResult = std::expected<HttpResponse, HttpFailure>;

/// The one place that talks HTTP, for every service client of the program. Remembers nothing between
/// requests: no cookies, no credentials, no cache. Follows no redirect: a 3xx is an answer like any other. A
/// request is on the wire at most once. Main thread; outlives every task that it has handed out.
class HttpSession {
public:
    virtual ~HttpSession() = default;

    /// Sends `request`. Never throws; an error status is an answer, not a failure. `stop` ends the request as
    /// `cancelled`, before it is sent too.
    virtual QCoro::Task<HttpResult> send(HttpRequest request, std::stop_token stop) = 0;
};

} // namespace roost
