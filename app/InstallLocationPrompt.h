#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace roost {

/// What is asked of the user when the app runs from a place where it cannot stay: a question with two
/// answers. UTF-8.
struct InstallLocationPrompt {
    std::string message;
    std::string information;
    /// The first button opens the folder of applications, the second does nothing.
    std::string showApplications;
    std::string notNow;

    static constexpr std::string_view applicationsFolder = "/Applications";

    /// The prompt for an app at `bundlePath` in the language of `locale`; nothing where the app may stay, as
    /// everywhere on this system.
    static std::optional<InstallLocationPrompt> ifNeeded(std::string_view bundlePath,
                                                         std::string_view locale);

    bool operator==(const InstallLocationPrompt&) const = default;
};

} // namespace roost
