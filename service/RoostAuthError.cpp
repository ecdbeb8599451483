#include "service/RoostAuthError.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace roost {

namespace {

using Kind = RoostAuthError::Kind;

constexpr std::array<std::string_view, 12> names{"unexpectedResponse", "denied",         "insecureEndpoint",
                                                 "unsupportedServer",  "unreachable",    "malformedResponse",
                                                 "invalidGrant",       "invalidClient",  "cancelled",
                                                 "stateMismatch",      "issuerMismatch", "invalidCallback"};

} // namespace

std::string describe(const RoostAuthError& error)
{
    const std::string name{names.at(static_cast<std::size_t>(error.kind))};
    if (error.kind == Kind::unexpectedResponse) {
        return name + "(" + std::to_string(error.status) + ")";
    }
    return error.text.empty() ? name : name + "(" + error.text + ")";
}

std::string messageFor(const RoostAuthError& error)
{
    switch (error.kind) {
    case Kind::unreachable:
    case Kind::unexpectedResponse:
        return "Brisken Roost could not be reached. Check your connection and try again.";
    case Kind::denied:
    case Kind::invalidGrant:
    case Kind::invalidClient:
        return "Roost did not allow this connection. Try signing in again.";
    case Kind::insecureEndpoint:
    case Kind::unsupportedServer:
    case Kind::malformedResponse:
    case Kind::stateMismatch:
    case Kind::issuerMismatch:
    case Kind::invalidCallback:
        return "The sign-in did not complete safely, so nothing was saved. Try again.";
    case Kind::cancelled:
        return {};
    }
    return {};
}

} // namespace roost
