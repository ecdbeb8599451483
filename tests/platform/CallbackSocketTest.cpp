#include "platform/CallbackSocket.h"

#include "model/RoostLog.h"
#include "tests/support/Await.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QLocalSocket>

#include <array>
#include <csignal>
#include <cstring>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Standing = CallbackSocket::Standing;

const std::string callback = "briskenroost://callback?code=canary&state=2";

/// A listener that takes every address or none.
struct Listener {
    ScratchFolder folder;
    std::vector<std::string> offered;
    bool isTaking = true;
    std::optional<CallbackSocket> socket;

    explicit Listener(std::chrono::milliseconds patience = guardTime)
    {
        socket.emplace(
            folder.path(),
            [this](std::string_view address) {
                offered.emplace_back(address);
                return isTaking;
            },
            patience);
    }

    std::filesystem::path path() const { return folder / "callback"; }

    Handover send(const std::string& address) const
    {
        return await(sendToCallbackSocket(folder.path(), address, guardTime));
    }
};

sockaddr_un addressOf(const std::filesystem::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return address;
}

/// A plain connection, or a listener, without any of our code: for children, which have no event loop.
int rawSocket(const std::filesystem::path& path, bool isListener)
{
    const sockaddr_un address = addressOf(path);
    const auto* plain = reinterpret_cast<const sockaddr*>(&address);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isFine = isListener
                            ? ::bind(descriptor, plain, sizeof address) == 0 && ::listen(descriptor, 5) == 0
                            : ::connect(descriptor, plain, sizeof address) == 0;
    return isFine ? descriptor : -1;
}

/// What a listener says to `sent`, until it hangs up.
std::string rawTalk(const std::filesystem::path& path, const std::string& sent)
{
    const int descriptor = rawSocket(path, false);
    if (descriptor < 0) {
        return "no connection";
    }
    (void)::send(descriptor, sent.data(), sent.size(), MSG_NOSIGNAL);
    std::string heard;
    std::array<char, 64> block{};
    for (ssize_t count = 0; (count = ::read(descriptor, block.data(), block.size())) > 0;) {
        heard.append(block.data(), static_cast<std::size_t>(count));
    }
    return heard;
}

TEST(CallbackSocket, HandsAnAddressOver)
{
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    EXPECT_EQ(listener.send(callback), Handover::taken);
    EXPECT_THAT(listener.offered, ElementsAre(callback));
    EXPECT_EQ(listener.send("another"), Handover::taken) << "one after the other";
}

TEST(CallbackSocket, SaysThatAnAddressWasNotWaitedFor)
{
    Listener listener;
    listener.isTaking = false;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    EXPECT_EQ(listener.send(callback), Handover::declined);
    EXPECT_THAT(listener.offered, ElementsAre(callback));
}

