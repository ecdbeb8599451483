#include "present/AgoTexts.h"

#include "present/FormatLocale.h"
#include "present/FormatZone.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace roost {

namespace {

/// 2001-01-01T00:00:00Z.
constexpr UDate reference = 978'307'200'000.0;
/// Some 100,000 years. Ages beyond read the same; the calendars of ICU reach a little further only.
constexpr double greatestAge = 3.15e12;

constexpr std::pair<UCalendarDateFields, URelativeDateTimeUnit> units[] = {
    {UCAL_EXTENDED_YEAR, UDAT_REL_UNIT_YEAR}, {UCAL_MONTH, UDAT_REL_UNIT_MONTH},
    {UCAL_WEEK_OF_YEAR, UDAT_REL_UNIT_WEEK},  {UCAL_DATE, UDAT_REL_UNIT_DAY},
    {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR},   {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE},
};

icu::RelativeDateTimeFormatter formatterFor(const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::RelativeDateTimeFormatter formatter{locale, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE,
                                             status};
    requireIcu(status);
    return formatter;
}

std::unique_ptr<const icu::Calendar> calendarFor(const icu::Locale& locale, const std::string& timeZone)
{
    UErrorCode status = U_ZERO_ERROR;
    // The zones of the years before 2001 are the same in every copy of their database.
    const auto name = icu::UnicodeString::fromUTF8(FormatZone{timeZone}.name());
    std::unique_ptr<icu::Calendar> calendar{
        icu::Calendar::createInstance(icu::TimeZone::createTimeZone(name), locale, status)};
    requireIcu(status);
    calendar->setTime(reference, status);
    requireIcu(status);
    return calendar;
}

} // namespace

AgoTexts::AgoTexts(const std::string& locale, const std::string& timeZone)
    : formatter_{formatterFor(formatLocale(locale))},
      calendar_{calendarFor(formatLocale(locale), timeZone)}
{
}

std::string AgoTexts::ago(double seconds) const
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    if (!(seconds >= 60)) {
        formatter_.format(UDAT_DIRECTION_PLAIN, UDAT_ABSOLUTE_NOW, text, status);
        requireIcu(status);
        return utf8(text);
    }
    const UDate then = reference - std::floor(std::min(seconds, greatestAge) * 1000);
    const std::unique_ptr<icu::Calendar> calendar{calendar_->clone()};
    for (const auto& [field, unit] : units) {
        const int count = calendar->fieldDifference(then, field, status);
        if (count != 0) {
            formatter_.formatNumeric(count, unit, text, status);
            break;
        }
    }
    requireIcu(status);
    return utf8(text);
}

} // namespace roost
