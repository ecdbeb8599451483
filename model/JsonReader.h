#pragma once

#include "model/Date.h"
#include "model/JsonError.h"
#include "model/WebURL.h"

#include <simdjson.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The scalars of a JSON document, read strictly from simdjson's on-demand cursor. That cursor looks at what
/// it is asked for and at nothing else, so whatever no record asks for is walked by `skip`: every byte is
/// checked once.
namespace roost::json {

using Value = simdjson::ondemand::value;
using Field = simdjson::simdjson_result<simdjson::ondemand::field>;

/// A value that is valid JSON but not what the record needs; null when there is none. A later value for the
/// same key may still make it good, so it is carried, not thrown.
struct Dispose {
    void operator()(JsonError* problem) const;
};
using Problem = std::unique_ptr<JsonError, Dispose>;

/// The document is not valid JSON. Thrown while decoding and caught by the decoder, as is
/// `simdjson::simdjson_error`.
struct Malformed {
    const char* reason;
};

/// How deep arrays and objects may stand in each other.
inline constexpr int deepest = 256;

Problem problem(std::string reason);

/// Puts `step`, a key or "[position]", in front of the path of `found`.
Problem under(std::string_view step, Problem found);

/// The first character of `value`: '{', '[' and '"' tell its type; any other has yet to be checked.
inline char startOf(Value& value) { return *value.raw_json_token().data(); }

/// For a value of the wrong type: walks over it and says "expected `what`, found …".
Problem mistyped(Value value, const char* what, int depth);

/// Whether `key`, of at most `longestKey` characters and none that needs escaping, is the key that starts at
/// `raw`, as it stands there.
inline constexpr std::size_t longestKey = simdjson::SIMDJSON_PADDING - 1;
inline bool isKey(std::string_view key, const char* raw)
{
    return std::memcmp(raw, key.data(), key.size()) == 0 && raw[key.size()] == '"';
}

/// The key of `field`, checked and without escapes; valid until the document ends.
std::string_view keyOf(Field& field);

Problem read(Value value, std::int64_t& out, int depth);
Problem read(Value value, bool& out, int depth);
Problem read(Value value, std::string& out, int depth);
Problem read(Value value, Date& out, int depth);

/// The text of a value that is known to be a string, valid until the document ends.
std::string_view textOf(Value& value);

/// The web address in `value`, nothing when it is anything else.
std::optional<WebURL> readLink(Value value, int depth);

/// Checks `value` and everything in it, and drops it.
void skip(Value value, int depth);

/// The value of a JSON number when it is an integer of 64 bits; `text` is the number alone. Throws
/// `Malformed` when it is no JSON number (RFC 8259 §6).
struct Integer {
    enum class Kind { exact, fraction, outOfRange };
    Kind kind = Kind::exact;
    std::int64_t value = 0;
};
Integer integerOf(std::string_view text);

} // namespace roost::json
