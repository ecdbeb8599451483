#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace roost::local {

using HttpHeaders = std::vector<std::pair<QByteArray, QByteArray>>;

/// One request as it came in. A plain value.
struct Request {
    QByteArray method;
    /// What stands before and after the first "?" of the request line, byte for byte.
    QByteArray path;
    QByteArray query;
    HttpHeaders headers;
    QByteArray body;

    /// The values of all headers of that name, in any case, in the order received.
    std::vector<QByteArray> headerValues(QByteArrayView name) const;

    /// The value of the only header of that name; nothing when there is none or more than one.
    std::optional<QByteArray> header(QByteArrayView name) const;
};

/// Whether the body is said to be of that media type, whatever its parameters. `type` in lower case.
bool isContentType(const Request& request, QByteArrayView type);

/// One answer before it is sent. "Content-Length" and "Connection" are added when it is.
struct Answer {
    int status = 200;
    HttpHeaders headers;
    QByteArray body;
};

Answer jsonAnswer(const QJsonObject& body, int status = 200);
Answer textAnswer(const QByteArray& body, const QByteArray& contentType, int status = 200);

/// Head and body as they go over the wire, RFC 9112 §4, ended by closing the connection.
QByteArray headOf(const Answer& answer);

/// How an answer reaches the client.
struct Delivery {
    enum class Ending {
        /// All of it is sent, then the connection is closed.
        whole,
        /// The connection is closed without a byte.
        drop,
        /// The connection is reset without a byte.
        reset,
        /// Nothing is sent and the connection stays open until the client closes it.
        hang,
    };

    Ending ending = Ending::whole;
    /// Waited before the request is carried out, and again before the first byte of the answer.
    std::chrono::milliseconds before{0};
    std::chrono::milliseconds after{0};
    /// The body, and with `dripHead` the head too, in pieces of so many bytes with `dripPause` between; 0: in
    /// one.
    qsizetype dripBytes = 0;
    std::chrono::milliseconds dripPause{0};
    bool dripHead = false;
    /// How much of the body is sent before the connection is closed, whatever Content-Length promised.
    std::optional<qsizetype> bodyCutAt;
    /// Sent as it stands in place of head and body.
    std::optional<QByteArray> verbatim;
};

/// What a request leads to.
struct Reply {
    /// Carries the request out; called at most once, after `Delivery::before`. May be empty where the
    /// delivery sends no answer or a verbatim one.
    std::function<Answer()> carryOut;
    Delivery delivery;
    /// Kept until the answer was handed to the system or the connection ended.
    std::shared_ptr<void> whileInFlight;
};

} // namespace roost::local
