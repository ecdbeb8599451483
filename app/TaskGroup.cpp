#include "app/TaskGroup.h"

#include <utility>

namespace roost {

QCoro::Task<void> TaskGroup::run(std::shared_ptr<State> state, QCoro::Task<void> task)
{
    ++state->running;
    co_await task;
    if (--state->running == 0 && state->ended) {
        const std::shared_ptr<Completion<bool>> ended = std::exchange(state->ended, nullptr);
        ended->complete(true);
    }
}

QCoro::Task<void> TaskGroup::settle(std::shared_ptr<State> state)
{
    while (state->running > 0) {
        if (!state->ended) {
            state->ended = std::make_shared<Completion<bool>>();
        }
        const std::shared_ptr<Completion<bool>> ended = state->ended;
        auto waiting = ended->wait({});
        co_await waiting;
    }
}

} // namespace roost
