#include "platform/KeyringThread.h"

#include "bus/SessionBus.h"

#include <QProcessEnvironment>
#include <QTimer>

#include <tuple>

namespace roost {

namespace {

/// Runs the call in the session, which is opened for it when there is none that is current, and gone when it
/// has failed.
void serve(KeyringCall& call, const QString& busAddresses, std::unique_ptr<KeyringSession>& session)
{
    if (g_cancellable_is_cancelled(call.stop()) != FALSE) {
        return;
    }
    if (!session || !session->isCurrent()) {
        session.reset();
        KeyringResult<std::unique_ptr<KeyringSession>> opened =
            KeyringSession::open(busAddresses, call.stop());
        if (!opened) {
            call.fail(opened.error());
            return;
        }
        session = *std::move(opened);
    }
    if (!call.run(*session)) {
        session.reset();
    }
}

/// GLib's own thread may still be putting off the end of a watch to this one.
void drainTheLast(GMainContext* context)
{
    constexpr int enough = 5;
    for (int quiet = 0; quiet < enough; ++quiet) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
        while (g_main_context_iteration(context, FALSE) != FALSE) {
            quiet = 0;
        }
    }
}

} // namespace

KeyringThread::KeyringThread(std::chrono::milliseconds patience, Late late)
    : patience_(patience),
      late_(late),
      thread_([this] { work(); })
{
}

KeyringThread::~KeyringThread()
{
    {
        const std::scoped_lock held(mutex_);
        isEnding_ = true;
        if (running_) {
            waiting_.push_back(running_);
        }
        for (const std::shared_ptr<KeyringCall>& call : waiting_) {
            call->fail(KeyringFailure::notAnswering);
            call->cancel();
        }
        waiting_.clear();
    }
    wake_.notify_one();
    thread_.join();
}

void KeyringThread::enqueue(const std::shared_ptr<KeyringCall>& call)
{
    QTimer::singleShot(patience_, &timers_, [late = late_, waiter = std::weak_ptr<KeyringCall>(call)] {
        if (const std::shared_ptr<KeyringCall> unanswered = waiter.lock()) {
            unanswered->fail(KeyringFailure::notAnswering);
            if (late == Late::cancelled) {
                unanswered->cancel();
            }
        }
    });
    QString busAddresses = sessionBusAddresses(QProcessEnvironment::systemEnvironment());
    const std::scoped_lock held(mutex_);
    busAddresses_ = std::move(busAddresses);
    waiting_.push_back(call);
    wake_.notify_one();
}

std::pair<std::shared_ptr<KeyringCall>, QString> KeyringThread::next()
{
    std::unique_lock held(mutex_);
    running_.reset();
    wake_.wait(held, [this] { return isEnding_ || !waiting_.empty(); });
    if (!isEnding_) {
        running_ = std::move(waiting_.front());
        waiting_.pop_front();
    }
    return {running_, busAddresses_};
}

bool KeyringThread::isIdle()
{
    const std::scoped_lock held(mutex_);
    return isEnding_ || waiting_.empty();
}

void KeyringThread::work()
{
    const GOwnedContext context{g_main_context_new()};
    g_main_context_push_thread_default(context.get());
    std::unique_ptr<KeyringSession> session;
    for (auto [call, busAddresses] = next(); call; std::tie(call, busAddresses) = next()) {
        serve(*call, busAddresses, session);
        if (isIdle()) {
            session.reset();
        }
        // What GLib has put off to this thread meanwhile: the end of watches, mostly.
        while (g_main_context_iteration(context.get(), FALSE) != FALSE) {
        }
    }
    session.reset();
    drainTheLast(context.get());
    g_main_context_pop_thread_default(context.get());
}

} // namespace roost
