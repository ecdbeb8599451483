#include "present/RoostFormat.h"

#include "present/AgoTexts.h"
#include "present/ClockTexts.h"
#include "present/FormatLocale.h"
#include "present/FormatZone.h"
#include "present/NumberTexts.h"
#include "present/RoostL10n.h"
#include "present/RoostTexts.h"

#include <mutex>
#include <optional>
#include <utility>

namespace roost {

namespace {

/// Made by whoever needs it first, once for all threads.
template <class T>
class Lazy {
public:
    template <class... Arguments>
    const T& get(const Arguments&... arguments) const
    {
        std::call_once(once_, [&] { value_.emplace(arguments...); });
        return *value_;
    }

private:
    mutable std::once_flag once_;
    mutable std::optional<T> value_;
};

} // namespace

/// What the copies of one value share.
class RoostFormat::Parts {
public:
    explicit Parts(Settings settings) : settings_{std::move(settings)} {}

    const Settings& settings() const { return settings_; }
    const NumberTexts& numbers() const { return numbers_.get(settings_.locale); }
    const AgoTexts& ages() const { return ages_.get(settings_.locale, settings_.calendarTimeZone); }
    const ClockTexts& clock() const { return clock_.get(settings_.locale, settings_.timeZone); }
    const FormatZone& days() const { return days_.get(settings_.calendarTimeZone); }

private:
    Settings settings_;
    Lazy<NumberTexts> numbers_;
    Lazy<AgoTexts> ages_;
    Lazy<ClockTexts> clock_;
    Lazy<FormatZone> days_;
};

RoostFormat::RoostFormat(Settings settings) : parts_{std::make_shared<const Parts>(std::move(settings))} {}

RoostFormat RoostFormat::system() { return RoostFormat{{.locale = systemLocaleIdentifier()}}; }

bool RoostFormat::knows(const std::string& locale) { return hasLocaleData(locale); }

const std::string& RoostFormat::locale() const { return parts_->settings().locale; }

bool RoostFormat::operator==(const RoostFormat& other) const
{
    return parts_ == other.parts_ || parts_->settings() == other.parts_->settings();
}

std::string RoostFormat::compact(std::int64_t count) const { return parts_->numbers().compact(count); }

std::string RoostFormat::full(std::int64_t count) const { return parts_->numbers().full(count); }

std::string RoostFormat::signedCount(std::int64_t change) const
{
    return parts_->numbers().signedCount(change);
}

std::string RoostFormat::percent(double fraction) const { return parts_->numbers().percent(fraction); }

std::string RoostFormat::signedPercent(double fraction) const
{
    return parts_->numbers().signedPercent(fraction);
}

std::string RoostFormat::ago(double seconds) const { return parts_->ages().ago(seconds); }

RoostFormat::QueueTime RoostFormat::queueTime(Date post, Date now) const
{
    const std::int64_t offset = parts_->days().daysBetween(now, post);
    const auto word = [this](std::string_view key) { return RoostL10n::bundle(locale()).text(key); };
    const auto dayLabel = [&] {
        // A post whose day has passed waits today.
        if (offset < 1) {
            return word(knownText("Today"));
        }
        if (offset == 1) {
            return word(knownText("Tomorrow"));
        }
        return offset < 7 ? parts_->clock().weekdayText(post) : parts_->clock().dateText(post);
    };
    return {.dayLabel = dayLabel(), .timeLabel = timeText(post), .dayOffset = offset};
}

std::string RoostFormat::timeText(Date date) const { return parts_->clock().timeText(date); }

bool RoostFormat::usesTwelveHour() const { return parts_->clock().usesTwelveHour(); }

} // namespace roost
