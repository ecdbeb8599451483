#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace roost {

/// Where addresses arrive that may be the callback of a sign-in, by whatever way. Arrival proves nothing:
/// only what carries the state of the attempt that is waiting gets through, and ends its waiting. Whatever
/// else comes is ignored, each with one log line that holds nothing of it. Main thread.
class CallbackInbox {
public:
    enum class Verdict {
        taken,
        /// A callback, but none that is waited for.
        ignored,
        /// No address of the scheme at all.
        notCallback,
    };

    /// What an attempt waits for.
    struct Expected {
        std::string scheme;
        /// The value of the first item "state".
        std::string state;
        /// Asked last of all; false when the attempt is over.
        std::function<bool(std::string)> take;
    };

    /// Until something is expected, callbacks are told from other addresses by `scheme`.
    explicit CallbackInbox(std::string scheme) : scheme_(std::move(scheme)) {}

    /// Replaces what was expected before.
    void expect(Expected expected) { expected_ = std::move(expected); }

    /// Nothing is expected any more.
    void close() { expected_.reset(); }

    /// What is to become of `address`, white space around it aside.
    Verdict offer(std::string_view address);

private:
    std::string scheme_;
    std::optional<Expected> expected_;
};

} // namespace roost
