#pragma once

#include "model/JsonFields.h"
#include "model/RoostJSON.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The rules of decoding once more, over a document that nlohmann-json has read: slow, plain, and with
/// nothing in common with the decoder but the tables of fields.
namespace roost::fuzz {

using Json = nlohmann::json;

/// Thrown for an integer written with a point or an exponent, or beyond 64 bits: read as a double, it no
/// longer tells which integer it was.
struct Incomparable {};

inline bool understand(const Json& json, std::int64_t& out)
{
    if (json.is_number_float()) {
        throw Incomparable{};
    }
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    if (!json.is_number_integer() || (json.is_number_unsigned() && json.get<std::uint64_t>() > largest)) {
        return false;
    }
    out = json.get<std::int64_t>();
    return true;
}

inline bool understand(const Json& json, std::string& out)
{
    out = json.is_string() ? json.get<std::string>() : std::string{};
    return json.is_string();
}

inline bool understand(const Json& json, Date& out)
{
    const auto date =
        json.is_string() ? RoostJSON::parseDate(json.get_ref<const std::string&>()) : std::nullopt;
    out = date.value_or(Date{});
    return date.has_value();
}

template <JsonEnumeration Enumeration>
bool understand(const Json& json, Enumeration& out)
{
    using Names = JsonNames<Enumeration>;
    if (!json.is_string()) {
        return false;
    }
    const auto found = std::ranges::find(Names::names, json.get_ref<const std::string&>());
    if (found == Names::names.end()) {
        out = Names::fallback.value_or(Enumeration{});
        return Names::fallback.has_value();
    }
    out = static_cast<Enumeration>(found - Names::names.begin());
    return true;
}

template <JsonRecord Record>
bool understand(const Json& json, Record& out);

template <class Element>
bool understand(const Json& json, std::vector<Element>& out)
{
    return json.is_array() && std::ranges::all_of(json, [&out](const Json& element) {
               return understand(element, out.emplace_back());
           });
}

template <class Element>
bool understand(const Json& json, std::map<std::string, Element>& out)
{
    if (!json.is_object()) {
        return false;
    }
    for (const auto& [key, value] : json.items()) {
        if (!understand(value, out[key])) {
            return false;
        }
    }
    return true;
}

template <class Member>
bool understand(const Json& json, std::optional<Member>& out)
{
    return understand(json, out.emplace(Member{}));
}

inline bool understand(const Json& json, std::optional<WebURL>& out)
{
    if (json.is_string()) {
        out = WebURL::parse(json.get_ref<const std::string&>());
    }
    return true;
}

template <JsonRecord Record>
bool understand(const Json& json, Record& out)
{
    if (!json.is_object()) {
        return false;
    }
    const auto understandField = [&](const auto& field) {
        const auto found = json.find(field.key);
        const bool isRequired = field.absence == Absence::fails;
        if (found == json.end() || (found->is_null() && !isRequired)) {
            return !isRequired;
        }
        return understand(*found, out.*field.member);
    };
    return std::apply([&](const auto&... field) { return (understandField(field) && ...); },
                      JsonFields<Record>::fields);
}

/// How deep arrays and objects stand in each other.
inline std::size_t depthOf(const Json& json)
{
    std::size_t inside = 0;
    for (const Json& element : json) {
        inside = element.is_structured() ? std::max(inside, depthOf(element)) : inside;
    }
    return inside + 1;
}

} // namespace roost::fuzz
