#pragma once

#include <optional>
#include <string>

namespace roost::local {

/// Who decides about authorization requests. A plain value.
struct Consent {
    enum class Answer {
        /// The user, on the page.
        byUser,
        /// The service, at once.
        allow,
        deny,
    };

    Answer answer = Answer::byUser;
    /// The profile that is allowed when nobody is asked; nothing: the first one that nobody is signed in to,
    /// or the first of all.
    std::optional<std::string> profile = std::nullopt;
};

} // namespace roost::local
