#include "app/TaskGroup.h"

#include <utility>

namespace roost {

TaskGroup::Running::Running(std::shared_ptr<State> state) : state_{std::move(state)} { ++state_->running; }

TaskGroup::Running::~Running()
{
    if (--state_->running == 0 && state_->ended) {
        const std::shared_ptr<Completion<bool>> ended = std::exchange(state_->ended, nullptr);
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
