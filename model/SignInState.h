#pragma once

#include <string>
#include <variant>

namespace roost {

/// Where a sign-in stands.
namespace SignInState {

/// None is running: the state at first, after success and after the user gave up.
struct Idle {
    bool operator==(const Idle&) const = default;
};

/// One is running; who asks for another meanwhile is not heard.
struct InProgress {
    bool operator==(const InProgress&) const = default;
};

/// The last one failed.
struct Failed {
    /// What people are told, in their language.
    std::string message;
    bool operator==(const Failed&) const = default;
};

using Any = std::variant<Idle, InProgress, Failed>;

} // namespace SignInState

} // namespace roost
