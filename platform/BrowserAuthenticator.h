#pragma once

#include "platform/BrowserOpener.h"
#include "platform/CallbackInbox.h"
#include "platform/SystemBootTime.h"
#include "service/WebAuthenticating.h"

#include <chrono>
#include <functional>
#include <memory>

namespace roost {

/// The browser step over the user's default browser: opens the address and waits for the callback to arrive
/// in an inbox. One attempt at a time; a second one meanwhile ends as `cancelled` at once. Main thread;
/// outlives its tasks.
class BrowserAuthenticator final : public WebAuthenticating {
public:
    /// Why the user may have to lend a hand.
    enum class Trouble {
        /// Callbacks of the browser may not find their way to this process.
        notReachable,
        /// The browser could not be opened.
        notOpened,
    };

    /// Makes ready that callbacks reach the inbox, and says whether they will. Bounded in time, and ends soon
    /// after a stop.
    using Reach = std::function<QCoro::Task<bool>(std::stop_token)>;

    /// Told the address that the user has to open by hand, at most once per attempt; the attempt goes on. May
    /// come late: an opener can take its time to fail.
    using Fallback = std::function<void(const WebURL&, Trouble)>;

    struct Parts {
        /// Both outlive this.
        BrowserOpener& opener;
        CallbackInbox& inbox;
        Reach reach;
        Fallback fallback;
        BootTime bootTime = systemBootTime();
        /// How long an attempt may take, from `authenticate` on.
        std::chrono::milliseconds timeout = std::chrono::minutes(10);
    };

    explicit BrowserAuthenticator(Parts parts) : parts_(std::move(parts)) {}

    /// The callback is of `callbackScheme` and carries the state that `url` does: of several the last, which
    /// is the one that was added to what the service's own address holds. Without one it is `cancelled`.
    QCoro::Task<std::expected<std::string, RoostAuthError>> authenticate(WebURL url, QString callbackScheme,
                                                                         std::stop_token stop) override;

private:
    struct Attempt;

    QCoro::Task<void> show(std::shared_ptr<Attempt> attempt);
    void tell(const std::shared_ptr<Attempt>& attempt, Trouble trouble);
    /// Ends the attempt without a callback.
    void giveUp(const std::shared_ptr<Attempt>& attempt);

    Parts parts_;
    bool isBusy_ = false;
};

} // namespace roost
