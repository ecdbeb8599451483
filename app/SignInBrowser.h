#pragma once

#include "service/Completion.h"
#include "service/WebAuthenticating.h"

#include <memory>
#include <optional>
#include <string>

namespace roost {

/// The browser step of sign-ins, and where it leads: whoever cannot see that browser opens the address in
/// another one. Belongs to `AppModel`; main thread; outlives its tasks.
class SignInBrowser final : public WebAuthenticating {
public:
    /// `browser` outlives this.
    explicit SignInBrowser(WebAuthenticating& browser) : browser_{&browser} {}

    /// A sign-in is under way from `begin` to `end`.
    void begin();
    void end();

    QCoro::Task<std::expected<std::string, RoostAuthError>> authenticate(WebURL url, QString callbackScheme,
                                                                         std::stop_token stop) override;

    /// What the sign-in that is under way opens in the browser, as soon as it does; nothing without one, and
    /// when it ends before. Holds no token, but what tells its callback from others.
    QCoro::Task<std::optional<std::string>> address() const;

private:
    using Address = Completion<std::optional<std::string>>;

    static QCoro::Task<std::optional<std::string>> told(std::shared_ptr<Address> address);

    WebAuthenticating* browser_;
    /// Null when no sign-in is under way.
    std::shared_ptr<Address> address_;
};

} // namespace roost
