#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace roost {

/// Longer ones are no callbacks.
inline constexpr std::size_t longestCallback = 8 * 1024;

/// Whether `text` is an address of `scheme`, in any case (RFC 3986 §3.1), of the characters that addresses
/// are made of.
bool isCallback(std::string_view text, std::string_view scheme);

/// The value of the first item of that name in the query of `address`, decoded as forms are ("+" is a blank);
/// empty where the item has no value, nothing where there is no such item.
std::optional<std::string> firstQueryItem(std::string_view address, std::string_view name);

/// The same for the last one.
std::optional<std::string> lastQueryItem(std::string_view address, std::string_view name);

} // namespace roost
