#pragma once

#include "bus/ModelProxy.h"
#include "model/RealFileSystem.h"
#include "model/WidgetStore.h"
#include "service/NetworkHttpSession.h"
#include "tests/soak/RealProcess.h"
#include "tests/support/NotificationServerStandIn.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/PrivateKeyring.h"

#include <QJsonObject>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// The machine of somebody whose app runs for days: a session bus, a keyring, a notification server, a
/// browser that agrees to everything, a Roost service whose profiles live fast, and the app. All are
/// processes of their own, but the notification server. What must happen and does not is thrown. Main thread.
class SoakMachine {
public:
    /// Everything but the app runs when this is made.
    SoakMachine();
    ~SoakMachine();
    SoakMachine(const SoakMachine&) = delete;
    SoakMachine& operator=(const SoakMachine&) = delete;

    void startApp();
    RealProcess& app() { return *app_; }
    RealProcess& service() { return *service_; }
    /// The app as its windows see it.
    ModelProxy& proxy() { return *proxy_; }
    /// Of the bus, whichever is there at the time.
    QString busAddress() const { return bus_.address().section(u',', 0, 0); }
    PrivateKeyring& keyring() { return keyring_; }
    PrivateBus& bus() { return bus_; }
    /// The shared folder.
    const WidgetStore& store() const { return store_; }

    /// Every profile that there is, and those who are signed in.
    const std::vector<std::string>& profiles() const { return profiles_; }
    const std::set<std::string>& signedIn() const { return signedIn_; }

    /// Through the app and the browser. Returns when that is done.
    void signIn(const std::string& profile);
    void signOut(const std::string& profile);
    /// The service ends the sign-in. Returns when the app has noticed.
    void revoke(const std::string& profile);

    /// Posts to the service's control.
    void control(const QString& path, const QJsonObject& body);
    /// What it tells of itself.
    QJsonObject state();

    void endBus();
    /// The bus and what lives on it; the keyring is unlocked as after a login.
    void startBusAgain();

    /// Runs another process of the program to its end; its exit code.
    std::optional<int> run(const QStringList& arguments);

    /// Goes on for that long.
    static void pass(std::chrono::milliseconds time);

    /// Asks ten times a second, which is far less than the app has to do, until `condition` holds. False when
    /// it did not hold within `patience`.
    static bool comes(const std::function<bool()>& condition, std::chrono::milliseconds patience);

    /// For what takes the longest on a busy machine, a sign-in say, and more.
    static constexpr std::chrono::minutes guard{2};

    /// Returns when everybody who is signed in has numbers from now or later, and the bus tells the same as
    /// the file. How long that took.
    std::chrono::milliseconds recover();

    /// What the app has written to standard error; what the sanitizers have to say of any process.
    std::string log() const;
    std::string sanitizerReports() const;

private:
    QProcessEnvironment environmentOfPrograms();
    QJsonObject asked(HttpRequest request);
    bool isFresh(Date since) const;

    PrivateBus bus_;
    PrivateKeyring keyring_{bus_};
    std::unique_ptr<NotificationServerStandIn> notifications_;
    /// Beside the home.
    ScratchFolder folder_;
    QProcessEnvironment environment_;
    RealFileSystem files_;
    WidgetStore store_;
    std::unique_ptr<RealProcess> service_;
    NetworkHttpSession http_;
    QUrl control_;
    std::vector<std::string> profiles_;
    std::set<std::string> signedIn_;
    std::unique_ptr<RealProcess> app_;
    std::unique_ptr<ModelProxy> proxy_;
};

} // namespace roost::test
