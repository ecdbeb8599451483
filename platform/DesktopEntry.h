#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace roost {

/// `program` as the first argument of an "Exec" line (Desktop Entry Specification, "The Exec key", and
/// "Possible value types" for strings): quoted only where that is needed. Nothing when no such line can name
/// it: it is not absolute, or holds "=" or a control character.
std::optional<std::string> execArgument(const std::filesystem::path& program);

/// The desktop entry that starts `program` with an address of our scheme; nothing as above.
std::optional<std::string> desktopEntry(const std::filesystem::path& program);

} // namespace roost
