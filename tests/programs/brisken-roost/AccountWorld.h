#pragma once

#include "model/RealFileSystem.h"
#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "programs/brisken-roost/AccountServices.h"
#include "service/InMemorySecretStore.h"
#include "tests/programs/brisken-roost/Records.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/OAuthFixture.h"
#include "tests/support/ScriptedService.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>
#include <vector>

namespace roost::test {

/// A lock that is free unless a test says otherwise; says what was locked, and when it was held.
class OpenLock final : public RefreshLock {
public:
    QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token) override
    {
        locked.push_back(profileId);
        if (whenAsked) {
            whenAsked();
        }
        std::unique_ptr<Held> held;
        if (isFree) {
            isHeld = true;
            held = std::make_unique<Grip>(*this);
        }
        co_return held;
    }

    bool isFree = true;
    bool isHeld = false;
    std::function<void()> whenAsked;
    std::function<void()> whenReleased;
    std::vector<std::string> locked;

private:
    struct Grip final : Held {
        explicit Grip(OpenLock& gripped) : lock(gripped) {}
        ~Grip() override
        {
            lock.isHeld = false;
            if (lock.whenReleased) {
                lock.whenReleased();
            }
        }
        Grip(const Grip&) = delete;
        Grip& operator=(const Grip&) = delete;
        OpenLock& lock;
    };
};

/// Everything that the commands about profiles touch: a scripted service, a store in memory, a file on disk.
class AccountWorld : public testing::Test {
protected:
    AccountWorld()
    {
        service.answer(path::metadata, 200, metadataOfExample());
        service.answer(path::registration, 201, R"({"client_id":"c"})");
    }

    AccountServices services()
    {
        return {oauth, {base, service.session()}, secrets, lock, file(), [] { return noon; }};
    }

    AccountFile file()
    {
        return {store, [] { return noon; }};
    }

    /// A profile that is signed in with the refresh token "R" and its id.
    void signIn(const std::string& id) { secrets.values["refresh-token|" + id] = "R" + id; }

    std::optional<std::string> refreshToken(const std::string& id)
    {
        const auto found = secrets.values.find("refresh-token|" + id);
        return found == secrets.values.end() ? std::nullopt : std::optional{found->second};
    }

    static std::string json(const RoostSnapshot& snapshot) { return RoostJSON::encoder().encode(snapshot); }

    const QUrl base{QStringLiteral("https://roost.example")};
    ScriptedService service;
    InMemorySecretStore secrets;
    OpenLock lock;
    QTemporaryDir folder;
    RealFileSystem files;
    WidgetStore store{files, folder.path().toStdString()};
    OAuthClient oauth{base, service.session(), secrets, [] { return noon; }};
    LogCatcher log;
};

} // namespace roost::test
