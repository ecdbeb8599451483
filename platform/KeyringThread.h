#pragma once

#include "platform/KeyringCall.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace roost {

/// The thread on which the Secret Service is spoken to, one call after the other in the order in which they
/// were asked. Nobody waits longer than the patience for an answer, however many calls are ahead. Between
/// calls it sleeps and holds no connection, so that it never meets a service other than today's. Made, asked
/// and destroyed on the main thread, whose timers it uses.
class KeyringThread {
public:
    /// What becomes of a call whose caller has gone.
    enum class Late {
        /// It is given up, and makes way for the next one.
        cancelled,
        /// It goes on. The calls behind it wait for it.
        leftRunning,
    };

    KeyringThread(std::chrono::milliseconds patience, Late late);

    /// Every call that is still waiting fails as `notAnswering`; the thread ends within moments.
    ~KeyringThread();
    KeyringThread(const KeyringThread&) = delete;
    KeyringThread& operator=(const KeyringThread&) = delete;

    /// The answer of `question`, which runs on the keyring thread and must end soon after its second argument
    /// is cancelled. `noService` without a bus, `notAnswering` when the patience has passed.
    template <class T>
    QFuture<KeyringResult<T>> ask(typename KeyringQuestion<T>::Ask question)
    {
        const auto call = std::make_shared<KeyringQuestion<T>>(std::move(question));
        enqueue(call);
        return call->answer();
    }

private:
    void enqueue(const std::shared_ptr<KeyringCall>& call);
    /// The next call, and the addresses of the session bus; null at the end.
    std::pair<std::shared_ptr<KeyringCall>, QString> next();
    bool isIdle();
    void work();

    std::chrono::milliseconds patience_;
    Late late_;
    QObject timers_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::shared_ptr<KeyringCall>> waiting_;
    std::shared_ptr<KeyringCall> running_;
    /// As the environment told them when the latest call was asked.
    QString busAddresses_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace roost
