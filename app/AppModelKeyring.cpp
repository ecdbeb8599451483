#include "app/AppModel.h"

#include <utility>

namespace roost {

/// Until the keyring has said who is signed in; nobody else may know whom to refresh.
QCoro::Task<void> AppModel::awaitKeyring()
{
    while (!accounts_.isTold() && !quitting_.stop_requested()) {
        auto pausing = parts_.pause(keyringPatience, quitting_.get_token());
        co_await pausing;
        noticeKeyring();
    }
}

/// It may answer otherwise than before. Asked one question at a time, however often that is said.
void AppModel::noticeKeyring()
{
    isKeyringNew_ = true;
    if (!std::exchange(isAskingKeyring_, true)) {
        tasks_.add(askKeyring());
    }
}

QCoro::Task<void> AppModel::askKeyring()
{
    bool isFirstAnswer = false;
    while (std::exchange(isKeyringNew_, false) && !isFirstAnswer && !quitting_.stop_requested()) {
        auto loading = accounts_.loadSignedIn();
        isFirstAnswer = co_await loading;
    }
    isAskingKeyring_ = false;
    if (isFirstAnswer) {
        // A cycle that began just now may have found nobody, and would be taken for the answer.
        auto pausing = parts_.pause(RefreshLoop::burst, quitting_.get_token());
        co_await pausing;
        requestRefresh();
    }
}

} // namespace roost
