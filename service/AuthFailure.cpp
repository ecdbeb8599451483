#include "service/AuthFailure.h"

namespace roost {

namespace {

struct Description {
    std::string operator()(const RoostAuthError& error) const { return roost::describe(error); }
    std::string operator()(Stopped) const { return "stopped"; }
    std::string operator()(RefreshBlocked) const { return "another process is refreshing this profile"; }

    std::string operator()(SecretsUnavailable unavailable) const
    {
        switch (unavailable.why) {
        case SecretsUnavailable::Why::locked:
            return "the secret store is locked";
        case SecretsUnavailable::Why::noService:
            return "there is no secret store";
        case SecretsUnavailable::Why::notAnswering:
            return "the secret store does not answer";
        }
        return {};
    }
};

} // namespace

std::string describe(const AuthFailure& failure) { return std::visit(Description{}, failure); }

std::string messageFor(const AuthFailure& failure)
{
    if (const auto* error = std::get_if<RoostAuthError>(&failure)) {
        return messageFor(*error);
    }
    return std::holds_alternative<Stopped>(failure) ? "" : "Something went wrong. Try again.";
}

} // namespace roost
