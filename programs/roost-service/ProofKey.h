#pragma once

#include <QByteArray>

namespace roost::local {

/// Proof keys for code exchange, RFC 7636, of which the service knows the method "S256" alone.

/// §4.1: 43 to 128 of the characters that need no encoding.
bool isVerifier(const QByteArray& text);

/// Whether `text` can be a SHA-256 in base64url without padding.
bool isChallenge(const QByteArray& text);

/// §4.2 for "S256".
QByteArray challengeOf(const QByteArray& verifier);

} // namespace roost::local
