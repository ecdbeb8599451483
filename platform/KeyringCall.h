#pragma once

#include "platform/GLibOwned.h"
#include "platform/KeyringSession.h"

#include <QFuture>
#include <QPromise>

#include <atomic>
#include <functional>

namespace roost {

/// One thing to ask the Secret Service, on its way from the main thread to the keyring's and back. It is
/// settled once, by whoever comes first: the answer, or the one who will wait no longer.
class KeyringCall {
public:
    KeyringCall() = default;
    virtual ~KeyringCall() = default;
    KeyringCall(const KeyringCall&) = delete;
    KeyringCall& operator=(const KeyringCall&) = delete;

    /// Asks, and settles with the answer. False when the session has failed and is not to be used again.
    /// Keyring thread.
    virtual bool run(KeyringSession& session) = 0;

    /// Settles without an answer. Any thread.
    virtual void fail(KeyringFailure failure) = 0;

    /// Makes `run` end, at once when it has not begun. What has been sent already may still be done. Any
    /// thread.
    void cancel() { g_cancellable_cancel(stop_.get()); }

    GCancellable* stop() const { return stop_.get(); }

private:
    GOwned<GCancellable> stop_{g_cancellable_new()};
};

template <class T>
class KeyringQuestion final : public KeyringCall {
public:
    using Ask = std::function<KeyringResult<T>(KeyringSession&, GCancellable*)>;

    explicit KeyringQuestion(Ask ask) : ask_(std::move(ask)) { promise_.start(); }
    ~KeyringQuestion() override { settle(std::unexpected(KeyringFailure::notAnswering)); }

    QFuture<KeyringResult<T>> answer() { return promise_.future(); }

    bool run(KeyringSession& session) override
    {
        KeyringResult<T> result = ask_(session, stop());
        const bool isUsable = result || result.error() == KeyringFailure::locked;
        settle(std::move(result));
        return isUsable;
    }

    void fail(KeyringFailure failure) override { settle(std::unexpected(failure)); }

private:
    void settle(KeyringResult<T> result)
    {
        if (!isSettled_.test_and_set()) {
            promise_.addResult(std::move(result));
            promise_.finish();
        }
    }

    Ask ask_;
    QPromise<KeyringResult<T>> promise_;
    std::atomic_flag isSettled_;
};

} // namespace roost
