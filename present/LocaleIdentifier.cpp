#include "present/LocaleIdentifier.h"

#include <algorithm>
#include <string>

namespace roost {

icu::Locale localeNamed(std::string_view identifier)
{
    if (!std::ranges::all_of(identifier, [](char c) { return c > ' ' && c <= '~'; })) {
        return icu::Locale::getRoot();
    }
    std::string tag{identifier};
    std::ranges::replace(tag, '_', '-');
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(tag, status);
    if (U_FAILURE(status) || locale.isBogus()) {
        // No language tag: ICU's own spelling, or that of the C library.
        status = U_ZERO_ERROR;
        locale = icu::Locale::createCanonical(std::string{identifier}.c_str());
    }
    locale.canonicalize(status);
    return U_FAILURE(status) || locale.isBogus() ? icu::Locale::getRoot() : locale;
}

} // namespace roost
