#include "service/NetworkHttpSession.h"

#include "service/HttpErrorCodes.h"
#include "service/HttpExchange.h"
#include "service/SystemProxies.h"

#include <QIODevice>
#include <QNetworkRequest>

#include <cstring>
#include <utility>

namespace roost {

namespace {

/// The body of one request, readable once. Qt sends a request again when the peer closes without an answer,
/// unless it cannot have the body a second time: a refresh token that is seen twice ends the whole grant.
class OneShotBody final : public QIODevice {
public:
    OneShotBody(QByteArray bytes, QObject* parent) : QIODevice{parent}, bytes_{std::move(bytes)}
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return bytes_.size() - position_ + QIODevice::bytesAvailable(); }
    bool atEnd() const override { return position_ >= bytes_.size(); }

protected:
    qint64 readData(char* to, qint64 most) override
    {
        const qint64 count = std::min(most, bytes_.size() - position_);
        if (count <= 0) {
            return -1;
        }
        std::memcpy(to, bytes_.constData() + position_, static_cast<std::size_t>(count));
        position_ += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray bytes_;
    qint64 position_ = 0;
};

QNetworkRequest qtRequest(const HttpRequest& request)
{
    QNetworkRequest qt{request.url};
    for (const auto& [name, value] : request.headers) {
        qt.setRawHeader(name, value);
    }
    const qsizetype length = request.method == HttpRequest::Method::post ? request.body.size() : 0;
    qt.setHeader(QNetworkRequest::ContentLengthHeader, length);
    qt.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    qt.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    qt.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    qt.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    qt.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    qt.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    qt.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // The HTTP/2 of this Qt overflows its header table.
    qt.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return qt;
}

bool isWebAddress(const QUrl& url)
{
    return (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty();
}

} // namespace

NetworkHttpSession::NetworkHttpSession() : exchanges_{std::make_unique<QObject>()}
{
    manager_.setProxyFactory(new SystemProxies); // owned by the manager
}

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
    if (!exchanges_ || stop.stop_requested()) {
        co_return result;
    }
    if (!isWebAddress(request.url)) {
        result = std::unexpected(HttpFailure{HttpFailure::Kind::notHttp, HttpErrorCodes::unknown});
        co_return result;
    }
    const bool isPost = request.method == HttpRequest::Method::post;
    auto* body = new OneShotBody{isPost ? request.body : QByteArray{}, exchanges_.get()};
    QNetworkReply* reply = manager_.sendCustomRequest(qtRequest(request), isPost ? "POST" : "GET", body);
    body->setParent(reply);
    auto* exchange = new HttpExchange{request, reply, std::move(stop), exchanges_.get()};
    const HttpExchange::Ending ending = exchange->ending();
    result = co_await ending;
    exchange->deleteLater();
    co_return result;
}

} // namespace roost
