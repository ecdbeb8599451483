#include "programs/brisken-roost/NotifyCommand.h"

#include "bus/SessionBus.h"
#include "model/Arrival.h"
#include "notify/NotificationKind.h"
#include "platform/DesktopNotifications.h"
#include "present/RoostL10n.h"
#include "present/RoostTexts.h"
#include "programs/brisken-roost/SampleEvents.h"
#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

/// The desktop's notifications, and what has come of each.
class WitnessedNotifications final : public NotificationCenter {
public:
    explicit WitnessedNotifications(NotificationCenter& center) : center_{center} {}

    void setDelegate(Delegate* delegate) override { center_.setDelegate(delegate); }

    QCoro::Task<Authorization> authorization(std::chrono::milliseconds limit) override
    {
        auto asking = center_.authorization(limit);
        isAuthorized_ = co_await asking == Authorization::authorized;
        co_return isAuthorized_ ? Authorization::authorized : Authorization::denied;
    }

    QCoro::Task<Authorization> requestAuthorization(std::chrono::milliseconds limit) override
    {
        return authorization(limit);
    }

    QCoro::Task<bool> add(Request request, std::chrono::milliseconds limit) override
    {
        const std::string title = onOneLine(request.title);
        auto adding = center_.add(std::move(request), limit);
        const bool isTaken = co_await adding;
        (isTaken ? taken_ : refused_) += title + "\n";
        co_return bool{isTaken};
    }

    bool isAuthorized() const { return isAuthorized_; }
    /// The titles, a line each.
    const std::string& taken() const { return taken_; }
    const std::string& refused() const { return refused_; }

private:
    NotificationCenter& center_;
    bool isAuthorized_ = false;
    std::string taken_;
    std::string refused_;
};

/// The switches that are off of those that `events` go by.
std::string switchesOff(const std::vector<PlannedEvent>& events, const Settings& settings)
{
    std::string off;
    for (const PlannedEvent& planned : events) {
        const std::string key{kindOf(planned.event).switchKey};
        if (!settings.boolean(key) && !off.ends_with(key)) {
            off += (off.empty() ? "" : ", ") + key;
        }
    }
    return off;
}

QCoro::Task<CommandResult> nobodyShowsAny(QString busAddresses, std::stop_token stop)
{
    auto opening = BusConnection::open(std::move(busAddresses), NotificationService::defaultPatience, stop);
    const std::shared_ptr<BusConnection> bus = co_await opening;
    co_return failed(ExitCode::noNotifications,
                     bus ? "No notification server answers on the session bus. Start the one of your "
                           "desktop, or install one, for example dunst, and try again."
                         : "There is no session bus, which notifications go over. Try again inside of a "
                           "desktop session.");
}

/// Returns when `stop` was requested.
QCoro::Task<> stopped(std::stop_token stop)
{
    const Arrival<bool> end;
    const std::stop_callback onStop(stop, [end] { end.set(true); });
    const auto coming = end.coming();
    co_await coming;
}

} // namespace

QCoro::Task<CommandResult> runNotify(NotifyCommand command, NotifyParts parts, std::stop_token stop)
{
    const SampleEvents::Sample sample = SampleEvents::of(command.kind, parts.now());
    const std::string off = switchesOff(sample.events, parts.settings);
    const QString openLabel =
        QString::fromStdString(RoostL10n::bundle(parts.format.locale()).text(knownText("Open")));
    DesktopNotifications desktop{parts.busAddresses, [openLabel] { return openLabel; }};
    WitnessedNotifications center{desktop};
    NotificationService service{center, parts.settings, parts.open};
    auto delivering = service.deliver(sample.events, sample.snapshot, parts.format, parts.base, stop);
    co_await delivering;
    if (stop.stop_requested()) {
        CommandResult result = failed(ExitCode::failure, "Stopped.");
        result.output = center.taken();
        co_return result;
    }
    if (!center.isAuthorized()) {
        auto telling = nobodyShowsAny(parts.busAddresses, stop);
        co_return co_await telling;
    }
    if (command.waits && !center.taken().empty()) {
        parts.say("Click a notification to open its page; press Ctrl+C to end.\n");
        auto waiting = stopped(stop);
        co_await waiting;
    }
    CommandResult result;
    if (!center.refused().empty()) {
        result = failed(ExitCode::failure, "The notification server did not take every notification.");
    } else if (!off.empty()) {
        result = failed(ExitCode::switchedOff, "Switched off in the settings: " + off + ".");
    }
    result.output = center.taken();
    co_return result;
}

} // namespace roost
