#pragma once

#include "present/RoostFormat.h"
#include "present/RoostWidgetContent.h"

#include <QUrl>

#include <cstdint>

namespace roost {

/// All that a surface needs to show numbers: a widget, its preview, a card. A plain value; equality is
/// member-wise.
struct RoostWidgetModel {
    using Content = RoostWidgetContent::Any;

    Content content;
    /// The instant that it is drawn for: ages and days count from it.
    Date now;
    /// How many daily bars a chart has at most.
    std::int64_t days = 7;
    RoostFormat format;
    /// The web app, for links that open it.
    QUrl baseURL;
    /// Whether buttons and links act; not in previews.
    bool interactive = false;

    bool operator==(const RoostWidgetModel&) const = default;
};

} // namespace roost
