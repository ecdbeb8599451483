#include "service/RoostEnvironment.h"

namespace roost::RoostEnvironment {

QUrl productionBase() { return QUrl(QStringLiteral(ROOST_PRODUCTION_BASE)); }

QUrl baseURL(const InfoDictionary& info)
{
    if (const std::optional<QString> text = info.string(u"RoostBaseURL")) {
        const QUrl url(*text, QUrl::StrictMode);
        if (url.isValid()) {
            return url;
        }
    }
    return productionBase();
}

} // namespace roost::RoostEnvironment
