#include "bus/CrossProcessNotification.h"
#include "model/InfoDictionary.h"
#include "model/RealFileSystem.h"
#include "model/RefreshSignal.h"
#include "model/SharedContainer.h"
#include "tests/bus/BusPeer.h"
#include "tests/end-to-end/UserMachine.h"
#include "tests/platform/PollUntil.h"

#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>

#include <QDeadlineTimer>

#include <algorithm>
#include <csignal>
#include <fstream>

namespace roost::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using local::Endpoint;
using local::Scenario;
using testing::HasSubstr;
using testing::Not;

const std::string mira = "mira-okafor";

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++found;
    }
    return found;
}

/// `brisken-roost run --headless` for somebody who is signed in.
class RunningApp : public testing::Test {
protected:
    RunningApp()
    {
        // Whether this machine sleeps is no business of these tests.
        environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
        machine.signIn(mira);
        store.emplace(files,
                      SharedContainer::resolve(SharedContainer::UserFolders::fromEnvironment(),
                                               SharedContainer::groupIdentifier(InfoDictionary::builtIn()))
                          .directory);
        counters().clear();
    }

    void start(std::function<bool()> prepare = [] { return true; })
    {
        app = std::make_unique<ProgramRun>(QStringList{u"run"_s, u"--headless"_s, u"--base-url"_s,
                                                       QString::fromLatin1(machine.service.base())},
                                           environment, std::move(prepare));
    }

    /// Starts it and waits for its first numbers.
    void startUp()
    {
        start();
        EXPECT_TRUE(hasUpdated(1)) << app->said();
    }

    void expectToEndBy(int signal)
    {
        app->signal(signal);
        const Finished finished = app->end();
        EXPECT_EQ(finished.code, 0) << finished.error;
        EXPECT_EQ(counters().refreshTokenReuses(), 0);
    }

    /// Whether the program has had numbers so often, in the end.
    bool hasUpdated(std::size_t times)
    {
        return runUntil([&] { return app->hasEnded() || count(app->said(), "refresh: updated") >= times; },
                        browserGuard) &&
               !app->hasEnded();
    }

    bool hasSaid(std::string_view text, std::size_t times = 1)
    {
        return runUntil([&] { return app->hasEnded() || count(app->said(), text) >= times; }, browserGuard) &&
               !app->hasEnded();
    }

    /// Asks for fresh numbers over the bus until a cycle is over that has ended since the call.
    void refresh()
    {
        machine.bus.awaitName(RoostBus::name, true);
        const BusPeer peer{machine.bus.lastingAddress()};
        refreshBy([&] { peer.callModel(u"RequestRefresh"_s, {true}); });
    }

    /// The same as a widget does, with and without a bus.
    void refreshByWord()
    {
        const BusPeer peer{machine.bus.lastingAddress()};
        refreshBy([&] {
            CrossProcessNotification::post(peer.connection(),
                                           QString::fromLatin1(RefreshSignal::notification), systemClock()());
        });
    }
    void refreshByFile()
    {
        refreshBy([&] { RefreshSignal::request(*store, systemClock()(), [](Date) {}); });
    }

    void refreshBy(const std::function<void()>& ask)
    {
        const std::size_t before = cycles();
        const QDeadlineTimer deadline{browserGuard};
        while (cycles() == before && !app->hasEnded() && !deadline.hasExpired()) {
            ask();
            // One that comes within two seconds of a cycle's beginning counts for nothing.
            static_cast<void>(runUntil([&] { return cycles() > before; }, 200ms));
        }
        EXPECT_GT(cycles(), before) << app->said();
    }

    std::size_t cycles() const
    {
        return count(app->said(), "refresh: updated") + count(app->said(), "refresh: failed");
    }

    std::optional<RoostAccountRecord> record() const
    {
        const auto file = store->read();
        return file && !file->accounts.empty() ? std::optional{file->accounts.front()} : std::nullopt;
    }

    /// Every request to `endpoint` meets `kind` from now on.
    void set(Endpoint endpoint, Scenario::Kind kind, std::chrono::milliseconds delay = 0ms)
    {
        Scenario scenario;
        scenario.kind = kind;
        scenario.delay = delay;
        scenario.processed = true;
        machine.service.state().scenarios.set(local::ScenarioBook::everyone, endpoint, scenario);
    }

    local::Counters& counters() { return machine.service.state().counters; }

    UserMachine machine;
    QProcessEnvironment environment = machine.withoutDisplay();
    RealFileSystem files;
    std::optional<WidgetStore> store;
    std::unique_ptr<ProgramRun> app;
};

TEST_F(RunningApp, WritesTheNumbersAndEndsInGoodOrder)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::filesystem::remove(store->file());
        startUp();
        EXPECT_TRUE(pollUntil([this] { return record() && record()->snapshot; }, browserGuard));
        EXPECT_EQ(record()->profileId, mira);
        expectToEndBy(signal);
        EXPECT_FALSE(machine.bus.hasName(RoostBus::name));
    }
}

TEST_F(RunningApp, StoresTheTokenThatIsOnItsWayWhenItEnds)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        set(Endpoint::token, Scenario::Kind::delay, 2s);
        const int before = counters().requests(Endpoint::token);
        start();
        ASSERT_TRUE(runUntil([&] { return counters().requests(Endpoint::token) > before; }, browserGuard));
        expectToEndBy(signal);
        EXPECT_THAT(app->said(), Not(HasSubstr("refresh: updated")));

        machine.service.state().scenarios.clear();
        EXPECT_EQ(machine.run(u"sync"_s).output, "Mira Okafor: updated\n");
        EXPECT_EQ(counters().refreshTokenReuses(), 0);
        EXPECT_EQ(machine.keptTokens(mira), 1);
    }
}

