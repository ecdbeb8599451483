#include "programs/roost-service/ProfileShape.h"

#include "programs/roost-service/SeededHash.h"

#include <algorithm>

namespace roost::local {

namespace {

using Basis = RoostSnapshot::Views::Basis;
using std::chrono::hours;

enum Purpose : std::uint64_t { ofNetworks = 0x401, ofFirstNetwork, ofSize, ofPosts, ofBasis, ofFollowers };

ProfileShape variedShape(std::uint64_t seed, std::int64_t position)
{
    static const std::vector<std::string> platforms{
        "instagram", "tiktok", "youtube", "x", "linkedin", "threads", "bluesky", "pinterest", "facebook"};
    const auto count = static_cast<std::int64_t>(platforms.size());
    const std::int64_t used = seededNumber(seed, ofNetworks, position, 1, count);
    const std::int64_t first = seededNumber(seed, ofFirstNetwork, position, 0, count - 1);

    ProfileShape shape;
    for (std::int64_t i = 0; i < used; ++i) {
        shape.reporting.push_back(platforms[static_cast<std::size_t>((first + i) % count)]);
    }
    shape.viewsPerDay = seededNumber(seed, ofSize, position, 80, 40'000);
    shape.postInterval = hours(seededNumber(seed, ofPosts, position, 6, 60));
    shape.basis = seededNumber(seed, ofBasis, position, 0, 1) == 0 ? Basis::growth : Basis::published;
    shape.hasFollowers = seededNumber(seed, ofFollowers, position, 0, 3) != 0;
    return shape;
}

} // namespace

ProfileShape profileShape(std::uint64_t seed, std::size_t position)
{
    switch (position) {
    case 0:
        return {{"instagram", "tiktok", "youtube", "linkedin", "threads"},
                {"telegram"},
                24'000,
                hours(7),
                Basis::growth,
                true};
    case 1:
        return {
            {"facebook", "instagram", "pinterest", "bluesky"}, {}, 2'600, hours(19), Basis::published, true};
    case 2:
        return {{"x", "bluesky"}, {}, 140, hours(53), Basis::growth, false};
    default:
        return variedShape(seed, static_cast<std::int64_t>(position));
    }
}

} // namespace roost::local
