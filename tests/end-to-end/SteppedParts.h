#pragma once

#include "service/HttpSession.h"
#include "service/RefreshLock.h"
#include "service/SecretStore.h"

#include <csignal>
#include <cstdio>
#include <string>

namespace roost::test {

/// Counts what a process does to the world around it, says each step on standard output, and kills the
/// process, as `kill -9` would, at one of them.
class Steps {
public:
    /// At the `fatal`th step, counted from 1; 0: at none.
    explicit Steps(int fatal) : left_(fatal) {}

    void pass(const std::string& step)
    {
        std::puts(step.c_str());
        std::fflush(stdout);
        if (--left_ == 0) {
            std::raise(SIGKILL);
        }
    }

private:
    int left_;
};

class SteppedHttpSession final : public HttpSession {
public:
    SteppedHttpSession(HttpSession& inner, Steps& steps) : inner_(inner), steps_(steps) {}

    QCoro::Task<HttpResult> send(HttpRequest request, std::stop_token stop) override
    {
        const std::string path = request.url.path().toStdString();
        steps_.pass("sending " + path);
        auto sending = inner_.send(std::move(request), std::move(stop));
        HttpResult result = co_await sending;
        steps_.pass("answered " + path);
        co_return result;
    }

private:
    HttpSession& inner_;
    Steps& steps_;
};

class SteppedLock final : public RefreshLock {
public:
    SteppedLock(RefreshLock& inner, Steps& steps) : inner_(inner), steps_(steps) {}

    QCoro::Task<std::unique_ptr<Held>> acquire(std::string profileId, std::stop_token stop) override
    {
        steps_.pass("locking");
        auto locking = inner_.acquire(std::move(profileId), std::move(stop));
        std::unique_ptr<Held> held = co_await locking;
        steps_.pass("locked");
        co_return std::move(held);
    }

private:
    RefreshLock& inner_;
    Steps& steps_;
};

class SteppedStore final : public SecretStore {
public:
    SteppedStore(SecretStore& inner, Steps& steps) : inner_(inner), steps_(steps) {}

    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> get(std::string key) override
    {
        steps_.pass("reading");
        auto reading = inner_.get(std::move(key));
        auto value = co_await reading;
        steps_.pass("read");
        co_return value;
    }

    QCoro::Task<std::expected<bool, SecretsUnavailable>> contains(std::string key) override
    {
        return inner_.contains(std::move(key));
    }

    QCoro::Task<std::expected<void, KeychainError>> set(std::string value, std::string key) override
    {
        steps_.pass("storing");
        auto storing = inner_.set(std::move(value), std::move(key));
        auto stored = co_await storing;
        steps_.pass(stored ? "stored" : "not stored");
        co_return stored;
    }

    QCoro::Task<bool> remove(std::string key) override
    {
        steps_.pass("removing");
        return inner_.remove(std::move(key));
    }

    QCoro::Task<std::expected<std::vector<std::string>, SecretsUnavailable>> keys(std::string prefix) override
    {
        return inner_.keys(std::move(prefix));
    }

    QCoro::Task<bool> unlock() override { return inner_.unlock(); }

private:
    SecretStore& inner_;
    Steps& steps_;
};

} // namespace roost::test
