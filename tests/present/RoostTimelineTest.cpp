#include "present/RoostTimeline.h"

#include "model/RoostJSON.h"
#include "present/SampleData.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Status = RoostAccountRecord::Status;

const Date noon = RoostJSON::parseDate("2025-03-01T12:00:00.000Z").value();

/// An account with numbers that were made two hours ago and fetched one hour ago.
RoostAccountRecord account(const std::string& id)
{
    RoostAccountRecord record;
    record.profileId = id;
    record.profileName = "Name";
    record.snapshot = SampleData::minimal(noon - hours{2});
    record.snapshot->profile.id = id;
    record.fetchedAt = noon - hours{1};
    return record;
}

class RoostTimelineTest : public testing::Test {
protected:
    RoostWidgetContent::Any content(const std::optional<std::string>& profileId = "a") const
    {
        return RoostTimeline::content(file, profileId, noon);
    }

    /// The age of what is shown, which is the numbers of that account.
    std::chrono::duration<double> age() const
    {
        const auto shown = content();
        const auto* ready = std::get_if<RoostWidgetContent::Ready>(&shown);
        if (ready == nullptr || ready->snapshot != first().snapshot) {
            return seconds{-1};
        }
        return ready->freshness.age;
    }

    RoostAccountRecord& first() { return file->accounts.front(); }
    const RoostAccountRecord& first() const { return file->accounts.front(); }

    std::optional<RoostStoreFile> file = RoostStoreFile{1, noon, {account("a"), account("b")}};
    const RoostWidgetContent::Any signedOut = RoostWidgetContent::SignedOut{};
    const RoostWidgetContent::Any waiting = RoostWidgetContent::Waiting{};
};

TEST_F(RoostTimelineTest, IsSignedOutWithoutAFileOrAnAccount)
{
    EXPECT_EQ(RoostTimeline::content(std::nullopt, "a", noon), signedOut);
    EXPECT_EQ(RoostTimeline::content(std::nullopt, std::nullopt, noon), signedOut);
    file->accounts.clear();
    EXPECT_EQ(content(), signedOut);
}

TEST_F(RoostTimelineTest, IsSignedOutWhenTheSignInHasEndedWhateverNumbersAreLeft)
{
    first().status = Status::signedOut;
    ASSERT_TRUE(first().snapshot);
    EXPECT_EQ(content(), signedOut);
    first().snapshot.reset();
    EXPECT_EQ(content(), signedOut);
}

TEST_F(RoostTimelineTest, WaitsForTheFirstNumbers)
{
    first().snapshot.reset();
    EXPECT_EQ(content(), waiting);
}

TEST_F(RoostTimelineTest, ShowsTheNumbersOfTheProfileThatWasAskedFor)
{
    const RoostWidgetContent::Any wanted =
        RoostWidgetContent::Ready{file->accounts.back().snapshot.value(), {seconds{3'600}}};
    EXPECT_EQ(content("b"), wanted);
}

TEST_F(RoostTimelineTest, ShowsTheAccountThatTheFilePicksOtherwise)
{
    first().status = Status::signedOut;
    EXPECT_EQ(content(std::nullopt), content("b"));
    EXPECT_EQ(content("nobody"), content("b"));
    EXPECT_NE(content("nobody"), signedOut);
}

TEST_F(RoostTimelineTest, CountsTheAgeFromWhenTheNumbersWereFetched)
{
    EXPECT_EQ(age(), seconds{3'600});
    first().fetchedAt = noon - milliseconds{1};
    EXPECT_EQ(age(), milliseconds{1});
}

TEST_F(RoostTimelineTest, CountsTheAgeFromWhenTheNumbersWereMadeWhenNobodyKnowsWhenTheyWereFetched)
{
    first().fetchedAt.reset();
    EXPECT_EQ(age(), seconds{7'200});
}

TEST_F(RoostTimelineTest, TakesNumbersFromTheFutureForFresh)
{
    first().fetchedAt = noon + hours{1};
    EXPECT_EQ(age(), seconds{0});
    first().fetchedAt = noon;
    EXPECT_EQ(age(), seconds{0});
}

TEST_F(RoostTimelineTest, ShowsTheSameOfAnAccountThatWasPicked)
{
    EXPECT_EQ(RoostTimeline::content(nullptr, noon), signedOut);
    EXPECT_EQ(RoostTimeline::content(&first(), noon), content());
    EXPECT_EQ(RoostTimeline::content(&file->accounts.back(), noon), content("b"));
    first().snapshot.reset();
    EXPECT_EQ(RoostTimeline::content(&first(), noon), waiting);
    first().status = Status::signedOut;
    EXPECT_EQ(RoostTimeline::content(&first(), noon), signedOut);
}

} // namespace
} // namespace roost
