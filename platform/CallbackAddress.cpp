#include "platform/CallbackAddress.h"

#include "bus/Handover.h"

#include <algorithm>

namespace roost {

bool isCallback(std::string_view text, std::string_view scheme)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return text.size() <= longestCallback && text.size() > scheme.size() && text[scheme.size()] == ':' &&
           std::ranges::equal(text.substr(0, scheme.size()), scheme, {}, lower, lower) &&
           std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7f'; });
}

} // namespace roost
