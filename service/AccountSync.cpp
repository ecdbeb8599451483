#include "service/AccountSync.h"

#include <QString>

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

SyncOutcome::Any failed(SyncReason::Kind kind) { return SyncOutcome::Failed{SyncReason{kind, std::nullopt}}; }

/// When there is no token to ask with.
SyncOutcome::Any outcomeOf(const AuthFailure& failure)
{
    const auto* error = std::get_if<RoostAuthError>(&failure);
    if (error == nullptr) {
        return failed(SyncReason::Kind::unreachable);
    }
    switch (error->kind) {
    case Kind::invalidGrant:
    case Kind::invalidClient:
        // The session has signed itself out already.
        return SyncOutcome::SignedOut{};
    case Kind::malformedResponse:
        return failed(SyncReason::Kind::malformed);
    case Kind::unexpectedResponse:
    case Kind::denied:
    case Kind::insecureEndpoint:
    case Kind::unsupportedServer:
    case Kind::unreachable:
    case Kind::cancelled:
    case Kind::stateMismatch:
    case Kind::issuerMismatch:
    case Kind::invalidCallback:
        return failed(SyncReason::Kind::unreachable);
    }
    Q_UNREACHABLE();
}

struct OutcomeOfAnswer {
    SyncOutcome::Any operator()(WidgetAPI::Snapshot& answer) const
    {
        return SyncOutcome::Updated{std::move(answer.snapshot)};
    }
    SyncOutcome::Any operator()(WidgetAPI::Unavailable& answer) const
    {
        return SyncOutcome::Failed{SyncReason{SyncReason::Kind::unavailable, answer.retryAfter}};
    }
    SyncOutcome::Any operator()(WidgetAPI::Unauthorized&) const { return SyncOutcome::SignedOut{}; }
    SyncOutcome::Any operator()(WidgetAPI::Forbidden&) const { return SyncOutcome::SignedOut{}; }
    SyncOutcome::Any operator()(WidgetAPI::Unreachable&) const
    {
        return failed(SyncReason::Kind::unreachable);
    }
    SyncOutcome::Any operator()(WidgetAPI::Malformed&) const { return failed(SyncReason::Kind::malformed); }
};

QCoro::Task<SyncOutcome::Any> fetched(WidgetAPI api, std::shared_ptr<AccountSession> session,
                                      std::stop_token stop)
{
    auto asking = session->validAccessToken(stop);
    AuthResult<std::string> token = co_await asking;
    if (!token) {
        co_return outcomeOf(token.error());
    }
    auto fetching = api.fetch(QString::fromStdString(*token), stop);
    WidgetAPI::Result answer = co_await fetching;
    if (std::holds_alternative<WidgetAPI::Unauthorized>(answer)) {
        // Revoked, or the clocks disagree: a fresh token tells, once.
        auto replacing = session->replaceAccessToken(*token, stop);
        token = co_await replacing;
        if (!token) {
            co_return outcomeOf(token.error());
        }
        auto fetchingAgain = api.fetch(QString::fromStdString(*token), stop);
        answer = co_await fetchingAgain;
    }
    SyncOutcome::Any outcome = std::visit(OutcomeOfAnswer{}, answer);
    if (std::holds_alternative<SyncOutcome::SignedOut>(outcome)) {
        auto signingOut = session->signOutOf(*token);
        const bool isSignedOut = co_await signingOut;
        if (!isSignedOut) {
            outcome = failed(SyncReason::Kind::unreachable);
        }
    }
    co_return outcome;
}

} // namespace

QCoro::Task<SyncOutcome::Any> AccountSync::fetch(std::shared_ptr<AccountSession> session,
                                                 std::stop_token stop) const
{
    return fetched(api_, std::move(session), std::move(stop));
}

} // namespace roost
