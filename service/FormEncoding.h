#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Names and values in queries and form bodies. Pure functions; texts are bytes, UTF-8 where they are text.
namespace roost::FormEncoding {

/// `text` with everything but ASCII letters, digits and "-._~" as %XX (RFC 3986 §2.3).
std::string percentEncoded(std::string_view text);

/// The pairs in the order of their keys, "key=value" joined by "&". Keys are written as they are.
std::string formEncoded(const std::map<std::string, std::string>& form);

/// The value of the first item of `query` (without its "?") with exactly that name: "+" is a blank, %XX a
/// byte. Nothing when there is no such item or the first one has no "=".
std::optional<std::string> firstValue(std::string_view query, std::string_view name);

} // namespace roost::FormEncoding
