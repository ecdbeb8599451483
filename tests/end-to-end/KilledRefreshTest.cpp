#include "platform/KeychainSecretStore.h"
#include "programs/roost-service/LocalService.h"
#include "service/NetworkHttpSession.h"
#include "service/SignInFlow.h"
#include "tests/support/Await.h"
#include "tests/support/ConsentingBrowser.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

#include <QProcess>

#include <algorithm>

namespace roost::test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;

/// What became of one sync in a process of its own.
struct Trial {
    bool wasKilled = false;
    Lines steps;
};

class KilledRefresh : public testing::Test {
protected:
    KilledRefresh()
    {
        keyring.startUnlocked();
        EXPECT_TRUE(service.start().has_value());
    }

    QUrl base() const { return QUrl{QString::fromLatin1(service.base())}; }

    /// The id of the profile, freshly signed in.
    std::string signIn()
    {
        service.revokeAll();
        ConsentingBrowser browser{network};
        const SignInFlow flow{OAuthClient{base(), network, secrets, systemClock()},
                              WidgetAPI{base(), network}, browser};
        const auto result = await(flow.run({}));
        EXPECT_TRUE(result.has_value());
        const std::string id = result->snapshot.profile.id;
        EXPECT_TRUE(await(secrets.set(result->tokens.refreshToken, "refresh-token|" + id)).has_value());
        return id;
    }

    Trial synced(const std::string& profile, int fatalStep)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(KILLED_REFRESH),
                      {base().toString(), QString::fromStdString(profile),
                       QString::fromStdString((bus.home() / "locks").string()), QString::number(fatalStep)});
        EXPECT_TRUE(runUntil([&process] { return process.state() == QProcess::NotRunning; }));
        Trial trial{process.exitStatus() == QProcess::CrashExit, {}};
        for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
            if (!line.isEmpty()) {
                trial.steps.push_back(line.toStdString());
            }
        }
        return trial;
    }

    PrivateBus bus;
    PrivateKeyring keyring{bus};
    local::LocalService service{{.autoConsent = true}, systemClock(), local::systemRandomBytes()};
    NetworkHttpSession network;
    KeychainSecretStore secrets{"world.brisken.roost.mac", KeychainSecretStore::Patience{}};
};

/// Whether the token request may have been carried out and its answer not been stored when the process died.
bool isBetweenRequestAndStore(const std::string& lastStep)
{
    return lastStep == "answered /oauth/token" || lastStep == "storing";
}

TEST_F(KilledRefresh, LosesTheSignInBetweenAnswerAndStoreAlone)
{
    int survived = 0;
    for (int fatal = 1;; ++fatal) {
        const std::string profile = signIn();
        const Trial killed = synced(profile, fatal);
        if (!killed.wasKilled) {
            EXPECT_THAT(killed.steps, Contains("outcome: updated"));
            break;
        }
        ASSERT_THAT(killed.steps, Not(IsEmpty()));
        const std::string last = killed.steps.back();
        const int reuses = service.state().counters.refreshTokenReuses();
        const Trial next = synced(profile, 0);
        ASSERT_FALSE(next.wasKilled);
        if (!isBetweenRequestAndStore(last)) {
            EXPECT_EQ(next.steps.back(), "outcome: updated") << "killed at: " << last;
            EXPECT_EQ(service.state().counters.refreshTokenReuses(), reuses) << "killed at: " << last;
            ++survived;
        }
        const std::string& outcome = next.steps.back();
        EXPECT_TRUE(outcome == "outcome: updated" || outcome == "outcome: signed out") << outcome;
    }
    EXPECT_GE(survived, 8);
}

TEST_F(KilledRefresh, StoresTheTokenRightAfterTheAnswerAndBeforeItsFirstUse)
{
    const Lines steps = synced(signIn(), 0).steps;
    const auto answered = std::ranges::find(steps, "answered /oauth/token");
    ASSERT_NE(answered, steps.end());
    ASSERT_GE(steps.end() - answered, 4);
    EXPECT_EQ(answered[1], "storing");
    EXPECT_EQ(answered[2], "stored");
    EXPECT_THAT(answered[3], StartsWith("sending /api/"));
    EXPECT_EQ(steps.front(), "locking");
    EXPECT_EQ(service.state().counters.refreshTokenReuses(), 0);
}

TEST_F(KilledRefresh, SurvivesDeathWhileTheRequestIsRefused)
{
    const std::string profile = signIn();
    local::Scenario busy;
    busy.kind = local::Scenario::Kind::status;
    busy.status = 503;
    service.state().scenarios.set(local::ScenarioBook::everyone, local::Endpoint::token, busy);
    for (int fatal = 1; synced(profile, fatal).wasKilled; ++fatal) {
    }
    service.state().scenarios.clear();
    EXPECT_EQ(synced(profile, 0).steps.back(), "outcome: updated");
}

} // namespace
} // namespace roost::test
