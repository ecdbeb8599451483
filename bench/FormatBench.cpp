#include "bench/Benchmarks.h"
#include "present/RoostFormat.h"

#include <benchmark/benchmark.h>
#include <unicode/calendar.h>
#include <unicode/dtptngen.h>
#include <unicode/numberformatter.h>
#include <unicode/reldatefmt.h>
#include <unicode/smpdtfmt.h>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace roost::bench {

namespace {

/// From a thousand on, and all with decimals: what a formatter of ICU's can be asked for as it is.
constexpr std::array<std::int64_t, 6> counts{1'250, 12'345, 99'900, 2'300'000, -1'500, 45'600'000'000};
constexpr std::array<double, 4> ages{300, 7'200, 86'400, 1'000'000};
constexpr std::array<std::int64_t, 4> moments{1'718'000'000'000, 1'767'225'599'000, 1'774'746'000'000, 0};

void require(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw std::runtime_error{u_errorName(status)};
    }
}

std::string utf8(const icu::UnicodeString& text)
{
    std::string bytes;
    text.toUTF8String(bytes);
    return bytes;
}

RoostFormat formatFor(const char* locale)
{
    return RoostFormat{{.locale = locale, .calendarTimeZone = "Europe/Berlin", .timeZone = "Europe/Berlin"}};
}

/// ICU's formatters by hand, each made once, or anew for each text.
namespace icuPeer {

icu::number::LocalizedNumberFormatter compact(const char* locale)
{
    return icu::number::NumberFormatter::withLocale(icu::Locale{locale})
        .notation(icu::number::Notation::compactShort())
        .precision(icu::number::Precision::minMaxFraction(0, 1));
}

std::string text(const icu::number::LocalizedNumberFormatter& formatter, std::int64_t count)
{
    UErrorCode status = U_ZERO_ERROR;
    std::string bytes = utf8(formatter.formatInt(count, status).toString(status));
    require(status);
    return bytes;
}

std::string agoAnew(const char* locale, double seconds)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter formatter{icu::Locale{locale}, nullptr, UDAT_STYLE_SHORT,
                                                   UDISPCTX_CAPITALIZATION_NONE, status};
    const std::unique_ptr<icu::Calendar> calendar{icu::Calendar::createInstance(
        icu::TimeZone::createTimeZone(u"Europe/Berlin"), icu::Locale{locale}, status)};
    require(status);
    constexpr UDate start = 978'307'200'000;
    calendar->setTime(start, status);
    const int days = calendar->fieldDifference(start - seconds * 1000, UCAL_DATE, status);
    icu::UnicodeString text;
    formatter.formatNumeric(days, UDAT_REL_UNIT_DAY, text, status);
    require(status);
    return utf8(text);
}

std::unique_ptr<icu::SimpleDateFormat> time(const char* locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns{
        icu::DateTimePatternGenerator::createInstance(icu::Locale{locale}, status)};
    require(status);
    auto format = std::make_unique<icu::SimpleDateFormat>(patterns->getBestPattern(u"jm", status),
                                                          icu::Locale{locale}, status);
    require(status);
    format->adoptTimeZone(icu::TimeZone::createTimeZone(u"Europe/Berlin"));
    return format;
}

std::string text(const icu::SimpleDateFormat& format, std::int64_t moment)
{
    icu::UnicodeString text;
    return utf8(format.format(static_cast<UDate>(moment), text));
}

} // namespace icuPeer

/// One round writes every one of `values`.
template <class Values, class Write>
void measure(const std::string& name, const Values& values, Write write)
{
    const auto run = [&values, write = std::move(write)](benchmark::State& state) {
        for (auto again : state) {
            static_cast<void>(again);
            for (const auto value : values) {
                std::string text = write(value);
                benchmark::DoNotOptimize(text);
            }
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMicrosecond);
}

} // namespace

bool formatPeersAgree()
{
    for (const char* locale : {"en", "de", "ja", "ar"}) {
        const RoostFormat format = formatFor(locale);
        const auto compact = icuPeer::compact(locale);
        for (const std::int64_t count : counts) {
            if (format.compact(count) != icuPeer::text(compact, count)) {
                return false;
            }
        }
        const auto time = icuPeer::time(locale);
        for (const std::int64_t moment : moments) {
            if (format.timeText(Date{std::chrono::milliseconds{moment}}) != icuPeer::text(*time, moment)) {
                return false;
            }
        }
    }
    return true;
}

void registerFormatBenchmarks()
{
    for (const char* locale : {"en", "de", "ja", "ar"}) {
        const std::string of = std::string{"/"} + locale + "/";
        const RoostFormat format = formatFor(locale);
        measure("compact" + of + "roost", counts, [format](auto count) { return format.compact(count); });
        measure("compact" + of + "icu", counts, [formatter = icuPeer::compact(locale)](auto count) {
            return icuPeer::text(formatter, count);
        });
        measure("compact" + of + "icu made anew", counts,
                [locale](auto count) { return icuPeer::text(icuPeer::compact(locale), count); });
    }
    const RoostFormat format = formatFor("de");
    measure("ago/de/roost", ages, [format](auto age) { return format.ago(age); });
    measure("ago/de/icu made anew", ages, [](auto age) { return icuPeer::agoAnew("de", age); });
    measure("time/de/roost", moments,
            [format](auto moment) { return format.timeText(Date{std::chrono::milliseconds{moment}}); });
    measure("time/de/icu", moments,
            [time = std::shared_ptr<const icu::SimpleDateFormat>{icuPeer::time("de")}](auto moment) {
                return icuPeer::text(*time, moment);
            });
    measure("time/de/icu made anew", moments,
            [](auto moment) { return icuPeer::text(*icuPeer::time("de"), moment); });
}

} // namespace roost::bench
