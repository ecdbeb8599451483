#include "model/JsonReader.h"

#include "model/RoostJSON.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace roost::json {

using simdjson::ondemand::json_type;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

const char* nameOf(json_type type)
{
    switch (type) {
    case json_type::array:
        return "an array";
    case json_type::object:
        return "an object";
    case json_type::number:
        return "a number";
    case json_type::string:
        return "a string";
    case json_type::boolean:
        return "a boolean";
    case json_type::null:
        return "null";
    }
    throw Malformed{"unknown kind of value"};
}

/// A value that is neither array nor object, as it stands in the document.
std::string_view tokenOf(Value& value)
{
    const std::string_view token = value.raw_json_token();
    const char* end = token.data() + token.size();
    while (end[-1] == ' ' || end[-1] == '\t' || end[-1] == '\r' || end[-1] == '\n') {
        --end; // it starts with something else
    }
    return {token.data(), end};
}

unsigned hexOf(const char* four)
{
    unsigned code = 0;
    if (std::from_chars(four, four + 4, code, 16).ptr != four + 4) {
        throw Malformed{"broken escape"};
    }
    return code;
}

/// simdjson checks the form of escapes but lets some lone halves of surrogate pairs pass. `raw` starts after
/// the opening quote of a string whose escapes it has accepted.
void checkSurrogates(const char* raw)
{
    for (const char* c = raw; *c != '"'; ++c) {
        if (*c != '\\') {
            continue;
        }
        ++c;
        if (*c != 'u') {
            continue;
        }
        const unsigned code = hexOf(c + 1);
        c += 4;
        if (code >= 0xDC00 && code <= 0xDFFF) {
            throw Malformed{"lone surrogate"};
        }
        if (code >= 0xD800 && code <= 0xDBFF) {
            const bool escaped = c[1] == '\\' && c[2] == 'u';
            const unsigned low = escaped ? hexOf(c + 3) : 0;
            if (low < 0xDC00 || low > 0xDFFF) {
                throw Malformed{"lone surrogate"};
            }
            c += 6;
        }
    }
}

void goDeeper(int depth)
{
    if (depth > deepest) {
        throw Malformed{"nested too deeply"};
    }
}

} // namespace

// Problems are rare. Out of line, so that the way without one stays short.
[[gnu::noinline]] void Dispose::operator()(JsonError* problem) const { delete problem; }

Problem problem(std::string reason) { return Problem{new JsonError{{}, std::move(reason)}}; }

Problem under(std::string_view step, Problem found)
{
    if (found) {
        const bool joined = found->path.empty() || found->path.front() == '[';
        found->path = std::string{step} + (joined ? "" : ".") + found->path;
    }
    return found;
}

Problem mistyped(Value value, const char* what, int depth)
{
    const json_type found = value.type();
    skip(value, depth);
    return problem(std::string{"expected "} + what + ", found " + nameOf(found));
}

std::string_view keyOf(Field& field)
{
    const char* const raw = field.key().value().raw();
    const char* end = raw;
    while (*end != '"' && *end != '\\') {
        ++end;
    }
    if (*end == '"') {
        return {raw, end};
    }
    const std::string_view key = field.unescaped_key();
    checkSurrogates(raw);
    return key;
}

std::string_view textOf(Value& value)
{
    // The quotes, the UTF-8 and the control characters of all strings were checked when the document was
    // indexed. So a string without an escape is good as it stands and need not be copied.
    const std::string_view token = tokenOf(value);
    const char* const raw = token.data() + 1;
    const std::string_view text{raw, token.size() - 2};
    if (!text.contains('\\')) {
        static_cast<void>(value.get_raw_json_string().value()); // goes on to what follows
        return text;
    }
    const std::string_view unescaped = value.get_string();
    checkSurrogates(raw);
    return unescaped;
}

Problem read(Value value, std::int64_t& out, int depth)
{
    if (value.get_int64().get(out) == simdjson::SUCCESS) {
        return nullptr;
    }
    if (value.type() != json_type::number) {
        return mistyped(value, "an integer", depth);
    }
    const Integer integer = integerOf(tokenOf(value));
    out = integer.value;
    switch (integer.kind) {
    case Integer::Kind::exact:
        return nullptr;
    case Integer::Kind::fraction:
        return problem("expected an integer, found a number with a fraction");
    case Integer::Kind::outOfRange:
        break;
    }
    return problem("expected an integer, found a number beyond 64 bits");
}

