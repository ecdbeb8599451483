#include "programs/brisken-roost/SelectCommand.h"

#include "app/AppSettings.h"
#include "programs/brisken-roost/AccountServices.h"

namespace roost {

CommandResult runSelect(const std::string& profileId, const AccountFile& file, Settings& settings)
{
    if (!file.record(profileId)) {
        return noSuchProfile(profileId);
    }
    settings.setText(AppSettings::selectedProfileId, profileId);
    return {};
}

} // namespace roost
