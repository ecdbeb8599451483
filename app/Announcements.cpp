#include "app/Announcements.h"

#include "model/RoostLog.h"

#include <utility>

namespace roost {

Announcements::Announcements(Parts parts) : parts_{std::move(parts)}, ledger_{parts_.ledgerStore.load()} {}

std::vector<PlannedEvent> Announcements::note(const std::string& profileId,
                                              const std::optional<RoostSnapshot>& previous,
                                              const RoostSnapshot& current)
{
    NotificationPlan plan = parts_.planner.plan(profileId, previous, current, ledger_);
    // The keys of the events are among them.
    ledger_.mark(plan.announcedKeys, parts_.now());
    ledger_.prune(kept);
    save();
    return std::move(plan.events);
}

void Announcements::saveUnsaved()
{
    if (unsaved_) {
        save();
    }
}

/// A disk that stays full is told of once.
void Announcements::save()
{
    const auto saved = parts_.ledgerStore.save(ledger_);
    const std::error_code failed = saved ? std::error_code{} : saved.error();
    if (failed && failed != unsaved_) {
        qCCritical(RoostLog::console).noquote()
            << QStringLiteral("Brisken Roost: could not write down what was announced (%1)")
                   .arg(QString::fromStdString(failed.message()));
    }
    unsaved_ = failed;
}

void Announcements::deliver(std::vector<PlannedEvent> events, RoostSnapshot snapshot)
{
    if (events.empty() || stopping_.stop_requested()) {
        return;
    }
    due_.push_back({std::move(events), std::move(snapshot)});
    if (!std::exchange(isDelivering_, true)) {
        tasks_.add(deliverAll());
    }
}

void Announcements::askForPermission() { tasks_.add(service().askForPermission()); }

QCoro::Task<void> Announcements::quit()
{
    stopping_.request_stop();
    return tasks_.settled();
}

NotificationService& Announcements::service()
{
    if (!service_) {
        service_ = parts_.service();
    }
    return *service_;
}

QCoro::Task<void> Announcements::deliverAll()
{
    while (!due_.empty()) {
        Delivery next = std::move(due_.front());
        due_.pop_front();
        auto delivering = service().deliver(std::move(next.events), std::move(next.snapshot), parts_.format(),
                                            parts_.baseURL, stopping_.get_token());
        co_await delivering;
    }
    isDelivering_ = false;
}

} // namespace roost
