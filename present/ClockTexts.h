#pragma once

#include "model/Date.h"
#include "present/FormatZone.h"

#include <unicode/smpdtfmt.h>

#include <memory>
#include <string>

namespace roost {

/// The texts of moments in one locale and zone, as `RoostFormat` promises them. Any thread, several at once.
class ClockTexts {
public:
    /// `timeZone` as `FormatZone` takes it.
    ClockTexts(const std::string& locale, const std::string& timeZone);

    /// "15:05".
    std::string timeText(Date date) const;
    /// "Wed".
    std::string weekdayText(Date date) const;
    /// "14 Nov".
    std::string dateText(Date date) const;
    bool usesTwelveHour() const;

private:
    std::string textOf(const icu::SimpleDateFormat& formatter, Date date) const;

    FormatZone zone_;
    std::unique_ptr<const icu::SimpleDateFormat> time_;
    std::unique_ptr<const icu::SimpleDateFormat> weekday_;
    std::unique_ptr<const icu::SimpleDateFormat> date_;
    bool twelveHour_;
};

} // namespace roost
