#include "bus/ApplicationAdaptor.h"

#include "bus/Handover.h"
#include "bus/RoostBus.h"

#include <algorithm>
#include <utility>

namespace roost {

ApplicationAdaptor::ApplicationAdaptor(QDBusConnection connection, Opened opened, QObject* parent)
    : QDBusAbstractAdaptor(parent),
      connection_(std::move(connection)),
      opened_(std::move(opened))
{
}

void ApplicationAdaptor::Activate(const QVariantMap& /*platformData*/) {}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& /*platformData*/,
                              const QDBusMessage& message)
{
    const bool isBounded = uris.size() <= mostAddresses && std::ranges::all_of(uris, [](const QString& uri) {
                               return std::cmp_less_equal(uri.size(), longestCallback);
                           });
    if (isBounded && opened_(uris)) {
        return;
    }
    message.setDelayedReply(true);
    connection_.send(
        message.createErrorReply(RoostBus::notAwaited, QStringLiteral("Nobody waits for this address.")));
}

void ApplicationAdaptor::ActivateAction(const QString& /*name*/, const QVariantList& /*parameters*/,
                                        const QVariantMap& /*platformData*/)
{
}

} // namespace roost
