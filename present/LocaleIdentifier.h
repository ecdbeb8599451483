#pragma once

#include <unicode/locid.h>

#include <string_view>

namespace roost {

/// The locale that an identifier names, in any of the usual spellings: "pt_BR", "pt-BR", "ar-EG-u-nu-latn",
/// "de_DE@numbers=latn", "de_DE.UTF-8". Codes that were replaced are read as their successors ("iw" as "he").
/// What cannot be read is the root locale, which has no language.
icu::Locale localeNamed(std::string_view identifier);

} // namespace roost
