#include "programs/brisken-roost/SelectCommand.h"

#include "app/AppSettings.h"
#include "programs/brisken-roost/TerminalText.h"

namespace roost {

CommandResult noSuchProfile(const std::string& profileId)
{
    return failed(ExitCode::nothingToShow, "There is no profile \"" + onOneLine(profileId) + "\" here.");
}

CommandResult runSelect(const std::string& profileId, const AccountFile& file, Settings& settings)
{
    if (!file.record(profileId)) {
        return noSuchProfile(profileId);
    }
    settings.setText(AppSettings::selectedProfileId, profileId);
    return {};
}

} // namespace roost
