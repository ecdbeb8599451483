#pragma once

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// Proof Key for Code Exchange, RFC 7636, method S256. Pure but for the random source.
namespace roost::PKCE {

/// That many random bytes.
using RandomBytes = std::function<QByteArray(std::size_t count)>;

/// Bytes from the system's cryptographic source. Ends the program when that fails: there is no safe
/// alternative.
QByteArray systemRandom(std::size_t count);

/// base64url without padding, RFC 4648 §5.
std::string base64URL(const QByteArray& bytes);

/// The challenge of a verifier, RFC 7636 §4.2.
std::string challenge(std::string_view verifier);

} // namespace roost::PKCE
