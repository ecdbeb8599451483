#pragma once

#include "model/RoostSnapshot.h"
#include "present/RoostFreshness.h"

#include <variant>

/// What a surface that shows numbers has to show.
namespace roost::RoostWidgetContent {

struct Ready {
    RoostSnapshot snapshot;
    RoostFreshness freshness;
    bool operator==(const Ready&) const = default;
};

/// Somebody is signed in, and no numbers have come yet.
struct Waiting {
    bool operator==(const Waiting&) const = default;
};

/// Nobody is signed in.
struct SignedOut {
    bool operator==(const SignedOut&) const = default;
};

using Any = std::variant<Ready, Waiting, SignedOut>;

} // namespace roost::RoostWidgetContent
