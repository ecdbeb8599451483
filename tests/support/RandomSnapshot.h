#pragma once

#include "model/RoostStoreFile.h"

#include <cstdint>
#include <random>

namespace roost::test {

/// Makes snapshots and store files that differ in everything a record can differ in: members present and
/// absent, numbers from one end of their range to the other, empty and odd texts, dates over the years 0 to
/// 9999. The same seed gives the same values on every machine.
class RandomSnapshot {
public:
    explicit RandomSnapshot(std::uint64_t seed) : engine_{seed} {}

    RoostSnapshot snapshot();
    RoostStoreFile storeFile();

    /// Any instant of the years 0 to 9999.
    Date date();

    /// Valid UTF-8 of up to a few dozen characters, control characters and quotation marks among them.
    std::string text();

    /// A number below `bound`, which is not 0.
    std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }

private:
    bool maybe() { return below(2) == 0; }
    std::int64_t integer();
    std::optional<WebURL> link();
    std::vector<std::string> texts();
    RoostSnapshot::Views views();
    RoostSnapshot::Network network();
    RoostSnapshot::Posts posts();
    RoostSnapshot::BestPost best();
    RoostSnapshot::Followers followers();
    RoostAccountRecord account();

    /// Up to five elements made by `make`.
    template <class Make>
    auto some(Make make)
    {
        std::vector<decltype(make())> elements;
        for (std::uint64_t count = below(6); count > 0; --count) {
            elements.push_back(make());
        }
        return elements;
    }

    /// What `make` makes, or nothing.
    template <class Make>
    auto perhaps(Make make)
    {
        return maybe() ? std::optional{make()} : std::nullopt;
    }

    std::mt19937_64 engine_;
};

} // namespace roost::test
