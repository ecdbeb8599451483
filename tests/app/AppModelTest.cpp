#include "app/AppModel.h"

#include "model/RefreshSignal.h"
#include "model/RoostLog.h"
#include "tests/app/AppWorld.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Pair;
using Status = RoostAccountRecord::Status;

/// Another store, whose answers about all keys are on their way until a test lets each of them through.
class SlowKeyring final : public SecretStore {
public:
    explicit SlowKeyring(SecretStore& behind) : behind_{behind} {}

    bool isSlow = false;
    /// Of each answer that is on its way, in the order of the questions.
    std::vector<Arrival<bool>> answers;

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override
    {
        return behind_.get(std::move(key));
    }
    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override
    {
        return behind_.contains(std::move(key));
    }
    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override
    {
        return behind_.set(std::move(value), std::move(key));
    }
    QCoro::Task<bool> remove(std::string key) override { return behind_.remove(std::move(key)); }
    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>> keys(std::string prefix) override
    {
        auto asking = behind_.keys(std::move(prefix));
        auto answer = co_await asking;
        if (isSlow) {
            answers.emplace_back();
            const auto coming = answers.back().coming();
            co_await coming;
        }
        co_return answer;
    }
    QCoro::Task<bool> unlock() override { return behind_.unlock(); }

private:
    SecretStore& behind_;
};

class AppModelTest : public testing::Test, protected AppWorld {
protected:
    LogCatcher log;

    QList<QString> told() const { return log.messages("world.brisken.roost.mac.sync"); }

    /// What was said on the console since the last call.
    QList<QString> complaints()
    {
        const QList<QString> all = log.messages(RoostLog::console().categoryName());
        return all.sliced(std::exchange(complaints_, all.size()));
    }
    static QString cannotWrite(const char* why)
    {
        return QStringLiteral("Brisken Roost: could not write the widget snapshot (%1)")
            .arg(QString::fromLatin1(why));
    }
    static QString cannotAnnounce(const char* why)
    {
        return QStringLiteral("Brisken Roost: could not write down what was announced (%1)")
            .arg(QString::fromLatin1(why));
    }

private:
    qsizetype complaints_ = 0;
};

TEST_F(AppModelTest, HasNobodyAtFirst)
{
    start();

    EXPECT_THAT(state().accounts(), IsEmpty());
    EXPECT_FALSE(app().isSignedIn());
    EXPECT_EQ(app().selected(), nullptr);
    EXPECT_TRUE(std::holds_alternative<RoostWidgetContent::SignedOut>(app().content(time.now())));
    EXPECT_THAT(widgetRequests(), IsEmpty());
    EXPECT_TRUE(file().has_value());
}

TEST_F(AppModelTest, RefreshesWhoeverIsSignedInAtOnce)
{
    signInBefore("p1");
    signInBefore("p2");
    start();

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1", "widget p2"));
    EXPECT_EQ(record("p1")->profileName, "Profile p1");
    EXPECT_EQ(record("p1")->fetchedAt, time.now());
    EXPECT_EQ(record("p2")->snapshot->views.total, 700);
    EXPECT_EQ(state().lastRefreshAt(), time.now());
    EXPECT_GE(widgets.reloads, 1);
}

TEST_F(AppModelTest, StartsOnce)
{
    signInBefore("p1");
    start();
    app().start();
    time.advance(300s);

    EXPECT_EQ(events.observed, 1);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1", "widget p1"));
}