TEST_F(RunningApp, OutlivesTheBusAndComesBackToIt)
{
    startUp();
    machine.bus.end();
    refreshByFile();
    ASSERT_TRUE(hasUpdated(2)) << app->said();
    ASSERT_TRUE(hasSaid("no session bus, going on without it"));

    machine.bus.startAgain();
    machine.keyring.startUnlocked();
    refreshByFile();
    ASSERT_TRUE(hasUpdated(3)) << app->said();
    ASSERT_TRUE(hasSaid("on the session bus again"));
    // The model, and a word from another process.
    refresh();
    ASSERT_TRUE(hasUpdated(4)) << app->said();
    refreshByWord();
    EXPECT_TRUE(hasUpdated(5)) << app->said();
    // Its tokens are in the keyring of the new bus.
    machine.service.expireAccessTokens();
    refresh();
    EXPECT_TRUE(hasUpdated(6)) << app->said();
    EXPECT_EQ(count(app->said(), "refresh: failed"), 0U);
    expectToEndBy(SIGTERM);
    EXPECT_EQ(count(app->said(), "no session bus"), 1U);
    EXPECT_EQ(count(app->said(), "on the session bus again"), 1U);
}

TEST_F(RunningApp, WaitsForAKeyringThatIsLockedWhenItStarts)
{
    for (const bool isAnybodyKnown : {true, false}) {
        if (!isAnybodyKnown) {
            std::filesystem::remove(store->file());
        }
        machine.keyring.lock();
        start();
        ASSERT_TRUE(hasSaid("the keyring is locked"));
        // Its first cycle has come to nothing.
        ASSERT_TRUE(isAnybodyKnown
                        ? hasSaid("refresh: failed")
                        : pollUntil([this] { return std::filesystem::exists(store->file()); }, browserGuard));
        machine.keyring.unlock();
        ASSERT_TRUE(hasUpdated(1)) << app->said();
        EXPECT_EQ(count(app->said(), "the keyring is locked"), 1U);
        expectToEndBy(SIGTERM);
    }
}

TEST_F(RunningApp, WaitsForAKeyringThatIsNotThereWhenItStarts)
{
    machine.keyring.end();
    start();
    ASSERT_TRUE(hasSaid("there is no keyring"));
    ASSERT_TRUE(hasSaid("refresh: failed"));
    machine.keyring.startUnlocked();
    ASSERT_TRUE(hasUpdated(1)) << app->said();
    expectToEndBy(SIGTERM);
}

TEST_F(RunningApp, OutlivesTheKeyringAndComesBackToIt)
{
    startUp();
    machine.keyring.end();
    machine.service.expireAccessTokens();
    refresh();
    ASSERT_TRUE(hasSaid("refresh: failed"));
    EXPECT_EQ(record()->status, RoostAccountRecord::Status::ok);

    machine.keyring.startUnlocked();
    refresh();
    ASSERT_TRUE(hasUpdated(2)) << app->said();
    expectToEndBy(SIGTERM);
    EXPECT_EQ(machine.keptTokens(mira), 1);
}

TEST_F(RunningApp, OutlivesTheNetwork)
{
    set(Endpoint::widget, Scenario::Kind::drop);
    start();
    ASSERT_TRUE(hasSaid("refresh: failed"));
    machine.service.state().scenarios.clear();
    refresh();
    ASSERT_TRUE(hasUpdated(1)) << app->said();
    expectToEndBy(SIGTERM);
}

/// A small disk in place of the user's data, for the process that calls this alone.
bool mountSmallDisk(const char* folder)
{
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("none", folder, "tmpfs", 0, "size=256k,mode=700") == 0;
}

TEST_F(RunningApp, OutlivesAFullDisk)
{
    const std::string data = machine.bus.dataHome().string();
    start([folder = data.c_str()] { return mountSmallDisk(folder); });
    if (!hasUpdated(1)) {
        ASSERT_EQ(app->end().code, 77) << app->said();
        GTEST_SKIP()
            << "only the administrator can mount a small disk; a file system that fails stands in for "
               "it, in the process of the tests";
    }
    // The disk of the program, from outside.
    const std::filesystem::path disk = "/proc/" + std::to_string(app->pid()) + "/root" + data;
    const WidgetStore seen{files,
                           "/proc/" + std::to_string(app->pid()) + "/root" + store->directory().string()};
    const auto writtenAt = [&seen] {
        const auto file = seen.read();
        return file ? file->writtenAt : Date::min();
    };
    ASSERT_TRUE(pollUntil([&] { return writtenAt() > Date::min(); }, browserGuard));
    const std::filesystem::path filler = disk / "filler";
    {
        std::ofstream file{filler};
        file << std::string(1'000'000, 'x') << std::flush;
        EXPECT_FALSE(file);
    }
    const Date before = writtenAt();
    refresh();
    refresh();
    ASSERT_TRUE(hasUpdated(3)) << app->said();
    EXPECT_EQ(writtenAt(), before);
    EXPECT_EQ(count(app->said(), "could not write the widget snapshot (No space left on device)"), 1U);

    std::filesystem::remove(filler);
    refresh();
    EXPECT_TRUE(pollUntil([&] { return writtenAt() > before; }, browserGuard));
    EXPECT_EQ(count(app->said(), "could not write the widget snapshot"), 1U);
    expectToEndBy(SIGTERM);
}

} // namespace
} // namespace roost::test
