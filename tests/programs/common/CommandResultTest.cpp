#include "programs/common/CommandResult.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

TEST(CommandResult, NamesTheProgramThatFailed)
{
    const CommandResult result = failureOf("a-program", ExitCode::stale, "It is old.");
    EXPECT_EQ(result.code, ExitCode::stale);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "a-program: It is old.\n");
}

TEST(CommandResult, IsWrittenWithEveryByteOfIt)
{
    const CommandResult result{ExitCode::nothingToShow, std::string{"a\0b\n", 4}, "why\n"};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(finished(result), 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), result.output);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "why\n");
}

} // namespace
} // namespace roost