TEST_F(AppModelTest, BelievesTheStoreAndNotTheFileAboutWhoIsSignedIn)
{
    signInBefore("p1");
    signInBefore("p3");
    RoostSnapshot old = numbersOf("p2", time.now() - 24h);
    ASSERT_TRUE(store.write(
        {.writtenAt = time.now() - 1h,
         .accounts = {{.profileId = "p2", .profileName = "Two", .status = Status::ok, .snapshot = old},
                      {.profileId = "p1", .profileName = "One", .status = Status::signedOut}}}));
    roost.trouble = [](const HttpRequest&) { return noNetwork(); };
    start();

    ASSERT_EQ(state().accounts().size(), 3U);
    EXPECT_EQ(state().accounts()[0].profileId, "p2");
    EXPECT_EQ(state().accounts()[0].status, Status::signedOut);
    EXPECT_EQ(state().accounts()[0].snapshot, old);
    EXPECT_EQ(state().accounts()[1].profileId, "p1");
    EXPECT_EQ(state().accounts()[1].status, Status::ok);
    EXPECT_EQ(state().accounts()[2],
              (RoostAccountRecord{.profileId = "p3", .profileName = "Profile", .lastAttemptAt = time.now()}));
    EXPECT_EQ(file()->accounts, state().accounts());
}

TEST_F(AppModelTest, KeepsTheLastNumbersWhenARefreshFails)
{
    signInBefore("p1");
    start();
    const RoostAccountRecord before = state().accounts()[0];
    roost.trouble = [](const HttpRequest&) { return response(503); };
    time.advance(300s);

    EXPECT_EQ(state().accounts()[0].snapshot, before.snapshot);
    EXPECT_EQ(state().accounts()[0].fetchedAt, before.fetchedAt);
    EXPECT_EQ(state().accounts()[0].lastAttemptAt, time.now());
    EXPECT_EQ(state().accounts()[0].status, Status::ok);
    EXPECT_TRUE(told().contains(QStringLiteral("refresh: failed (unavailable), keeping the last numbers")));
}

