#include "app/InstallLocationPrompt.h"

#include "app/InstallLocation.h"
#include "present/RoostL10n.h"
#include "present/RoostTexts.h"

namespace roost {

std::optional<InstallLocationPrompt> InstallLocationPrompt::ifNeeded(std::string_view bundlePath,
                                                                     std::string_view locale)
{
    const InstallLocation location = classifyInstallLocation(bundlePath);
    // Elsewhere is where developers build.
    if (location != InstallLocation::diskImage && location != InstallLocation::translocated) {
        return std::nullopt;
    }
    const auto& texts = RoostL10n::bundle(locale);
    return InstallLocationPrompt{
        .message = texts.text(knownText("Move Brisken Roost to Applications first")),
        .information =
            texts.text(knownText("Brisken Roost is not in the Applications folder yet, so it cannot update "
                                 "itself or open at login. Drag it there, eject the disk image if there is "
                                 "one, and open it from there.")),
        .showApplications = texts.text(knownText("Show Applications")),
        .notNow = texts.text(knownText("Not now"))};
}

} // namespace roost
