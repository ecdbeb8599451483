#pragma once

#include "model/RoostSnapshot.h"
#include "tests/app/AppSimulationDice.h"

namespace roost::test {

/// Has the numbers of a profile live on until `now`: views and followers come and some go, another post
/// becomes the best, posts leave the queue and new ones come.
void liveOn(RoostSnapshot& numbers, Dice& dice, Date now);

} // namespace roost::test
