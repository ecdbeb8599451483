#include "present/NumberTexts.h"

#include "present/FormatLocale.h"

#include <QtGlobal>

#include <cstdlib>
#include <limits>

namespace roost {

namespace {

using icu::number::LocalizedNumberFormatter;
using icu::number::Notation;
using icu::number::Precision;

std::string textOf(icu::number::FormattedNumber number, UErrorCode& status)
{
    std::string text;
    number.toTempString(status).toUTF8String(text);
    requireIcu(status);
    return text;
}

std::string textOf(const LocalizedNumberFormatter& formatter, std::int64_t number)
{
    UErrorCode status = U_ZERO_ERROR;
    return textOf(formatter.formatInt(number, status), status);
}

std::string textOf(const LocalizedNumberFormatter& formatter, double number)
{
    UErrorCode status = U_ZERO_ERROR;
    return textOf(formatter.formatDouble(number, status), status);
}

/// The leading part of a compact form, as where words stand for powers of 1000; below 1000.
double leadingPart(std::int64_t magnitude)
{
    auto part = static_cast<double>(magnitude);
    while (part >= 1000) {
        part /= 1000;
    }
    return part;
}

} // namespace

NumberTexts::NumberTexts(const std::string& locale)
{
    const LocalizedNumberFormatter base = icu::number::NumberFormatter::withLocale(formatLocale(locale));
    const LocalizedNumberFormatter compact = base.notation(Notation::compactShort());
    const LocalizedNumberFormatter percent = base.unit(icu::NoUnit::percent())
                                                 .scale(icu::number::Scale::powerOfTen(2))
                                                 .precision(Precision::integer());
    full_ = base.precision(Precision::integer());
    signed_ = full_.sign(UNUM_SIGN_EXCEPT_ZERO);
    compactWithDecimal_ = compact.precision(Precision::minMaxFraction(0, 1));
    compactWhole_ = compact.precision(Precision::integer());
    percent_ = percent;
    signedPercent_ = percent.sign(UNUM_SIGN_EXCEPT_ZERO);
}

std::string NumberTexts::compact(std::int64_t count) const
{
    if (count == std::numeric_limits<std::int64_t>::min()) {
        qFatal("a count that has no magnitude");
    }
    const std::int64_t magnitude = std::abs(count);
    if (magnitude < 1000) {
        return full(count);
    }
    // The rule of 1000 holds as well where the locale's words stand for other powers: 12万, not 12.3万.
    return textOf(leadingPart(magnitude) < 100 ? compactWithDecimal_ : compactWhole_, count);
}

std::string NumberTexts::full(std::int64_t count) const { return textOf(full_, count); }

std::string NumberTexts::signedCount(std::int64_t change) const { return textOf(signed_, change); }

std::string NumberTexts::percent(double fraction) const { return textOf(percent_, fraction); }

std::string NumberTexts::signedPercent(double fraction) const { return textOf(signedPercent_, fraction); }

} // namespace roost
