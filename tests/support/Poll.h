#pragma once

#include <functional>
#include <string>

namespace roost::test {

/// Asks every few milliseconds, without an event loop, until `condition` holds. For what other processes do.
/// Throws, and so fails the test, naming `what`, when the guard time passes first.
void poll(const std::string& what, const std::function<bool()>& condition);

} // namespace roost::test
