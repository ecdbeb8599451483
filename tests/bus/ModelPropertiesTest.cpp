#include "bus/ModelProperties.h"

#include "tests/bus/ModelOnBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using std::chrono::milliseconds;

/// Whether a value of a property is taken for one.
bool takes(AppState& state, const char* name, const QVariant& value)
{
    return ModelProperties::find(QString::fromLatin1(name))->take(state, value);
}

AppState& filled(AppState& state)
{
    RoostAccountRecord second{.profileId = "ü", .profileName = "\u4e16\U0001f600\""};
    second.fetchedAt = Date{milliseconds(-1)};
    second.status = RoostAccountRecord::Status::signedOut;
    state.setAccounts({{.profileId = std::string("a\0b", 3)}, second});
    state.setRefreshing(true);
    state.setLastRefreshAt(Date{milliseconds(1'750'000'000'001)});
    state.setSignInState(SignInState::Failed{"Try again – später."});
    state.setSelectedProfileID("");
    state.setLaunchAtLogin(true);
    state.setLaunchNeedsApproval(true);
    state.setUpdateStatus({"1.2", {}, true});
    return state;
}

TEST(ModelProperties, SayWhatTheStateSays)
{
    AppState state;
    filled(state);
    AppState other;
    for (const auto& [name, property] : ModelProperties::all()) {
        EXPECT_TRUE(property.take(other, property.value(state))) << name.toStdString();
    }
    EXPECT_TRUE(agree(state, other));
}

TEST(ModelProperties, SayWhenThereIsNothing)
{
    const AppState nothing;
    AppState other;
    filled(other);
    for (const auto& [name, property] : ModelProperties::all()) {
        EXPECT_TRUE(property.take(other, property.value(nothing))) << name.toStdString();
    }
    EXPECT_TRUE(agree(nothing, other));
}

TEST(ModelProperties, TellEachStateOfASignInApart)
{
    AppState state;
    AppState other;
    const auto& property = *ModelProperties::find(QStringLiteral("SignInState"));
    for (const SignInState::Any& any :
         {SignInState::Any{SignInState::InProgress{}}, SignInState::Any{SignInState::Failed{""}},
          SignInState::Any{SignInState::Idle{}}}) {
        state.setSignInState(any);
        EXPECT_TRUE(property.take(other, property.value(state)));
        EXPECT_EQ(other.signInState(), any);
    }
}

TEST(ModelProperties, NameTheSignalsOfTheirChanges)
{
    AppState state;
    std::map<QString, int> told;
    for (const auto& [name, property] : ModelProperties::all()) {
        QObject::connect(&state, property.changed, &state, [&told, name] { ++told[name]; });
    }
    filled(state);
    EXPECT_EQ(told.size(), ModelProperties::all().size());
    for (const auto& [name, property] : ModelProperties::all()) {
        AppState other;
        told.clear();
        EXPECT_TRUE(property.take(state, property.value(other)));
        EXPECT_EQ(told, (std::map<QString, int>{{name, 1}}));
    }
}

TEST(ModelProperties, LeaveOutTextsThatWouldNotArriveAsTheyAre)
{
    AppState state;
    const auto& property = *ModelProperties::find(QStringLiteral("SelectedProfileID"));
    for (const std::string& text : {std::string("a\0b", 3), std::string("\uFEFFa"), std::string("a\xFF")}) {
        state.setSelectedProfileID(text);
        EXPECT_EQ(property.value(state).toStringList(), QStringList{}) << text;
    }
    state.setSelectedProfileID("a\uFEFF");
    EXPECT_EQ(property.value(state).toStringList().size(), 1);
}

TEST(ModelProperties, TakeNothingOfAnotherForm)
{
    const QStringList two{QStringLiteral("a"), QStringLiteral("b")};
    const QList<QVariant> odd{{},
                              1,
                              1.5,
                              QStringLiteral("true"),
                              QByteArray("x"),
                              two,
                              QVariant::fromValue(QList<qlonglong>{1, 2}),
                              QVariant::fromValue(QList<int>{1}),
                              QVariantMap{}};
    AppState state;
    filled(state);
    AppState before;
    filled(before);
    for (const auto& [name, property] : ModelProperties::all()) {
        for (const QVariant& value : odd) {
            EXPECT_FALSE(property.take(state, value)) << name.toStdString() << ' ' << value.typeName();
        }
    }
    EXPECT_FALSE(takes(state, "Accounts", QStringLiteral("{}")));
    EXPECT_FALSE(takes(state, "Accounts", QStringLiteral("")));
    EXPECT_FALSE(takes(state, "Accounts", true));
    EXPECT_FALSE(takes(state, "LastRefreshAt", qlonglong{1}));
    EXPECT_FALSE(takes(state, "UpdateStatus", true));
    EXPECT_TRUE(agree(state, before));
}

} // namespace
} // namespace roost::test
