#include "platform/KeychainSecretStore.h"

#include "platform/KeyringItems.h"
#include "platform/KeyringPrompt.h"
#include "platform/KeyringThread.h"

#include <QCoro/QCoroFuture>
#include <QUtf8StringView>

#include <atomic>
#include <cstdint>

namespace roost {

namespace {

bool isUtf8(const std::string& text)
{
    return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

/// What can be the value of an attribute.
bool canBeKey(const std::string& text) { return isUtf8(text) && !text.contains('\0'); }

} // namespace

/// What came of the questions to the user.
struct KeychainSecretStore::Questions {
    std::atomic<std::uint64_t> ended = 0;
    /// The answer to the last one. Of the thread that asks.
    KeyringResult<bool> answer = false;
};

KeychainSecretStore::KeychainSecretStore(std::string service, Patience patience)
    : service_(std::move(service)),
      questions_(std::make_shared<Questions>()),
      thread_(std::make_unique<KeyringThread>(patience.service, KeyringThread::Late::cancelled)),
      askingThread_(std::make_unique<KeyringThread>(patience.user, KeyringThread::Late::leftRunning))
{
}

KeychainSecretStore::~KeychainSecretStore() = default;

QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>>
KeychainSecretStore::get(std::string key)
{
    if (!canBeKey(key)) {
        co_return std::nullopt;
    }
    const auto answer = thread_->ask<std::optional<std::string>>(
        [service = service_, key](KeyringSession& session, GCancellable* stop) {
            return KeyringItems::secret(session, service, key, stop);
        });
    KeyringResult<std::optional<std::string>> secret = co_await answer;
    if (!secret) {
        co_return std::unexpected(unavailableFor(secret.error()));
    }
    if (*secret && !isUtf8(**secret)) {
        co_return std::nullopt;
    }
    co_return *std::move(secret);
}

QCoro::Task<std::expected<bool, SecretsUnavailable>> KeychainSecretStore::contains(std::string key)
{
    if (!canBeKey(key)) {
        co_return false;
    }
    const auto answer =
        thread_->ask<bool>([service = service_, key](KeyringSession& session, GCancellable* stop) {
            return KeyringItems::contains(session, service, key, stop);
        });
    const KeyringResult<bool> contains = co_await answer;
    if (!contains) {
        co_return std::unexpected(unavailableFor(contains.error()));
    }
    co_return *contains;
}

QCoro::Task<std::expected<void, KeychainError>> KeychainSecretStore::set(std::string value, std::string key)
{
    if (!canBeKey(key) || !isUtf8(value)) {
        co_return std::unexpected(KeychainError{KeychainError::parameter});
    }
    const auto answer =
        thread_->ask<void>([service = service_, key, value](KeyringSession& session, GCancellable* stop) {
            return KeyringItems::store(session, service, key, value, stop);
        });
    const KeyringResult<void> stored = co_await answer;
    if (!stored) {
        co_return std::unexpected(errorFor(stored.error()));
    }
    co_return {};
}

QCoro::Task<bool> KeychainSecretStore::remove(std::string key)
{
    if (!canBeKey(key)) {
        co_return true;
    }
    const auto answer =
        thread_->ask<void>([service = service_, key](KeyringSession& session, GCancellable* stop) {
            return KeyringItems::erase(session, service, key, stop);
        });
    const KeyringResult<void> erased = co_await answer;
    co_return erased.has_value();
}

QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>>
KeychainSecretStore::keys(std::string prefix)
{
    const auto answer = thread_->ask<std::vector<std::string>>(
        [service = service_, prefix](KeyringSession& session, GCancellable* stop) {
            return KeyringItems::accounts(session, service, prefix, stop);
        });
    KeyringResult<std::vector<std::string>> accounts = co_await answer;
    if (!accounts) {
        co_return std::unexpected(unavailableFor(accounts.error()));
    }
    co_return *std::move(accounts);
}

QCoro::Task<bool> KeychainSecretStore::unlock()
{
    // Who came before a question was off the screen has its answer, and puts no other.
    const auto answer = askingThread_->ask<bool>([questions = questions_, before = questions_->ended.load()](
                                                     KeyringSession& session, GCancellable* stop) {
        if (questions->ended == before) {
            questions->answer = openByAsking(session, stop);
            ++questions->ended;
        }
        return questions->answer;
    });
    const KeyringResult<bool> isOpen = co_await answer;
    co_return isOpen && *isOpen;
}

} // namespace roost