TEST_F(AppModelTest, KeepsTheNumbersOfAProfileWhoseAuthorizationEnds)
{
    signInBefore("p1");
    signInBefore("p2");
    start();
    roost.revoke("p1");
    widgetRequests();
    time.advance(300s);
    EXPECT_EQ(record("p1")->status, Status::signedOut);
    EXPECT_TRUE(record("p1")->snapshot.has_value());
    EXPECT_EQ(record("p1")->lastAttemptAt, time.now());
    EXPECT_EQ(stored("p1"), "");
    EXPECT_TRUE(
        told().contains(QStringLiteral("refresh: Roost ended this authorization, profile signed out")));

    widgetRequests();
    time.advance(300s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p2"));
}

TEST_F(AppModelTest, FallsBackToTheFirstSignedInProfileWhenTheChosenOneIsGone)
{
    signInBefore("p1");
    signInBefore("p2");
    settings.file["selectedProfileId"] = "gone";
    start();
    EXPECT_EQ(state().selectedProfileID(), "gone");
    EXPECT_EQ(app().selected()->profileId, "p1");

    roost.revoke("p1");
    time.advance(300s);
    EXPECT_EQ(app().selected()->profileId, "p2");
}

TEST_F(AppModelTest, RemembersWhichProfileIsShown)
{
    signInBefore("p1");
    signInBefore("p2");
    start();
    app().select("p2");
    EXPECT_EQ(app().selected()->profileId, "p2");
    EXPECT_EQ(settings.file["selectedProfileId"], "p2");
    quit();

    start();
    EXPECT_EQ(state().selectedProfileID(), "p2");
}

TEST_F(AppModelTest, ShowsWhatAWidgetWouldShow)
{
    signInBefore("p1");
    start();
    const auto content = app().content(time.now() + 5min);

    ASSERT_TRUE(std::holds_alternative<RoostWidgetContent::Ready>(content));
    EXPECT_EQ(std::get<RoostWidgetContent::Ready>(content).freshness.age, 5min);
}

TEST_F(AppModelTest, AsksALockedStoreAgainAndKeepsEverybodyMeanwhile)
{
    signInBefore("p1");
    signInBefore("p2");
    ASSERT_TRUE(
        store.write({.writtenAt = time.now(), .accounts = {{.profileId = "p1", .profileName = "One"}}}));
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    start();
    ASSERT_EQ(state().accounts().size(), 1U);
    EXPECT_EQ(state().accounts()[0].status, Status::ok);
    EXPECT_EQ(state().accounts()[0].lastAttemptAt, time.now());

    secrets.unavailable.reset();
    time.advance(60s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1", "widget p2"));
    EXPECT_EQ(file()->accounts.size(), 2U);
}

TEST_F(AppModelTest, AsksALockedStoreAgainThoughNobodyIsKnown)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    start();
    time.advance(100s);
    ASSERT_THAT(state().accounts(), IsEmpty());

    secrets.unavailable.reset();
    time.advance(22s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
    EXPECT_TRUE(record("p1").has_value());
    // The loop goes on as if nothing had been.
    time.advance(300s - 122s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
    EXPECT_EQ(time.pauses(), 1U);
}

TEST_F(AppModelTest, AsksTheStoreAsSoonAsItHasChanged)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::noService};
    start();
    time.advance(1s);
    events.observer.secretsChanged();
    time.advance(2s);
    EXPECT_THAT(widgetRequests(), IsEmpty());

    secrets.unavailable.reset();
    events.observer.secretsChanged();
    events.observer.secretsChanged();
    time.advance(2s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
    events.observer.secretsChanged();
    time.advance(60s);
    EXPECT_THAT(widgetRequests(), IsEmpty());
}

TEST_F(AppModelTest, RefreshesWhomAStoreNamesThatOpensRightAfterACycle)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    start();
    secrets.unavailable.reset();
    events.observer.secretsChanged();
    time.advance(2s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, AsksTheStoreAgainThatHasChangedWhileItAnswered)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    SlowKeyring slow{secrets};
    keyringOfApp = &slow;
    start();
    slow.isSlow = true;
    events.observer.secretsChanged();
    secrets.unavailable.reset();
    // However often it is said: one question at a time.
    events.observer.secretsChanged();
    events.observer.secretsChanged();
    ASSERT_EQ(slow.answers.size(), 1U);
    slow.answers[0].set(true);
    time.advance(0s);
    ASSERT_EQ(slow.answers.size(), 2U);
    // It is told once who is signed in, and needs no further answer.
    events.observer.secretsChanged();
    slow.answers[1].set(true);
    time.advance(2s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
    EXPECT_EQ(slow.answers.size(), 2U);
    quit();
}

TEST_F(AppModelTest, BelievesNoAnswerThatCameAfterTheFirst)
{
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    SlowKeyring slow{secrets};
    keyringOfApp = &slow;
    start();
    secrets.unavailable.reset();
    roost.revoke("p1");
    time.advance(10s);
    slow.isSlow = true;
    app().requestRefresh();
    events.observer.secretsChanged();
    ASSERT_EQ(slow.answers.size(), 2U);
    // The cycle hears who is signed in, and that the service ended it.
    slow.answers[0].set(true);
    time.advance(0s);
    ASSERT_EQ(record("p1")->status, Status::signedOut);
    slow.answers[1].set(true);
    time.advance(0s);

    EXPECT_EQ(record("p1")->status, Status::signedOut);
    quit();
}

TEST_F(AppModelTest, SaysOnceThatTheKeyringIsLocked)
{
    const auto heard = [this] { return log.messages("world.brisken.roost.mac.auth"); };
    signInBefore("p1");
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::noService};
    start();
    time.advance(1000s);
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    time.advance(1000s);
    EXPECT_THAT(heard(),
                ElementsAre(QStringLiteral("there is no keyring: waiting to hear who is signed in"),
                            QStringLiteral("the keyring is locked: waiting to hear who is signed in")));

    secrets.unavailable.reset();
    time.advance(1000s);
    EXPECT_THAT(heard(), testing::SizeIs(3));
    EXPECT_EQ(heard().back(), QStringLiteral("the keyring has said who is signed in"));
}

TEST_F(AppModelTest, SaysNothingOfAKeyringThatAnswers)
{
    signInBefore("p1");
    start();
    time.advance(1000s);

    EXPECT_THAT(log.messages("world.brisken.roost.mac.auth"), IsEmpty());
}

TEST_F(AppModelTest, QuitsWhileItWaitsForTheKeyring)
{
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::locked};
    start();
    const Pending<void> ending{app().quit()};
    time.advance(0s);

    EXPECT_TRUE(ending.isDone());
    EXPECT_EQ(time.pauses(), 0U);
}

