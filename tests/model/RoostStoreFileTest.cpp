#include "model/RoostStoreFile.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

using Status = RoostAccountRecord::Status;

RoostAccountRecord record(const char* id, Status status, const char* name = "")
{
    RoostAccountRecord made;
    made.profileId = id;
    made.profileName = name;
    made.status = status;
    return made;
}

RoostStoreFile fileOf(std::vector<RoostAccountRecord> accounts)
{
    RoostStoreFile file;
    file.accounts = std::move(accounts);
    return file;
}

/// The id of the record to show; "none" without one.
std::string shown(const RoostStoreFile& file, const std::optional<std::string>& asked = {})
{
    const RoostAccountRecord* found = file.accountFor(asked);
    return found == nullptr ? "none" : found->profileId;
}

TEST(AccountFor, GivesTheAskedRecordEvenWhenItIsSignedOut)
{
    const auto file =
        fileOf({record("A", Status::ok), record("B", Status::signedOut), record("C", Status::ok)});
    EXPECT_EQ(shown(file, "B"), "B");
    EXPECT_EQ(shown(file, "C"), "C");
}

TEST(AccountFor, PrefersASignedInRecordWithoutAnId)
{
    EXPECT_EQ(
        shown(fileOf({record("A", Status::signedOut), record("B", Status::ok), record("C", Status::ok)})),
        "B");
    EXPECT_EQ(shown(fileOf({record("A", Status::signedOut), record("B", Status::signedOut)})), "A");
}

TEST(AccountFor, FallsBackWhenTheAskedRecordIsGone)
{
    const auto file = fileOf({record("A", Status::signedOut), record("B", Status::ok)});
    EXPECT_EQ(shown(file, "Z"), "B");
    EXPECT_EQ(shown(file, ""), "B");
    EXPECT_EQ(shown(file, "b"), "B");
    EXPECT_EQ(shown(fileOf({record("A", Status::signedOut)}), "Z"), "A");
}

TEST(AccountFor, GivesNothingOutOfAnEmptyFile)
{
    EXPECT_EQ(shown(fileOf({})), "none");
    EXPECT_EQ(shown(fileOf({}), "A"), "none");
}

TEST(AccountFor, GivesTheFirstOfTwoWithOneId)
{
    const auto file = fileOf({record("A", Status::signedOut, "first"), record("A", Status::ok, "second")});
    EXPECT_EQ(file.accountFor("A")->profileName, "first");
    EXPECT_EQ(file.accountFor({})->profileName, "second");
    const auto unnamed = fileOf({record("A", Status::ok), record("", Status::signedOut, "empty id")});
    EXPECT_EQ(unnamed.accountFor("")->profileName, "empty id");
}

TEST(AccountFor, PointsIntoTheFile)
{
    const auto file = fileOf({record("A", Status::ok)});
    EXPECT_EQ(file.accountFor("A"), file.accounts.data());
}

TEST(AccountFor, IsTheSameOfRecordsWithoutAFile)
{
    const std::vector<RoostAccountRecord> records{record("A", Status::signedOut), record("B", Status::ok)};
    EXPECT_EQ(accountFor(records, "A"), &records[0]);
    EXPECT_EQ(accountFor(records, "C"), &records[1]);
    EXPECT_EQ(accountFor(records, std::nullopt), &records[1]);
    EXPECT_EQ(accountFor({}, "A"), nullptr);
}

} // namespace
} // namespace roost
