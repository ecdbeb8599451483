#pragma once

namespace roost {

/// Whether the process at the other end of the connected Unix socket `descriptor` runs (or, for a listener,
/// ran when it began to listen) as this user; unix(7), SO_PEERCRED.
bool isPeerThisUser(int descriptor);

} // namespace roost
