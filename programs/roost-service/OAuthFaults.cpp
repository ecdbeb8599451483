#include "programs/roost-service/OAuthFaults.h"

#include <QJsonObject>
#include <QString>

#include <algorithm>

namespace roost::local {

using namespace Qt::StringLiterals;

void OAuthFaults::set(OAuthFault fault, std::optional<int> times) { inForce_.insert_or_assign(fault, times); }

bool OAuthFaults::meets(OAuthFault fault)
{
    const auto found = inForce_.find(fault);
    if (found == inForce_.end()) {
        return false;
    }
    if (found->second && --*found->second == 0) {
        inForce_.erase(found);
    }
    return true;
}

QJsonArray OAuthFaults::toJson() const
{
    QJsonArray faults;
    for (const auto& [fault, times] : inForce_) {
        const std::string_view name = oauthFaultNames[static_cast<std::size_t>(fault)];
        QJsonObject told{{u"kind"_s, QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()))}};
        if (times) {
            told.insert(u"times"_s, *times);
        }
        faults.append(told);
    }
    return faults;
}

std::optional<OAuthFault> oauthFaultNamed(std::string_view name)
{
    const auto* found = std::ranges::find(oauthFaultNames, name);
    return found == oauthFaultNames.end()
               ? std::nullopt
               : std::optional(static_cast<OAuthFault>(found - oauthFaultNames.begin()));
}

} // namespace roost::local
