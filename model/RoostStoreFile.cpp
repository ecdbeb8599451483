#include "model/RoostStoreFile.h"

#include <algorithm>

namespace roost {

const RoostAccountRecord* RoostStoreFile::accountFor(const std::optional<std::string>& profileId) const
{
    const auto pointer = [this](auto found) { return found == accounts.end() ? nullptr : &*found; };
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
