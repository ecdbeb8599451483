#include "platform/KeychainSecretStore.h"
#include "tests/support/Await.h"
#include "tests/support/EventLoopWatch.h"
#include "tests/support/PrivateKeyring.h"

#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QProcess>
#include <QTimer>

namespace roost::test {

namespace {

using Why = SecretsUnavailable::Why;
using std::chrono::milliseconds;

constexpr KeychainSecretStore::Patience patient{.service = guardTime};

constexpr milliseconds limit{50};

QByteArray nameOfTheLoop() { return QAbstractEventDispatcher::instance()->metaObject()->className(); }

} // namespace

TEST(EventLoopWatch, SeesALoopThatIsHeldUp)
{
    const auto sleepALittle = [] {
        EventLoopWatch watch;
        bool isDone = false;
        QTimer::singleShot(0, [&] {
            std::this_thread::sleep_for(milliseconds{200});
            isDone = true;
        });
        EXPECT_TRUE(watch.runUntil([&] { return isDone; }));
        return watch.longestWait();
    };

    EXPECT_GT(waitInTheBestRound(limit, sleepALittle), limit);
}

TEST(KeychainSecretStoreLoop, GoesOnWhileAHealthyKeyringIsUsed)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();
    const auto useIt = [] {
        EventLoopWatch watch;
        auto store = std::make_unique<KeychainSecretStore>("service", patient);
        std::vector<std::unique_ptr<Pending<std::expected<void, KeychainError>>>> calls;
        QTimer::singleShot(0, [&] {
            for (int i = 0; i < 50; ++i) {
                calls.push_back(std::make_unique<Pending<std::expected<void, KeychainError>>>(
                    store->set(std::string(5000, 'x'), std::to_string(i % 10))));
            }
        });
        EXPECT_TRUE(watch.runUntil([&] { return calls.size() == 50 && calls.back()->isDone(); }));
        return watch.longestWait();
    };

    EXPECT_LE(waitInTheBestRound(limit, useIt), limit);
}

TEST(KeychainSecretStoreLoop, IsHardlyHeldUpByTheEndOfAStoreThatWaits)
{
    const PrivateBus bus;
    PrivateKeyring keyring{bus};
    keyring.startUnlocked();
    keyring.freeze();
    const auto endAStore = [] {
        auto store = std::make_unique<KeychainSecretStore>("service", patient);
        Pending running{store->get("key")};
        Pending waiting{store->set("value", "key")};
        EXPECT_FALSE(runUntil([&] { return running.isDone(); }, milliseconds{300}));
        EventLoopWatch watch;
        QTimer::singleShot(0, [&] { store.reset(); });
        EXPECT_TRUE(watch.runUntil([&] { return running.isDone() && waiting.isDone(); }));
        EXPECT_EQ(running.get(), std::unexpected(SecretsUnavailable{Why::notAnswering}));
        EXPECT_EQ(waiting.get(), std::unexpected(KeychainError{-67585}));
        EXPECT_EQ(store, nullptr);
        return watch.longestWait();
    };

    EXPECT_LE(waitInTheBestRound(limit, endAStore), limit);
}

TEST(KeychainSecretStoreLoop, NeedNotBeTheOneOfGLib)
{
    if (qgetenv("QT_NO_GLIB") == "1") {
        ASSERT_FALSE(nameOfTheLoop().contains("Glib"));
        const PrivateBus bus;
        PrivateKeyring keyring{bus};
        keyring.startUnlocked();
        KeychainSecretStore store{"service", patient};
        EXPECT_TRUE(await(store.set("value", "key")));
        EXPECT_EQ(await(store.get("key")).value(), std::optional<std::string>("value"));
        keyring.freeze();
        KeychainSecretStore impatient{"service", {.service = milliseconds{200}}};
        EXPECT_EQ(await(impatient.get("key")), std::unexpected(SecretsUnavailable{Why::notAnswering}));
        return;
    }
    // The kind of loop is chosen when a process starts.
    const ScopedVariable withoutGLib{"QT_NO_GLIB", "1"};
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    QProcess again;
    again.setProcessChannelMode(QProcess::MergedChannels);
    again.start(QStringLiteral("/proc/%1/exe").arg(QCoreApplication::applicationPid()),
                {QStringLiteral("--gtest_filter=%1.%2")
                     .arg(QString::fromUtf8(test->test_suite_name()), QString::fromUtf8(test->name()))});
    ASSERT_TRUE(again.waitForFinished(120000));
    const QByteArray output = again.readAll();
    EXPECT_EQ(again.exitCode(), 0) << output.constData();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test.")) << output.constData();
}

} // namespace roost::test
