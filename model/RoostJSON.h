#pragma once

#include "model/Date.h"
#include "model/JsonError.h"
#include "model/JsonFields.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

/// The one JSON convention of every document: the snapshot, the widget-state file, the announced ledger.
namespace roost::RoostJSON {

/// An ISO 8601 instant: date and time in full, "T" between them, seconds, optionally "." and any number of
/// fraction digits (rounded to the nearest millisecond), then "Z", "+hhmm" or "+hh:mm" (also "-"); RFC 3339
/// §5.6 and its basic offset form. Capital letters only. Hour 24 is refused; a leap second, 23:59:60 in UTC,
/// is read as the midnight that follows it. Nothing is given for any other text and for instants outside the
/// years 0 to 9999 (UTC).
std::optional<Date> parseDate(std::string_view text);

/// The same form, always with three fraction digits and "Z". Instants outside the years 0 to 9999 come out as
/// the nearest instant inside, so that what is written can be read.
std::string formatDate(Date date);

/// Decodes UTF-8 JSON (RFC 8259, strictly: no byte-order mark, no lone surrogates, nothing after the value,
/// at most 256 levels deep, at most 512 MiB). Of a key given twice the last counts; keys that a record does
/// not know are ignored, whatever valid value they hold. Integers are exact over the whole signed 64-bit
/// range; a number with a point or an exponent is an integer when its value is one. Holds no state; any
/// thread.
class Decoder {
public:
    template <JsonRecord Record>
    std::expected<Record, JsonError> decode(std::string document) const;
};

/// Encodes records as compact UTF-8 JSON with sorted keys and dates by `formatDate`. Absent optional members
/// are left out. A text that is not valid UTF-8 is written with U+FFFD for each broken part. Holds no state;
/// any thread.
class Encoder {
public:
    template <JsonRecord Record>
    std::string encode(const Record& record) const;
};

inline Decoder decoder() { return {}; }

inline Encoder encoder() { return {}; }

} // namespace roost::RoostJSON
