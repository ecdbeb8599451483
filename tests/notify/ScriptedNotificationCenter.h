#pragma once

#include "notify/NotificationCenter.h"
#include "tests/support/Await.h"

#include <QTimer>

#include <functional>
#include <string>
#include <vector>

namespace roost::test {

/// A notification center that does what a test says and remembers what it was asked, in order. Every answer
/// comes from the event loop, never at once.
class ScriptedNotificationCenter final : public NotificationCenter {
public:
    Authorization authorized = Authorization::authorized;
    /// Whether it takes a request.
    std::function<bool(const Request&)> takes = [](const Request&) { return true; };
    /// Called when a request comes, before it is answered.
    std::function<void()> onRequest = [] {};

    std::vector<Request> added;
    std::vector<std::string> calls;
    std::vector<std::chrono::milliseconds> limits;
    Delegate* delegate = nullptr;
    int busy = 0;
    int busiest = 0;

    void setDelegate(Delegate* next) override { delegate = next; }

    QCoro::Task<Authorization> authorization(std::chrono::milliseconds limit) override
    {
        return asked("authorization", limit);
    }

    QCoro::Task<Authorization> requestAuthorization(std::chrono::milliseconds limit) override
    {
        return asked("requestAuthorization", limit);
    }

    QCoro::Task<bool> add(Request request, std::chrono::milliseconds limit) override
    {
        calls.emplace_back("add");
        limits.push_back(limit);
        busiest = std::max(busiest, ++busy);
        added.push_back(request);
        onRequest();
        co_await turn();
        --busy;
        co_return takes(request);
    }

private:
    QCoro::Task<Authorization> asked(std::string call, std::chrono::milliseconds limit)
    {
        calls.push_back(call);
        limits.push_back(limit);
        co_await turn();
        co_return Authorization{authorized};
    }

    /// The event loop's next turn.
    struct Turn {
        static bool await_ready() { return false; }
        static void await_suspend(std::coroutine_handle<> coroutine)
        {
            QTimer::singleShot(0, [coroutine] { coroutine.resume(); });
        }
        static void await_resume() {}
    };
    static Turn turn() { return {}; }
};

} // namespace roost::test
