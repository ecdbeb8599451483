#include "app/SignInBrowser.h"

#include <utility>

namespace roost {

void SignInBrowser::begin() { address_ = std::make_shared<Address>(); }

void SignInBrowser::end()
{
    const std::shared_ptr<Address> address = std::exchange(address_, nullptr);
    if (address && !address->isComplete()) {
        address->complete(std::nullopt);
    }
}

QCoro::Task<std::expected<std::string, RoostAuthError>>
SignInBrowser::authenticate(WebURL url, QString callbackScheme, std::stop_token stop)
{
    if (address_ && !address_->isComplete()) {
        address_->complete(url.text());
    }
    return browser_->authenticate(std::move(url), std::move(callbackScheme), std::move(stop));
}

QCoro::Task<std::optional<std::string>> SignInBrowser::address() const { return told(address_); }

QCoro::Task<std::optional<std::string>> SignInBrowser::told(std::shared_ptr<Address> address)
{
    if (!address) {
        co_return std::nullopt;
    }
    auto waiting = address->wait({});
    std::optional<std::optional<std::string>> told = co_await waiting;
    co_return *std::move(told);
}

} // namespace roost
