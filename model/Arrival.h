#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace roost {

/// A value that comes once, and one coroutine that waits for it. Copies stand for the same value. The waiting
/// coroutine goes on from the event loop, never inside `set`, so that whoever sets may be gone by then. Main
/// thread.
template <class T>
class Arrival {
public:
    Arrival() : state_(std::make_shared<State>()) {}

    /// The value is there; false, and without effect, when there was one already.
    bool set(T value) const
    {
        if (state_->isSet) {
            return false;
        }
        state_->isSet = true;
        state_->value = std::move(value);
        if (state_->waiting) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [state = state_] { std::exchange(state->waiting, nullptr).resume(); }, Qt::QueuedConnection);
        }
        return true;
    }

    bool isSet() const { return state_->isSet; }

    /// What `co_await` takes; once.
    auto coming() const { return Coming{state_}; }

private:
    struct State {
        bool isSet = false;
        std::optional<T> value;
        std::coroutine_handle<> waiting;
    };

    struct Coming {
        std::shared_ptr<State> state;

        bool await_ready() const { return state->isSet; }
        void await_suspend(std::coroutine_handle<> waiting) const { state->waiting = waiting; }
        T await_resume() const { return *std::exchange(state->value, std::nullopt); }
    };

    std::shared_ptr<State> state_;
};

} // namespace roost
