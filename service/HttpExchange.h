#pragma once

#include "service/HttpSession.h"

#include <QNetworkReply>
#include <QObject>
#include <QTimer>

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace roost {

/// One request under way: watches the reply of Qt until it is settled what became of the request, and lets go
/// of it then. Main thread.
class HttpExchange final : public QObject {
public:
    /// Takes `reply`, which is the answer to `request` and has just been asked for.
    HttpExchange(const HttpRequest& request, QNetworkReply* reply, std::stop_token stop, QObject* parent);

    /// Ends it as cancelled and wakes who awaits it, both before this returns. When it has ended already,
    /// wakes only.
    void cancelNow();

    /// What `co_await` takes; once. The exchange outlives the waiting.
    struct Ending {
        HttpExchange* exchange;

        bool await_ready() const { return exchange->result_.has_value(); }
        void await_suspend(std::coroutine_handle<> waiting) const { exchange->waiting_ = waiting; }
        HttpResult await_resume() const { return *std::move(exchange->result_); }
    };

    Ending ending() { return {this}; }

private:
    struct Abandon {
        void operator()(QNetworkReply* reply) const;
    };

    void headersCame();
    void bytesCame();
    void finished();
    void settle(HttpResult result);
    void fail(HttpFailure::Kind kind, int code);
    void wake();

    HttpRequest::Bodies bodies_;
    qint64 bodyLimit_;
    QTimer timeout_;
    /// Nothing once the result is settled.
    std::unique_ptr<QNetworkReply, Abandon> reply_;
    QList<QSslError> certificateErrors_;
    HttpResponse response_;
    std::optional<HttpResult> result_;
    std::coroutine_handle<> waiting_;
    /// Last, so that nothing of this is gone while a stop from another thread is being told.
    std::optional<std::stop_callback<std::function<void()>>> onStop_;
};

} // namespace roost
