#pragma once

#include "model/WebURL.h"

#include <optional>

namespace roost {

/// The page of the web app that a profile's numbers lead to: the one that the service named, otherwise
/// "roost/overview" below `baseURL`. Nothing when that is no web address.
std::optional<WebURL> overviewPage(const std::optional<WebURL>& named, const QUrl& baseURL);

} // namespace roost
