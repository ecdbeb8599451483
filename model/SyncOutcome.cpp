#include "model/SyncOutcome.h"

#include <QString>

namespace roost {

std::string describe(const SyncReason& reason)
{
    switch (reason.kind) {
    case SyncReason::Kind::unavailable:
        if (reason.retryAfter) {
            return QStringLiteral("unavailable, retry after %1 s").arg(*reason.retryAfter).toStdString();
        }
        return "unavailable";
    case SyncReason::Kind::unreachable:
        return "unreachable";
    case SyncReason::Kind::malformed:
        return "malformed";
    }
    Q_UNREACHABLE();
}

} // namespace roost
