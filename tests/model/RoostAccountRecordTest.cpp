#include "model/RoostAccountRecord.h"

#include "tests/support/RandomSnapshot.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using namespace std::chrono_literals;
using Status = RoostAccountRecord::Status;

const Date earlier{1'700'000'000'000ms};
const Date now{1'700'000'300'000ms};

RoostSnapshot snapshotOf(const char* id, const char* name, std::int64_t total)
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = earlier - 1s;
    snapshot.profile = {id, name, {}};
    snapshot.views.total = total;
    return snapshot;
}

RoostAccountRecord recordWith(Status status)
{
    return {"prf_1", "Old name", status, snapshotOf("prf_1", "Old name", 5), earlier, earlier + 7s};
}

TEST(Folded, TakesFreshNumbersNameAndTimes)
{
    for (const Status status : {Status::ok, Status::signedOut}) {
        const RoostSnapshot fresh = snapshotOf("prf_1", "New name", 6);
        EXPECT_EQ(folded(recordWith(status), SyncOutcome::Updated{fresh}, now),
                  (RoostAccountRecord{"prf_1", "New name", Status::ok, fresh, now, now}));
    }
}

TEST(Folded, TakesTheFirstNumbersOfARecordThatHasNone)
{
    const RoostSnapshot fresh = snapshotOf("prf_1", "Name", 6);
    EXPECT_EQ(folded({"prf_1", "", Status::ok, {}, {}, {}}, SyncOutcome::Updated{fresh}, now),
              (RoostAccountRecord{"prf_1", "Name", Status::ok, fresh, now, now}));
}

TEST(Folded, MovesOnlyTheLastAttemptAfterAFailure)
{
    for (const SyncReason::Kind kind :
         {SyncReason::Kind::unavailable, SyncReason::Kind::unreachable, SyncReason::Kind::malformed}) {
        for (const Status status : {Status::ok, Status::signedOut}) {
            RoostAccountRecord expected = recordWith(status);
            expected.lastAttemptAt = now;
            EXPECT_EQ(folded(recordWith(status), SyncOutcome::Failed{{kind, {}}}, now), expected);
        }
    }
}

TEST(Folded, KeepsTheLastNumbersOfAProfileThatWasSignedOut)
{
    RoostAccountRecord expected = recordWith(Status::signedOut);
    expected.lastAttemptAt = now;
    EXPECT_EQ(folded(recordWith(Status::ok), SyncOutcome::SignedOut{}, now), expected);
    EXPECT_EQ(folded(recordWith(Status::signedOut), SyncOutcome::SignedOut{}, now), expected);
}

TEST(Folded, NeverChangesTheIdWhateverTheServiceSays)
{
    EXPECT_EQ(
        folded(recordWith(Status::ok), SyncOutcome::Updated{snapshotOf("other", "n", 1)}, now).profileId,
        "prf_1");
}

TEST(Folded, GoesBackInTimeWithTheClock)
{
    const Date past = earlier - 24h;
    const RoostAccountRecord record = folded(recordWith(Status::ok), SyncOutcome::Failed{}, past);
    EXPECT_EQ(record.lastAttemptAt, past);
    EXPECT_EQ(record.fetchedAt, earlier);
}

} // namespace
} // namespace roost
