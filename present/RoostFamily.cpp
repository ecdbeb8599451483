#include "present/RoostFamily.h"

#include <algorithm>

namespace roost {

namespace {

constexpr std::array<std::string_view, allFamilies.size()> names{"small", "medium", "large", "extraLarge"};

} // namespace

std::string_view rawText(RoostFamily family) { return names.at(static_cast<std::size_t>(family)); }

std::optional<RoostFamily> widgetFamily(std::string_view rawText)
{
    const auto found = std::ranges::find(names, rawText);
    return found == names.end() ? std::nullopt
                                : std::optional{static_cast<RoostFamily>(found - names.begin())};
}

int detailSize(RoostFamily family)
{
    switch (family) {
    case RoostFamily::small:
        return 11;
    case RoostFamily::medium:
        return 12;
    case RoostFamily::large:
    case RoostFamily::extraLarge:
        break;
    }
    return 13;
}

} // namespace roost
