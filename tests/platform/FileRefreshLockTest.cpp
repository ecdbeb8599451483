#include "platform/FileRefreshLock.h"

#include "service/HttpSession.h"
#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/ScratchFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QCoroTimer>
#include <QCryptographicHash>
#include <QProcess>

#include <deque>
#include <functional>
#include <set>
#include <utility>

namespace roost::test {

namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

using Held = std::shared_ptr<RefreshLock::Held>;

/// What happens, once, between the opening of the next file and its being locked.
std::function<void()>& beforeNextLock()
{
    static std::function<void()> happening;
    return happening;
}

/// More than any test holds a lock.
constexpr std::chrono::milliseconds patience = guardTime;

/// The lock of `profileId`, to be shared by who looks at it.
QCoro::Task<Held> acquired(FileRefreshLock* lock, std::string profileId, std::stop_token stop = {})
{
    auto acquiring = lock->acquire(std::move(profileId), std::move(stop));
    Held held = co_await acquiring;
    co_return held;
}

/// Whether the lock of "p1" is free now.
bool isFree(const std::filesystem::path& folder)
{
    const LogCatcher log;
    FileRefreshLock lock(folder, 0ms);
    return await(acquired(&lock, "p1")) != nullptr;
}

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

/// The names of the files in `folder`.
std::set<std::string> filesIn(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

/// The lock, taken and let go `rounds` times; whether there was ever another holder in between. `marker` is a
/// file that only a holder makes.
QCoro::Task<bool> takeTurns(FileRefreshLock* lock, std::filesystem::path marker, int rounds)
{
    bool isAlone = true;
    for (int round = 0; round < rounds; ++round) {
        auto acquiring = acquired(lock, "p1");
        const Held held = co_await acquiring;
        const int made = ::open(marker.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
        isAlone = isAlone && held != nullptr && made >= 0;
        auto pause = QCoro::sleepFor(1ms);
        co_await pause;
        ::unlink(marker.c_str());
        ::close(made);
    }
    co_return isAlone;
}

/// Takes the lock, says so, and keeps it until it is killed.
void holdForEver(const std::filesystem::path& folder, const ChildProcess::Voice& voice)
{
    FileRefreshLock lock(folder, patience);
    const Held held = await(acquired(&lock, "p1"));
    voice.say(held ? "held\n" : "not held\n");
    while (true) {
        ::pause();
    }
}

} // namespace

} // namespace roost::test

/// In the place of the C library's.
extern "C" int flock(int descriptor, int operation) noexcept
{
    if (const auto happening = std::exchange(roost::test::beforeNextLock(), nullptr)) {
        happening();
    }
    return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

namespace roost::test {

namespace {

class FileRefreshLockTest : public testing::Test {
protected:
    ScratchFolder scratch;
    std::filesystem::path folder = scratch / "state" / "locks";
    FileRefreshLock lock{folder, patience};
};

} // namespace

TEST_F(FileRefreshLockTest, TakesAFreeLockAtOnce)
{
    Pending first(acquired(&lock, "p1"));
    ASSERT_TRUE(first.isDone());
}

TEST_F(FileRefreshLockTest, KeepsItsFilesToTheUserAndTheProfileOutOfTheirNames)
{
    const Held held = await(acquired(&lock, "Mira"));
    const QByteArray hash = QCryptographicHash::hash("Mira", QCryptographicHash::Sha256).toHex();
    EXPECT_THAT(filesIn(folder), testing::ElementsAre(hash.toStdString() + ".lock"));
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(folder / (hash.toStdString() + ".lock")), 0600U);
}

TEST_F(FileRefreshLockTest, LocksEachProfileForItselfWhateverItsId)
{
    std::vector<Held> held;
    for (const std::string& id :
         {std::string(), std::string("../../p1"), std::string("/"), std::string("\0a", 2),
          std::string("ä|\n"), std::string(100'000, 'x'), std::string("p1")}) {
        held.push_back(await(acquired(&lock, id)));
        EXPECT_NE(held.back(), nullptr);
    }
    EXPECT_THAT(filesIn(folder), SizeIs(7));
}

TEST_F(FileRefreshLockTest, KeepsTheNextOneWaitingInTheSameProcess)
{
    FileRefreshLock other(folder, patience);
    Held first = await(acquired(&lock, "p1"));
    Pending second(acquired(&other, "p1"));
    EXPECT_FALSE(second.isDone());
    EXPECT_FALSE(isFree(folder));

    first.reset();
    EXPECT_NE(second.get(), nullptr);
    EXPECT_FALSE(isFree(folder));
}

TEST_F(FileRefreshLockTest, GivesUpWhenItsPatienceIsOver)
{
    const LogCatcher log;
    const Held held = await(acquired(&lock, "p1"));
    FileRefreshLock impatient(folder, 120ms);
    EXPECT_EQ(await(acquired(&impatient, "p1")), nullptr);
    EXPECT_THAT(log.messages("world.brisken.roost.mac.auth"), SizeIs(1));
}

TEST_F(FileRefreshLockTest, StopsWaitingWhenItIsStopped)
{
    const LogCatcher log;
    const Held held = await(acquired(&lock, "p1"));
    std::stop_source stop;
    Pending waiting(acquired(&lock, "p1", stop.get_token()));
    EXPECT_FALSE(waiting.isDone());
    stop.request_stop();
    EXPECT_EQ(waiting.get(), nullptr);
    EXPECT_EQ(await(acquired(&lock, "p2", stop.get_token())), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FileRefreshLockTest, HasNoLockWhereItsFolderCannotBeMadeAndSaysSo)
{
    putBytes(scratch / "file", "");
    for (const std::filesystem::path& place :
         {scratch / "file" / "locks", scratch / "file", std::filesystem::path("/proc/locks")}) {
        const LogCatcher log;
        FileRefreshLock impossible(place, patience);
        Pending acquiring(acquired(&impossible, "p1"));
        ASSERT_TRUE(acquiring.isDone()) << place;
        EXPECT_EQ(acquiring.get(), nullptr);
        EXPECT_THAT(log.messages("world.brisken.roost.mac.auth"), SizeIs(1));
        EXPECT_FALSE(log.saw(QString::fromStdString(scratch.path().string())));
    }
}

TEST_F(FileRefreshLockTest, FollowsNoLinkInTheFilesPlace)
{
    const LogCatcher log;
    const QByteArray hash = QCryptographicHash::hash("p1", QCryptographicHash::Sha256).toHex();
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(scratch / "elsewhere", folder / (hash.toStdString() + ".lock"));
    EXPECT_EQ(await(acquired(&lock, "p1")), nullptr);
    EXPECT_FALSE(std::filesystem::exists(scratch / "elsewhere"));
}

TEST_F(FileRefreshLockTest, LocksTheFileThatIsThereWhenOneIsDeletedInBetween)
{
    beforeNextLock() = [this] { std::filesystem::remove_all(folder); };
    const Held held = await(acquired(&lock, "p1"));
    ASSERT_NE(held, nullptr);
    EXPECT_THAT(filesIn(folder), SizeIs(1));
    EXPECT_FALSE(isFree(folder));
}

TEST_F(FileRefreshLockTest, LocksTheFileThatHasTakenTheOldOnesPlace)
{
    beforeNextLock() = [this] {
        const std::filesystem::path old = *std::filesystem::directory_iterator(folder);
        std::filesystem::rename(old, scratch / "old");
        putBytes(old, "");
    };
    const Held held = await(acquired(&lock, "p1"));
    ASSERT_NE(held, nullptr);
    EXPECT_FALSE(isFree(folder));
}

TEST(FileRefreshLock, IsWaitedForLongerThanARefreshTakes)
{
    constexpr int requests = 4;
    EXPECT_GT(FileRefreshLock::defaultPatience, requests * HttpRequest{}.timeout + 30s);
}

TEST_F(FileRefreshLockTest, NeverHasTwoHoldersAmongProcesses)
{
    constexpr int processes = 3;
    constexpr int rounds = 20;
    const std::filesystem::path marker = scratch / "held";
    std::deque<ChildProcess> children;
    for (int i = 0; i < processes; ++i) {
        children.emplace_back([&](const ChildProcess::Voice& voice) {
            FileRefreshLock own(folder, patience);
            voice.say(await(takeTurns(&own, marker, rounds)) ? "alone" : "not alone");
        });
    }
    for (ChildProcess& child : children) {
        EXPECT_EQ(child.wait(), "alone");
    }
}

TEST_F(FileRefreshLockTest, IsFreedByTheDeathOfItsHolder)
{
    std::optional<ChildProcess> child(
        std::in_place, [this](const ChildProcess::Voice& voice) { holdForEver(folder, voice); });
    ASSERT_EQ(child->line(), "held");
    EXPECT_FALSE(isFree(folder));
    Pending waiting(acquired(&lock, "p1"));
    EXPECT_FALSE(waiting.isDone());

    child.reset(); // SIGKILL
    EXPECT_NE(waiting.get(), nullptr);
}

TEST_F(FileRefreshLockTest, IsFreedByItsHolderAlthoughAChildOfThatLivesOn)
{
    Held held = await(acquired(&lock, "p1"));
    ChildProcess child([](const ChildProcess::Voice& voice) {
        voice.say("here\n");
        ::pause();
    });
    ASSERT_EQ(child.line(), "here");
    held.reset();
    EXPECT_TRUE(isFree(folder));
}

TEST(FileRefreshLock, IsNotHandedOnToProgramsThatAreStartedMeanwhile)
{
    // A browser that outlives the holder would go on holding it.
    const ScratchFolder folder;
    FileRefreshLock lock(folder.path(), patience);
    const Held held = await(acquired(&lock, "p1"));
    ASSERT_NE(held, nullptr);
    QProcess child;
    child.start(QStringLiteral("ls"), {QStringLiteral("-l"), QStringLiteral("/proc/self/fd")});
    ASSERT_TRUE(child.waitForFinished());
    const QByteArray open = child.readAllStandardOutput();
    EXPECT_TRUE(open.contains("0 ->")) << open.toStdString();
    EXPECT_FALSE(open.contains(".lock")) << open.toStdString();
}

} // namespace roost::test
