#pragma once

#include "tests/app/AppSimulationDice.h"
#include "tests/soak/SoakMachine.h"

#include <span>
#include <string_view>

namespace roost::test {

/// Something that happens on a machine while the app runs, and is over when `bring` returns: the app is then
/// left to recover by itself. `bring` throws when what must come of it does not.
struct Trouble {
    std::string_view name;
    void (*bring)(SoakMachine& machine, Dice& dice);
};

/// All there are.
std::span<const Trouble> troubles();

} // namespace roost::test
