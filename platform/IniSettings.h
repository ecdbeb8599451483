#pragma once

#include "model/Settings.h"

#include <QSettings>

#include <filesystem>

namespace roost {

/// The settings in an ini file, section "General". Every call looks at the file, so that several processes of
/// the user agree. The file is replaced whole, under a lock file beside it: one that writes keeps what others
/// wrote, and of a file that is partly broken the lines that can be read. What cannot be written holds in
/// this process, and goes out with the first call that can. Main thread.
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
