#include "bus/ModelMethods.h"

#include "bus/BusValues.h"
#include "bus/RoostBus.h"

namespace roost::ModelMethods {

namespace {

using Answering = QCoro::Task<Answer>;

const Answer done = QVariantList{};

std::string textIn(const QVariantList& arguments) { return arguments.at(0).toString().toStdString(); }

Answer noSuchProfile()
{
    return std::unexpected(Refusal{RoostBus::noSuchProfile, QStringLiteral("There is no such profile.")});
}

Answering requestRefresh(App app, QVariantList arguments)
{
    const bool isToWait = arguments.at(0).toBool();
    if (isToWait) {
        auto refreshing = app.model->refreshed();
        co_await refreshing;
    } else {
        app.model->requestRefresh();
    }
    co_return Answer{done};
}

Answering signIn(App app, QVariantList arguments)
{
    const bool isToWait = arguments.at(0).toBool();
    auto signingIn = app.model->signIn();
    std::optional<std::string> profileId;
    if (isToWait) {
        profileId = co_await signingIn;
    }
    co_return Answer{QVariantList{BusValues::sent(profileId)}};
}

Answering signInAddress(App app, QVariantList /*arguments*/)
{
    auto asking = app.model->signInAddress();
    const std::optional<std::string> address = co_await asking;
    co_return Answer{QVariantList{BusValues::sent(address)}};
}

Answering cancelSignIn(App app, QVariantList /*arguments*/)
{
    app.model->cancelSignIn();
    co_return Answer{done};
}

Answering signOut(App app, QVariantList arguments)
{
    const std::string profileId = textIn(arguments);
    if (app.model->state().account(profileId) == nullptr) {
        co_return noSuchProfile();
    }
    auto signingOut = app.model->signOut(profileId);
    co_await signingOut;
    co_return Answer{done};
}

Answering select(App app, QVariantList arguments)
{
    const std::string profileId = textIn(arguments);
    if (app.model->state().account(profileId) == nullptr) {
        co_return noSuchProfile();
    }
    app.model->select(profileId);
    co_return Answer{done};
}

Answering setLaunchAtLogin(App app, QVariantList arguments)
{
    app.model->setLaunchAtLogin(arguments.at(0).toBool());
    co_return Answer{done};
}

Answering checkLaunchAtLogin(App app, QVariantList /*arguments*/)
{
    app.model->checkLaunchAtLogin();
    co_return Answer{done};
}

Answering openRoost(App app, QVariantList /*arguments*/)
{
    app.model->openRoost();
    co_return Answer{done};
}

Answering checkForUpdates(App app, QVariantList /*arguments*/)
{
    app.model->updater().checkNow();
    co_return Answer{done};
}

Answering installAndRestart(App app, QVariantList /*arguments*/)
{
    app.model->updater().installAndRestart();
    co_return Answer{done};
}

Answering identify(App app, QVariantList /*arguments*/)
{
    co_return Answer{QVariantList{app.model->baseURL().toString(QUrl::FullyEncoded),
                                  QString::fromStdString(app.model->sharedFolder().string())}};
}

Answering quit(App app, QVariantList /*arguments*/)
{
    app.quitSoon();
    co_return Answer{done};
}

} // namespace

const std::map<QString, Method>& all()
{
    static const std::map<QString, Method> methods{
        {QStringLiteral("RequestRefresh"), {QStringLiteral("b"), {}, requestRefresh}},
        {QStringLiteral("SignIn"), {QStringLiteral("b"), QStringLiteral("as"), signIn}},
        {QStringLiteral("SignInAddress"), {{}, QStringLiteral("as"), signInAddress}},
        {QStringLiteral("CancelSignIn"), {{}, {}, cancelSignIn}},
        {QStringLiteral("SignOut"), {QStringLiteral("s"), {}, signOut}},
        {QStringLiteral("Select"), {QStringLiteral("s"), {}, select}},
        {QStringLiteral("SetLaunchAtLogin"), {QStringLiteral("b"), {}, setLaunchAtLogin}},
        {QStringLiteral("CheckLaunchAtLogin"), {{}, {}, checkLaunchAtLogin}},
        {QStringLiteral("OpenRoost"), {{}, {}, openRoost}},
        {QStringLiteral("CheckForUpdates"), {{}, {}, checkForUpdates}},
        {QStringLiteral("InstallAndRestart"), {{}, {}, installAndRestart}},
        {QStringLiteral("Identify"), {{}, QStringLiteral("ss"), identify}},
        {QStringLiteral("Quit"), {{}, {}, quit}},
    };
    return methods;
}

} // namespace roost::ModelMethods
