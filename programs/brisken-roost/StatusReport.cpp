#include "programs/brisken-roost/StatusReport.h"

#include <algorithm>

namespace roost {

namespace {

StatusReport::Entry entryOf(const RoostAccountRecord& record, Date now)
{
    StatusReport::Entry entry;
    entry.profileId = record.profileId;
    entry.profileName = record.profileName;
    entry.fetchedAt = record.fetchedAt;
    entry.lastAttemptAt = record.lastAttemptAt;
    if (record.snapshot) {
        const RoostSnapshot& snapshot = *record.snapshot;
        const auto age = now - record.fetchedAt.value_or(snapshot.generatedAt);
        entry.ageSeconds = std::max<std::int64_t>(0, std::chrono::floor<std::chrono::seconds>(age).count());
        entry.state = age > staleAfter ? StatusReport::State::stale : StatusReport::State::fresh;
        entry.viewsTotal = snapshot.views.total;
        entry.viewsPrevious = snapshot.views.previous;
        entry.scheduled = snapshot.posts.scheduled;
        entry.failed = snapshot.posts.failed;
        entry.viewsDelta = RoostDelta::of(snapshot.views);
        if (const auto next =
                std::ranges::min_element(snapshot.posts.next, {}, &RoostSnapshot::Posts::Next::at);
            next != snapshot.posts.next.end()) {
            entry.next = {next->at, next->text};
        }
        if (snapshot.followers) {
            entry.followersTotal = snapshot.followers->total;
            entry.followersDelta = RoostDelta::of(*snapshot.followers);
        }
        if (snapshot.best) {
            const RoostSnapshot::BestPost& best = *snapshot.best;
            entry.best = {best.label, best.text, best.url, best.views};
        }
    }
    if (record.status == RoostAccountRecord::Status::signedOut) {
        entry.state = StatusReport::State::signedOut;
    }
    return entry;
}

} // namespace

ExitCode StatusReport::exitCode() const
{
    switch (state) {
    case State::fresh:
        return ExitCode::fine;
    case State::stale:
        return ExitCode::stale;
    case State::waiting:
    case State::signedOut:
    case State::empty:
        break;
    }
    return ExitCode::nothingToShow;
}

StatusReport statusReport(const std::optional<RoostStoreFile>& file,
                          const std::optional<std::string>& profileId, Date now)
{
    StatusReport report;
    report.at = now;
    if (!file) {
        return report;
    }
    for (const RoostAccountRecord& record : file->accounts) {
        if (!profileId || record.profileId == *profileId) {
            report.accounts.push_back(entryOf(record, now));
            report.state = std::min(report.state, report.accounts.back().state);
        }
    }
    return report;
}

} // namespace roost
