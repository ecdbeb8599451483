#pragma once

#include "service/HttpSession.h"

#include <QByteArray>

#include <optional>
#include <utility>

/// The grammar of HTTP/1.1 (RFC 9112, RFC 9110), line by line. Pure functions; lines come without their line
/// ends.
namespace roost::HttpSyntax {

/// `text` without the blanks and tabs at both ends; a view into it.
QByteArrayView trimmed(QByteArrayView text);

/// `text` as the value of a field: trimmed, and with a blank for each character that must not stand there
/// (RFC 9110 §5.5).
QByteArray fieldValue(QByteArrayView text);

/// Whether `text` is a token (RFC 9110 §5.6.2).
bool isToken(QByteArrayView text);

/// The status in "HTTP/1.1 200 OK", at least 100.
std::optional<int> parseStatusLine(QByteArrayView line);

/// Name and value of a header line.
std::optional<std::pair<QByteArray, QByteArray>> parseHeaderLine(QByteArrayView line);

/// The size in front of a chunk; its extensions are passed over.
std::optional<qint64> parseChunkSize(QByteArrayView line);

/// The value of "Content-Length": digits alone.
std::optional<qint64> parseLength(QByteArrayView text);

/// How the address stands in the request line (RFC 9112 §3.2): `absolute` for a proxy that forwards.
enum class Target { origin, absolute };

/// `request` as it goes over the wire, on a connection that closes after the answer. `proxyAuthorization` is
/// sent with the absolute target where it is not empty. Nothing when a header of the request cannot be sent.
std::optional<QByteArray> requestBytes(const HttpRequest& request, Target target,
                                       const QByteArray& proxyAuthorization);

} // namespace roost::HttpSyntax
