#pragma once

#include "model/Date.h"

#include <QTimeZone>

#include <chrono>
#include <cstdint>
#include <string>

namespace roost {

/// A time zone by the time zone database of the system, the one that its clocks go by: ICU has a copy of its
/// own, as old as the library. Any thread, several at once.
class FormatZone {
public:
    /// The zone named `name`, the machine's when that is empty, UTC when nobody knows it.
    explicit FormatZone(const std::string& name);

    /// For another library's copy of the database.
    std::string name() const;

    /// What the clocks show at `date`, as the date when UTC's clocks show it. Dates further than some five
    /// million years are cut to that, which is what ICU's calendars reach.
    Date wallClock(Date date) const;

    /// How many days begin after the day of `from`, up to that of `to`; negative when that is before. A day
    /// that the zone skipped did not begin.
    std::int64_t daysBetween(Date from, Date to) const;

private:
    std::chrono::milliseconds offset(Date date) const;

    QTimeZone zone_;
};

} // namespace roost
