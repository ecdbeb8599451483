#include "service/NetworkHttpSession.h"

#include "service/HttpErrorCodes.h"
#include "service/HttpExchange.h"

namespace roost {

NetworkHttpSession::NetworkHttpSession() : exchanges_(std::make_unique<QObject>()) {}

NetworkHttpSession::~NetworkHttpSession()
{
    const std::unique_ptr<QObject> ending = std::move(exchanges_);
    const QObjectList exchanges = ending->children();
    for (QObject* exchange : exchanges) {
        static_cast<HttpExchange*>(exchange)->cancelNow();
    }
}

QCoro::Task<HttpResult> NetworkHttpSession::send(HttpRequest request, std::stop_token stop)
{
    HttpResult result = std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled});
    if (!exchanges_) {
        co_return result;
    }
    auto* exchange = new HttpExchange(std::move(request), std::move(stop), exchanges_.get());
    const HttpExchange::Ending ending = exchange->ending();
    result = co_await ending;
    exchange->deleteLater();
    co_return result;
}

} // namespace roost
