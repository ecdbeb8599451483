#include "platform/DesktopEntry.h"

#include "DesktopEntryTemplate.h"

#include <algorithm>
#include <string_view>

namespace roost {

namespace {

constexpr std::string_view reserved = " \"'\\><~|&;$*?#()`";
constexpr std::string_view escapedInQuotes = "\"`$\\";
constexpr std::string_view placeholder = "@ROOST_EXEC@";

} // namespace

std::optional<std::string> execArgument(const std::filesystem::path& program)
{
    const std::string& path = program.native();
    if (!program.is_absolute() || std::ranges::any_of(path, [](char c) {
            return c == '=' || c == '\x7f' || static_cast<unsigned char>(c) < ' ';
        })) {
        return std::nullopt;
    }
    std::string argument;
    for (const char c : path) {
        if (escapedInQuotes.contains(c)) {
            // One backslash for the quotes, itself doubled since the line is a string.
            argument += "\\\\";
        }
        // A lone "%" begins a field code, and a lone backslash an escape of the string.
        argument += c == '%' ? "%%" : c == '\\' ? "\\\\" : std::string{c};
    }
    return path.find_first_of(reserved) == std::string::npos ? argument : '"' + argument + '"';
}

std::optional<std::string> desktopEntry(const std::filesystem::path& program)
{
    const auto argument = execArgument(program);
    if (!argument) {
        return std::nullopt;
    }
    std::string text = desktopEntryTemplate;
    return text.replace(text.find(placeholder), placeholder.size(), *argument);
}

} // namespace roost
