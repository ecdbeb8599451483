#pragma once

#include "model/RoostStoreFile.h"
#include "present/RoostDelta.h"
#include "programs/common/ExitCode.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// Numbers older than this, three refresh intervals, are stale.
inline constexpr std::chrono::seconds staleAfter{900};

/// What there is to say about the profiles in the shared file at one instant. A plain value.
struct StatusReport {
    /// From the best to the worst; a report's own state is the best of its entries'.
    enum class State { fresh, stale, waiting, signedOut, empty };

    struct Best {
        std::string label;
        std::string text;
        std::optional<WebURL> url;
        std::int64_t views = 0;
    };

    /// The scheduled post that goes out first.
    struct Next {
        Date at;
        std::string text;
    };

    struct Entry {
        std::string profileId;
        std::string profileName;
        State state = State::waiting;
        /// Of the last numbers; absent without any.
        std::optional<std::int64_t> ageSeconds;
        std::optional<std::int64_t> viewsTotal;
        std::optional<std::int64_t> viewsPrevious;
        std::optional<std::int64_t> followersTotal;
        std::optional<std::int64_t> scheduled;
        std::optional<std::int64_t> failed;
        std::optional<Best> best;
        std::optional<Next> next;
        std::optional<RoostDelta> viewsDelta;
        std::optional<RoostDelta> followersDelta;
        std::optional<Date> fetchedAt;
        std::optional<Date> lastAttemptAt;
    };

    State state = State::empty;
    /// The instant that ages and days count from.
    Date at;
    std::vector<Entry> accounts;

    ExitCode exitCode() const;
};

/// The report on `file` (nothing: it could not be read) at `now`: on the profile with that id alone, or on
/// all.
StatusReport statusReport(const std::optional<RoostStoreFile>& file,
                          const std::optional<std::string>& profileId, Date now);

} // namespace roost
