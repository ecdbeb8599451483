#include "programs/brisken-roost/FetchCommand.h"

#include "model/RealFileSystem.h"
#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "service/InProcessHttpSession.h"
#include "tests/programs/brisken-roost/Records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::noon;
using test::recordOf;
using test::snapshotOf;
using testing::HasSubstr;

class FetchCommandTest : public testing::Test {
protected:
    CommandResult fetch(FetchCommand command = {})
    {
        const WidgetAPI api{QUrl{QStringLiteral("http://127.0.0.1/")}, session_};
        auto task =
            runFetch(std::move(command), QStringLiteral("token"), api, store_, [] { return noon; }, {});
        return QCoro::waitFor(task);
    }

    void answer(int status, const std::string& body = {})
    {
        answer_ = HttpResponse{status, {}, QByteArray::fromStdString(body)};
    }

    void answerWith(const RoostSnapshot& snapshot) { answer(200, RoostJSON::encoder().encode(snapshot)); }

    HttpResult answer_ = std::unexpected(HttpFailure{});
    InProcessHttpSession session_{
        [this](HttpRequest, std::stop_token) -> QCoro::Task<HttpResult> { co_return answer_; }};
    QTemporaryDir folder_;
    RealFileSystem files_;
    WidgetStore store_{files_, folder_.path().toStdString()};
};

TEST_F(FetchCommandTest, WritesTheNumbersOfANewProfile)
{
    answerWith(snapshotOf("a", 48213));
    EXPECT_EQ(fetch().code, ExitCode::fine);
    EXPECT_EQ(store_.read(), fileOf({recordOf("a", 48213, 0s)}));
}

TEST_F(FetchCommandTest, ReplacesARecordInItsPlace)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h), recordOf("b", 2, 1h)})));
    answerWith(snapshotOf("a", 3));
    EXPECT_EQ(fetch().code, ExitCode::fine);
    EXPECT_EQ(store_.read(), fileOf({recordOf("a", 3, 0s), recordOf("b", 2, 1h)}));
}

TEST_F(FetchCommandTest, KeepsTheLastNumbersOfTheNamedProfileOnFailure)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h)})));
    answer(503);
    const CommandResult result = fetch({{}, "a"});
    EXPECT_EQ(result.code, ExitCode::failure);
    EXPECT_EQ(result.error, "brisken-roost: The service is busy (unavailable).\n");
    RoostAccountRecord noted = recordOf("a", 1, 1h);
    noted.lastAttemptAt = noon;
    EXPECT_EQ(store_.read(), fileOf({noted}));
}

TEST_F(FetchCommandTest, LeavesTheFileAloneWhenItFailsForNobodyInParticular)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h)})));
    answer(503);
    EXPECT_EQ(fetch().code, ExitCode::failure);
    EXPECT_EQ(store_.read(), fileOf({recordOf("a", 1, 1h)}));
}

TEST_F(FetchCommandTest, SignsNobodyOutWhoseNumbersItsTokenMayNotRead)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h)})));
    answer(403);
    EXPECT_EQ(fetch({{}, "a"}).code, ExitCode::failure);
    // The user's own sign-in, if there is one, is not what was refused.
    EXPECT_EQ(store_.read()->accounts.at(0).status, RoostAccountRecord::Status::ok);
    EXPECT_EQ(store_.read()->accounts.at(0).snapshot, recordOf("a", 1, 1h).snapshot);
}

TEST_F(FetchCommandTest, TakesARefusedTokenForAFailureAlone)
{
    ASSERT_TRUE(store_.write(fileOf({recordOf("a", 1, 1h)})));
    answer(401);
    EXPECT_EQ(fetch({{}, "a"}).error, "brisken-roost: The service refused the token.\n");
    EXPECT_EQ(store_.read()->accounts.at(0).status, RoostAccountRecord::Status::ok);
}

TEST_F(FetchCommandTest, RefusesTheNumbersOfAnotherProfile)
{
    answerWith(snapshotOf("b", 1));
    EXPECT_EQ(fetch({{}, "a"}).code, ExitCode::failure);
    EXPECT_EQ(store_.read(), std::nullopt);
}

TEST_F(FetchCommandTest, TellsEveryOtherFailureInOneSentence)
{
    answer(200, "no JSON");
    EXPECT_THAT(fetch().error, HasSubstr("could not be understood"));
    answer_ = std::unexpected(HttpFailure{});
    EXPECT_THAT(fetch().error, HasSubstr("could not be reached"));
}

TEST(BearerToken, IsTheFirstLineWithoutBlanks)
{
    EXPECT_EQ(bearerTokenFrom("abc.DEF-1~+/=\n"), QStringLiteral("abc.DEF-1~+/="));
    EXPECT_EQ(bearerTokenFrom("  abc\r\nmore"), QStringLiteral("abc"));
}

TEST(BearerToken, IsRefusedWhenItIsMissingOrCouldBreakTheHeader)
{
    EXPECT_FALSE(bearerTokenFrom(""));
    EXPECT_FALSE(bearerTokenFrom(" \n"));
    EXPECT_FALSE(bearerTokenFrom("a b"));
    EXPECT_FALSE(bearerTokenFrom("a\rX-Other: 1"));
    EXPECT_FALSE(bearerTokenFrom("a\xc3\xa4"));
    EXPECT_THAT(bearerTokenFrom("canary token").error(), testing::Not(HasSubstr("canary")));
}

} // namespace
} // namespace roost
