#pragma once

#include <string_view>

namespace roost {

/// Whether `text` is an address of `scheme`, in any case (RFC 3986 §3.1), of the characters that addresses
/// are made of, and no longer than `longestCallback`.
bool isCallback(std::string_view text, std::string_view scheme);

} // namespace roost
