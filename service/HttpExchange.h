#pragma once

#include "service/HttpDialer.h"
#include "service/HttpResponseParser.h"
#include "service/HttpSession.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace roost {

/// One request and its answer, on a connection of its own: dials, sends once, reads, and stops at the first
/// of answer, failure, time-out and stop. Awaited by one coroutine. Main thread; only the stop may come from
/// another.
class HttpExchange final : public QObject {
public:
    HttpExchange(HttpRequest request, std::stop_token stop, QObject* parent);
    ~HttpExchange() override;

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
    void dial();
    void dialed(std::unique_ptr<QTcpSocket> socket, int code);
    void write();
    void read();
    void ended(QAbstractSocket::SocketError error);
    void settle(HttpResult result);
    void fail(HttpFailure::Kind kind, int code);
    void wake();

    HttpRequest request_;
    QByteArray bytes_;
    HttpResponseParser parser_;
    QTimer timeout_;
    /// Children of this, each null before its time and after it.
    HttpDialer* dialer_ = nullptr;
    QTcpSocket* socket_ = nullptr;
    std::optional<HttpResult> result_;
    std::coroutine_handle<> waiting_;
    /// Last, so that nothing of this is gone while a stop from another thread is being told.
    std::optional<std::stop_callback<std::function<void()>>> onStop_;
};

} // namespace roost
