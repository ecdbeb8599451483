#pragma once

#include "present/Catalogue.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// The program's words in the language of a locale, which need not be the process's. Any thread. Locales are
/// named by identifiers such as "pt_BR" or "ar-EG". The first look-up loads ICU's data, which takes some ten
/// milliseconds.
namespace roost::RoostL10n {

/// The catalogue for `locale`: in its language and script, or English. Chosen once per identifier; the
/// reference stays valid as long as the process.
const Catalogue& bundle(std::string_view locale);

/// The plural text `key` for `n`, with `n` written as `locale` writes numbers.
std::string counted(std::string_view key, std::int64_t n, std::string_view locale);

/// How many posts are scheduled: "1,234 scheduled".
std::string scheduled(std::int64_t n, std::string_view locale);

/// Whether the language is one of "ar", "he", "iw", "fa" and "ur".
bool isRightToLeft(std::string_view locale);

/// `text` with its placeholders "%@" replaced in order by `replacements`, which are not looked into. A
/// placeholder without a replacement stays.
std::string filled(std::string_view text, std::initializer_list<std::string_view> replacements);

} // namespace roost::RoostL10n
