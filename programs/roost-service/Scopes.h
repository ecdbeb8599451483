#pragma once

#include <QByteArray>

#include <array>
#include <optional>
#include <set>

namespace roost::local {

/// What an access token may be good for. Each stands at most once.
using Scopes = std::set<QByteArray>;

inline constexpr std::array<const char*, 3> supportedScopes{"metrics:read", "posts:read", "channels:read"};

/// All that the service knows.
Scopes allScopes();

/// The scopes that `text` names, separated by blanks (RFC 6749 §3.3). Nothing when it names none, or one that
/// the service does not know.
std::optional<Scopes> scopesIn(const QByteArray& text);

/// The inverse of `scopesIn`.
QByteArray textOf(const Scopes& scopes);

/// Whether everything in `part` is in `whole`.
bool isWithin(const Scopes& part, const Scopes& whole);

} // namespace roost::local
