#pragma once

#include "service/Completion.h"

#include <QCoro/QCoroTask>

#include <memory>

namespace roost {

/// Tasks that nobody waits for until the end: their owner may go only after them. Main thread; may go before
/// its tasks.
class TaskGroup {
public:
    /// Keeps count of `task`, which goes on by itself. Ends with it, and with its result.
    template <class T>
    QCoro::Task<T> add(QCoro::Task<T> task)
    {
        return run(state_, std::move(task));
    }

    /// Ends when none of them runs; those that are added meanwhile are waited for as well.
    QCoro::Task<void> settled() const { return settle(state_); }

private:
    struct State {
        int running = 0;
        /// Complete when nothing runs any more; there while somebody waits for that.
        std::shared_ptr<Completion<bool>> ended;
    };

    /// One running task, as long as it lives.
    class Running {
    public:
        explicit Running(std::shared_ptr<State> state);
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        std::shared_ptr<State> state_;
    };

    template <class T>
    static QCoro::Task<T> run(std::shared_ptr<State> state, QCoro::Task<T> task)
    {
        const Running running{std::move(state)};
        co_return co_await task;
    }
    static QCoro::Task<void> settle(std::shared_ptr<State> state);

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace roost
