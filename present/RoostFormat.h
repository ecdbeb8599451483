#pragma once

#include "model/Date.h"

#include <cstdint>
#include <memory>
#include <string>

namespace roost {

/// The short texts of numbers and dates: counts, percentages, ages, and when a post is due. What they look
/// like is the locale's alone (CLDR data, by ICU): its digits, separators, words and Unicode extensions
/// ("-u-nu-arab", "-u-hc-h23", "-u-ca-gregory"). Rounding is half-even throughout.
///
/// A value: copies are cheap and share the formatters, which are made when the first text needs them, so
/// nothing of ICU runs before that. Making those costs a hundred times what a text costs later: keep a value
/// where there is one to keep. Any thread, also one value on several at once. Every text is UTF-8.
class RoostFormat {
public:
    struct Settings {
        /// A BCP 47 tag or an ICU identifier ("pt-BR", "pt_BR", "ar-u-nu-latn", "th_TH@calendar=gregorian").
        /// What names no language that ICU knows is English; an extension that it does not know is as absent.
        /// The calendar by which months and years are counted and days are named is the locale's.
        std::string locale;
        /// The zone whose midnights separate days, by its name ("Europe/Berlin"). Empty is the machine's, as
        /// it is when it is first needed; a name that nobody knows is UTC. The same goes for `timeZone`.
        std::string calendarTimeZone;
        /// The zone of the hours and days that are printed.
        std::string timeZone;

        bool operator==(const Settings&) const = default;
    };

    struct QueueTime {
        /// "Today" or "Tomorrow" in the words of `RoostL10n`, a weekday ("Wed") or a day of a month ("Nov
        /// 14").
        std::string dayLabel;
        /// As `timeText`.
        std::string timeLabel;
        /// Days from the day of now to the day of the post, negative for the past. A day that the zone
        /// skipped, as Samoa did on 30 December 2011, was no day.
        std::int64_t dayOffset;

        bool operator==(const QueueTime&) const = default;
    };

    explicit RoostFormat(Settings settings);

    /// What the machine says now: language and region from the environment (LC_ALL, LC_MESSAGES and LANG; the
    /// region LC_TIME's where that is set), and its zone. A new one sees what has changed.
    static RoostFormat system();

    /// Whether `locale` names a language that ICU has data for: no text is then in English for want of it.
    static bool knows(const std::string& locale);

    /// As it was given.
    const std::string& locale() const;

    /// Whether both were given the same: then they write the same.
    bool operator==(const RoostFormat& other) const;

    /// "950", "1.5K", "15K", "2.3M": in the locale's short compact form from 1000 on, with one decimal at
    /// most while the count, divided by 1000 until it is below 1000, is below 100. The least integer, which
    /// has no magnitude, stops the program.
    std::string compact(std::int64_t count) const;

    /// "12,345".
    std::string full(std::int64_t count) const;

    /// "+12", "-3", "0": signed and grouped, no sign for zero.
    std::string signedCount(std::int64_t change) const;

    /// `fraction` 0.254 as "25%", without decimals.
    std::string percent(double fraction) const;

    /// "+12%", "-4%", and "0%" also for what rounds to zero.
    std::string signedPercent(double fraction) const;

    /// How long ago, "5 min. ago", in the greatest of the units minute, hour, day, week, month and year that
    /// fits, counted back in the calendar from the beginning of 2001 in UTC: the text depends on `seconds`
    /// alone. Below 60, and for what is no number, the word for now.
    std::string ago(double seconds) const;

    /// When `post` is due, asked at `now`: today's word also for every day that has passed, tomorrow's, the
    /// weekday for two to six days ahead, the date from seven on.
    QueueTime queueTime(Date post, Date now) const;

    /// The time of day, "3:05 PM" (with the narrow no-break space of CLDR) or "15:05".
    std::string timeText(Date date) const;

    /// Whether the locale prefers a clock with a marker for morning and afternoon.
    bool usesTwelveHour() const;

private:
    class Parts;
    std::shared_ptr<const Parts> parts_;
};

} // namespace roost
