#include "model/WebURL.h"

#include <QUtf8StringView>

namespace roost {

namespace {

QUrl strictly(std::string_view text)
{
    return QUrl{QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), QUrl::StrictMode};
}

} // namespace

std::optional<WebURL> WebURL::parse(std::string_view text)
{
    if (!QUtf8StringView{text.data(), static_cast<qsizetype>(text.size())}.isValidUtf8()) {
        return std::nullopt;
    }
    const QUrl url = strictly(text);
    // QUrl gives schemes in lower case.
    const bool isWeb = url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
    if (!url.isValid() || !isWeb || url.host().isEmpty()) {
        return std::nullopt;
    }
    return WebURL{std::string{text}};
}

QUrl WebURL::url() const { return strictly(text_); }

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

} // namespace roost