TEST_F(AppModelTest, FindsOutThatATokenIsGoneWhenTheStoreOpens)
{
    ASSERT_TRUE(
        store.write({.writtenAt = time.now(), .accounts = {{.profileId = "p1", .profileName = "One"}}}));
    secrets.values["client-id|https://roost.test"] = "client";
    secrets.unavailable = SecretsUnavailable{SecretsUnavailable::Why::notAnswering};
    start();
    secrets.unavailable.reset();
    time.advance(60s);

    EXPECT_EQ(record("p1")->status, Status::signedOut);
}

TEST_F(AppModelTest, DoesNotOverwriteAFileThatItCannotRead)
{
    signInBefore("p1");
    ASSERT_TRUE(
        store.write({.writtenAt = time.now(), .accounts = {{.profileId = "p2", .profileName = "Two"}}}));
    const std::string before = *disk.contents(store.file());
    files.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::io_error));
    start();
    EXPECT_EQ(disk.contents(store.file()), before);

    files.recover();
    time.advance(300s);
    EXPECT_EQ(record("p2")->profileName, "Two");
    EXPECT_EQ(record("p1")->profileName, "Profile p1");
}

TEST_F(AppModelTest, GoesOnWhenTheDiskIsFullAndWritesWhenItIsNot)
{
    signInBefore("p1");
    start();
    files.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::no_space_on_device));
    roost.onRead = [](RoostSnapshot& numbers) { numbers.views.total = 800; };
    time.advance(300s);
    EXPECT_EQ(state().accounts()[0].snapshot->views.total, 800);
    EXPECT_EQ(record("p1")->snapshot->views.total, 700);

    files.recover();
    time.advance(300s);
    EXPECT_EQ(record("p1")->snapshot->views.total, 800);
}

TEST_F(AppModelTest, SaysOnceThatTheDiskIsFull)
{
    signInBefore("p1");
    start();
    const auto full = std::make_error_code(std::errc::no_space_on_device);
    files.failEvery(FailingFileSystem::Operation::write, full);
    time.advance(1200s);
    EXPECT_THAT(complaints(), ElementsAre(cannotAnnounce("No space left on device"),
                                          cannotWrite("No space left on device")));

    // The same trouble is another matter when all was well in between, and so is another trouble.
    files.recover();
    time.advance(600s);
    EXPECT_THAT(complaints(), IsEmpty());
    files.failEvery(FailingFileSystem::Operation::write, full);
    time.advance(600s);
    EXPECT_THAT(complaints(), ElementsAre(cannotAnnounce("No space left on device"),
                                          cannotWrite("No space left on device")));
    files.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::io_error));
    time.advance(600s);
    EXPECT_THAT(complaints(),
                ElementsAre(cannotAnnounce("Input/output error"), cannotWrite("Input/output error")));
}

TEST_F(AppModelTest, GoesOnInAHomeInWhichNothingCanTakeAnothersPlace)
{
    signInBefore("p1");
    files.failEvery(FailingFileSystem::Operation::rename,
                    std::make_error_code(std::errc::operation_not_permitted));
    start();
    time.advance(1200s);
    EXPECT_EQ(state().accounts()[0].snapshot->views.total, 700);
    EXPECT_EQ(state().accounts()[0].fetchedAt, time.now());
    EXPECT_THAT(complaints(), testing::UnorderedElementsAre(cannotAnnounce("Operation not permitted"),
                                                            cannotWrite("Operation not permitted")));
    files.recover();
    time.advance(300s);
    EXPECT_TRUE(record("p1").has_value());
}

TEST_F(AppModelTest, KeepsItsPaceWhenTheClockIsSet)
{
    signInBefore("p1");
    start();
    time.advance(100s);
    for (const auto jump : {-std::chrono::hours(48), std::chrono::hours(24)}) {
        time.setClock(time.now() + jump);
        widgetRequests();
        time.advance(900s);
        EXPECT_THAT(widgetRequests(), ElementsAre("widget p1", "widget p1", "widget p1"));
        EXPECT_EQ(record("p1")->status, Status::ok);
    }
}

