#include "notify/NotificationService.h"

#include "model/RoostLog.h"
#include "notify/NotificationContent.h"
#include "notify/NotificationKind.h"

#include <utility>

namespace roost {

namespace {

using Authorization = NotificationCenter::Authorization;

constexpr const char* urlKey = "url";

NotificationCenter::Request requestFor(const PlannedEvent& planned, NotificationContent content)
{
    NotificationCenter::Request request{planned.key,
                                        std::move(content.title),
                                        std::move(content.body),
                                        std::string{kindOf(planned.event).threadIdentifier},
                                        {}};
    if (content.url) {
        request.userInfo.emplace(urlKey, content.url->text());
    }
    return request;
}

} // namespace

NotificationService::NotificationService(NotificationCenter& center, const Settings& settings, Opener open,
                                         std::chrono::milliseconds patience)
    : center_{&center},
      settings_{&settings},
      open_{std::move(open)},
      patience_{patience}
{
    center.setDelegate(this);
}

NotificationService::~NotificationService() { center_->setDelegate(nullptr); }

QCoro::Task<> NotificationService::deliver(std::vector<PlannedEvent> events, RoostSnapshot snapshot,
                                           RoostFormat format, QUrl baseURL, std::stop_token stop)
{
    for (const PlannedEvent& planned : events) {
        qCInfo(RoostLog::sync, "notification due: %s", kindOf(planned.event).threadIdentifier.data());
    }
    if (events.empty() || stop.stop_requested()) {
        co_return;
    }
    auto asking = center_->authorization(patience_);
    const Authorization authorization = co_await asking;
    if (authorization != Authorization::authorized && authorization != Authorization::provisional) {
        co_return;
    }
    for (const PlannedEvent& planned : events) {
        if (stop.stop_requested()) {
            co_return;
        }
        if (!settings_->boolean(kindOf(planned.event).switchKey)) {
            continue;
        }
        auto adding = center_->add(
            requestFor(planned, NotificationContent::make(planned.event, snapshot, format, baseURL)),
            patience_);
        // Whether it was taken changes nothing: the ledger has its key already.
        static_cast<void>(co_await adding);
    }
}

QCoro::Task<> NotificationService::askForPermission()
{
    auto looking = center_->authorization(patience_);
    if (co_await looking == Authorization::notDetermined) {
        auto asking = center_->requestAuthorization(patience_);
        co_await asking;
    }
}

void NotificationService::userOpened(NotificationCenter::UserInfo userInfo)
{
    const auto found = userInfo.find(urlKey);
    if (found == userInfo.end()) {
        return;
    }
    if (std::optional<WebURL> url = WebURL::parse(found->second)) {
        open_(*std::move(url));
    }
}

} // namespace roost
