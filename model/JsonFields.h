#pragma once

#include "model/WebURL.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>

namespace roost {

/// What an absent key or a null means for a field.
enum class Absence {
    /// The record cannot be decoded.
    fails,
    /// The record's own default value holds.
    defaults,
};

/// One member of a record: its key, where it is kept and what holds when it is absent. A member that is a
/// `std::optional` is left out of the output when it has no value; a `std::vector` is an array; a `std::map`
/// from texts is an object that has any keys.
template <class Record, class Member>
struct JsonField {
    std::string_view key;
    Member Record::* member;
    Absence absence;
};

template <class Record, class Member>
constexpr JsonField<Record, Member> required(std::string_view key, Member Record::* member)
{
    return {key, member, Absence::fails};
}

template <class Record, class Member>
constexpr JsonField<Record, Member> defaulted(std::string_view key, Member Record::* member)
{
    return {key, member, Absence::defaults};
}

template <class Record, class Member>
constexpr JsonField<Record, std::optional<Member>> optional(std::string_view key,
                                                            std::optional<Member> Record::* member)
{
    return {key, member, Absence::defaults};
}

/// A link to show, never worth losing the record for: a value of the wrong type, or one that is no web
/// address, counts as absent.
template <class Record>
constexpr JsonField<Record, std::optional<WebURL>> link(std::string_view key,
                                                        std::optional<WebURL> Record::* member)
{
    return {key, member, Absence::defaults};
}

/// Specialised for each record that stands in JSON: `static constexpr auto fields = std::tuple(…)`, one entry
/// per member, ordered by key. This one table drives decoding, encoding and the texts of the errors.
template <class Record>
struct JsonFields;

/// Specialised for each enumeration that stands in JSON as a text: `names`, the texts in the order of the
/// enumerators counted from 0, and `fallback`, what another text means, or nothing when it fails the record.
template <class Enumeration>
struct JsonNames;

template <class T>
concept JsonRecord = requires { JsonFields<T>::fields; };

template <class T>
concept JsonEnumeration = requires { JsonNames<T>::names; };

/// Whether the table of `Record` is ordered by key and names each key once, as the encoder needs.
template <JsonRecord Record>
consteval bool isOrderedByKey()
{
    return std::apply(
        [](const auto&... field) {
            const std::array keys{field.key...};
            return std::ranges::is_sorted(keys) && std::ranges::adjacent_find(keys) == keys.end();
        },
        JsonFields<Record>::fields);
}

} // namespace roost
