#pragma once

#include <cstddef>
#include <string_view>

namespace roost {

/// Longer ones are no callbacks.
inline constexpr std::size_t longestCallback = 8 * 1024;

/// Whether `text` is an address of `scheme`, in any case (RFC 3986 §3.1), of the characters that addresses
/// are made of.
bool isCallback(std::string_view text, std::string_view scheme);

} // namespace roost
