#include "present/RoostTimeline.h"

#include <algorithm>

namespace roost::RoostTimeline {

RoostWidgetContent::Any content(const std::optional<RoostStoreFile>& file,
                                const std::optional<std::string>& profileId, Date now)
{
    return content(file ? file->accountFor(profileId) : nullptr, now);
}

RoostWidgetContent::Any content(const RoostAccountRecord* account, Date now)
{
    if (account == nullptr || account->status != RoostAccountRecord::Status::ok) {
        return RoostWidgetContent::SignedOut{};
    }
    if (!account->snapshot) {
        return RoostWidgetContent::Waiting{};
    }
    const Date since = account->fetchedAt.value_or(account->snapshot->generatedAt);
    return RoostWidgetContent::Ready{*account->snapshot, {std::max(now - since, Date::duration::zero())}};
}

} // namespace roost::RoostTimeline
