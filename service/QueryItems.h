#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The items of a web form in the query of an address: "+" is a blank, %XX a byte, a stray "%" itself. Pure
/// functions.
namespace roost {

/// The value of the first item of exactly that name. Nothing when there is no such item, or the first one has
/// no "=", whatever others have.
std::optional<std::string> firstQueryItem(std::string_view address, std::string_view name);

/// The same for the last one.
std::optional<std::string> lastQueryItem(std::string_view address, std::string_view name);

} // namespace roost