TEST_F(AppModelTest, SaysOnceThatTheFileCannotBeRead)
{
    ASSERT_TRUE(
        store.write({.writtenAt = time.now(), .accounts = {{.profileId = "p2", .profileName = "Two"}}}));
    files.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::io_error));
    start();
    time.advance(1200s);

    EXPECT_THAT(complaints(), ElementsAre(QStringLiteral("Brisken Roost: could not read the widget snapshot, "
                                                         "which is left as it is")));
}

TEST_F(AppModelTest, WritesAtTheEndWhatItCouldNotWriteBefore)
{
    signInBefore("p1");
    start();
    files.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::no_space_on_device));
    roost.onRead = [](RoostSnapshot& numbers) { numbers.best->views = 1500; };
    time.advance(300s);
    ASSERT_FALSE(ledger().entries.contains("p1|milestone:x|the best:1000"));
    files.recover();
    const int reloads = widgets.reloads;
    quit();

    EXPECT_EQ(record("p1")->snapshot->best->views, 1500);
    EXPECT_TRUE(ledger().entries.contains("p1|milestone:x|the best:1000"));
    EXPECT_EQ(widgets.reloads, reloads + 1);
}

TEST_F(AppModelTest, WritesAtTheEndWhatWasKeptFromAFileThatCouldNotBeRead)
{
    signInBefore("p1");
    ASSERT_TRUE(
        store.write({.writtenAt = time.now(), .accounts = {{.profileId = "p2", .profileName = "Two"}}}));
    files.failEvery(FailingFileSystem::Operation::read, std::make_error_code(std::errc::io_error));
    start();
    files.recover();
    quit();

    EXPECT_TRUE(record("p1").has_value());
    EXPECT_TRUE(record("p2").has_value());
}

TEST_F(AppModelTest, WritesNothingAtTheEndThatIsWrittenAlready)
{
    signInBefore("p1");
    start();
    time.advance(400s);
    const auto writes = [this] {
        return std::ranges::count(files.seen(), FailingFileSystem::Operation::openTemporary);
    };
    const auto before = writes();
    quit();

    EXPECT_EQ(writes(), before);
}

