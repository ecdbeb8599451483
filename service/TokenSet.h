#pragma once

#include "model/Date.h"

#include <string>

namespace roost {

/// The tokens of one profile. Never logged, never written anywhere but into the secret store.
struct TokenSet {
    /// For the widget endpoint; never empty.
    std::string accessToken;
    /// Never empty.
    std::string refreshToken;
    /// When the access token expires.
    Date expiresAt;
    /// As the server sent it; empty when it sent none.
    std::string scope;

    bool operator==(const TokenSet&) const = default;
};

} // namespace roost
