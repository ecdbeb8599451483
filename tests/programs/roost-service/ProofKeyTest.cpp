#include "programs/roost-service/ProofKey.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

TEST(ProofKey, HasTheChallengeOfTheStandardsExample)
{
    EXPECT_EQ(challengeOf("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"),
              "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
}

TEST(ProofKey, HasAVerifierOf43To128UnreservedCharacters)
{
    EXPECT_TRUE(isVerifier(QByteArray(43, 'a')));
    EXPECT_TRUE(isVerifier("-._~" + QByteArray(124, 'Z')));
    EXPECT_FALSE(isVerifier(QByteArray(42, 'a')));
    EXPECT_FALSE(isVerifier(QByteArray(129, 'a')));
    EXPECT_FALSE(isVerifier(QByteArray(42, 'a') + '+'));
    EXPECT_FALSE(isVerifier(QByteArray(42, 'a') + '\0'));
}

TEST(ProofKey, HasAChallengeOf43CharactersOfBase64Url)
{
    EXPECT_TRUE(isChallenge("-_" + QByteArray(41, '9')));
    EXPECT_FALSE(isChallenge(QByteArray(44, 'a')));
    EXPECT_FALSE(isChallenge(QByteArray(42, 'a')));
    EXPECT_FALSE(isChallenge(QByteArray(42, 'a') + '='));
    EXPECT_FALSE(isChallenge(QByteArray(42, 'a') + '~'));
}

} // namespace
} // namespace roost::local
