#include "model/RefreshSignal.h"

#include <array>
#include <charconv>

namespace roost::RefreshSignal {

namespace {

std::filesystem::path fileIn(const WidgetStore& store) { return store.directory() / "refresh-requested"; }

/// The shortest plain decimals that read back as `seconds`: left to itself, the shortest text of a round
/// number has an exponent.
std::string plainDecimal(double seconds)
{
    // The longest date and its milliseconds fit many times.
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

} // namespace

bool request(const WidgetStore& store, Date now, const Post& post)
{
    std::error_code failed = store.files().makeFolders(store.directory());
    if (!failed) {
        failed = replaceFile(store.files(), fileIn(store), plainDecimal(secondsSince1970(now)));
    }
    post(now);
    return !failed;
}

std::optional<Date> lastRequest(const WidgetStore& store)
{
    constexpr std::size_t longest = 512;
    const auto text = store.files().read(fileIn(store), longest);
    if (!text) {
        return std::nullopt;
    }
    double seconds = 0;
    const char* const end = text->data() + text->size();
    const auto [stopped, error] = std::from_chars(text->data(), end, seconds);
    const Date date = dateFromSeconds(seconds);
    // No number, and numbers that no date holds, give the ends of its range.
    if (error != std::errc{} || stopped != end || date == Date::min() || date == Date::max()) {
        return std::nullopt;
    }
    return date;
}

} // namespace roost::RefreshSignal
