#include "tests/bus/ModelOnBus.h"

#include <gmock/gmock.h>

#include <QDBusVariant>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

const QString get = QStringLiteral("Get");
const QString set = QStringLiteral("Set");
const QString getAll = QStringLiteral("GetAll");
const QString launchAtLogin = QStringLiteral("LaunchAtLogin");

/// Calls that no honest caller makes. Whatever they are, the app says so and stays as it is.
class ModelRefusalsTest : public testing::Test, protected ModelOnBus {
protected:
    ModelRefusalsTest()
    {
        world.signInBefore("p1");
        startOnBus();
        peer.catchUp();
        accounts = world.state().accounts();
        listener.changes.clear();
        world.widgetRequests();
        world.time.advance(100s);
    }

    ~ModelRefusalsTest() override
    {
        peer.catchUp();
        EXPECT_THAT(listener.changes, IsEmpty());
        EXPECT_EQ(world.state().accounts(), accounts);
        EXPECT_EQ(world.state().selectedProfileID(), std::nullopt);
        EXPECT_EQ(world.opened.size(), 0U);
        EXPECT_EQ(quits, 0);
        EXPECT_THAT(world.widgetRequests(), IsEmpty());
        // The app is well.
        EXPECT_EQ(peer.callModel(QStringLiteral("OpenRoost")).type(), QDBusMessage::ReplyMessage);
        EXPECT_EQ(world.opened.size(), 1U);
    }

    /// The last part of the error's name, such as "InvalidArgs"; an error without a sentence fails the test.
    static std::string error(const QDBusMessage& answer)
    {
        EXPECT_EQ(answer.type(), QDBusMessage::ErrorMessage);
        EXPECT_FALSE(answer.errorMessage().isEmpty());
        EXPECT_LT(answer.errorMessage().size(), 300);
        return answer.errorName().section(QLatin1Char('.'), -1).toStdString();
    }

    std::string model(const QString& method, const QVariantList& arguments = {}) const
    {
        return error(peer.callModel(method, arguments));
    }
    std::string properties(const QString& method, const QVariantList& arguments = {}) const
    {
        return error(peer.callModel(method, arguments, RoostBus::propertiesInterface));
    }

    BusPeer peer{bus().address()};
    ChangeListener listener{peer.connection()};
    std::vector<RoostAccountRecord> accounts;
};

TEST_F(ModelRefusalsTest, MeetMethodsThatAreNotThere)
{
    EXPECT_EQ(model(QStringLiteral("Explode")), "UnknownMethod");
    EXPECT_EQ(model(QStringLiteral("quit")), "UnknownMethod");
    EXPECT_EQ(model(get, {RoostBus::modelInterface, launchAtLogin}), "UnknownMethod");
    EXPECT_EQ(properties(QStringLiteral("Quit")), "UnknownMethod");
    EXPECT_EQ(error(peer.callModel(QStringLiteral("Explode"), {}, {})), "UnknownMethod");
}

TEST_F(ModelRefusalsTest, MeetArgumentsOfOtherTypes)
{
    EXPECT_EQ(model(QStringLiteral("RequestRefresh")), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("RequestRefresh"), {1}), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("RequestRefresh"), {true, true}), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("Quit"), {QStringLiteral("now")}), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("SignOut"), {QStringList{QStringLiteral("p1")}}), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("SignOut"), {QStringLiteral("p1"), QStringLiteral("p1")}), "InvalidArgs");
    EXPECT_EQ(model(QStringLiteral("Select"), {QVariant::fromValue(QDBusVariant(QStringLiteral("p1")))}),
              "InvalidArgs");
    EXPECT_EQ(properties(get), "InvalidArgs");
    EXPECT_EQ(properties(get, {RoostBus::modelInterface}), "InvalidArgs");
    EXPECT_EQ(properties(get, {RoostBus::modelInterface, 1}), "InvalidArgs");
    EXPECT_EQ(properties(getAll), "InvalidArgs");
    EXPECT_EQ(properties(set, {RoostBus::modelInterface, launchAtLogin, true}), "InvalidArgs");
}

TEST_F(ModelRefusalsTest, MeetPropertiesThatAreNotThere)
{
    EXPECT_EQ(properties(get, {RoostBus::modelInterface, QStringLiteral("Token")}), "UnknownProperty");
    EXPECT_EQ(properties(get, {RoostBus::modelInterface, QString{}}), "UnknownProperty");
    EXPECT_EQ(properties(get, {QStringLiteral("world.brisken.Other"), launchAtLogin}), "UnknownInterface");
    EXPECT_EQ(properties(getAll, {QStringLiteral("world.brisken.Other")}), "UnknownInterface");
    EXPECT_EQ(properties(getAll, {QString{}}), "UnknownInterface");
}

