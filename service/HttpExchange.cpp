#include "service/HttpExchange.h"

#include "service/HttpErrorCodes.h"

#include <algorithm>

namespace roost {

namespace {

/// Longer than any request, and short enough for the timer to count.
constexpr std::chrono::milliseconds longestTimeout = std::chrono::hours{24};

} // namespace

void HttpExchange::Abandon::operator()(QNetworkReply* reply) const
{
    reply->disconnect();
    reply->abort();
    // This may be inside a signal of the reply.
    reply->deleteLater();
}

HttpExchange::HttpExchange(const HttpRequest& request, QNetworkReply* reply, std::stop_token stop,
                           QObject* parent)
    : QObject{parent},
      bodies_{request.bodies},
      bodyLimit_{request.bodyLimit},
      reply_{reply}
{
    // What Qt holds unread counts against the limit: one byte more than it shows that it is passed.
    reply->setReadBufferSize(bodyLimit_ + 1);
    connect(reply, &QNetworkReply::sslErrors, this,
            [this](const QList<QSslError>& errors) { certificateErrors_ = errors; });
    connect(reply, &QNetworkReply::metaDataChanged, this, &HttpExchange::headersCame);
    connect(reply, &QNetworkReply::readyRead, this, &HttpExchange::bytesCame);
    connect(reply, &QNetworkReply::finished, this, &HttpExchange::finished);

    timeout_.setSingleShot(true);
    connect(&timeout_, &QTimer::timeout, this,
            [this] { fail(HttpFailure::Kind::transport, HttpErrorCodes::timedOut); });
    timeout_.start(std::clamp(request.timeout, std::chrono::milliseconds{0}, longestTimeout));

    // A stop may be asked for on any thread, and in the middle of anything.
    onStop_.emplace(std::move(stop), [this] {
        QMetaObject::invokeMethod(
            this, [this] { fail(HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled); },
            Qt::QueuedConnection);
    });
}

void HttpExchange::cancelNow()
{
    fail(HttpFailure::Kind::cancelled, HttpErrorCodes::cancelled);
    wake();
}

void HttpExchange::headersCame()
{
    response_.status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    response_.headers.assign(reply_->rawHeaderPairs().begin(), reply_->rawHeaderPairs().end());
    if (response_.status != 0 && response_.status != 200 && bodies_ == HttpRequest::Bodies::onlyOfStatus200) {
        settle(std::move(response_));
    }
}

void HttpExchange::bytesCame()
{
    response_.body += reply_->readAll();
    if (response_.body.size() > bodyLimit_) {
        fail(HttpFailure::Kind::bodyTooLarge, HttpErrorCodes::bodyTooLarge);
    }
}

void HttpExchange::finished()
{
    headersCame();
    if (result_) {
        return;
    }
    bytesCame();
    if (result_) {
        return;
    }
    const QNetworkReply::NetworkError error = reply_->error();
    const bool isSuccess = response_.status >= 200 && response_.status < 300;
    const bool isWhole = isSuccess ? error == QNetworkReply::NoError : HttpErrorCodes::isStatus(error);
    if (response_.status != 0 && isWhole) {
        settle(std::move(response_));
    } else {
        fail(HttpFailure::Kind::transport, HttpErrorCodes::of(error, certificateErrors_));
    }
}

void HttpExchange::settle(HttpResult result)
{
    if (result_) {
        return;
    }
    result_ = std::move(result);
    timeout_.stop();
    reply_.reset();
    // The waiting coroutine may end with this object, which is inside a signal of its reply or timer now.
    QMetaObject::invokeMethod(this, &HttpExchange::wake, Qt::QueuedConnection);
}

void HttpExchange::fail(HttpFailure::Kind kind, int code)
{
    settle(std::unexpected(HttpFailure{kind, code}));
}

void HttpExchange::wake()
{
    if (const std::coroutine_handle<> waiting = std::exchange(waiting_, nullptr)) {
        waiting.resume();
    }
}

} // namespace roost
