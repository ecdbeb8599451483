#include "bus/ModelMethods.h"

#include "bus/RoostBus.h"

namespace roost::ModelMethods {

namespace {

using Answer = QCoro::Task<std::optional<Refusal>>;

std::string textIn(const QVariantList& arguments) { return arguments.at(0).toString().toStdString(); }

std::optional<Refusal> refusalFor(const App& app, const std::string& profileId)
{
    if (app.model->state().account(profileId) != nullptr) {
        return std::nullopt;
    }
    return Refusal{RoostBus::noSuchProfile, QStringLiteral("There is no such profile.")};
}

Answer requestRefresh(App app, QVariantList arguments)
{
    const bool isToWait = arguments.at(0).toBool();
    if (isToWait) {
        auto refreshing = app.model->refreshed();
        co_await refreshing;
    } else {
        app.model->requestRefresh();
    }
    co_return std::nullopt;
}

Answer signIn(App app, QVariantList /*arguments*/)
{
    app.model->signIn();
    co_return std::nullopt;
}

Answer signOut(App app, QVariantList arguments)
{
    const std::string profileId = textIn(arguments);
    std::optional<Refusal> refusal = refusalFor(app, profileId);
    if (!refusal) {
        auto signingOut = app.model->signOut(profileId);
        co_await signingOut;
    }
    co_return refusal;
}

Answer select(App app, QVariantList arguments)
{
    const std::string profileId = textIn(arguments);
    std::optional<Refusal> refusal = refusalFor(app, profileId);
    if (!refusal) {
        app.model->select(profileId);
    }
    co_return refusal;
}

Answer openRoost(App app, QVariantList /*arguments*/)
{
    app.model->openRoost();
    co_return std::nullopt;
}

Answer checkForUpdates(App app, QVariantList /*arguments*/)
{
    app.model->updater().checkNow();
    co_return std::nullopt;
}

Answer installAndRestart(App app, QVariantList /*arguments*/)
{
    app.model->updater().installAndRestart();
    co_return std::nullopt;
}

Answer quit(App app, QVariantList /*arguments*/)
{
    app.quitSoon();
    co_return std::nullopt;
}

} // namespace

const std::map<QString, Method>& all()
{
    static const std::map<QString, Method> methods{
        {QStringLiteral("RequestRefresh"), {QStringLiteral("b"), requestRefresh}},
        {QStringLiteral("SignIn"), {{}, signIn}},
        {QStringLiteral("SignOut"), {QStringLiteral("s"), signOut}},
        {QStringLiteral("Select"), {QStringLiteral("s"), select}},
        {QStringLiteral("OpenRoost"), {{}, openRoost}},
        {QStringLiteral("CheckForUpdates"), {{}, checkForUpdates}},
        {QStringLiteral("InstallAndRestart"), {{}, installAndRestart}},
        {QStringLiteral("Quit"), {{}, quit}},
    };
    return methods;
}

} // namespace roost::ModelMethods