TEST_F(ModelRefusalsTest, MeetWhoeverSetsAProperty)
{
    const auto value = QVariant::fromValue(QDBusVariant(true));
    EXPECT_EQ(properties(set, {RoostBus::modelInterface, launchAtLogin, value}), "PropertyReadOnly");
    EXPECT_EQ(properties(set, {RoostBus::modelInterface, QStringLiteral("Token"), value}), "UnknownProperty");
    EXPECT_EQ(properties(set, {QStringLiteral("world.brisken.Other"), launchAtLogin, value}),
              "UnknownInterface");
    EXPECT_FALSE(world.state().launchAtLogin());
}

TEST_F(ModelRefusalsTest, MeetOtherInterfaces)
{
    for (const char* interface : {"world.brisken.roost.mac.Model2", "org.freedesktop.Application",
                                  "org.freedesktop.DBus", "world.brisken.roost.mac.model1"}) {
        EXPECT_THAT(error(peer.callModel(QStringLiteral("Quit"), {}, QString::fromLatin1(interface))),
                    testing::AnyOf("UnknownMethod", "UnknownInterface"))
            << interface;
    }
}

TEST_F(ModelRefusalsTest, MeetOtherPaths)
{
    for (const QString& path :
         {RoostBus::path, QStringLiteral("/"), RoostBus::modelPath + QStringLiteral("/x"),
          QStringLiteral("/world/brisken/roost/mac/Models")}) {
        const QDBusMessage call = QDBusMessage::createMethodCall(
            RoostBus::name, path, RoostBus::modelInterface, QStringLiteral("Quit"));
        EXPECT_THAT(error(await(callOnBus(peer.connection(), call, guardTime))),
                    testing::AnyOf("UnknownObject", "UnknownMethod", "UnknownInterface"))
            << path.toStdString();
    }
}

TEST_F(ModelRefusalsTest, MeetHugeTexts)
{
    const QString huge(16 * 1024 * 1024, QLatin1Char('x'));
    EXPECT_EQ(model(QStringLiteral("Select"), {huge}), "NoSuchProfile");
    EXPECT_EQ(model(QStringLiteral("SignOut"), {huge}), "NoSuchProfile");
    EXPECT_EQ(model(QStringLiteral("Quit"), {huge}), "InvalidArgs");
    EXPECT_EQ(properties(get, {RoostBus::modelInterface, huge}), "UnknownProperty");
    EXPECT_EQ(properties(get, {huge, launchAtLogin}), "UnknownInterface");
    const QString longName(200, QLatin1Char('X'));
    EXPECT_EQ(model(longName), "UnknownMethod");
}

TEST_F(ModelRefusalsTest, MeetTenThousandCalls)
{
    constexpr int rounds = 100;
    constexpr int calls = 100;
    for (int round = 0; round < rounds; ++round) {
        std::vector<Pending<QDBusMessage>> answers;
        for (int i = 0; i < calls; ++i) {
            switch (i % 4) {
            case 0:
                answers.emplace_back(peer.startModelCall(QStringLiteral("Quit"), {i}));
                break;
            case 1:
                answers.emplace_back(peer.startModelCall(QStringLiteral("Explode"), {i}));
                break;
            case 2:
                answers.emplace_back(peer.startModelCall(get, {RoostBus::modelInterface, QString::number(i)},
                                                         RoostBus::propertiesInterface));
                break;
            default:
                answers.emplace_back(peer.startModelCall(QStringLiteral("Select"), {QString::number(i)}));
                break;
            }
        }
        for (auto& answer : answers) {
            ASSERT_EQ(answer.get().type(), QDBusMessage::ErrorMessage);
        }
    }
}

TEST_F(ModelRefusalsTest, MeetTooManyCallsThatWait)
{
    // A limit of the bus comes first for one caller alone.
    std::vector<std::unique_ptr<BusPeer>> callers;
    std::vector<Pending<QDBusMessage>> answers;
    world.roost.latency = [] { return 10s; };
    const int most = ModelAdaptor::mostUnanswered;
    for (int i = 0; i < most + 5; ++i) {
        if (i % 100 == 0) {
            callers.push_back(std::make_unique<BusPeer>(bus().address()));
        }
        answers.emplace_back(callers.back()->startModelCall(QStringLiteral("RequestRefresh"), {true}));
        if (i % 100 == 99 || i == most + 4) {
            callers.back()->catchUp();
        }
    }
    const auto done = [&] {
        return std::ranges::count_if(answers, [](const auto& answer) { return answer.isDone(); });
    };
    ASSERT_TRUE(runUntil([&] { return done() == 5; }));
    for (auto& answer : answers) {
        if (answer.isDone()) {
            EXPECT_EQ(error(answer.get()), "LimitsExceeded");
        }
    }
    world.time.advance(200s);
    for (auto& answer : answers) {
        answer.get();
    }
    EXPECT_EQ(peer.callModel(QStringLiteral("RequestRefresh"), {false}).type(), QDBusMessage::ReplyMessage);
    world.time.advance(200s);
    // Those that were let in have led to what the end of the test would not forgive.
    world.widgetRequests();
    peer.catchUp();
    listener.changes.clear();
    accounts = world.state().accounts();
}

} // namespace
} // namespace roost::test
