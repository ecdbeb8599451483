#pragma once

namespace roost {

/// Gives back to the system what the program has freed and the allocator keeps for later. Takes about a
/// millisecond. Where the C library has no such call, nothing happens. Any thread.
void giveBackFreedMemory();

} // namespace roost
