#pragma once

#include <map>
#include <string>
#include <string_view>

/// What is written into queries and form bodies. Pure functions; texts are bytes, UTF-8 where they are text.
namespace roost::FormEncoding {

/// `text` with everything but ASCII letters, digits and "-._~" as %XX (RFC 3986 §2.3).
std::string percentEncoded(std::string_view text);

/// The pairs in the order of their keys, "key=value" joined by "&". Keys are written as they are.
std::string formEncoded(const std::map<std::string, std::string>& form);

} // namespace roost::FormEncoding
