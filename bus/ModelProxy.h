#pragma once

#include "bus/SessionBus.h"
#include "model/AppState.h"

#include <QCoro/QCoroTask>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <chrono>
#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <string>

namespace roost {

/// The running app as another process sees it over the session bus: the same state, kept up to date, and what
/// can be asked of it. Main thread; its tasks may outlive it.
class ModelProxy final : public QObject {
    Q_OBJECT

public:
    /// `addresses` are those of the bus, as `sessionBusAddresses` gives them.
    explicit ModelProxy(QString addresses);
    ~ModelProxy() override;

    /// Connects to the bus, unless it is connected, finds the running app and reads its state. Whether there
    /// is one; if not, it is noticed when it comes. Bounded in time. Once more after the bus has gone.
    QCoro::Task<bool> connectToApp();

    /// Whether the app is running and its state is known.
    bool isRunning() const { return isRunning_; }
    /// As it was last heard of.
    const AppState& state() const { return state_; }

    /// What came of a call.
    enum class Answer {
        done,
        /// Also for an id that cannot cross the bus.
        noSuchProfile,
        /// The app is not there, refuses, or does not answer in time; in the last case it may yet do it.
        failed,
    };

    /// Without `wait`, answered at once; with it, when the numbers are as fresh as the request makes them. A
    /// refresh may take minutes.
    QCoro::Task<Answer> requestRefresh(bool wait);
    /// Answered when the sign-in has ended, with the profile that signed in; nothing when none did, as when
    /// another sign-in is running.
    QCoro::Task<std::expected<std::optional<std::string>, Answer>> signIn();
    /// What the running sign-in opens in the browser, when it does; nothing without one.
    QCoro::Task<std::optional<std::string>> signInAddress();
    QCoro::Task<Answer> cancelSignIn();
    /// Answered when the profile is forgotten.
    QCoro::Task<Answer> signOut(std::string profileId);
    QCoro::Task<Answer> select(std::string profileId);
    /// What comes of it is in the state.
    QCoro::Task<Answer> setLaunchAtLogin(bool enabled);
    QCoro::Task<Answer> checkLaunchAtLogin();
    QCoro::Task<Answer> openRoost();
    QCoro::Task<Answer> checkForUpdates();
    QCoro::Task<Answer> installAndRestart();
    /// Which app it is: the address of its service and the folder of its data. Nothing when it does not say.
    struct Identity {
        QString baseURL;
        QString sharedFolder;

        bool operator==(const Identity&) const = default;
    };
    QCoro::Task<std::optional<Identity>> identify();
    /// Answered before the app ends.
    QCoro::Task<Answer> quitApp();

Q_SIGNALS:
    /// The app came or went.
    void isRunningChanged();

private Q_SLOTS: // NOLINT: called by the bus
    void changeProperties(const QString& interface, const QVariantMap& changed,
                          const QStringList& invalidated, const QDBusMessage& message);
    void changeOwner(const QString& name, const QString& before, const QString& now,
                     const QDBusMessage& message);
    void loseBus();

private:
    struct Link;

    static QCoro::Task<bool> connected(std::shared_ptr<Link> link, QString addresses);
    static QCoro::Task<void> findApp(std::shared_ptr<Link> link);
    static QCoro::Task<void> readUntilFresh(std::shared_ptr<Link> link);
    static void release(Link& link, std::size_t count);
    static QCoro::Task<Answer> call(std::shared_ptr<Link> link, QString method, QVariantList arguments,
                                    std::chrono::milliseconds timeout);
    static QCoro::Task<std::expected<std::optional<std::string>, Answer>>
    callForText(std::shared_ptr<Link> link, QString method, QVariantList arguments);
    static QCoro::Task<std::optional<std::string>> addressOf(std::shared_ptr<Link> link);
    static QCoro::Task<std::optional<Identity>> identityOf(std::shared_ptr<Link> link);
    static QCoro::Task<QDBusMessage> ask(std::shared_ptr<Link> link, QString method, QVariantList arguments,
                                         std::chrono::milliseconds timeout);
    static Answer meaningOf(const QDBusMessage& answer);
    QCoro::Task<Answer> callAbout(const std::string& profileId, QString method,
                                  std::chrono::milliseconds timeout);
    enum class Listening { begins, ends };
    void listen(Listening listening);
    void read();
    bool take(const QDBusMessage& everything);
    void setRunning(bool isRunning);

    QString addresses_;
    AppState state_;
    bool isRunning_ = false;
    std::shared_ptr<Link> link_;
};

} // namespace roost
