#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace roost::local {

/// Who a profile is.
struct ProfileIdentity {
    std::string id;
    std::string name;
    /// Its name on the networks, without "@".
    std::string handle;
};

/// The profile at `position`, counted from 0: the first ones in several scripts and lengths, the others
/// numbered. No two have the same id.
ProfileIdentity profileIdentity(std::size_t position);

/// A post's text picked by `choice`: several languages, lengths and directions, now and then empty.
std::string postText(std::uint64_t choice);

/// The name to show for a platform identifier; empty for one that is not known.
std::string_view platformLabel(std::string_view platform);

} // namespace roost::local
