#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace roost {

/// The signs of the networks as path data, each in a box of 24 x 24 units, filled in one colour by the
/// non-zero rule. Constant, of any thread.
struct BrandMarkData {
    struct Entry {
        /// As the service names the network.
        std::string_view platform;
        std::string_view data;
    };

    static const std::array<Entry, 11> paths;

    /// The data of `platform`; nothing for one that has none.
    static std::optional<std::string_view> find(std::string_view platform);
};

} // namespace roost
