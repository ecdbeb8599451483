#include "present/RoostWidgetKind.h"

#include <algorithm>

namespace roost {

namespace {

constexpr std::array<std::string_view, allWidgetKinds.size()> names{"views", "networks", "queue", "dashboard",
                                                                    "followers"};

} // namespace

std::string_view rawText(RoostWidgetKind kind) { return names.at(static_cast<std::size_t>(kind)); }

std::optional<RoostWidgetKind> widgetKind(std::string_view rawText)
{
    const auto found = std::ranges::find(names, rawText);
    return found == names.end() ? std::nullopt
                                : std::optional{static_cast<RoostWidgetKind>(found - names.begin())};
}

} // namespace roost
