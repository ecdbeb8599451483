#pragma once

#include "model/RoostJSON.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace roost {

/// What stands under a key.
enum class FieldKind { integer, text, date, word, array, object, link };

/// One field as the service and the files have it, told apart from the tables of the product code.
template <class Record>
struct FieldRow {
    /// Where it stands in a full document: "/views/series/0/day".
    std::string pointer;
    FieldKind kind;
    /// Makes of the full record what holds when the key is absent; none when the record then fails.
    std::function<void(Record&)> absent;
    /// A place in an array: it has no key that could be absent, and a null there is a wrong type.
    bool isElement = false;
};

/// "/views/series/0/day" as the texts of errors have it: "views.series[0].day".
inline std::string pathOf(const std::string& pointer)
{
    std::string path;
    for (std::size_t at = 1; at < pointer.size();) {
        const std::size_t end = std::min(pointer.find('/', at), pointer.size());
        const std::string step = pointer.substr(at, end - at);
        if (step.find_first_not_of("0123456789") == std::string::npos) {
            path += "[" + step + "]";
        } else {
            path += (path.empty() ? "" : ".") + step;
        }
        at = end + 1;
    }
    return path;
}

/// `document` with the JSON text `literal` in the place of what stands at `pointer`.
inline std::string withLiteral(nlohmann::json document, const std::string& pointer, std::string_view literal)
{
    document[nlohmann::json::json_pointer{pointer}] = "@literal@";
    std::string text = document.dump();
    const std::string_view mark = "\"@literal@\"";
    return text.replace(text.find(mark), mark.size(), literal);
}

inline std::string withoutKey(nlohmann::json document, const std::string& pointer)
{
    const nlohmann::json::json_pointer field{pointer};
    document[field.parent_pointer()].erase(field.back());
    return document.dump();
}

/// What is wrong with `literal` in the place of a field of this kind; empty when nothing is, as far as the
/// kind goes.
inline std::string complaint(FieldKind kind, std::string_view literal)
{
    const auto nameOf = [](char first) -> std::string {
        switch (first) {
        case '"':
            return "a string";
        case '[':
            return "an array";
        case '{':
            return "an object";
        case 't':
        case 'f':
            return "a boolean";
        case 'n':
            return "null";
        default:
            return "a number";
        }
    };
    const std::string found = nameOf(literal.front());
    const auto unless = [&found](std::string_view wanted, std::string_view what) -> std::string {
        return found == wanted ? "" : "expected " + std::string{what} + ", found " + found;
    };
    switch (kind) {
    case FieldKind::integer:
        if (literal == "5.5" || literal == "1e-400") {
            return "expected an integer, found a number with a fraction";
        }
        if (literal == "1e400" || literal == "9223372036854775808") {
            return "expected an integer, found a number beyond 64 bits";
        }
        return unless("a number", "an integer");
    case FieldKind::date:
        if (literal == "\"word\"") {
            return "Not an ISO 8601 date: word";
        }
        return unless("a string", "a date");
    case FieldKind::text:
    case FieldKind::word:
        return unless("a string", "a string");
    case FieldKind::array:
        return unless("an array", "an array");
    case FieldKind::object:
        return unless("an object", "an object");
    case FieldKind::link:
        return {};
    }
    return {};
}

/// Checks what each field of `rows` means when it is absent, null or of another type. `document` holds every
/// field, and `full` is what it decodes to.
template <class Record>
void checkEveryField(const nlohmann::json& document, const Record& full,
                     const std::vector<FieldRow<Record>>& rows)
{
    const auto decoded = [](std::string text) {
        return RoostJSON::decoder().decode<Record>(std::move(text));
    };
    ASSERT_EQ(decoded(document.dump()), full);
    for (const FieldRow<Record>& row : rows) {
        SCOPED_TRACE(row.pointer);
        const std::string path = pathOf(row.pointer);
        Record fallback = full;
        if (row.absent) {
            row.absent(fallback);
            ASSERT_NE(fallback, full) << "the full document has the default value here";
        }
        const auto expectFallback = [&](const std::string& text) {
            const auto result = decoded(text);
            ASSERT_TRUE(result) << result.error().text();
            EXPECT_EQ(*result, fallback) << text;
        };
        const auto expectComplaint = [&](const std::string& text, const std::string& reason) {
            const auto result = decoded(text);
            ASSERT_FALSE(result) << text;
            EXPECT_EQ(result.error().path, path);
            EXPECT_EQ(result.error().reason, reason);
        };

        if (!row.isElement && row.absent) {
            expectFallback(withoutKey(document, row.pointer));
        } else if (!row.isElement) {
            expectComplaint(withoutKey(document, row.pointer), "missing");
        }
        for (const std::string_view literal : {"null", "5", "5.5", "1e-400", "1e400", "9223372036854775808",
                                               "\"word\"", "true", "false", "[]", "[1]", "{}", "{\"a\":1}"}) {
            SCOPED_TRACE(literal);
            const std::string text = withLiteral(document, row.pointer, literal);
            const bool isLenient = row.kind == FieldKind::link;
            const std::string reason = complaint(row.kind, literal);
            if (isLenient || (literal == "null" && row.absent)) {
                expectFallback(text);
            } else if (!reason.empty()) {
                expectComplaint(text, reason);
            }
        }
    }
}

} // namespace roost
