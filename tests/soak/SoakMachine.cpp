#include "tests/soak/SoakMachine.h"

#include "model/Clock.h"
#include "tests/support/Await.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <stdexcept>

namespace roost::test {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Between two refreshes. An hour of this is as many as in six days.
constexpr int intervalInSeconds = 2;
constexpr const char* group = "soak";
/// What a request may take, for each profile, and a frozen keyring besides.
constexpr std::chrono::minutes recoveryGuard{5};

Date now() { return systemClock()(); }

void require(bool holds, const std::string& what)
{
    if (!holds) {
        throw std::runtime_error("in vain: " + what);
    }
}

void putProgram(const std::filesystem::path& file, const std::string& text)
{
    putBytes(file, "#!/bin/sh\n" + text + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

} // namespace

SoakMachine::SoakMachine() : store_{files_, bus_.dataHome() / group}
{
    keyring_.startUnlocked();
    notifications_ = std::make_unique<NotificationServerStandIn>(bus_.address(), QStringList{u"actions"_s});
    environment_ = environmentOfPrograms();

    // Sign-ins last for seconds, so that tokens are renewed all the time.
    service_ = std::make_unique<RealProcess>(
        QStringLiteral(ROOST_SERVICE),
        QStringList{u"--profiles"_s, u"5"_s, u"--time-scale"_s, u"600"_s, u"--access-ttl"_s, u"100"_s},
        environment_, folder_ / "service.log");
    const QJsonObject ready = QJsonDocument::fromJson(service_->line()).object();
    control_ = QUrl{ready[u"control"].toString()};
    for (const QString& profile : ready[u"tokens"].toObject().keys()) {
        profiles_.push_back(profile.toStdString());
    }
    require(!profiles_.empty(), "the service starts");

    const QJsonObject info{{u"RoostBaseURL"_s, ready[u"base"]},
                           {u"RoostAppGroup"_s, QLatin1StringView(group)},
                           {u"RoostRefreshInterval"_s, intervalInSeconds}};
    putBytes(folder_ / "info.json", QJsonDocument(info).toJson().toStdString());
}

SoakMachine::~SoakMachine() = default;

QProcessEnvironment SoakMachine::environmentOfPrograms()
{
    const std::filesystem::path browser = folder_ / "browser";
    putProgram(browser, "callback=$(curl -s -o /dev/null -w '%{redirect_url}' \"$1\") && exec '" BRISKEN_ROOST
                        "' \"$callback\"");
    std::filesystem::create_directory(bus_.dataHome() / "applications");
    putBytes(bus_.dataHome() / "applications" / "browser.desktop",
             "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + browser.string() +
                 " %u\nMimeType=x-scheme-handler/http;\n");
    putBytes(bus_.home() / "config" / "mimeapps.list",
             "[Default Applications]\nx-scheme-handler/http=browser.desktop\n");

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& variable :
         {u"BROWSER"_s, u"DESKTOP_SESSION"_s, u"GNOME_DESKTOP_SESSION_ID"_s, u"KDE_FULL_SESSION"_s,
          u"XDG_CURRENT_DESKTOP"_s, u"XDG_DATA_DIRS"_s, u"XDG_CONFIG_DIRS"_s}) {
        environment.remove(variable);
    }
    environment.insert(u"DISPLAY"_s, u":999"_s);
    // By default up to 256 MiB of freed memory are kept back to catch whoever uses it still, which would look
    // like growth. The tests keep it back; here it is used again at once. Every new way to an allocation is
    // kept for good, and coroutines have no end of ways: of each the nearest frames are enough here.
    const QString reports = u"log_path="_s + QString::fromStdString((folder_ / "report").string());
    environment.insert(u"ASAN_OPTIONS"_s, reports +
                                              u":detect_leaks=1:malloc_context_size=3:quarantine_size_mb=0:"
                                              "thread_local_quarantine_size_kb=0"_s);
    // GLib's own pool of small pieces would hide what is lost in it.
    environment.insert(u"G_SLICE"_s, u"always-malloc"_s);
    environment.insert(u"UBSAN_OPTIONS"_s, reports + u":print_stacktrace=1"_s);
    return environment;
}

void SoakMachine::startApp()
{
    app_ = std::make_unique<RealProcess>(QStringLiteral(BRISKEN_ROOST),
                                         QStringList{u"--info"_s,
                                                     QString::fromStdString((folder_ / "info.json").string()),
                                                     u"run"_s, u"--headless"_s},
                                         environment_, folder_ / "app.log");
    proxy_ = std::make_unique<ModelProxy>(busAddress());
    static_cast<void>(await(proxy_->connectToApp()));
    static_cast<void>(comes([this] { return proxy_->isRunning() || !app_->isRunning(); }, guard));
    require(proxy_->isRunning(), "the app is on the bus");
}

void SoakMachine::signIn(const std::string& profile)
{
    control(u"/consent"_s, {{u"auto"_s, u"allow"_s}, {u"profile"_s, QString::fromStdString(profile)}});
    const Date begin = now();
    require(await(proxy_->signIn(), guard).value_or(std::nullopt) == profile, "the app signs in");
    signedIn_.insert(profile);
    const bool isDone = comes(
        [&] {
            const RoostAccountRecord* record = proxy_->state().account(profile);
            return record != nullptr && record->status == RoostAccountRecord::Status::ok &&
                   record->fetchedAt > begin &&
                   std::holds_alternative<SignInState::Idle>(proxy_->state().signInState());
        },
        guard);
    require(isDone, profile + " is signed in");
}

void SoakMachine::signOut(const std::string& profile)
{
    signedIn_.erase(profile);
    require(await(proxy_->signOut(profile), guard) == ModelProxy::Answer::done, "the app signs out");
    const bool isGone = comes([&] { return proxy_->state().account(profile) == nullptr; }, guard);
    require(isGone, profile + " is signed out");
}

void SoakMachine::revoke(const std::string& profile)
{
    signedIn_.erase(profile);
    control(u"/revoke"_s, {{u"profile"_s, QString::fromStdString(profile)}});
    const bool isNoticed = comes(
        [&] {
            const RoostAccountRecord* record = proxy_->state().account(profile);
            return record != nullptr && record->status == RoostAccountRecord::Status::signedOut;
        },
        recoveryGuard);
    require(isNoticed, "the app notices that " + profile + " is signed out");
}

void SoakMachine::control(const QString& path, const QJsonObject& body)
{
    QUrl url = control_;
    url.setPath(path);
    asked({.method = HttpRequest::Method::post,
           .url = url,
           .headers = {{"Content-Type", "application/json"}},
           .body = QJsonDocument(body).toJson()});
}

QJsonObject SoakMachine::state()
{
    QUrl url = control_;
    url.setPath(u"/state"_s);
    return asked({.url = url});
}

QJsonObject SoakMachine::asked(HttpRequest request)
{
    const std::string path = request.url.path().toStdString();
    const HttpResult result = await(http_.send(std::move(request), {}), recoveryGuard);
    require(result && result->status == 200,
            "the control answers " + path +
                (result ? ", but: " + result->body.toStdString() : std::string{}));
    return QJsonDocument::fromJson(result->body).object();
}

void SoakMachine::endBus()
{
    notifications_.reset();
    bus_.end();
}

void SoakMachine::startBusAgain()
{
    bus_.startAgain();
    keyring_.end();
    keyring_.startUnlocked();
    notifications_ = std::make_unique<NotificationServerStandIn>(bus_.address(), QStringList{u"actions"_s});
}

std::optional<int> SoakMachine::run(const QStringList& arguments)
{
    RealProcess process{QStringLiteral(BRISKEN_ROOST),
                        QStringList{u"--info"_s, QString::fromStdString((folder_ / "info.json").string())} +
                            arguments,
                        environment_, folder_ / "others.log"};
    return process.ended(guard);
}

void SoakMachine::pass(std::chrono::milliseconds time)
{
    static_cast<void>(runUntil([] { return false; }, time));
}

bool SoakMachine::comes(const std::function<bool()>& condition, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline{patience};
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        pass(100ms);
    }
    return true;
}

