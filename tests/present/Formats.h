#pragma once

#include "model/RoostJSON.h"
#include "present/RoostFormat.h"

#include <stdexcept>
#include <string>

namespace roost::test {

inline RoostFormat formatFor(const std::string& locale, const std::string& zone = "UTC")
{
    return RoostFormat{{.locale = locale, .calendarTimeZone = zone, .timeZone = zone}};
}

/// "2026-03-29T00:59:00Z", also with an offset.
inline Date moment(const std::string& text)
{
    const std::optional<Date> date = RoostJSON::parseDate(text);
    if (!date) {
        throw std::invalid_argument{text};
    }
    return *date;
}

} // namespace roost::test
