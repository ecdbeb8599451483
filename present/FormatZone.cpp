#include "present/FormatZone.h"

#include <QDateTime>

#include <algorithm>

namespace roost {

namespace {

using std::chrono::days;
using std::chrono::milliseconds;

Date withinReach(Date date)
{
    constexpr Date furthest{milliseconds{180'000'000'000'000'000}};
    return std::clamp(date, Date{-furthest.time_since_epoch()}, furthest);
}

} // namespace

FormatZone::FormatZone(const std::string& name)
    : zone_{name.empty() ? QTimeZone::systemTimeZoneId() : QByteArray::fromStdString(name)}
{
    if (!zone_.isValid()) {
        zone_ = QTimeZone::utc();
    }
}

std::string FormatZone::name() const { return zone_.id().toStdString(); }

milliseconds FormatZone::offset(Date date) const
{
    const auto at = QDateTime::fromMSecsSinceEpoch(date.time_since_epoch().count(), Qt::UTC);
    return std::chrono::seconds{zone_.offsetFromUtc(at)};
}

Date FormatZone::wallClock(Date date) const
{
    const Date near = withinReach(date);
    return near + offset(near);
}

std::int64_t FormatZone::daysBetween(Date from, Date to) const
{
    const auto dayOf = [this](Date date) { return std::chrono::floor<days>(wallClock(date)); };
    // Where the clocks went forward by a whole day, a date of the calendar was left out.
    const milliseconds forward = offset(withinReach(to)) - offset(withinReach(from));
    return (dayOf(to) - dayOf(from) - std::chrono::round<days>(forward)).count();
}

} // namespace roost
