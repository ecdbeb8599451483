#include "bus/ModelProperties.h"

#include "bus/BusValues.h"

#include <functional>
#include <type_traits>

namespace roost::ModelProperties {

namespace {

/// The property that `get` reads, `set` writes and `changed` tells of.
template <auto get, auto set, auto changed>
Property property()
{
    using Value = std::remove_cvref_t<std::invoke_result_t<decltype(get), const AppState&>>;
    return {.value = [](const AppState& state) { return BusValues::sent(std::invoke(get, state)); },
            .take =
                [](AppState& state, const QVariant& received) {
                    std::optional<Value> value = BusValues::received<Value>(received);
                    const bool isOfForm = value.has_value();
                    if (isOfForm) {
                        std::invoke(set, state, *std::move(value));
                    }
                    return isOfForm;
                },
            .changed = changed};
}

std::map<QString, Property> described()
{
    using State = AppState;
    Property accounts = property<&State::accounts, &State::setAccounts, &State::accountsChanged>();
    accounts.isInvalidatedOnly = true;
    return {
        {QStringLiteral("Accounts"), accounts},
        {QStringLiteral("IsRefreshing"),
         property<&State::isRefreshing, &State::setRefreshing, &State::isRefreshingChanged>()},
        {QStringLiteral("LastRefreshAt"),
         property<&State::lastRefreshAt, &State::setLastRefreshAt, &State::lastRefreshAtChanged>()},
        {QStringLiteral("SignInState"),
         property<&State::signInState, &State::setSignInState, &State::signInStateChanged>()},
        {QStringLiteral("SelectedProfileID"),
         property<&State::selectedProfileID, &State::setSelectedProfileID,
                  &State::selectedProfileIDChanged>()},
        {QStringLiteral("LaunchAtLogin"),
         property<&State::launchAtLogin, &State::setLaunchAtLogin, &State::launchAtLoginChanged>()},
        {QStringLiteral("LaunchNeedsApproval"),
         property<&State::launchNeedsApproval, &State::setLaunchNeedsApproval,
                  &State::launchNeedsApprovalChanged>()},
        {QStringLiteral("UpdateStatus"),
         property<&State::updateStatus, &State::setUpdateStatus, &State::updateStatusChanged>()},
    };
}

} // namespace

const std::map<QString, Property>& all()
{
    static const std::map<QString, Property> properties = described();
    return properties;
}

const Property* find(const QString& name)
{
    const auto found = all().find(name);
    return found == all().end() ? nullptr : &found->second;
}

} // namespace roost::ModelProperties
