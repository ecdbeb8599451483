#include "service/HostLookup.h"

#include "tests/support/Poll.h"
#include "tests/support/RunUntil.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <thread>

namespace roost::test {

namespace {

std::ptrdiff_t threads() { return std::distance(std::filesystem::directory_iterator{"/proc/self/task"}, {}); }

} // namespace

TEST(HostLookup, FindsThisMachineOnALaterTurnOfTheSameThread)
{
    QObject context;
    std::optional<QHostInfo> found;
    std::thread::id where;
    lookUpHost(QStringLiteral("localhost"), &context, [&](const QHostInfo& info) {
        found = info;
        where = std::this_thread::get_id();
    });
    EXPECT_FALSE(found);
    ASSERT_TRUE(runUntil([&] { return found.has_value(); }));
    EXPECT_THAT(found->addresses(), testing::Each(testing::Property(&QHostAddress::isLoopback, true)));
    EXPECT_FALSE(found->addresses().isEmpty());
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(HostLookup, SaysThatThereIsNoSuchHost)
{
    QObject context;
    std::optional<QHostInfo> found;
    // No name may begin like this, so that nobody is asked.
    lookUpHost(QStringLiteral(".invalid"), &context, [&](const QHostInfo& info) { found = info; });
    ASSERT_TRUE(runUntil([&] { return found.has_value(); }));
    EXPECT_TRUE(found->addresses().isEmpty());
    EXPECT_NE(found->error(), QHostInfo::NoError);
}

TEST(HostLookup, LeavesNoThreadBehind)
{
    const std::ptrdiff_t before = threads();
    QObject context;
    int answers = 0;
    for (int i = 1; i <= 9; ++i) {
        lookUpHost(QStringLiteral("127.0.0.%1").arg(i), &context, [&](const QHostInfo&) { ++answers; });
    }
    ASSERT_TRUE(runUntil([&] { return answers == 9; }));
    // Shorter than those of Qt stay.
    EXPECT_TRUE(holdsWithin(std::chrono::seconds{20}, [&] { return threads() <= before; }));
}

TEST(HostLookup, TellsNobodyWhoHasGone)
{
    const std::ptrdiff_t before = threads();
    bool isTold = false;
    for (int i = 0; i < 50; ++i) {
        auto context = std::make_unique<QObject>();
        lookUpHost(QStringLiteral("localhost"), context.get(), [&](const QHostInfo&) { isTold = true; });
        if (i % 2 == 0) {
            std::this_thread::yield();
        }
        context.reset();
    }
    poll("the end of the threads", [&] { return threads() <= before; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTold);
}

} // namespace roost::test
