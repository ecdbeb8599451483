#pragma once

#include <unicode/calendar.h>
#include <unicode/reldatefmt.h>

#include <memory>
#include <string>

namespace roost {

/// The texts of ages in one locale, as `RoostFormat::ago` promises them. Any thread, several at once.
class AgoTexts {
public:
    /// Units are those of the locale's calendar in the zone `timeZone`, as `FormatZone` takes it.
    AgoTexts(const std::string& locale, const std::string& timeZone);

    std::string ago(double seconds) const;

private:
    icu::RelativeDateTimeFormatter formatter_;
    std::unique_ptr<const icu::Calendar> calendar_;
};

} // namespace roost
