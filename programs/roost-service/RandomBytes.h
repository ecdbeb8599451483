#pragma once

#include <QByteArray>

#include <cstdint>
#include <functional>

namespace roost::local {

/// Gives as many random bytes as it is asked for. Called on the main thread.
using RandomBytes = std::function<QByteArray(int count)>;

/// From the system's cryptographic source.
RandomBytes systemRandomBytes();

/// The same bytes in the same order each time; for tests.
RandomBytes seededRandomBytes(std::uint64_t seed);

/// `count` random bytes as base64url without padding, RFC 4648 §5.
QByteArray randomText(const RandomBytes& random, int count);

} // namespace roost::local
