#include "service/AuthFailure.h"

#include <gtest/gtest.h>

namespace roost::test {

namespace {

using Kind = RoostAuthError::Kind;

constexpr auto offline = "Brisken Roost could not be reached. Check your connection and try again.";
constexpr auto refused = "Roost did not allow this connection. Try signing in again.";
constexpr auto unsafe = "The sign-in did not complete safely, so nothing was saved. Try again.";

RoostAuthError of(Kind kind) { return {kind, 0, {}}; }

} // namespace

TEST(RoostAuthError, IsToldToUsersInOneOfFourSentences)
{
    EXPECT_EQ(messageFor(of(Kind::unreachable)), offline);
    EXPECT_EQ(messageFor(RoostAuthError::unexpectedResponse(403)), offline);
    EXPECT_EQ(messageFor(RoostAuthError::denied("invalid_scope")), refused);
    EXPECT_EQ(messageFor(of(Kind::invalidGrant)), refused);
    EXPECT_EQ(messageFor(of(Kind::invalidClient)), refused);
    EXPECT_EQ(messageFor(RoostAuthError::insecureEndpoint("http://h")), unsafe);
    EXPECT_EQ(messageFor(RoostAuthError::unsupportedServer("no")), unsafe);
    for (const Kind kind :
         {Kind::malformedResponse, Kind::stateMismatch, Kind::issuerMismatch, Kind::invalidCallback}) {
        EXPECT_EQ(messageFor(of(kind)), unsafe);
    }
    EXPECT_EQ(messageFor(of(Kind::cancelled)), "");
}

TEST(RoostAuthError, DescribesItselfWithWhatItCarries)
{
    EXPECT_EQ(describe(RoostAuthError::unexpectedResponse(503)), "unexpectedResponse(503)");
    EXPECT_EQ(describe(RoostAuthError::denied("invalid_scope")), "denied(invalid_scope)");
    EXPECT_EQ(describe(RoostAuthError::insecureEndpoint("http://h/")), "insecureEndpoint(http://h/)");
    EXPECT_EQ(describe(of(Kind::invalidCallback)), "invalidCallback");
    EXPECT_EQ(describe(of(Kind::unreachable)), "unreachable");
}

TEST(AuthFailure, IsToldToUsersAsTroubleUnlessTheyStoppedIt)
{
    EXPECT_EQ(messageFor(AuthFailure{of(Kind::stateMismatch)}), unsafe);
    EXPECT_EQ(messageFor(AuthFailure{Stopped{}}), "");
    EXPECT_EQ(messageFor(AuthFailure{RefreshBlocked{}}), "Something went wrong. Try again.");
    EXPECT_EQ(messageFor(AuthFailure{SecretsUnavailable{SecretsUnavailable::Why::locked}}),
              "Something went wrong. Try again.");
}

TEST(AuthFailure, DescribesEachTroubleInItsOwnWords)
{
    using Why = SecretsUnavailable::Why;
    EXPECT_EQ(describe(AuthFailure{of(Kind::invalidGrant)}), "invalidGrant");
    EXPECT_EQ(describe(AuthFailure{Stopped{}}), "stopped");
    EXPECT_EQ(describe(AuthFailure{RefreshBlocked{}}), "another process is refreshing this profile");
    EXPECT_EQ(describe(AuthFailure{SecretsUnavailable{Why::locked}}), "the secret store is locked");
    EXPECT_EQ(describe(AuthFailure{SecretsUnavailable{Why::noService}}), "there is no secret store");
    EXPECT_EQ(describe(AuthFailure{SecretsUnavailable{Why::notAnswering}}),
              "the secret store does not answer");
}

} // namespace roost::test
