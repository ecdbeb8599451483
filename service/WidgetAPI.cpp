#include "service/WidgetAPI.h"

#include "model/RoostJSON.h"
#include "model/RoostLog.h"
#include "model/RoostSnapshotFields.h"
#include "model/WebURL.h"

#include <clocale>
#include <cstdlib>

namespace roost {

namespace {

constexpr std::chrono::seconds timeout{30};

HttpRequest requestFor(const QUrl& baseURL, const QString& accessToken)
{
    HttpRequest request;
    request.url = appendingPath(baseURL, u"api/roost/v1/widget");
    request.headers = {{"Authorization", "Bearer " + accessToken.toUtf8()}, {"Accept", "application/json"}};
    request.timeout = timeout;
    request.bodies = HttpRequest::Bodies::onlyOfStatus200;
    request.bodyLimit = WidgetAPI::bodyLimit;
    return request;
}

WidgetAPI::Result classifyFailure(HttpFailure failure)
{
    if (failure.kind == HttpFailure::Kind::notHttp) {
        return WidgetAPI::Malformed{};
    }
    qCCritical(RoostLog::sync, "snapshot request failed: %d", failure.code);
    if (failure.kind == HttpFailure::Kind::bodyTooLarge) {
        return WidgetAPI::Malformed{};
    }
    return WidgetAPI::Unreachable{};
}

WidgetAPI::Result classify(const HttpResponse& response)
{
    switch (response.status) {
    case 200:
        if (auto snapshot = RoostJSON::decoder().decode<RoostSnapshot>(response.body.toStdString())) {
            return WidgetAPI::Snapshot{*std::move(snapshot)};
        }
        return WidgetAPI::Malformed{};
    case 401:
        return WidgetAPI::Unauthorized{};
    case 403:
        return WidgetAPI::Forbidden{};
    default:
        break;
    }
    if (response.status == 429 || (response.status >= 500 && response.status <= 599)) {
        return WidgetAPI::Unavailable{response.header("Retry-After").and_then(parseRetryAfter)};
    }
    return WidgetAPI::Malformed{};
}

/// The locale in which numbers are written in protocols; lives as long as the process.
locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

WidgetAPI::WidgetAPI(QUrl baseURL, HttpSession& session) : baseURL_(std::move(baseURL)), session_(&session) {}

QCoro::Task<WidgetAPI::Result> WidgetAPI::fetch(QString accessToken, std::stop_token stop) const
{
    HttpRequest request = requestFor(baseURL_, accessToken);
    QCoro::Task<HttpResult> sending = session_->send(std::move(request), std::move(stop));
    const HttpResult answer = co_await sending;
    Result result = answer ? classify(*answer) : classifyFailure(answer.error());
    co_return result;
}

std::optional<double> parseRetryAfter(QByteArrayView text)
{
    // `strtod` itself passes over leading white space.
    constexpr QByteArrayView space = " \t\n\v\f\r";
    if (text.isEmpty() || space.contains(text.front())) {
        return std::nullopt;
    }
    const QByteArray terminated = text.toByteArray();
    char* end = nullptr;
    const double seconds = strtod_l(terminated.constData(), &end, cLocale());
    if (end != terminated.constData() + terminated.size()) {
        return std::nullopt;
    }
    return seconds;
}

} // namespace roost
