#pragma once

#include "model/WebURL.h"
#include "service/RoostAuthError.h"

#include <QUrl>

#include <expected>
#include <string_view>

/// Which addresses may be told secrets. Pure functions.
namespace roost {

/// The address in `text` when it is https, or http with "localhost", "127.0.0.1" or "[::1]" written for the
/// host, in any case; otherwise `insecureEndpoint` with the text as given.
std::expected<WebURL, RoostAuthError> secureURL(std::string_view text);

/// Whether scheme, host and port are the same. A port that is written differs from one that is left out, also
/// when it is the scheme's own.
bool sameOrigin(const QUrl& a, const QUrl& b);

} // namespace roost
