#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace roost::local {

/// What a client can ask the service for.
enum class Endpoint {
    /// The snapshot of a profile.
    widget,
    /// The pages and pictures that the snapshot links to.
    page,
    /// The metadata of the authorization server, and those of the resource.
    metadata,
    resource,
    /// The registration of clients.
    registration,
    /// The page on which the user allows or denies.
    authorize,
    token,
};

inline constexpr std::array<std::string_view, 7> endpointNames{
    "widget", "page", "metadata", "resource", "register", "authorize", "token"};

constexpr std::string_view nameOf(Endpoint endpoint)
{
    return endpointNames[static_cast<std::size_t>(endpoint)];
}

constexpr std::optional<Endpoint> endpointNamed(std::string_view name)
{
    for (std::size_t i = 0; i < endpointNames.size(); ++i) {
        if (endpointNames[i] == name) {
            return static_cast<Endpoint>(i);
        }
    }
    return std::nullopt;
}

} // namespace roost::local
