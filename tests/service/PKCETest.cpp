#include "service/PKCE.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::MatchesRegex;

} // namespace

// The example of RFC 7636, appendix B.
TEST(PKCE, MakesTheVerifierAndTheChallengeOfTheStandardsExample)
{
    const QByteArray octets =
        QByteArray::fromHex("7418dfb49799e0254ffa607dd8adbbba16d4254d69d6bff05b58055853848d79");
    const std::string verifier = PKCE::base64URL(octets);
    EXPECT_EQ(verifier, "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk");
    EXPECT_EQ(PKCE::challenge(verifier), "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
}

TEST(PKCE, WritesBytesWithoutPaddingAndWithTheUrlsAlphabet)
{
    EXPECT_EQ(PKCE::base64URL(QByteArray(32, '\0')), std::string(43, 'A'));
    EXPECT_EQ(PKCE::base64URL(QByteArray(16, '\0')), std::string(22, 'A'));
    EXPECT_EQ(PKCE::base64URL(QByteArray("\xfb\xff\xfe", 3)), "-__-");
    EXPECT_EQ(PKCE::base64URL({}), "");
}

TEST(PKCE, GivesAsManySystemBytesAsAskedForAndNeverTheSameTwice)
{
    for (const std::size_t count : {0u, 1u, 16u, 32u, 256u, 257u, 1000u}) {
        EXPECT_EQ(PKCE::systemRandom(count).size(), static_cast<qsizetype>(count));
    }
    EXPECT_NE(PKCE::systemRandom(32), PKCE::systemRandom(32));
    // The part beyond what the system gives at once is filled too.
    EXPECT_NE(PKCE::systemRandom(300).last(44), QByteArray(44, '\0'));
}

TEST(PKCE, MakesChallengesOfFortyThreeCharacters)
{
    for (std::size_t length = 0; length < 200; ++length) {
        EXPECT_THAT(PKCE::challenge(std::string(length, 'v')), MatchesRegex("[A-Za-z0-9_-]{43}"));
    }
}

} // namespace roost::test
