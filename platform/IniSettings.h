#pragma once

#include "model/Settings.h"

#include <QSettings>

#include <filesystem>

namespace roost {

/// The settings in an ini file, section "General". Every call looks at the file, so that several processes of
/// the user agree; one that writes keeps what others wrote. Main thread.
class IniSettings final : public Settings {
public:
    /// `file` and its folder are made when something is stored.
    explicit IniSettings(const std::filesystem::path& file);

    /// "world.brisken.roost.mac/settings.ini" in $XDG_CONFIG_HOME, by default in ~/.config.
    static std::filesystem::path location();

private:
    std::optional<std::string> stored(std::string_view key) const override;
    void store(std::string_view key, const std::optional<std::string>& text) override;

    /// QSettings looks at the file when it is asked to, which changes the object.
    mutable QSettings settings_;
};

} // namespace roost
