#pragma once

#include "model/RoostStoreFile.h"

namespace roost::bench {

/// The snapshot of a busy profile, about 6 KB as JSON: eight networks, thirty days of views and of followers,
/// eight posts to come. The same `number` gives the same snapshot; different ones differ in texts and counts.
RoostSnapshot snapshotOf(int number);

/// The file of that many signed-in profiles, each with `snapshotOf` its position.
RoostStoreFile storeFileOf(int profiles);

} // namespace roost::bench
