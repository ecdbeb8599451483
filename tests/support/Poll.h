#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace roost::test {

/// Asks every few milliseconds, without an event loop, until `condition` holds. For what other processes do.
/// Throws, and so fails the test, naming `what`, when the guard time passes first.
void poll(const std::string& what, const std::function<bool()>& condition);

/// The same for as long as `patience`; whether the condition came to hold.
bool holdsWithin(std::chrono::milliseconds patience, const std::function<bool()>& condition);

} // namespace roost::test
