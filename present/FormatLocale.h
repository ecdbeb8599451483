#pragma once

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <string>

namespace roost {

/// The locale that ICU formats for when it is asked for `identifier`, a BCP 47 tag or an ICU identifier:
/// always one that it has data for. ICU itself would fall back to the locale of the process, so that one
/// identifier gave different texts on different machines. Any thread.
icu::Locale formatLocale(const std::string& identifier);

/// Whether ICU has data for the language that `identifier` names.
bool hasLocaleData(const std::string& identifier);

/// Language and region of the environment as an ICU identifier, "en_DE" for the messages of en_US.UTF-8 with
/// the times of de_DE.UTF-8; "en" where it says nothing. Does not touch ICU.
std::string systemLocaleIdentifier();

/// Stops the program when ICU could not do what it can do for every locale of `formatLocale`: its data is
/// broken or there is no memory.
void requireIcu(UErrorCode status);

/// `text` as UTF-8.
std::string utf8(const icu::UnicodeString& text);

} // namespace roost
