#include "platform/BrowserAuthenticator.h"

#include "model/Arrival.h"
#include "model/RoostLog.h"
#include "service/QueryItems.h"

#include <QTimer>

#include <optional>

namespace roost {

namespace {

const char* nameOf(BrowserOpener::Trouble trouble)
{
    switch (trouble) {
    case BrowserOpener::Trouble::noDisplay:
        return "there is no display";
    case BrowserOpener::Trouble::noOpener:
        return "there is no xdg-open";
    case BrowserOpener::Trouble::failed:
        return "the opener failed";
    }
    return "";
}

} // namespace

struct BrowserAuthenticator::Attempt {
    WebURL url;
    /// The callback, or nothing when the attempt was given up.
    Arrival<std::optional<std::string>> end;
    /// Ends what is done to reach and open the browser.
    std::stop_source over;
    bool hasTold = false;
};

QCoro::Task<std::expected<std::string, RoostAuthError>>
BrowserAuthenticator::authenticate(WebURL url, QString callbackScheme, std::stop_token stop)
{
    const std::unexpected cancelled(RoostAuthError{RoostAuthError::Kind::cancelled, 0, {}});
    const auto state = lastQueryItem(url.text(), "state");
    if (isBusy_ || stop.stop_requested() || !state) {
        co_return cancelled;
    }
    isBusy_ = true;
    const auto attempt = std::make_shared<Attempt>(Attempt{.url = url});
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this, attempt] {
        if (!attempt->end.isSet()) {
            qCInfo(RoostLog::auth, "sign-in: no callback came in time");
            giveUp(attempt);
        }
    });
    timer.start(parts_.timeout);
    const std::stop_callback onStop(stop, [this, attempt] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [this, attempt] { giveUp(attempt); }, Qt::QueuedConnection);
    });
    // A timer stands still while the machine sleeps, so the time is looked at again when a callback comes.
    const auto deadline = parts_.bootTime() + parts_.timeout;
    parts_.inbox.expect(
        {callbackScheme.toStdString(), *state, [this, attempt, stop, deadline](std::string callback) {
             if (stop.stop_requested() || parts_.bootTime() >= deadline) {
                 giveUp(attempt);
                 return false;
             }
             return attempt->end.set(std::move(callback));
         }});
    const auto showing = show(attempt);
    const auto coming = attempt->end.coming();
    const std::optional<std::string> callback = co_await coming;
    attempt->over.request_stop();
    co_await showing;
    isBusy_ = false;
    if (!callback) {
        co_return cancelled;
    }
    co_return *callback;
}

QCoro::Task<void> BrowserAuthenticator::show(std::shared_ptr<Attempt> attempt)
{
    auto reaching = parts_.reach(attempt->over.get_token());
    const bool isReachable = co_await reaching;
    if (attempt->end.isSet()) {
        co_return;
    }
    if (!isReachable) {
        tell(attempt, Trouble::notReachable);
    }
    parts_.opener.open(attempt->url, [this, attempt](BrowserOpener::Trouble trouble) {
        if (!attempt->end.isSet()) {
            qCWarning(RoostLog::auth, "sign-in: browser not opened: %s", nameOf(trouble));
            tell(attempt, Trouble::notOpened);
        }
    });
}

void BrowserAuthenticator::tell(const std::shared_ptr<Attempt>& attempt, Trouble trouble)
{
    if (!std::exchange(attempt->hasTold, true)) {
        parts_.fallback(attempt->url, trouble);
    }
}

void BrowserAuthenticator::giveUp(const std::shared_ptr<Attempt>& attempt)
{
    // A stop may be told when the attempt is over and another one waits.
    if (attempt->end.set(std::nullopt)) {
        parts_.inbox.close();
        attempt->over.request_stop();
    }
}

} // namespace roost
