#pragma once

#include <coroutine>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace roost::test {

/// Suspends coroutines and resumes them one at a time, in an order that a seed decides: the same each time.
/// Whatever reached Qt's event queue is delivered between two turns.
class ShuffledTurns {
public:
    explicit ShuffledTurns(std::uint64_t seed) : random_(seed) {}

    /// What a coroutine awaits to be resumed at some turn.
    struct Turn {
        ShuffledTurns* turns;

        bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const
        {
            turns->suspended_.push_back(coroutine);
        }
        void await_resume() const {}
    };

    Turn turn() { return {this}; }

    /// Resumes one of those that are suspended here. False when there are none.
    bool resumeOne();

    /// Resumes until `condition` holds, or until nobody is suspended. Whether it holds.
    bool runUntil(const std::function<bool()>& condition);

    /// Resumes until nobody is suspended. False when there is no end to it.
    bool runToEnd();

    std::size_t suspended() const { return suspended_.size(); }

    /// A number from 0 to `count` - 1. At least 1.
    std::size_t below(std::size_t count);

private:
    std::mt19937_64 random_;
    std::vector<std::coroutine_handle<>> suspended_;
};

} // namespace roost::test
