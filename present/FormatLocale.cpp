#include "present/FormatLocale.h"

#include "present/LocaleIdentifier.h"

#include <unicode/localebuilder.h>
#include <unicode/numsys.h>
#include <unicode/ures.h>

#include <QtGlobal>

#include <cstdlib>
#include <string_view>
#include <utility>

namespace roost {

namespace {

bool hasData(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    ures_close(ures_open(nullptr, locale.getName(), &status));
    return U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING && *locale.getLanguage() != '\0';
}

/// Nothing where nobody can read it.
/// The extensions that bear on numbers and dates, and how long their longest value is.
constexpr std::pair<const char*, std::size_t> extensions[] = {{"ca", 16}, {"hc", 3}, {"nu", 8}, {"rg", 7}};

/// `locale` with those of the extensions that ICU can make sense of, spoken in English where it has no data
/// for the language. An overlong value makes its formatters fail, and a numbering system that it does not
/// know.
icu::Locale supported(const icu::Locale& locale)
{
    const bool known = hasData(locale);
    icu::LocaleBuilder builder;
    builder.setLanguage(known ? locale.getLanguage() : "en")
        .setScript(known ? locale.getScript() : "")
        .setRegion(locale.getCountry())
        .setVariant(locale.getVariant());
    for (const auto& [key, length] : extensions) {
        UErrorCode status = U_ZERO_ERROR;
        const auto value = locale.getUnicodeKeywordValue<std::string>(key, status);
        if (U_SUCCESS(status) && value.size() <= length) {
            builder.setUnicodeLocaleKeyword(key, value);
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale result = builder.build(status);
    delete icu::NumberingSystem::createInstance(result, status);
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        result = builder.setUnicodeLocaleKeyword("nu", "").build(status);
    }
    return U_SUCCESS(status) ? result : icu::Locale::getEnglish();
}

/// "sr_RS.UTF-8@latin" taken apart; empty for the locale that belongs to no people.
struct PosixLocale {
    std::string language;
    std::string region;
    std::string modifier;
};

PosixLocale posixLocale(std::string_view text)
{
    PosixLocale locale;
    if (const auto at = text.find('@'); at != text.npos) {
        locale.modifier = text.substr(at + 1);
        text = text.substr(0, at);
    }
    text = text.substr(0, text.find('.'));
    if (text == "C" || text == "POSIX") {
        return {};
    }
    const auto separator = text.find('_');
    locale.language = text.substr(0, separator);
    if (separator != text.npos) {
        locale.region = text.substr(separator + 1);
    }
    return locale;
}

/// What the environment says for `category`, by the precedence of POSIX.
PosixLocale environmentLocale(const char* category)
{
    for (const char* name : {"LC_ALL", category, "LANG"}) {
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0') {
            return posixLocale(value);
        }
    }
    return {};
}

} // namespace

icu::Locale formatLocale(const std::string& identifier) { return supported(localeNamed(identifier)); }

bool hasLocaleData(const std::string& identifier) { return hasData(localeNamed(identifier)); }

std::string systemLocaleIdentifier()
{
    const PosixLocale messages = environmentLocale("LC_MESSAGES");
    const PosixLocale times = environmentLocale("LC_TIME");
    std::string identifier = messages.language.empty() ? "en" : messages.language;
    if (messages.modifier == "latin") {
        identifier += "_Latn";
    } else if (messages.modifier == "cyrillic") {
        identifier += "_Cyrl";
    }
    const std::string& region = times.region.empty() ? messages.region : times.region;
    return region.empty() ? identifier : identifier + "_" + region;
}

void requireIcu(UErrorCode status)
{
    if (U_FAILURE(status)) {
        qFatal("ICU cannot format: %s", u_errorName(status));
    }
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string bytes;
    text.toUTF8String(bytes);
    return bytes;
}

} // namespace roost
