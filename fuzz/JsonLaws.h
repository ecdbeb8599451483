#pragma once

#include "fuzz/JsonOracle.h"
#include "fuzz/Require.h"

#include <simdjson.h>

#include <string_view>

namespace roost::fuzz {

template <class Record>
using Decoded = std::expected<Record, JsonError>;

/// Whether the decoder says that these bytes are not the JSON it takes at all, rather than the wrong JSON.
template <class Record>
bool isRefused(const Decoded<Record>& decoded)
{
    return !decoded && decoded.error().reason.starts_with("not valid JSON");
}

/// Whether `bytes` look like the object that a document has to be.
inline bool beginsAsObject(std::string_view bytes)
{
    const auto first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '{';
}

/// Decodes `bytes` from a buffer in which `behind` follows them.
template <class Record>
Decoded<Record> decodeBefore(std::string_view bytes, char behind)
{
    std::string document{bytes};
    document.resize(bytes.size() + simdjson::SIMDJSON_PADDING, behind);
    document.resize(bytes.size());
    return RoostJSON::decoder().decode<Record>(std::move(document));
}

/// Neither the processor nor the memory behind the document makes a difference.
template <class Record>
void checkSurroundings(std::string_view bytes, const Decoded<Record>& decoded)
{
    const auto check = [&](const Decoded<Record>& other) {
        require(other.has_value() == decoded.has_value(), "surroundings decide nothing");
        require(!decoded || *other == *decoded, "surroundings change no value");
        require(decoded || other.error().path == decoded.error().path, "surroundings change no error");
        require(isRefused(other) == isRefused(decoded) || !beginsAsObject(bytes),
                "surroundings make no JSON");
    };
    check(decodeBefore<Record>(bytes, '"'));
    check(decodeBefore<Record>(bytes, '}'));
    const simdjson::implementation* const before = simdjson::get_active_implementation();
    for (const simdjson::implementation* one : simdjson::get_available_implementations()) {
        if (one->supported_by_runtime_system()) {
            simdjson::get_active_implementation() = one;
            check(decodeBefore<Record>(bytes, '0'));
        }
    }
    simdjson::get_active_implementation() = before;
}

/// What was decoded can be written, is read back as the same, and stands there with sorted keys.
template <class Record>
void checkRoundTrip(const Record& record)
{
    const std::string written = RoostJSON::encoder().encode(record);
    const Decoded<Record> again = RoostJSON::decoder().decode<Record>(written);
    require(again.has_value(), "what was written can be read");
    require(*again == record, "what was written is read as the same");
    const auto ordered = nlohmann::ordered_json::parse(written, nullptr, false);
    require(!ordered.is_discarded(), "what was written is JSON");
    require(ordered.dump() == Json(ordered).dump(), "keys are written in order");
}

/// The decoder takes what nlohmann-json takes, within the limits it has of its own, and reads the same in it.
template <class Record>
void checkAgreement(std::string_view bytes, const Decoded<Record>& decoded)
{
    if (bytes.starts_with("\xEF\xBB\xBF") || bytes.contains('\0')) {
        require(!decoded, "no byte-order mark and no NUL");
        return; // these nlohmann-json reads as nothing and as the end
    }
    Json json;
    try {
        json = Json::parse(bytes);
    } catch (const Json::out_of_range&) {
        return; // a number beyond a double's range, which is a number all the same
    } catch (const Json::parse_error&) {
        require(beginsAsObject(bytes) ? isRefused(decoded) : !decoded, "what is no JSON is called so");
        return;
    }
    if (!json.is_object()) {
        require(!decoded, "a document is an object");
        return;
    }
    constexpr std::size_t deepest = 256;
    if (depthOf(json) > deepest) {
        require(isRefused(decoded), "nesting has a bound");
        return;
    }
    require(!isRefused(decoded), "JSON is understood as JSON");
    try {
        Record expected;
        const bool isGood = understand(json, expected);
        require(isGood == decoded.has_value(), "records are accepted by the rules");
        require(!isGood || expected == *decoded, "records are read by the rules");
    } catch (const Incomparable&) {
    }
}

template <class Record>
void checkLaws(std::string_view bytes)
{
    const Decoded<Record> decoded = RoostJSON::decoder().decode<Record>(std::string{bytes});
    checkSurroundings(bytes, decoded);
    checkAgreement(bytes, decoded);
    if (decoded) {
        checkRoundTrip(*decoded);
    }
}

} // namespace roost::fuzz
