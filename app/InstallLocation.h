#pragma once

#include <string_view>

namespace roost {

/// Where a copy of the app lies, by the folders of the desktop that it is named after.
enum class InstallLocation {
    /// Among the applications of the machine or of one user.
    applications,
    /// On a mounted volume.
    diskImage,
    /// Where the system runs what was just downloaded.
    translocated,
    elsewhere,
};

/// The place of `bundlePath`, an absolute path; a plain comparison of texts. A path of another kind of
/// system, as of this one, is `elsewhere`.
InstallLocation classifyInstallLocation(std::string_view bundlePath);

} // namespace roost
