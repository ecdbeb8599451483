#pragma once

#include <QCoreApplication>
#include <QCoro/QCoroTask>

#include <coroutine>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace roost {

/// One result that comes once, for any number of coroutines that wait for it. Who stops waiting leaves the
/// result and the others alone. Main thread, with an event loop; only a stop may come from another thread.
/// Whoever is resumed may do anything, destroy this or wait again among it. Must not be destroyed while
/// somebody waits and there is no result yet.
template <class T>
class Completion {
public:
    bool isComplete() const { return state_->result.has_value(); }

    /// Gives `result` to all that wait, in the order in which they came, and to all that ask later. Once.
    void complete(T result)
    {
        // Kept here, since a resumed coroutine may destroy this.
        const std::shared_ptr<State> state = state_;
        state->result.emplace(std::move(result));
        while (!state->waiting.empty()) {
            state->resume(state->waiting.begin()->first);
        }
    }

    /// The result; nothing once `stop` was requested, at the event loop's next turn, whether or not there is
    /// a result.
    QCoro::Task<std::optional<T>> wait(std::stop_token stop) const
    {
        return outcome(state_, std::move(stop));
    }

private:
    struct State {
        std::optional<T> result;
        /// By the order in which they came.
        std::map<std::uint64_t, std::coroutine_handle<>> waiting;
        std::uint64_t arrivals = 0;

        void resume(std::uint64_t arrival)
        {
            if (const auto found = waiting.extract(arrival)) {
                found.mapped().resume();
            }
        }
    };

    /// One coroutine's waiting; lives in its frame.
    struct Waiting {
        std::shared_ptr<State> state;
        std::stop_token stop;
        std::optional<std::stop_callback<std::function<void()>>> onStop;

        void begin(std::coroutine_handle<> coroutine)
        {
            const std::uint64_t arrival = state->arrivals++;
            state->waiting.emplace(arrival, coroutine);
            onStop.emplace(stop, [weak = std::weak_ptr(state), arrival] {
                // Later, since whoever requests the stop is in the midst of something, maybe on another
                // thread.
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(),
                    [weak, arrival] {
                        if (const std::shared_ptr<State> alive = weak.lock()) {
                            alive->resume(arrival);
                        }
                    },
                    Qt::QueuedConnection);
            });
        }
    };

    /// What a coroutine awaits.
    struct Arrival {
        Waiting* waiting;

        bool await_ready() const
        {
            return waiting->state->result.has_value() || waiting->stop.stop_requested();
        }
        void await_suspend(std::coroutine_handle<> coroutine) const { waiting->begin(coroutine); }
        void await_resume() const {}
    };

    static QCoro::Task<std::optional<T>> outcome(std::shared_ptr<State> state, std::stop_token stop)
    {
        Waiting waiting{.state = std::move(state), .stop = std::move(stop), .onStop = std::nullopt};
        const Arrival arrival{&waiting};
        co_await arrival;
        std::optional<T> result;
        if (!waiting.stop.stop_requested()) {
            // A copy: the promise moves from whatever lvalue is returned.
            result = waiting.state->result;
        }
        co_return result;
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace roost
