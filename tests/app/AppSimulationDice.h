#pragma once

#include <chrono>
#include <cstdint>
#include <random>

namespace roost::test {

/// What happens by chance in a simulation: the same for one seed on every machine.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_{seed} {}

    /// 0 to `count` - 1; at least 1.
    std::size_t below(std::size_t count) { return engine_() % count; }

    /// True once in `times`.
    bool isOneIn(std::size_t times) { return below(times) == 0; }

    std::chrono::milliseconds between(std::chrono::milliseconds least, std::chrono::milliseconds most)
    {
        const auto range = static_cast<std::size_t>((most - least).count()) + 1;
        return least + std::chrono::milliseconds{static_cast<std::int64_t>(below(range))};
    }

private:
    std::mt19937_64 engine_;
};

} // namespace roost::test
