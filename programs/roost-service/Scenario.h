#pragma once

#include "programs/roost-service/HttpValues.h"

#include <QJsonObject>
#include <QString>

#include <array>
#include <chrono>
#include <expected>
#include <optional>
#include <string_view>

namespace roost::local {

/// A way in which an endpoint misbehaves. A plain value.
struct Scenario {
    enum class Kind {
        /// An answer with `status`, `retryAfter` and `body` in place of the ordinary one.
        status,
        /// 200 with a body that is no JSON, with no body, with `body` as it stands, with `bytes` bytes of
        /// valid JSON.
        malformed,
        empty,
        body,
        huge,
        /// 200 with a body that is gzip of `bytes` blanks.
        gzipBomb,
        /// `status` and a "Location" of `location`.
        redirect,
        /// Bytes that are no HTTP.
        notHttp,
        /// An OAuth error body of `error` with `status`.
        oauthError,
        /// No answer: closed, reset, left open. Before the request is carried out, or after with `processed`.
        drop,
        reset,
        hang,
        /// The ordinary answer, `delay` late: the request is carried out after the delay, or before it with
        /// `processed`.
        delay,
        /// The ordinary answer, its body in pieces of `bytes` bytes, `delay` apart; with `dripHead` its head
        /// too.
        drip,
        dripHead,
        /// The ordinary answer, closed after `bytes` bytes of its body.
        truncated,
        /// The ordinary answer, compressed.
        gzip,
        /// The ordinary answer with `headers` in addition, in place of those of the same name.
        headers,
        /// The ordinary answer as a service gives it whose clock is wrong by `offset`.
        clockOffset,
    };

    Kind kind = Kind::status;
    int status = 503;
    std::optional<QByteArray> retryAfter;
    std::chrono::milliseconds delay{0};
    std::chrono::seconds offset{0};
    qint64 bytes = 0;
    bool processed = false;
    QByteArray body;
    QByteArray location;
    QByteArray error;
    HttpHeaders headers;
    /// How many requests it still applies to; nothing: all.
    std::optional<int> times;
};

/// The texts of the kinds, in their order.
inline constexpr std::array<std::string_view, 19> scenarioKindNames{
    "status",    "malformed",   "empty", "body",    "huge",        "gzip-bomb", "redirect",
    "not-http",  "oauth-error", "drop",  "reset",   "hang",        "delay",     "drip",
    "drip-head", "truncated",   "gzip",  "headers", "clock-offset"};

/// The scenario that a control request describes: "kind", and what the kind needs under "status",
/// "retryAfter", "delayMs", "seconds", "bytes", "processed", "body", "location", "error", "headers", "times".
/// What is left out has a useful value. The error is one sentence.
std::expected<Scenario, QString> scenarioFromJson(const QJsonObject& json);

/// What is told of a scenario in the state: its kind and the times left.
QJsonObject toJson(const Scenario& scenario);

} // namespace roost::local