Problem read(Value value, bool& out, int depth)
{
    if (value.type() != json_type::boolean) {
        return mistyped(value, "a boolean", depth);
    }
    skip(value, depth);
    out = tokenOf(value) == "true";
    return nullptr;
}

Problem read(Value value, std::string& out, int depth)
{
    if (startOf(value) != '"') {
        return mistyped(value, "a string", depth);
    }
    out = textOf(value);
    return nullptr;
}

Problem read(Value value, Date& out, int depth)
{
    if (startOf(value) != '"') {
        return mistyped(value, "a date", depth);
    }
    const std::string_view text = textOf(value);
    const std::optional<Date> date = RoostJSON::parseDate(text);
    if (!date) {
        return problem("Not an ISO 8601 date: " + std::string{text});
    }
    out = *date;
    return nullptr;
}

std::optional<WebURL> readLink(Value value, int depth)
{
    if (startOf(value) != '"') {
        skip(value, depth);
        return std::nullopt;
    }
    return WebURL::parse(textOf(value));
}

void skip(Value value, int depth)
{
    switch (value.type()) {
    case json_type::object:
        goDeeper(depth);
        for (Field field : value.get_object()) {
            keyOf(field);
            skip(field.value(), depth + 1);
        }
        return;
    case json_type::array:
        goDeeper(depth);
        for (Value element : value.get_array()) {
            skip(element, depth + 1);
        }
        return;
    case json_type::string:
        textOf(value);
        return;
    case json_type::number:
        integerOf(tokenOf(value));
        return;
    case json_type::boolean:
        if (const std::string_view token = tokenOf(value); token != "true" && token != "false") {
            throw Malformed{"unknown word"};
        }
        return;
    case json_type::null:
        if (tokenOf(value) != "null") {
            throw Malformed{"unknown word"};
        }
        return;
    }
}

Integer integerOf(std::string_view text)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    const auto digits = [&at, end] {
        const char* first = at;
        at = std::find_if_not(at, end, isDigit);
        if (at == first) {
            throw Malformed{"broken number"};
        }
        return std::string_view{first, static_cast<std::size_t>(at - first)};
    };

    const bool negative = at != end && *at == '-';
    at += negative ? 1 : 0;
    const std::string_view whole = digits();
    if (whole.size() > 1 && whole.front() == '0') {
        throw Malformed{"number with a leading zero"};
    }
    std::string_view fraction;
    if (at != end && *at == '.') {
        ++at;
        fraction = digits();
    }
    std::int64_t exponent = 0;
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        const bool down = at != end && *at == '-';
        at += at != end && (*at == '-' || *at == '+') ? 1 : 0;
        const std::string_view power = digits();
        // An exponent beyond this decides by its sign alone: no document holds that many digits.
        constexpr std::int64_t beyond = 1'000'000'000'000;
        if (std::from_chars(power.data(), power.data() + power.size(), exponent).ec != std::errc{}) {
            exponent = beyond;
        }
        exponent = std::min(exponent, beyond) * (down ? -1 : 1);
    }
    if (at != end) {
        throw Malformed{"broken number"};
    }

    // The number is 0.DIGITS times ten to the power `point`, without zeros at either end of the digits.
    std::string significant = std::string{whole} + std::string{fraction};
    std::int64_t point = static_cast<std::int64_t>(whole.size()) + exponent;
    const auto first = significant.find_first_not_of('0');
    if (first == std::string::npos) {
        return {};
    }
    significant.erase(0, first);
    point -= static_cast<std::int64_t>(first);
    significant.erase(significant.find_last_not_of('0') + 1);
    if (point < static_cast<std::int64_t>(significant.size())) {
        return {Integer::Kind::fraction, 0};
    }
    constexpr std::int64_t mostDigits = 19;
    if (point > mostDigits) {
        return {Integer::Kind::outOfRange, 0};
    }
    significant.append(static_cast<std::size_t>(point) - significant.size(), '0');
    significant.insert(0, negative ? "-" : "");
    std::int64_t value = 0;
    const auto parsed = std::from_chars(significant.data(), significant.data() + significant.size(), value);
    if (parsed.ec != std::errc{}) {
        return {Integer::Kind::outOfRange, 0};
    }
    return {Integer::Kind::exact, value};
}

} // namespace roost::json
