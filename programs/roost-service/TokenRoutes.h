#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

#include <optional>

namespace roost::local {

class FormFields;

/// The token endpoint for public clients, RFC 6749 §3.2: codes and refresh tokens into tokens. Main thread.
class TokenRoutes {
public:
    /// The state must outlive this.
    explicit TokenRoutes(ServiceState& state) : state_(state) {}

    /// Whose code or refresh token the request carries, good or not; nothing when it is of none.
    std::optional<GrantOwner> ownerOf(const Request& request) const;

    /// 200 with tokens, or an error as RFC 6749 §5.2 has it: 401 "invalid_client" for a client that is not
    /// known, 400 otherwise, 405 unless the method is POST.
    Answer answer(const Request& request) const;

private:
    Answer perform(const FormFields& form, const QByteArray& client) const;
    Answer exchange(const FormFields& form, const QByteArray& client) const;
    Answer refresh(const FormFields& form, const QByteArray& client) const;
    Answer told(const std::expected<IssuedTokens, TokenRefusal>& outcome) const;

    ServiceState& state_;
};

} // namespace roost::local
