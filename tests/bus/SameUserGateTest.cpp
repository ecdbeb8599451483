#include "bus/SameUserGate.h"

#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SameUserGateTest : public testing::Test {
protected:
    /// A call as it comes from `caller`.
    static QDBusMessage callFrom(const QString& caller, const QString& member)
    {
        return QDBusMessage::createMethodCall(caller, QStringLiteral("/x"), QStringLiteral("x.y"), member);
    }

    void settle() const
    {
        keeper.catchUp();
        QCoreApplication::processEvents();
    }

    PrivateBus bus;
    BusPeer keeper{bus.address()};
    BusPeer caller{bus.address()};
    BusPeer other{bus.address()};
    QStringList passed;
    std::shared_ptr<SameUserGate> gate = std::make_shared<SameUserGate>(
        keeper.connection(), [this](const QDBusMessage& call) { passed.append(call.member()); });
};

TEST_F(SameUserGateTest, LetsAnotherProcessOfThisUserThroughWhenItIsKnown)
{
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    EXPECT_THAT(passed, IsEmpty());
    settle();
    EXPECT_THAT(passed, ElementsAre(QStringLiteral("one")));
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("two")));
    EXPECT_THAT(passed, SizeIs(2));
}

TEST_F(SameUserGateTest, KeepsTheOrderOfEachCaller)
{
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("1")));
    gate->take(callFrom(other.uniqueName(), QStringLiteral("a")));
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("2")));
    gate->take(callFrom(other.uniqueName(), QStringLiteral("b")));
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("3")));
    settle();
    EXPECT_THAT(passed, ElementsAre(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                                    QStringLiteral("a"), QStringLiteral("b")));
}

TEST_F(SameUserGateTest, LetsNobodyThroughWhomTheBusDoesNotKnow)
{
    gate->take(callFrom(QStringLiteral(":1.999"), QStringLiteral("one")));
    settle();
    gate->take(callFrom(QStringLiteral(":1.999"), QStringLiteral("two")));
    settle();
    EXPECT_THAT(passed, IsEmpty());
}

TEST_F(SameUserGateTest, LetsNobodyThroughWhenTheBusHasGone)
{
    bus.end();
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    EXPECT_TRUE(runUntil([&] { return gate.use_count() == 1; }));
    EXPECT_THAT(passed, IsEmpty());
}

TEST_F(SameUserGateTest, LetsSoManyWaitAndNoMore)
{
    bus.freeze();
    for (std::size_t i = 0; i < SameUserGate::mostWaiting + 10; ++i) {
        gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    }
    EXPECT_THAT(passed, IsEmpty());
    bus.thaw();
    settle();
    EXPECT_THAT(passed, SizeIs(SameUserGate::mostWaiting));
    // There is room again.
    gate->take(callFrom(other.uniqueName(), QStringLiteral("two")));
    settle();
    EXPECT_THAT(passed, SizeIs(SameUserGate::mostWaiting + 1));
}

TEST_F(SameUserGateTest, LetsNothingThroughWhenItIsClosed)
{
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    gate->close();
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("two")));
    settle();
    EXPECT_THAT(passed, IsEmpty());
}

TEST_F(SameUserGateTest, CanBeClosedByACall)
{
    gate = std::make_shared<SameUserGate>(keeper.connection(), [this](const QDBusMessage& call) {
        passed.append(call.member());
        gate->close();
    });
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("two")));
    settle();
    EXPECT_THAT(passed, SizeIs(1));
}

TEST_F(SameUserGateTest, SurvivesThatItsOwnerGoes)
{
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    gate->close();
    gate.reset();
    settle();
    EXPECT_THAT(passed, IsEmpty());
}

TEST_F(SameUserGateTest, AsksAboutEachCallerOnce)
{
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("one")));
    settle();
    bus.freeze();
    // No answer of the bus is needed any more.
    gate->take(callFrom(caller.uniqueName(), QStringLiteral("two")));
    EXPECT_THAT(passed, SizeIs(2));
    bus.thaw();
}

} // namespace
} // namespace roost::test
