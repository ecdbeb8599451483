#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace roost {

/// What a widget shows.
enum class RoostWidgetKind { views, networks, queue, dashboard, followers };

inline constexpr std::array allWidgetKinds{RoostWidgetKind::views, RoostWidgetKind::networks,
                                           RoostWidgetKind::queue, RoostWidgetKind::dashboard,
                                           RoostWidgetKind::followers};

/// The name of the kind in settings and addresses: "views".
std::string_view rawText(RoostWidgetKind kind);

/// The kind of that name, letter by letter; nothing for any other text.
std::optional<RoostWidgetKind> widgetKind(std::string_view rawText);

} // namespace roost
