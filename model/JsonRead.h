#pragma once

#include "model/JsonReader.h"
#include "model/RoostJSON.h"

#include <array>
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

/// How the values of a document become members of records. Each `read` gives what is wrong with the value, or
/// nothing; what it leaves in `out` counts only then. `depth` counts the values
/// around it, the document as 1.
namespace roost::json {

template <JsonEnumeration Enumeration>
Problem read(Value value, Enumeration& out, int depth);
template <JsonRecord Record>
Problem read(Value value, Record& out, int depth);
template <class Element>
Problem read(Value value, std::map<std::string, Element>& out, int depth);

template <class Element>
Problem read(Value value, std::vector<Element>& out, int depth)
{
    out.clear();
    if (startOf(value) != '[') {
        return mistyped(value, "an array", depth);
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

/// An object whose keys are the document's own. An entry is named in errors by its place, as in an array: its
/// key is content.
template <class Element>
Problem read(Value value, std::map<std::string, Element>& out, int depth)
{
    out.clear();
    if (startOf(value) != '{') {
        return mistyped(value, "an object", depth);
    }
    // By key, since a later value for the same key may still be good.
    std::map<std::string, std::pair<std::size_t, Problem>> wrong;
    std::size_t place = 0;
    for (Field entry : value.get_object()) {
        Value entryValue = entry.value();
        std::string key{keyOf(entry)};
        Element element{};
        if (Problem found = json::read(entryValue, element, depth + 1)) {
            wrong.insert_or_assign(std::move(key), std::pair{place, std::move(found)});
        } else {
            wrong.erase(key);
            out.insert_or_assign(std::move(key), std::move(element));
        }
        ++place;
    }
    const auto first =
        std::ranges::min_element(wrong, {}, [](const auto& entry) { return entry.second.first; });
    return first == wrong.end()
               ? nullptr
               : under("[" + std::to_string(first->second.first) + "]", std::move(first->second.second));
}

template <class Member>
Problem read(Value value, std::optional<Member>& out, int depth)
{
    // Not `emplace()`: clang decides too early, inside the record around it, that a nested record with
    // initialised members cannot be made from nothing.
    return read(value, out.emplace(Member{}), depth);
}

template <JsonEnumeration Enumeration>
Problem read(Value value, Enumeration& out, int depth)
{
    if (startOf(value) != '"') {
        return mistyped(value, "a string", depth);
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
    if (field.absence != Absence::fails && startOf(value) == 'n') {
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

/// What became of the fields of one record, by their place in its table.
template <JsonRecord Record>
class Findings {
public:
    static constexpr auto& fields = JsonFields<Record>::fields;
    static constexpr std::size_t count = std::tuple_size_v<std::remove_cvref_t<decltype(fields)>>;

    /// Whether the key was there, with a value that does not stand for its absence.
    bool& present(std::size_t field) { return present_[field]; }

    /// What is wrong with the last value of a field, or that nothing is.
    void set(std::size_t field, Problem wrong)
    {
        if (wrong && !problems_) {
            problems_ = std::make_unique<std::array<Problem, count>>();
        }
        if (problems_) {
            (*problems_)[field] = std::move(wrong);
        }
    }

    /// The problem of the first field in the table that has one; a required field that is absent is one.
    Problem first()
    {
        return [this]<std::size_t... I>(std::index_sequence<I...>) {
            Problem found;
            static_cast<void>(((found = this->template problemOf<I>()) || ...));
            return found;
        }(std::make_index_sequence<count>{});
    }

private:
    template <std::size_t I>
    Problem problemOf()
    {
        constexpr auto& field = std::get<I>(fields);
        if (problems_ && (*problems_)[I]) {
            return under(field.key, std::move((*problems_)[I]));
        }
        if (field.absence == Absence::fails && !present_[I]) {
            return under(field.key, problem("missing"));
        }
        return nullptr;
    }

    std::array<bool, count> present_{};
    std::unique_ptr<std::array<Problem, count>> problems_; // made for the first one: usually there is none
};

template <JsonRecord Record>
Problem read(Value value, Record& out, int depth)
{
    if (startOf(value) != '{') {
        return mistyped(value, "an object", depth);
    }
    Findings<Record> findings;
    for (Field entry : value.get_object()) {
        Value entryValue = entry.value();
        const auto readIf = [&]<std::size_t I>(const auto& keyIs) {
            constexpr auto& field = std::get<I>(Findings<Record>::fields);
            static_assert(field.key.size() <= longestKey);
            if (!keyIs(field.key)) {
                return false;
            }
            findings.set(I, readMember(entryValue, field, out, findings.present(I), depth + 1));
            return true;
        };
        const auto readWhere = [&](const auto& keyIs) {
            return [&]<std::size_t... I>(std::index_sequence<I...>) {
                return (readIf.template operator()<I>(keyIs) || ...);
            }(std::make_index_sequence<Findings<Record>::count>{});
        };
        if (readWhere([raw = entry.key().value().raw()](std::string_view key) { return isKey(key, raw); })) {
            continue;
        }
        // The key is unknown, or it has escapes.
        const std::string_view found = keyOf(entry);
        if (!readWhere([found](std::string_view key) { return found == key; })) {
            skip(entryValue, depth + 1);
        }
    }
    return findings.first();
}

} // namespace roost::json
