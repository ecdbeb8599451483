#include "programs/brisken-roost/StatusReport.h"

#include "tests/programs/brisken-roost/Records.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::noon;
using test::recordOf;
using test::signedOut;
using State = StatusReport::State;

StatusReport reportOn(std::vector<RoostAccountRecord> accounts, std::optional<std::string> profile = {})
{
    return statusReport(fileOf(std::move(accounts)), profile, noon);
}

TEST(StatusReport, OfNoFileIsEmpty)
{
    const StatusReport report = statusReport(std::nullopt, std::nullopt, noon);
    EXPECT_EQ(report.state, State::empty);
    EXPECT_EQ(report.exitCode(), ExitCode::nothingToShow);
}

TEST(StatusReport, IsFreshUpToThreeIntervalsAndStaleBeyond)
{
    EXPECT_EQ(reportOn({recordOf("a", 1, 900s)}).exitCode(), ExitCode::fine);
    EXPECT_EQ(reportOn({recordOf("a", 1, 901s)}).exitCode(), ExitCode::stale);
}

TEST(StatusReport, CountsTheAgeFromTheSnapshotWhereNoFetchIsKnown)
{
    RoostAccountRecord record = recordOf("a", 1, 0s);
    record.fetchedAt.reset();
    record.snapshot->generatedAt = noon - 20min;
    EXPECT_EQ(reportOn({record}).accounts.at(0).ageSeconds, 1200);
    EXPECT_EQ(reportOn({record}).state, State::stale);
}

TEST(StatusReport, TakesATimeInTheFutureForNow)
{
    EXPECT_EQ(reportOn({recordOf("a", 1, -3600s)}).accounts.at(0).ageSeconds, 0);
    EXPECT_EQ(reportOn({recordOf("a", 1, -3600s)}).state, State::fresh);
}

TEST(StatusReport, KeepsTheLastNumbersOfASignedOutProfile)
{
    const StatusReport report = reportOn({signedOut(recordOf("a", 7, 0s))});
    EXPECT_EQ(report.state, State::signedOut);
    EXPECT_EQ(report.exitCode(), ExitCode::nothingToShow);
    EXPECT_EQ(report.accounts.at(0).viewsTotal, 7);
}

TEST(StatusReport, WaitsForTheFirstNumbers)
{
    EXPECT_EQ(reportOn({{"a", "A"}}).state, State::waiting);
    EXPECT_EQ(reportOn({{"a", "A"}}).exitCode(), ExitCode::nothingToShow);
}

TEST(StatusReport, CountsTheBestStateOfSeveralProfiles)
{
    const RoostAccountRecord fresh = recordOf("fresh", 1, 0s);
    const RoostAccountRecord stale = recordOf("stale", 1, 1h);
    const RoostAccountRecord gone = signedOut(recordOf("gone", 1, 0s));
    EXPECT_EQ(reportOn({gone, stale, fresh}).exitCode(), ExitCode::fine);
    EXPECT_EQ(reportOn({gone, stale}).exitCode(), ExitCode::stale);
    EXPECT_EQ(reportOn({gone, {"new", "New"}}).state, State::waiting);
}

TEST(StatusReport, OfOneProfileLooksAtNoOther)
{
    const std::vector<RoostAccountRecord> accounts{recordOf("a", 1, 0s), recordOf("b", 2, 1h)};
    EXPECT_EQ(reportOn(accounts, "b").exitCode(), ExitCode::stale);
    EXPECT_EQ(reportOn(accounts, "b").accounts.size(), 1);
    EXPECT_EQ(reportOn(accounts, "c").state, State::empty);
}

TEST(StatusReport, TakesEveryNumberFromTheSnapshot)
{
    RoostAccountRecord record = recordOf("a", 48213, 30s);
    record.snapshot->views.previous = 43000;
    record.snapshot->posts = {4, 12, 1, {}};
    record.snapshot->followers = RoostSnapshot::Followers{1310, {}, {}};
    record.snapshot->best = RoostSnapshot::BestPost{"instagram", "Instagram", 9200, "Hi", {}};
    const StatusReport report = reportOn({record});
    const StatusReport::Entry& entry = report.accounts.at(0);
    EXPECT_EQ(entry.profileName, "Profile a");
    EXPECT_EQ(entry.viewsTotal, 48213);
    EXPECT_EQ(entry.viewsPrevious, 43000);
    EXPECT_EQ(entry.followersTotal, 1310);
    EXPECT_EQ(entry.scheduled, 12);
    EXPECT_EQ(entry.failed, 1);
    EXPECT_EQ(entry.best->views, 9200);
    EXPECT_EQ(entry.ageSeconds, 30);
    EXPECT_EQ(entry.lastAttemptAt, noon - 30s);
}

} // namespace
} // namespace roost
