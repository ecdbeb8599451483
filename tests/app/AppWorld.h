#pragma once

#include "app/AppModel.h"
#include "model/Arrival.h"
#include "service/InMemorySecretStore.h"
#include "tests/app/HesitantSecretStore.h"
#include "tests/notify/ScriptedNotificationCenter.h"
#include "tests/support/Await.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemorySettings.h"
#include "tests/support/ModelRoost.h"
#include "tests/support/VirtualTime.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace roost::test {

/// The system around the app, as far as the app sees it.
class ScriptedSystemEvents final : public SystemEvents {
public:
    Observer observer;
    /// Nothing while nobody watches.
    std::function<void()> folderChanged;
    std::filesystem::path watched;
    int observed = 0;
    /// Called when the folder is about to be watched.
    std::function<void()> onWatch = [] {};

    void observe(Observer next) override
    {
        ++observed;
        observer = std::move(next);
    }
    std::unique_ptr<FolderWatcher> watch(std::filesystem::path folder,
                                         std::function<void()> onChange) override
    {
        onWatch();
        watched = std::move(folder);
        folderChanged = std::move(onChange);
        return std::make_unique<Watcher>(*this);
    }

private:
    class Watcher final : public FolderWatcher {
    public:
        explicit Watcher(ScriptedSystemEvents& events) : events_{&events} {}
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;
        ~Watcher() override { events_->folderChanged = {}; }

    private:
        ScriptedSystemEvents* events_;
    };
};

class CountingTimelines final : public WidgetTimelines {
public:
    int reloads = 0;

    void reloadAll() override { ++reloads; }
};

class ScriptedLoginItem final : public LoginItem {
public:
    bool enabled = false;
    /// Switched off in the desktop.
    bool isHidden = false;
    /// Why nothing can be changed.
    std::optional<std::string> trouble;
    int changes = 0;

    Status status() const override
    {
        if (!enabled) {
            return Status::notRegistered;
        }
        return isHidden ? Status::requiresApproval : Status::enabled;
    }
    std::expected<void, std::string> add() override { return become(true); }
    std::expected<void, std::string> remove() override { return become(false); }

private:
    std::expected<void, std::string> become(bool next)
    {
        if (trouble) {
            return std::unexpected(*trouble);
        }
        ++changes;
        enabled = next;
        return {};
    }
};

/// Free, unless another process refreshes.
class OthersRefreshLock final : public RefreshLock {
public:
    /// Another process has the lock until `release`, for which one may wait here.
    void hold() { held_.emplace(); }
    /// Who asks from now on gets it before the one that waits.
    void letPass() { isPassing_ = true; }
    void release() { std::exchange(held_, std::nullopt)->set(true); }

    QCoro::Task<std::unique_ptr<Held>> acquire(std::string, std::stop_token) override
    {
        if (held_ && !isPassing_) {
            const auto coming = held_->coming();
            co_await coming;
        }
        co_return std::make_unique<Held>();
    }

private:
    std::optional<Arrival<bool>> held_;
    bool isPassing_ = false;
};

/// A machine with the app on it: everything that outlives a run of the program, and the run itself. All in
/// memory, on a time of its own.
class AppWorld {
public:
    AppWorld();
    ~AppWorld();
    AppWorld(const AppWorld&) = delete;
    AppWorld& operator=(const AppWorld&) = delete;

    /// Starts the app; the first cycle is over unless the service takes its time.
    AppModel& start();
    /// Quits it, as a user does.
    void quit();
    AppModel& app() { return *app_; }
    const AppState& state() const { return app_->state(); }

    /// The profile is signed in, as if by an earlier run: its token is in the store.
    void signInBefore(const std::string& profileId);
    /// Signs in now, through the browser.
    void signIn(const std::string& profileId);

    /// What lies in the shared file; nothing without a readable one.
    std::optional<RoostStoreFile> file() const { return store.read(); }
    /// The record in the shared file.
    std::optional<RoostAccountRecord> record(const std::string& profileId) const;
    AnnouncedLedger ledger() const { return ledgerStore.load(); }
    std::string stored(const std::string& profileId);

    /// "widget p1" and the like since the last call.
    std::vector<std::string> widgetRequests();

    VirtualTime time{Date{std::chrono::seconds(1'750'000'000)}};
    MemoryFileSystem disk;
    FailingFileSystem files{disk};
    MemorySettings settings;
    InMemorySecretStore secrets;
    /// How the app gets at them.
    HesitantSecretStore keyring{secrets};
    /// What the app takes for its keyring when it is started.
    SecretStore* keyringOfApp = &keyring;
    ModelRoost roost{time};
    ModelRoost::Browser browser{roost};
    OthersRefreshLock lock;
    ScriptedSystemEvents events;
    CountingTimelines widgets;
    ScriptedLoginItem loginItem;
    bool hasLoginItem = true;
    ScriptedNotificationCenter center;
    std::vector<std::string> opened;
    WidgetStore store{files, "/data/group"};
    AnnouncedLedgerStore ledgerStore{files, "/data/BriskenRoost/announced.json"};
    int notificationServices = 0;

private:
    std::unique_ptr<AppModel> app_;
};

} // namespace roost::test
