#include "service/InProcessHttpSession.h"

namespace roost {

namespace {

constexpr HttpFailure cancelled{HttpFailure::Kind::cancelled, -999};
constexpr HttpFailure bodyTooLarge{HttpFailure::Kind::bodyTooLarge, -1103};

HttpResult onTerms(HttpResult answer, HttpRequest::Bodies bodies, qint64 bodyLimit)
{
    if (!answer) {
        return answer;
    }
    if (bodies == HttpRequest::Bodies::onlyOfStatus200 && answer->status != 200) {
        answer->body.clear();
    }
    if (answer->body.size() > bodyLimit) {
        return std::unexpected(bodyTooLarge);
    }
    return answer;
}

} // namespace

InProcessHttpSession::InProcessHttpSession(Handler handler) : handler_(std::move(handler)) {}

QCoro::Task<HttpResult> InProcessHttpSession::send(HttpRequest request, std::stop_token stop)
{
    HttpResult result = std::unexpected(cancelled);
    if (stop.stop_requested()) {
        co_return result;
    }
    const HttpRequest::Bodies bodies = request.bodies;
    const qint64 bodyLimit = request.bodyLimit;
    QCoro::Task<HttpResult> answering = handler_(std::move(request), stop);
    HttpResult answer = co_await answering;
    if (!stop.stop_requested()) {
        result = onTerms(std::move(answer), bodies, bodyLimit);
    }
    co_return result;
}

} // namespace roost
