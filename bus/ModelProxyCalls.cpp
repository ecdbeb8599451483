#include "bus/BusValues.h"
#include "bus/ModelProxy.h"
#include "bus/RoostBus.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds patience{5};
/// A sign-out asks the keyring, a refresh many profiles, a sign-in the user, who is given ten minutes.
constexpr std::chrono::minutes longPatience{15};

} // namespace

ModelProxy::Answer ModelProxy::meaningOf(const QDBusMessage& answer)
{
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return Answer::done;
    }
    return answer.errorName() == RoostBus::noSuchProfile ? Answer::noSuchProfile : Answer::failed;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::call(std::shared_ptr<Link> link, QString method,
                                                 QVariantList arguments, std::chrono::milliseconds timeout)
{
    auto asking = ask(link, method, arguments, timeout);
    const QDBusMessage answer = co_await asking;
    co_return meaningOf(answer);
}

QCoro::Task<std::expected<std::optional<std::string>, ModelProxy::Answer>>
ModelProxy::callForText(std::shared_ptr<Link> link, QString method, QVariantList arguments)
{
    auto asking = ask(link, method, arguments, longPatience);
    const QDBusMessage answer = co_await asking;
    const auto text = BusValues::received<std::optional<std::string>>(answer.arguments().value(0));
    if (meaningOf(answer) != Answer::done || !text) {
        co_return std::unexpected(Answer::failed);
    }
    co_return *text;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::callAbout(const std::string& profileId, QString method,
                                                      std::chrono::milliseconds timeout)
{
    if (!BusValues::canCross(profileId)) {
        // What arrives would be another's.
        return []() -> QCoro::Task<Answer> { co_return Answer::noSuchProfile; }();
    }
    return call(link_, std::move(method), {QString::fromStdString(profileId)}, timeout);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::requestRefresh(bool wait)
{
    return call(link_, QStringLiteral("RequestRefresh"), {wait}, wait ? longPatience : patience);
}

QCoro::Task<std::expected<std::optional<std::string>, ModelProxy::Answer>> ModelProxy::signIn()
{
    return callForText(link_, QStringLiteral("SignIn"), {true});
}

QCoro::Task<std::optional<std::string>> ModelProxy::signInAddress() { return addressOf(link_); }

QCoro::Task<std::optional<std::string>> ModelProxy::addressOf(std::shared_ptr<Link> link)
{
    auto asking = callForText(link, QStringLiteral("SignInAddress"), {});
    const auto address = co_await asking;
    co_return address ? *address : std::nullopt;
}

QCoro::Task<ModelProxy::Answer> ModelProxy::cancelSignIn()
{
    return call(link_, QStringLiteral("CancelSignIn"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::signOut(std::string profileId)
{
    return callAbout(profileId, QStringLiteral("SignOut"), longPatience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::select(std::string profileId)
{
    return callAbout(profileId, QStringLiteral("Select"), patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::setLaunchAtLogin(bool enabled)
{
    return call(link_, QStringLiteral("SetLaunchAtLogin"), {enabled}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::checkLaunchAtLogin()
{
    return call(link_, QStringLiteral("CheckLaunchAtLogin"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::openRoost()
{
    return call(link_, QStringLiteral("OpenRoost"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::checkForUpdates()
{
    return call(link_, QStringLiteral("CheckForUpdates"), {}, patience);
}

QCoro::Task<ModelProxy::Answer> ModelProxy::installAndRestart()
{
    return call(link_, QStringLiteral("InstallAndRestart"), {}, patience);
}

QCoro::Task<std::optional<ModelProxy::Identity>> ModelProxy::identify() { return identityOf(link_); }

QCoro::Task<std::optional<ModelProxy::Identity>> ModelProxy::identityOf(std::shared_ptr<Link> link)
{
    auto asking = ask(link, QStringLiteral("Identify"), {}, patience);
    const QDBusMessage answer = co_await asking;
    if (meaningOf(answer) != Answer::done || answer.signature() != QLatin1String("ss")) {
        co_return std::nullopt;
    }
    co_return Identity{answer.arguments().at(0).toString(), answer.arguments().at(1).toString()};
}

QCoro::Task<ModelProxy::Answer> ModelProxy::quitApp()
{
    return call(link_, QStringLiteral("Quit"), {}, patience);
}

} // namespace roost
