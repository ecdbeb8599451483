#include "bus/CrossProcessNotification.h"

#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QString name = QStringLiteral("world.brisken.roost.refresh-requested");
const Date noon = Date{std::chrono::seconds(1'750'000'000)} + std::chrono::milliseconds(250);

class CrossProcessNotificationTest : public testing::Test {
protected:
    /// Everything that a peer sends now has come when this returns.
    void deliver() const
    {
        teller.ask(QStringLiteral("GetId"), {});
        listening.catchUp();
    }

    void post(const QString& member, const QVariantList& arguments, const QString& path = RoostBus::path,
              const QString& interface = RoostBus::notificationInterface) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, member);
        signal.setArguments(arguments);
        teller.connection().send(signal);
        deliver();
    }

    PrivateBus bus;
    BusPeer teller{bus.address()};
    BusPeer listening{bus.address()};
    std::vector<Date> heard;
    CrossProcessNotification::Listener listener{listening.connection(), name,
                                                [this](Date at) { heard.push_back(at); }};
};

TEST_F(CrossProcessNotificationTest, ReachesWhoListensWithItsTime)
{
    CrossProcessNotification::post(teller.connection(), name, noon);
    CrossProcessNotification::post(teller.connection(), name, noon + std::chrono::milliseconds(1));
    deliver();
    EXPECT_THAT(heard, ElementsAre(noon, noon + std::chrono::milliseconds(1)));
}

TEST_F(CrossProcessNotificationTest, ReachesAlsoTheProcessItself)
{
    CrossProcessNotification::post(listening.connection(), name, noon);
    listening.catchUp();
    EXPECT_THAT(heard, ElementsAre(noon));
}

TEST_F(CrossProcessNotificationTest, ReachesOnlyWhoListensForItsName)
{
    std::vector<Date> others;
    const CrossProcessNotification::Listener other(listening.connection(), QStringLiteral("other"),
                                                   [&](Date at) { others.push_back(at); });
    CrossProcessNotification::post(teller.connection(), QStringLiteral("other"), noon);
    CrossProcessNotification::post(teller.connection(), name + QStringLiteral("2"), noon);
    CrossProcessNotification::post(teller.connection(), {}, noon);
    deliver();
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_THAT(others, ElementsAre(noon));
}

TEST_F(CrossProcessNotificationTest, ReachesAllThatListenForItsName)
{
    int count = 0;
    const CrossProcessNotification::Listener second(listening.connection(), name, [&](Date) { ++count; });
    CrossProcessNotification::post(teller.connection(), name, noon);
    deliver();
    EXPECT_THAT(heard, ElementsAre(noon));
    EXPECT_EQ(count, 1);
}

TEST_F(CrossProcessNotificationTest, ReachesNobodyWhoStoppedListening)
{
    int count = 0;
    {
        const CrossProcessNotification::Listener gone(listening.connection(), name, [&](Date) { ++count; });
    }
    CrossProcessNotification::post(teller.connection(), name, noon);
    deliver();
    EXPECT_EQ(count, 0);
    EXPECT_THAT(heard, ElementsAre(noon));
}

TEST_F(CrossProcessNotificationTest, IsNothingElseThatLooksLikeIt)
{
    const QString member = QStringLiteral("Posted");
    const auto time = QVariant::fromValue<qlonglong>(noon.time_since_epoch().count());
    post(member, {name});
    post(member, {});
    post(member, {name, QStringLiteral("1750000000250")});
    post(member, {name, 1.5});
    post(member, {name, 17});
    post(member, {name, time, time});
    post(member, {time, name});
    post(QStringLiteral("Withdrawn"), {name, time});
    post(member, {name, time}, QStringLiteral("/elsewhere"));
    post(member, {name, time}, RoostBus::path, QStringLiteral("world.brisken.roost.Notification2"));
    post(member, {QString(1'000'000, QLatin1Char('x')), time});
    EXPECT_THAT(heard, IsEmpty());

    post(member, {name, time});
    EXPECT_THAT(heard, ElementsAre(noon));
}

TEST_F(CrossProcessNotificationTest, TellsAnyTimeThatItIsGiven)
{
    CrossProcessNotification::post(teller.connection(), name, Date::min());
    CrossProcessNotification::post(teller.connection(), name, Date::max());
    deliver();
    EXPECT_THAT(heard, ElementsAre(Date::min(), Date::max()));
}

TEST_F(CrossProcessNotificationTest, LetsItsListenerGoWhenItIsHeard)
{
    int count = 0;
    std::unique_ptr<CrossProcessNotification::Listener> once;
    once = std::make_unique<CrossProcessNotification::Listener>(listening.connection(), name,
                                                                [&, held = std::make_shared<int>(1)](Date) {
                                                                    once.reset();
                                                                    count += *held;
                                                                });
    CrossProcessNotification::post(teller.connection(), name, noon);
    deliver();
    EXPECT_EQ(count, 1);
}

TEST_F(CrossProcessNotificationTest, NeedsNoAnswerOfTheBus)
{
    bus.freeze();
    // Neither waits for the bus, which says nothing.
    const CrossProcessNotification::Listener second(listening.connection(), name, [](Date) {});
    CrossProcessNotification::post(teller.connection(), name, noon);
    bus.thaw();
    deliver();
    EXPECT_THAT(heard, ElementsAre(noon));
}

TEST_F(CrossProcessNotificationTest, IsLostWithoutABus)
{
    bus.end();
    CrossProcessNotification::post(teller.connection(), name, noon);
    QCoreApplication::processEvents();
    EXPECT_THAT(heard, IsEmpty());
}

} // namespace
} // namespace roost::test
