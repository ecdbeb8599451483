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

QUrl appendingPath(const QUrl& base, QStringView path)
{
    QUrl url = base.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    QString whole = url.path(QUrl::FullyEncoded);
    if (!whole.endsWith(QLatin1Char('/'))) {
        whole += QLatin1Char('/');
    }
    whole += path;
    url.setPath(whole, QUrl::StrictMode);
    return url;
}

} // namespace roost::RoostEnvironment
