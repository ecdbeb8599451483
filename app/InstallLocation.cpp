#include "app/InstallLocation.h"

namespace roost {

namespace {

bool isAmongApplicationsOfAUser(std::string_view path)
{
    constexpr std::string_view users = "/Users/";
    if (!path.starts_with(users)) {
        return false;
    }
    path.remove_prefix(users.size());
    const auto end = path.find('/');
    return end != std::string_view::npos && end > 0 && path.substr(end).starts_with("/Applications/");
}

} // namespace

InstallLocation classifyInstallLocation(std::string_view bundlePath)
{
    if (bundlePath.contains("/AppTranslocation/")) {
        return InstallLocation::translocated;
    }
    if (bundlePath.starts_with("/Volumes/")) {
        return InstallLocation::diskImage;
    }
    if (bundlePath.starts_with("/Applications/") || isAmongApplicationsOfAUser(bundlePath)) {
        return InstallLocation::applications;
    }
    return InstallLocation::elsewhere;
}

} // namespace roost
