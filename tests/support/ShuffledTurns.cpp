#include "tests/support/ShuffledTurns.h"

#include <QCoreApplication>

#include <utility>

namespace roost::test {

namespace {

/// More than any test needs.
constexpr int endless = 1'000'000;

} // namespace

bool ShuffledTurns::resumeOne()
{
    QCoreApplication::sendPostedEvents();
    if (suspended_.empty()) {
        return false;
    }
    std::swap(suspended_[below(suspended_.size())], suspended_.back());
    const std::coroutine_handle<> chosen = suspended_.back();
    suspended_.pop_back();
    chosen.resume();
    QCoreApplication::sendPostedEvents();
    return true;
}

bool ShuffledTurns::runUntil(const std::function<bool()>& condition)
{
    for (int turns = 0; turns < endless && !condition(); ++turns) {
        if (!resumeOne()) {
            break;
        }
    }
    return condition();
}

bool ShuffledTurns::runToEnd()
{
    return runUntil([this] { return suspended_.empty(); });
}

std::size_t ShuffledTurns::below(std::size_t count) { return random_() % count; }

} // namespace roost::test