TEST(CallbackSocket, IsForThisUserAlone)
{
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    struct stat found{};
    ASSERT_EQ(::lstat(listener.path().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode, mode_t{S_IFSOCK | 0600});
}

TEST(CallbackSocket, FindsNobody)
{
    const ScratchFolder folder;
    EXPECT_EQ(await(sendToCallbackSocket(folder.path(), callback, guardTime)), Handover::nobody);
    EXPECT_EQ(await(sendToCallbackSocket(folder / "missing", callback, guardTime)), Handover::nobody);
}

TEST(CallbackSocket, LeavesNothingToConnectToWhenItGoes)
{
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    listener.socket.reset();
    EXPECT_FALSE(std::filesystem::exists(listener.path()));
    EXPECT_EQ(listener.send(callback), Handover::nobody);
}

TEST(CallbackSocket, ReplacesWhatADeadProcessLeftBehind)
{
    Listener listener;
    ChildProcess dead{[&](const ChildProcess::Voice& voice) {
        CallbackSocket socket(listener.folder.path(), [](std::string_view) { return true; });
        voice.say(socket.listen() == Standing::listening ? "listening\n" : "not listening\n");
        ::raise(SIGKILL);
    }};
    ASSERT_EQ(dead.line(), "listening");
    dead.wait();
    ASSERT_EQ(dead.signal(), SIGKILL);
    ASSERT_TRUE(std::filesystem::exists(listener.path()));
    EXPECT_EQ(listener.send(callback), Handover::nobody);
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    EXPECT_EQ(listener.send(callback), Handover::taken);
}

TEST(CallbackSocket, TellsTheSecondProcessThatAnotherOneWaits)
{
    Listener listener;
    ChildProcess first{[&](const ChildProcess::Voice& voice) {
        CallbackSocket socket(listener.folder.path(), [](std::string_view) { return true; });
        voice.say(socket.listen() == Standing::listening ? "listening\n" : "not listening\n");
        ::pause();
    }};
    ASSERT_EQ(first.line(), "listening");
    EXPECT_EQ(listener.socket->listen(), Standing::busy);
    listener.socket.reset();
    EXPECT_TRUE(std::filesystem::exists(listener.path())) << "the socket of the first one stays";
}

TEST(CallbackSocket, IsUnusableWhereNoSocketCanBeMade)
{
    const auto take = [](std::string_view) { return true; };
    EXPECT_EQ(CallbackSocket("/nowhere/at/all", take).listen(), Standing::unusable);

    const ScratchFolder folder;
    const std::filesystem::path deep = folder / std::string(100, 'd');
    ASSERT_TRUE(std::filesystem::create_directory(deep));
    EXPECT_EQ(CallbackSocket(deep, take).listen(), Standing::unusable) << "longer than addresses can be";

    std::filesystem::create_symlink(folder / "elsewhere", folder / "callback.lock");
    EXPECT_EQ(CallbackSocket(folder.path(), take).listen(), Standing::unusable);
    EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
}

TEST(CallbackSocket, StandsInNobodysWayWhenItCannotListen)
{
    Listener listener;
    std::filesystem::create_directories(listener.path() / "not empty");
    ASSERT_EQ(listener.socket->listen(), Standing::unusable);
    std::filesystem::remove_all(listener.path());
    CallbackSocket another(listener.folder.path(), [](std::string_view) { return true; });
    EXPECT_EQ(another.listen(), Standing::listening);
}

TEST(CallbackSocket, HangsUpOnAMessageThatIsTooLong)
{
    const LogCatcher log;
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    const std::string longest(longestCallback, 'a');
    EXPECT_EQ(listener.send(longest), Handover::taken);
    EXPECT_EQ(listener.send(longest + 'a'), Handover::declined);
    EXPECT_EQ(listener.send(longest + longest + longest), Handover::declined);
    EXPECT_THAT(listener.offered, ElementsAre(longest));
    EXPECT_EQ(log.messages(RoostLog::auth().categoryName()).size(), 2);
}

TEST(CallbackSocket, TakesOneAddressPerConnection)
{
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    ChildProcess client{
        [&](const ChildProcess::Voice& voice) { voice.say(rawTalk(listener.path(), "one\ntwo\n") + "."); }};
    EXPECT_TRUE(runUntil([&] { return !listener.offered.empty(); }));
    EXPECT_FALSE(runUntil([&] { return listener.offered.size() > 1; }, 50ms));
    EXPECT_EQ(client.wait(), "taken\n.");
    EXPECT_THAT(listener.offered, ElementsAre("one"));
}

TEST(CallbackSocket, TakesAnAddressThatComesInPieces)
{
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    QLocalSocket client;
    client.connectToServer(QString::fromStdString(listener.path().string()));
    for (const char piece : callback + "\n") {
        client.write(&piece, 1);
        client.flush();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(runUntil([&] { return client.canReadLine(); }));
    EXPECT_THAT(listener.offered, ElementsAre(callback));
}

TEST(CallbackSocket, DoesNotWaitForWhoSaysNothing)
{
    Listener listener(100ms);
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    QLocalSocket silent;
    QLocalSocket half;
    for (QLocalSocket* client : {&silent, &half}) {
        client->connectToServer(QString::fromStdString(listener.path().string()));
    }
    half.write("briskenroost:");
    EXPECT_EQ(listener.send(callback), Handover::taken) << "meanwhile others are served";
    EXPECT_TRUE(runUntil([&] {
        return silent.state() == QLocalSocket::UnconnectedState &&
               half.state() == QLocalSocket::UnconnectedState;
    }));
    EXPECT_THAT(listener.offered, ElementsAre(callback));
}

TEST(CallbackSocket, SurvivesACrowdThatSaysNothing)
{
    const LogCatcher log;
    Listener listener(200ms);
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    std::vector<std::unique_ptr<QLocalSocket>> crowd;
    for (int i = 0; i < 40; ++i) {
        crowd.push_back(std::make_unique<QLocalSocket>());
        crowd.back()->connectToServer(QString::fromStdString(listener.path().string()));
    }
    EXPECT_TRUE(runUntil([&] {
        return std::ranges::all_of(
            crowd, [](const auto& one) { return one->state() == QLocalSocket::UnconnectedState; });
    }));
    EXPECT_EQ(listener.send(callback), Handover::taken);
}

TEST(CallbackSocket, RefusesAnotherUser)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator can be another user";
    }
    const LogCatcher log;
    Listener listener;
    ASSERT_EQ(listener.socket->listen(), Standing::listening);
    // Doors that ought to be shut stand open here: the question who is there is asked all the same.
    ASSERT_EQ(::chmod(listener.folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(listener.path().c_str(), 0666), 0);
    ChildProcess stranger{[&](const ChildProcess::Voice& voice) {
        const bool isAnother = ::setgid(65534) == 0 && ::setuid(65534) == 0;
        voice.say((isAnother ? rawTalk(listener.path(), callback + "\n") : "still the administrator") +
                  ".\n");
    }};
    EXPECT_TRUE(runUntil([&] { return !log.lines().isEmpty(); }));
    EXPECT_EQ(stranger.line(), ".");
    EXPECT_THAT(listener.offered, IsEmpty());
    EXPECT_THAT(log.messages(RoostLog::auth().categoryName()),
                ElementsAre(QStringLiteral("callback socket: a connection was refused")));
}

TEST(CallbackSocket, GivesNothingToAListenerOfAnotherUser)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the administrator can be another user";
    }
    Listener listener;
    ASSERT_EQ(::chmod(listener.folder.path().c_str(), 0777), 0);
    ChildProcess stranger{[&](const ChildProcess::Voice& voice) {
        const bool isAnother = ::setgid(65534) == 0 && ::setuid(65534) == 0;
        const int descriptor = isAnother ? rawSocket(listener.path(), true) : -1;
        voice.say(descriptor < 0 ? "not listening\n" : "listening\n");
        const int connection = ::accept(descriptor, nullptr, nullptr);
        std::array<char, 64> block{};
        voice.say("heard " + std::to_string(::read(connection, block.data(), block.size())) + "\n");
    }};
    ASSERT_EQ(stranger.line(), "listening");
    EXPECT_EQ(listener.send(callback), Handover::declined);
    EXPECT_EQ(stranger.line(), "heard 0");
}

