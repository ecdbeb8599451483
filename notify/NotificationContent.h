#pragma once

#include "model/RoostSnapshot.h"
#include "model/WebURL.h"
#include "notify/RoostEvent.h"
#include "present/RoostFormat.h"

#include <QUrl>

#include <optional>
#include <string>

namespace roost {

/// The words of one notification, as plain text. A plain value.
struct NotificationContent {
    std::string title;
    std::string body;
    /// What a click on it opens.
    std::optional<WebURL> url;

    bool operator==(const NotificationContent&) const = default;

    /// What to say of `event`, which `snapshot` brought, in the language and with the numbers of `format`. An
    /// event without a link of its own links to the snapshot's page in the web app, otherwise to
    /// "roost/overview" under `baseURL`. Any thread.
    static NotificationContent make(const RoostEvent::Any& event, const RoostSnapshot& snapshot,
                                    const RoostFormat& format, const QUrl& baseURL);
};

} // namespace roost
