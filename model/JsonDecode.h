#pragma once

#include "model/JsonRead.h"

namespace roost::RoostJSON {

template <JsonRecord Record>
std::expected<Record, JsonError> Decoder::decode(std::string document) const
{
    constexpr std::size_t largest = std::size_t{512} * 1024 * 1024;
    if (document.size() > largest) {
        return std::unexpected(JsonError{{}, "larger than 512 MiB"});
    }
    if (document.starts_with("\xEF\xBB\xBF")) {
        return std::unexpected(JsonError{{}, "not valid JSON: byte-order mark"});
    }
    document.reserve(document.size() + simdjson::SIMDJSON_PADDING);
    try {
        simdjson::ondemand::parser parser;
        simdjson::ondemand::document json = parser.iterate(document);
        if (json.type() != simdjson::ondemand::json_type::object) {
            return std::unexpected(JsonError{{}, "expected an object, found something else"});
        }
        Record record;
        const json::Problem wrong = json::read(json::Value{json.get_value()}, record, 1);
        if (json.current_location().error() != simdjson::OUT_OF_BOUNDS) {
            return std::unexpected(JsonError{{}, "not valid JSON: something follows the value"});
        }
        if (wrong) {
            return std::unexpected(std::move(*wrong));
        }
        return record;
    } catch (const json::Malformed& malformed) {
        return std::unexpected(JsonError{{}, std::string{"not valid JSON: "} + malformed.reason});
    } catch (const simdjson::simdjson_error& error) {
        return std::unexpected(JsonError{{}, std::string{"not valid JSON: "} + error.what()});
    }
}

} // namespace roost::RoostJSON