TEST_F(AppModelTest, RefreshesWhenTheMachineWakes)
{
    signInBefore("p1");
    start();
    time.advance(100s);
    widgetRequests();
    events.observer.woke();
    time.advance(0s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, RefreshesOnceForOneRequestOfAWidgetHoweverItHears)
{
    signInBefore("p1");
    start();
    time.advance(100s);
    widgetRequests();
    RefreshSignal::request(store, time.now(), [this](Date at) {
        events.folderChanged();
        events.observer.refreshRequested(at);
        events.folderChanged();
    });
    time.advance(10s);
    events.folderChanged();
    events.observer.refreshRequested(time.now() - 10s);
    time.advance(0s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, TakesASignalFromBeforeTheFileForDone)
{
    signInBefore("p1");
    ASSERT_TRUE(store.write({.writtenAt = time.now() - 1min, .accounts = {}}));
    start();
    time.advance(100s);
    widgetRequests();
    events.observer.refreshRequested(time.now() - 100s - 2min);
    time.advance(0s);
    EXPECT_THAT(widgetRequests(), IsEmpty());

    events.observer.refreshRequested(time.now() - 100s - 30s);
    time.advance(0s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, HearsARequestThatCouldNotBeWritten)
{
    signInBefore("p1");
    start();
    time.advance(100s);
    widgetRequests();
    files.failEvery(FailingFileSystem::Operation::write, std::make_error_code(std::errc::no_space_on_device));
    EXPECT_FALSE(
        RefreshSignal::request(store, time.now(), [this](Date at) { events.observer.refreshRequested(at); }));
    time.advance(0s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, TakesARequestFromBeforeItsStartForItsFirstCycle)
{
    signInBefore("p1");
    ASSERT_TRUE(store.write({.writtenAt = time.now() - 1h, .accounts = {}}));
    RefreshSignal::request(store, time.now() - 1min, [](Date) {});
    start();
    events.folderChanged();
    time.advance(299s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, HearsARequestThatCameBeforeTheFolderWasWatched)
{
    signInBefore("p1");
    events.onWatch = [this] { RefreshSignal::request(store, time.now(), [](Date) {}); };
    start();
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));

    time.advance(1s);
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, HearsRequestsAfterTheClockWasSetBack)
{
    signInBefore("p1");
    start();
    time.advance(100s);
    RefreshSignal::request(store, time.now(), [](Date) {});
    events.folderChanged();
    time.advance(100s);
    widgetRequests();
    time.setClock(time.now() - 24h);
    RefreshSignal::request(store, time.now(), [](Date) {});
    events.folderChanged();
    events.folderChanged();
    time.advance(0s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, RemembersWhatItTellsBeforeItTells)
{
    signInBefore("p1");
    start();
    roost.onRead = [](RoostSnapshot& numbers) { numbers.best->views = 1500; };
    center.onRequest = [this] { EXPECT_TRUE(ledger().entries.contains("p1|milestone:x|the best:1000")); };
    time.advance(300s);

    ASSERT_EQ(center.added.size(), 1U);
    EXPECT_EQ(center.added[0].identifier, "p1|milestone:x|the best:1000");
    EXPECT_EQ(notificationServices, 1);
    time.advance(3000s);
    EXPECT_EQ(center.added.size(), 1U);
}

TEST_F(AppModelTest, TellsNothingOldAfterARestart)
{
    signInBefore("p1");
    start();
    roost.onRead = [](RoostSnapshot& numbers) { numbers.best->views = 1500; };
    time.advance(300s);
    quit();
    roost.onRead = [](RoostSnapshot& numbers) { numbers.best->views = 1600; };
    start();
    time.advance(300s);

    EXPECT_EQ(center.added.size(), 1U);
}

TEST_F(AppModelTest, MakesNoWayToTheUserBeforeThereIsSomethingToTell)
{
    signInBefore("p1");
    start();
    time.advance(1000s);

    EXPECT_EQ(notificationServices, 0);
}

TEST_F(AppModelTest, OpensThePageOfTheProfileOrTheOverview)
{
    signInBefore("p1");
    start();
    app().openRoost();
    roost.onRead = [](RoostSnapshot& numbers) { numbers.roostUrl = WebURL::parse("https://Roost.test/own"); };
    time.advance(300s);
    app().openRoost();

    EXPECT_THAT(opened, ElementsAre("https://roost.test/roost/overview", "https://Roost.test/own"));
}

TEST_F(AppModelTest, QuitsInTheMidstOfARefreshWithItsTokenStored)
{
    signInBefore("p1");
    roost.latency = [] { return 40s; };
    start();
    // On its way back.
    time.advance(30s);
    quit();

    EXPECT_TRUE(roost.isAlive(stored("p1")));
    EXPECT_EQ(roost.reuses(), 0U);
}

TEST_F(AppModelTest, WatchesTheFolderUntilItQuits)
{
    start();
    EXPECT_TRUE(events.folderChanged);
    EXPECT_EQ(events.watched, store.directory());
    const Pending<void> ending{app().quit()};

    EXPECT_FALSE(events.folderChanged);
    quit();
}

TEST_F(AppModelTest, LeavesARefreshThatItCutsShortOutOfTheRecords)
{
    signInBefore("p1");
    start();
    const RoostAccountRecord before = *record("p1");
    roost.latency = [] { return 20s; };
    time.advance(305s);
    quit();

    EXPECT_EQ(record("p1"), before);
    EXPECT_FALSE(log.saw(u"refresh: failed"));
}

TEST_F(AppModelTest, LetsACallerWaitForTheFirstCycleThoughTheStoreTakesItsTime)
{
    signInBefore("p1");
    keyring.listing.shut();
    start();
    const Pending<void> waiting{app().refreshed()};
    EXPECT_FALSE(waiting.isDone());

    keyring.listing.open();
    time.advance(0s);
    EXPECT_TRUE(waiting.isDone());
    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
}

TEST_F(AppModelTest, LetsNobodyWaitWhenItQuitsBeforeItsFirstCycle)
{
    signInBefore("p1");
    keyring.listing.shut();
    start();
    const Pending<void> waiting{app().refreshed()};
    const Pending<void> ending{app().quit()};
    keyring.listing.open();
    time.advance(0s);

    EXPECT_TRUE(waiting.isDone());
    EXPECT_TRUE(ending.isDone());
    EXPECT_THAT(widgetRequests(), IsEmpty());
}

TEST_F(AppModelTest, SaysAtItsStartWhetherItIsOpenedAtLogin)
{
    loginItem.enabled = true;
    start();
    EXPECT_TRUE(state().launchAtLogin());
}

TEST_F(AppModelTest, HasItselfOpenedAtLoginAsTheUserWishes)
{
    start();
    app().setLaunchAtLogin(true);
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_TRUE(state().launchAtLogin());
    app().setLaunchAtLogin(false);
    EXPECT_FALSE(loginItem.enabled);
    EXPECT_FALSE(state().launchAtLogin());
}

TEST_F(AppModelTest, PublishesThatOpeningAtLoginWaitsForTheUser)
{
    loginItem.enabled = true;
    start();
    EXPECT_FALSE(state().launchNeedsApproval());
    loginItem.isHidden = true;
    app().checkLaunchAtLogin();
    EXPECT_TRUE(state().launchNeedsApproval());
    EXPECT_FALSE(state().launchAtLogin());
    app().setLaunchAtLogin(false);
    EXPECT_FALSE(state().launchNeedsApproval());
}

TEST_F(AppModelTest, SaysThatOpeningAtLoginCouldNotBeChanged)
{
    start();
    loginItem.trouble = "No space left on device";
    app().setLaunchAtLogin(true);
    EXPECT_TRUE(log.saw(u"Brisken Roost: launch at login could not be changed (No space left on device)"));
    EXPECT_FALSE(state().launchAtLogin());
}

TEST_F(AppModelTest, CannotBeOpenedAtLoginWhereNothingDoesThat)
{
    hasLoginItem = false;
    start();
    app().setLaunchAtLogin(true);
    EXPECT_FALSE(state().launchAtLogin());
}

TEST_F(AppModelTest, TellsWhatBecomesOfEachProfileAtTheLevelThatItDeserves)
{
    signInBefore("p1");
    start();
    roost.trouble = [](const HttpRequest&) { return response(503); };
    time.advance(300s);
    roost.trouble = {};
    roost.revoke("p1");
    time.advance(60s);

    QList<std::pair<QtMsgType, QString>> lines;
    for (const LogCatcher::Line& line : log.lines()) {
        if (line.message.startsWith(QLatin1String("refresh:"))) {
            EXPECT_EQ(line.category, "world.brisken.roost.mac.sync");
            lines.emplace_back(line.level, line.message);
        }
    }
    EXPECT_THAT(
        lines,
        ElementsAre(
            Pair(QtInfoMsg, QStringLiteral("refresh: updated")),
            Pair(QtWarningMsg, QStringLiteral("refresh: failed (unavailable), keeping the last numbers")),
            Pair(QtWarningMsg,
                 QStringLiteral("refresh: Roost ended this authorization, profile signed out"))));
}

TEST_F(AppModelTest, SkipsWhoeverSignsOutDuringTheCycle)
{
    signInBefore("p1");
    signInBefore("p2");
    roost.latency = [] { return 10s; };
    start();
    time.advance(2s);
    app().signOut("p2");
    time.advance(200s);

    EXPECT_THAT(widgetRequests(), ElementsAre("widget p1"));
    EXPECT_FALSE(record("p2").has_value());
}

} // namespace
} // namespace roost::test
