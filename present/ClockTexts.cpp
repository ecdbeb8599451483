#include "present/ClockTexts.h"

#include "present/FormatLocale.h"

#include <unicode/calendar.h>
#include <unicode/dtptngen.h>

namespace roost {

namespace {

icu::UnicodeString pattern(icu::DateTimePatternGenerator& patterns, const char* skeleton)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString best = patterns.getBestPattern(icu::UnicodeString::fromUTF8(skeleton), status);
    requireIcu(status);
    return best;
}

std::unique_ptr<const icu::SimpleDateFormat> formatter(const icu::UnicodeString& pattern,
                                                       const icu::Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
    requireIcu(status);
    // It is given what the clocks show, not the instant: no text names the zone.
    made->setTimeZone(*icu::TimeZone::getGMT());
    return made;
}

} // namespace

ClockTexts::ClockTexts(const std::string& localeIdentifier, const std::string& timeZone) : zone_{timeZone}
{
    const icu::Locale locale = formatLocale(localeIdentifier);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns{
        icu::DateTimePatternGenerator::createInstance(locale, status)};
    requireIcu(status);
    time_ = formatter(pattern(*patterns, "jm"), locale);
    weekday_ = formatter(pattern(*patterns, "EEE"), locale);
    date_ = formatter(pattern(*patterns, "MMMd"), locale);
    twelveHour_ = pattern(*patterns, "j").indexOf(u'a') >= 0;
}

std::string ClockTexts::timeText(Date date) const { return textOf(*time_, date); }

std::string ClockTexts::weekdayText(Date date) const { return textOf(*weekday_, date); }

std::string ClockTexts::dateText(Date date) const { return textOf(*date_, date); }

bool ClockTexts::usesTwelveHour() const { return twelveHour_; }

std::string ClockTexts::textOf(const icu::SimpleDateFormat& formatter, Date date) const
{
    // A calendar of this call's own is what makes the formatter safe for several threads.
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar{formatter.getCalendar()->clone()};
    calendar->setTime(static_cast<UDate>(zone_.wallClock(date).time_since_epoch().count()), status);
    requireIcu(status);
    icu::UnicodeString text;
    icu::FieldPosition unused{icu::FieldPosition::DONT_CARE};
    formatter.format(*calendar, text, unused);
    return utf8(text);
}

} // namespace roost
