#include "model/Settings.h"

namespace roost {

namespace {

std::optional<bool> booleanIn(const std::optional<std::string>& text)
{
    if (text == "true" || text == "1") {
        return true;
    }
    if (text == "false" || text == "0") {
        return false;
    }
    return std::nullopt;
}

} // namespace

void Settings::registerDefaults(std::span<const Default> defaults)
{
    for (const Default& each : defaults) {
        defaults_.insert_or_assign(std::string{each.key}, each.value);
    }
}

bool Settings::boolean(std::string_view key) const
{
    if (const std::optional<bool> chosen = booleanIn(stored(key))) {
        return *chosen;
    }
    const auto found = defaults_.find(key);
    return found != defaults_.end() && found->second;
}

void Settings::setBoolean(std::string_view key, bool value) { store(key, value ? "true" : "false"); }

std::optional<std::string> Settings::text(std::string_view key) const { return stored(key); }

void Settings::setText(std::string_view key, const std::optional<std::string>& text) { store(key, text); }

} // namespace roost
