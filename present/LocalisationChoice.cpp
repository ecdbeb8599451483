#include "present/LocalisationChoice.h"

#include "present/LocaleIdentifier.h"
#include "present/RoostL10n.h"

#include <algorithm>
#include <array>
#include <utility>

namespace roost {

namespace {

constexpr std::string_view english = "en";

/// ICU's matcher offers related languages and other scripts of the same language too; neither would be what
/// the reader asked for.
bool readAlike(icu::Locale wanted, icu::Locale offered)
{
    UErrorCode status = U_ZERO_ERROR;
    wanted.addLikelySubtags(status);
    offered.addLikelySubtags(status);
    return U_SUCCESS(status) && std::string_view{wanted.getLanguage()} == offered.getLanguage() &&
           std::string_view{wanted.getScript()} == offered.getScript();
}

} // namespace

LocalisationChoice::LocalisationChoice(std::vector<std::string> available) : available_{std::move(available)}
{
    icu::LocaleMatcher::Builder builder;
    for (const std::string& localisation : available_) {
        builder.addSupportedLocale(localeNamed(localisation));
    }
    builder.setNoDefaultLocale();
    UErrorCode status = U_ZERO_ERROR;
    icu::LocaleMatcher matcher = builder.build(status);
    if (U_SUCCESS(status)) {
        matcher_.emplace(std::move(matcher));
    }
}

std::string LocalisationChoice::localisation(std::string_view identifier) const
{
    const icu::Locale wanted = localeNamed(identifier);
    const std::array preferences{wanted, icu::Locale{wanted.getLanguage()}};
    if (!matcher_ || std::string_view{wanted.getLanguage()}.empty()) {
        return std::string{english};
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::RangeIterator desired{preferences.begin(), preferences.end()};
    const icu::Locale* const offered = matcher_->getBestMatch(desired, status);
    if (U_FAILURE(status) || offered == nullptr || !readAlike(wanted, *offered)) {
        return std::string{english};
    }
    const auto chosen = std::ranges::find_if(
        available_, [&](const std::string& localisation) { return localeNamed(localisation) == *offered; });
    // Words that run from right to left are for layouts that do: a code such as "ara" is not among those.
    if (chosen == available_.end() ||
        (RoostL10n::isRightToLeft(*chosen) && !RoostL10n::isRightToLeft(identifier))) {
        return std::string{english};
    }
    return *chosen;
}

} // namespace roost
