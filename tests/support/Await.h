#pragma once

#include "tests/support/RunUntil.h"

#include <QCoro/QCoroTask>

#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <variant>

namespace roost::test {

namespace detail {

/// What a task without a result comes to.
template <class T>
using Kept = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

template <class T>
QCoro::Task<void> keep(QCoro::Task<T> task, std::shared_ptr<std::optional<Kept<T>>> result)
{
    if constexpr (std::is_void_v<T>) {
        co_await task;
        result->emplace();
    } else {
        T value = co_await task;
        *result = std::move(value);
    }
}

} // namespace detail

/// A task on its way, whose result can be looked at. The coroutine goes on when this is gone.
template <class T>
class Pending {
public:
    explicit Pending(QCoro::Task<T> task)
        : result_(std::make_shared<std::optional<detail::Kept<T>>>()),
          keeping_(detail::keep(std::move(task), result_))
    {
    }

    bool isDone() const { return result_->has_value(); }

    /// Runs the event loop until the task has ended. Throws, and so fails the test, when the guard time
    /// passes first.
    T get(std::chrono::milliseconds guard = guardTime)
    {
        if (!runUntil([this] { return isDone(); }, guard)) {
            throw std::runtime_error("the coroutine did not end");
        }
        if constexpr (!std::is_void_v<T>) {
            return **result_;
        }
    }

private:
    std::shared_ptr<std::optional<detail::Kept<T>>> result_;
    QCoro::Task<void> keeping_;
};

/// The result of `task`, for which the event loop runs.
template <class T>
T await(QCoro::Task<T> task, std::chrono::milliseconds guard = guardTime)
{
    return Pending<T>(std::move(task)).get(guard);
}

} // namespace roost::test
