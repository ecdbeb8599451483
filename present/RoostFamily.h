#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace roost {

/// How large a widget is.
enum class RoostFamily { small, medium, large, extraLarge };

inline constexpr std::array allFamilies{RoostFamily::small, RoostFamily::medium, RoostFamily::large,
                                        RoostFamily::extraLarge};

/// The name of the family in settings and addresses: "extraLarge".
std::string_view rawText(RoostFamily family);

/// The family of that name, letter by letter; nothing for any other text.
std::optional<RoostFamily> widgetFamily(std::string_view rawText);

/// The size of its detail text, in points.
int detailSize(RoostFamily family);

} // namespace roost
