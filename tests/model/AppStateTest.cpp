#include "model/AppState.h"

#include <gmock/gmock.h>

#include <QMetaProperty>

namespace roost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RoostAccountRecord record(const char* id, const char* name = "")
{
    return {.profileId = id, .profileName = name};
}

class AppStateTest : public testing::Test {
protected:
    AppStateTest()
    {
        const auto follow = [this](auto signal, const char* name) {
            QObject::connect(&state, signal, &state, [this, name] { told.emplace_back(name); });
        };
        follow(&AppState::accountsChanged, "accounts");
        follow(&AppState::isRefreshingChanged, "isRefreshing");
        follow(&AppState::lastRefreshAtChanged, "lastRefreshAt");
        follow(&AppState::signInStateChanged, "signInState");
        follow(&AppState::selectedProfileIDChanged, "selectedProfileID");
        follow(&AppState::launchAtLoginChanged, "launchAtLogin");
        follow(&AppState::launchNeedsApprovalChanged, "launchNeedsApproval");
        follow(&AppState::updateStatusChanged, "updateStatus");
    }

    /// What was told since the last call.
    std::vector<std::string> news() { return std::exchange(told, {}); }

    AppState state;
    std::vector<std::string> told;
};

TEST_F(AppStateTest, SaysNothingAtFirst)
{
    EXPECT_THAT(state.accounts(), IsEmpty());
    EXPECT_FALSE(state.isRefreshing());
    EXPECT_EQ(state.lastRefreshAt(), std::nullopt);
    EXPECT_EQ(state.signInState(), SignInState::Any{SignInState::Idle{}});
    EXPECT_EQ(state.selectedProfileID(), std::nullopt);
    EXPECT_FALSE(state.launchAtLogin());
    EXPECT_FALSE(state.launchNeedsApproval());
    EXPECT_EQ(state.updateStatus(), UpdateStatus{});
}

TEST_F(AppStateTest, TellsOfEveryChangeAndOfNothingElse)
{
    const Date noon{std::chrono::hours(12)};
    for (const bool isChange : {true, false}) {
        const auto expected = [&](const char* name) {
            return isChange ? std::vector<std::string>{name} : std::vector<std::string>{};
        };
        state.setAccounts({record("a"), record("b")});
        EXPECT_EQ(news(), expected("accounts"));
        state.setRefreshing(true);
        EXPECT_EQ(news(), expected("isRefreshing"));
        state.setLastRefreshAt(noon);
        EXPECT_EQ(news(), expected("lastRefreshAt"));
        state.setSignInState(SignInState::Failed{"x"});
        EXPECT_EQ(news(), expected("signInState"));
        state.setSelectedProfileID("a");
        EXPECT_EQ(news(), expected("selectedProfileID"));
        state.setLaunchAtLogin(true);
        EXPECT_EQ(news(), expected("launchAtLogin"));
        state.setLaunchNeedsApproval(true);
        EXPECT_EQ(news(), expected("launchNeedsApproval"));
        state.setUpdateStatus({"1", {}, false});
        EXPECT_EQ(news(), expected("updateStatus"));
        state.setAccount(record("b"));
        EXPECT_THAT(news(), IsEmpty());
    }
}

TEST_F(AppStateTest, TellsAfterTheChange)
{
    std::vector<bool> seen;
    QObject::connect(&state, &AppState::isRefreshingChanged, &state,
                     [&] { seen.push_back(state.isRefreshing()); });
    state.setRefreshing(true);
    state.setRefreshing(false);
    EXPECT_THAT(seen, ElementsAre(true, false));
}

TEST_F(AppStateTest, TellsTheLeastDifferenceApart)
{
    state.setSelectedProfileID("");
    EXPECT_THAT(news(), ElementsAre("selectedProfileID"));
    state.setSignInState(SignInState::Failed{"x"});
    state.setSignInState(SignInState::Failed{"y"});
    EXPECT_THAT(news(), ElementsAre("signInState", "signInState"));
    state.setUpdateStatus({{}, "", false});
    EXPECT_THAT(news(), ElementsAre("updateStatus"));
    state.setAccounts({record("a"), record("b")});
    state.setAccounts({record("b"), record("a")});
    EXPECT_THAT(news(), ElementsAre("accounts", "accounts"));
}

TEST_F(AppStateTest, PutsARecordInItsPlaceOrAtTheEnd)
{
    state.setAccounts({record("a"), record("b")});
    news();
    state.setAccount(record("a", "A"));
    EXPECT_EQ(state.accounts(), (std::vector{record("a", "A"), record("b")}));
    EXPECT_THAT(news(), ElementsAre("accounts"));
    state.setAccount(record("c"));
    EXPECT_EQ(state.accounts(), (std::vector{record("a", "A"), record("b"), record("c")}));
    EXPECT_THAT(news(), ElementsAre("accounts"));
}

TEST_F(AppStateTest, FindsARecordByItsId)
{
    state.setAccounts({record("a", "first"), record("b"), record("a", "second")});
    EXPECT_EQ(state.account("a"), state.accounts().data());
    EXPECT_EQ(state.account("b"), &state.accounts()[1]);
    EXPECT_EQ(state.account("A"), nullptr);
    EXPECT_EQ(state.account(""), nullptr);
}

TEST_F(AppStateTest, PublishesAllOfItByName)
{
    QStringList names;
    const QMetaObject& meta = AppState::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        names.append(QString::fromLatin1(meta.property(i).name()));
        EXPECT_TRUE(meta.property(i).hasNotifySignal());
        EXPECT_FALSE(meta.property(i).isWritable());
    }
    EXPECT_EQ(names.join(QLatin1Char(' ')),
              QStringLiteral("accounts isRefreshing lastRefreshAt signInState selectedProfileID "
                             "launchAtLogin launchNeedsApproval updateStatus"));
    state.setLaunchAtLogin(true);
    EXPECT_TRUE(state.property("launchAtLogin").toBool());
}

} // namespace
} // namespace roost
