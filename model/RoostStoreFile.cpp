#include "model/RoostStoreFile.h"

#include <algorithm>

namespace roost {

const RoostAccountRecord* accountFor(const std::vector<RoostAccountRecord>& accounts,
                                     const std::optional<std::string>& profileId)
{
    const auto pointer = [&accounts](auto found) { return found == accounts.end() ? nullptr : &*found; };
    if (profileId) {
        if (const auto* asked =
                pointer(std::ranges::find(accounts, *profileId, &RoostAccountRecord::profileId))) {
            return asked;
        }
    }
    if (const auto* signedIn = pointer(
            std::ranges::find(accounts, RoostAccountRecord::Status::ok, &RoostAccountRecord::status))) {
        return signedIn;
    }
    return pointer(accounts.begin());
}

} // namespace roost
