#include "programs/brisken-roost/Machine.h"

#include "app/RefreshLoop.h"
#include "model/SharedContainer.h"
#include "notify/AnnouncedLedgerStore.h"
#include "platform/AutostartEntry.h"
#include "platform/IniSettings.h"
#include "service/RoostEnvironment.h"
#include "service/SecureURL.h"

namespace roost {

namespace {

/// Under which name secrets for the service at `base` are kept: those of the program's own service under the
/// program's, any other's under a name of its own, so that no trial is ever told them. The origin decides.
std::string keychainService(const QUrl& base)
{
    const std::string own = "world.brisken.roost.mac";
    if (sameOrigin(base, RoostEnvironment::baseURL(InfoDictionary::builtIn()))) {
        return own;
    }
    const auto origin = QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment;
    return own + " at " + base.toString(origin).toStdString();
}

} // namespace

WidgetStore Machine::store()
{
    using namespace SharedContainer;
    return {files_, resolve(UserFolders::fromEnvironment(), groupIdentifier(info_)).directory};
}

std::filesystem::path Machine::settingsFile()
{
    return isTrial() ? store().directory() / "settings.ini" : IniSettings::location();
}

std::filesystem::path Machine::ledgerFile()
{
    return isTrial() ? store().directory() / "announced.json"
                     : AnnouncedLedgerStore::location(SharedContainer::UserFolders::fromEnvironment());
}

std::optional<std::filesystem::path> Machine::autostartFolder()
{
    return isTrial() ? store().directory() / "autostart"
                     : AutostartEntry::folderOf(QProcessEnvironment::systemEnvironment());
}

bool Machine::isTrial() const
{
    return SharedContainer::groupIdentifier(info_) !=
           SharedContainer::groupIdentifier(InfoDictionary::builtIn());
}

std::filesystem::path Machine::appLockFile()
{
    const std::filesystem::path folder = locks();
    static_cast<void>(files_.makeFolders(folder));
    return folder / "app";
}

/// Not in the runtime folder: a process that was started without one must meet the same locks.
std::filesystem::path Machine::locks() { return store().directory() / "locks"; }

NetworkHttpSession& Machine::session()
{
    if (!session_) {
        session_ = std::make_unique<NetworkHttpSession>();
    }
    return *session_;
}

std::expected<QUrl, std::string> Machine::base(const std::optional<QString>& text) const
{
    const std::string address =
        text ? text->toStdString()
             : RoostEnvironment::baseURL(info_).toString(QUrl::FullyEncoded).toStdString();
    const auto url = secureURL(address);
    if (!url) {
        return std::unexpected("The base URL is neither https nor a service on this machine.");
    }
    return url->url();
}

std::expected<std::chrono::seconds, std::string> Machine::refreshInterval() const
{
    constexpr auto usual = static_cast<int>(RefreshLoop::interval.count());
    const auto seconds = info_.wholeNumber(u"RoostRefreshInterval", 1, usual);
    if (!seconds) {
        return std::unexpected(seconds.error().toStdString());
    }
    return std::chrono::seconds{seconds->value_or(usual)};
}

AccountServices Machine::services(const QUrl& base)
{
    secrets_ = std::make_unique<KeychainSecretStore>(keychainService(base), KeychainSecretStore::Patience{});
    lock_ = std::make_unique<FileRefreshLock>(locks());
    oauth_ = std::make_unique<OAuthClient>(base, session(), *secrets_, systemClock());
    return {*oauth_, {base, session()}, *secrets_, *lock_, {store(), systemClock()}, systemClock()};
}

} // namespace roost
