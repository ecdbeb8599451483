#pragma once

#include "tests/support/RunUntil.h"

#include <QCoro/QCoroTask>

#include <memory>
#include <optional>
#include <stdexcept>

namespace roost::test {

namespace detail {

template <class T>
QCoro::Task<void> keep(QCoro::Task<T> task, std::shared_ptr<std::optional<T>> result)
{
    T value = co_await task;
    *result = std::move(value);
}

} // namespace detail

/// A task on its way, whose result can be looked at. The coroutine goes on when this is gone.
template <class T>
class Pending {
public:
    explicit Pending(QCoro::Task<T> task)
        : result_(std::make_shared<std::optional<T>>()),
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
        return **result_;
    }

private:
    std::shared_ptr<std::optional<T>> result_;
    QCoro::Task<void> keeping_;
};

/// The result of `task`, for which the event loop runs.
template <class T>
T await(QCoro::Task<T> task, std::chrono::milliseconds guard = guardTime)
{
    return Pending<T>(std::move(task)).get(guard);
}

} // namespace roost::test
