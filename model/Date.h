#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace roost {

/// An absolute instant, in whole milliseconds since 1970-01-01T00:00:00Z without leap seconds: the resolution
/// of every date that the service sends and of every file, so that what was read equals what is written.
using Date = std::chrono::sys_time<std::chrono::milliseconds>;

/// The calendar day of `date` in UTC, "2025-01-31": the form of `Views::Day::day` and `Followers::Day::day`.
/// Years are proleptic Gregorian, in at least four characters, the "-" of a year before 0 among them.
std::string dayString(Date date);

/// `seconds` after 1970 as a date, rounded to the nearest millisecond. Values that are no number or lie
/// outside what a `Date` holds give the nearest end of its range (no number: the earliest).
Date dateFromSeconds(double seconds);

/// Seconds since 1970; the inverse of `dateFromSeconds`.
double secondsSince1970(Date date);

} // namespace roost
