#include "bus/RefreshRoostIntent.h"

#include "bus/CrossProcessNotification.h"
#include "model/RealFileSystem.h"
#include "model/RefreshSignal.h"
#include "tests/bus/BusPeer.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace roost::test {
namespace {

const Date noon = Date{std::chrono::seconds(1'750'000'000)} + std::chrono::milliseconds(250);

class RefreshRoostIntentTest : public testing::Test {
protected:
    QCoro::Task<bool> perform() { return RefreshRoostIntent::perform(store, noon, bus.address(), guardTime); }

    ScratchFolder scratch;
    RealFileSystem files;
    WidgetStore store{files, scratch.path() / "shared"};
    PrivateBus bus;
    BusPeer app{bus.address()};
    std::vector<Date> heard;
    CrossProcessNotification::Listener listener{app.connection(),
                                                QString::fromLatin1(RefreshSignal::notification),
                                                [this](Date at) { heard.push_back(at); }};
};

TEST_F(RefreshRoostIntentTest, LeavesANoteAndTellsWhoListens)
{
    app.catchUp();
    EXPECT_TRUE(await(perform()));
    EXPECT_EQ(RefreshSignal::lastRequest(store), noon);
    // The bus has it by then, however soon the asking process ends.
    app.catchUp();
    EXPECT_THAT(heard, testing::ElementsAre(noon));
}

TEST_F(RefreshRoostIntentTest, LeavesANoteWithoutABus)
{
    EXPECT_TRUE(await(RefreshRoostIntent::perform(store, noon, {}, guardTime)));
    EXPECT_EQ(RefreshSignal::lastRequest(store), noon);
}

TEST_F(RefreshRoostIntentTest, TellsWhoListensWhereNoNoteCanBeLeft)
{
    std::filesystem::create_symlink("/nowhere", scratch.path() / "shared");
    app.catchUp();
    EXPECT_FALSE(await(perform()));
    app.catchUp();
    EXPECT_THAT(heard, testing::ElementsAre(noon));
}

} // namespace
} // namespace roost::test
