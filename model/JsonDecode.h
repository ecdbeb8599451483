#pragma once

#include "model/JsonReader.h"
#include "model/RoostJSON.h"

#include <array>
#include <type_traits>
#include <utility>
#include <vector>

namespace roost::json {

template <JsonEnumeration Enumeration>
Problem read(Value value, Enumeration& out, int depth);
template <JsonRecord Record>
Problem read(Value value, Record& out, int depth);

template <class Element>
Problem read(Value value, std::vector<Element>& out, int depth)
{
    out.clear();
    if (Problem wrong = expect(value, simdjson::ondemand::json_type::array, "an array", depth)) {
        return wrong;
    }
    Problem first;
    for (Value element : value.get_array()) {
        if (first) {
            skip(element, depth + 1);
        } else if (Problem wrong = json::read(element, out.emplace_back(), depth + 1)) {
            first = under("[" + std::to_string(out.size() - 1) + "]", std::move(wrong));
        }
    }
    return first;
}

template <class Member>
Problem read(Value value, std::optional<Member>& out, int depth)
{
    return read(value, out.emplace(), depth);
}

template <JsonEnumeration Enumeration>
Problem read(Value value, Enumeration& out, int depth)
{
    if (Problem wrong = expect(value, simdjson::ondemand::json_type::string, "a string", depth)) {
        return wrong;
    }
    const auto& names = JsonNames<Enumeration>::names;
    const auto found = std::ranges::find(names, textOf(value));
    if (found != names.end()) {
        out = static_cast<Enumeration>(found - names.begin());
        return nullptr;
    }
    if constexpr (JsonNames<Enumeration>::fallback.has_value()) {
        out = *JsonNames<Enumeration>::fallback;
        return nullptr;
    }
    return problem("not one of the known words");
}

/// Reads the value of one field. A null stands for an absent key, so it leaves the member at its default,
/// unless the field is required: then it is a value of the wrong type.
template <class Record, class Member>
Problem readMember(Value value, const JsonField<Record, Member>& field, Record& record, bool& present,
                   int depth)
{
    Member& member = record.*field.member;
    if (field.absence != Absence::fails && typeOf(value) == simdjson::ondemand::json_type::null) {
        skip(value, depth);
        member = Record{}.*field.member;
        return nullptr;
    }
    if (std::exchange(present, true)) {
        member = Member{}; // the key was there before: nothing of its value may stay
    }
    if constexpr (std::is_same_v<Member, std::optional<WebURL>>) {
        member = readLink(value, depth);
        return nullptr;
    } else {
        return read(value, member, depth);
    }
}

template <JsonRecord Record>
Problem read(Value value, Record& out, int depth)
{
    if (Problem wrong = expect(value, simdjson::ondemand::json_type::object, "an object", depth)) {
        return wrong;
    }
    constexpr auto& fields = JsonFields<Record>::fields;
    constexpr std::size_t count = std::tuple_size_v<std::remove_cvref_t<decltype(fields)>>;
    std::array<bool, count> present{};
    std::array<Problem, count> problems;

    for (Field entry : value.get_object()) {
        const std::string_view key = keyOf(entry);
        Value entryValue = entry.value();
        const auto readIf = [&]<std::size_t I>() {
            const auto& field = std::get<I>(fields);
            if (key != field.key) {
                return false;
            }
            problems[I] = readMember(entryValue, field, out, present[I], depth + 1);
            return true;
        };
        const bool known = [&]<std::size_t... I>(std::index_sequence<I...>) {
            return (readIf.template operator()<I>() || ...);
        }(std::make_index_sequence<count>{});
        if (!known) {
            skip(entryValue, depth + 1);
        }
    }

    const auto firstProblem = [&]<std::size_t... I>(std::index_sequence<I...>) {
        Problem first;
        const auto check = [&](std::size_t i, const auto& field) {
            if (!problems[i] && !present[i] && field.absence == Absence::fails) {
                problems[i] = problem("missing");
            }
            first = under(field.key, std::move(problems[i]));
            return first != nullptr;
        };
        static_cast<void>((check(I, std::get<I>(fields)) || ...));
        return first;
    };
    return firstProblem(std::make_index_sequence<count>{});
}

} // namespace roost::json

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