TEST(CallbackSocket, DoesNotWaitForAListenerThatSaysNothing)
{
    Listener listener;
    ChildProcess silent{[&](const ChildProcess::Voice& voice) {
        voice.say(rawSocket(listener.path(), true) < 0 ? "not listening\n" : "listening\n");
        ::pause();
    }};
    ASSERT_EQ(silent.line(), "listening");
    EXPECT_EQ(await(sendToCallbackSocket(listener.folder.path(), callback, 100ms)), Handover::declined);
}

TEST(CallbackSocket, TakesOtherAnswersForANo)
{
    for (const std::string answer :
         {"", "takes\n", "taken", "declined\n", "taken taken taken taken taken\n"}) {
        Listener listener;
        ChildProcess odd{[&](const ChildProcess::Voice& voice) {
            const int descriptor = rawSocket(listener.path(), true);
            voice.say(descriptor < 0 ? "not listening\n" : "listening\n");
            const int connection = ::accept(descriptor, nullptr, nullptr);
            std::array<char, 256> block{};
            (void)::read(connection, block.data(), block.size());
            (void)::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
        }};
        ASSERT_EQ(odd.line(), "listening");
        EXPECT_EQ(listener.send(callback), Handover::declined) << answer;
    }
}

} // namespace
} // namespace roost::test