bool SoakMachine::isFresh(Date since) const
{
    const std::optional<RoostStoreFile> file = store_.read();
    return file && std::ranges::all_of(signedIn_, [&](const std::string& profile) {
               const auto record = std::ranges::find(file->accounts, profile, &RoostAccountRecord::profileId);
               return record != file->accounts.end() && record->status == RoostAccountRecord::Status::ok &&
                      record->fetchedAt > since;
           });
}

std::chrono::milliseconds SoakMachine::recover()
{
    const Date begin = now();
    require(comes([&] { return isFresh(begin) || !app_->isRunning(); }, recoveryGuard) && isFresh(begin),
            "fresh numbers of everybody who is signed in");
    const auto isTold = [this] {
        const std::optional<RoostStoreFile> file = store_.read();
        return proxy_->isRunning() && file && proxy_->state().accounts() == file->accounts;
    };
    const bool isThere = comes(
        [&] {
            // A connection that went with its bus is made anew.
            return isTold() ||
                   (!proxy_->isRunning() && await(proxy_->connectToApp(), recoveryGuard) && isTold());
        },
        recoveryGuard);
    require(isThere, "the same on the bus as in the file");
    return now() - begin;
}

std::string SoakMachine::log() const { return bytesOf(folder_ / "app.log"); }

std::string SoakMachine::sanitizerReports() const
{
    std::string reports;
    for (const auto& entry : std::filesystem::directory_iterator{folder_.path()}) {
        if (entry.path().filename().string().starts_with("report.")) {
            reports += bytesOf(entry.path());
        }
    }
    return reports;
}

} // namespace roost::test
