#include "model/JsonDecode.h"
#include "model/RoostSnapshotFields.h"
#include "tests/support/Fixture.h"
#include "tests/support/RandomSnapshot.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

namespace roost {
namespace {

using namespace std::string_literals;

/// What another strict reader of JSON says of a document.
enum class Verdict { json, notJson, numberBeyondDouble };

/// Notes why the other reader stopped, and builds nothing.
class Listener final : public nlohmann::json_sax<nlohmann::json> {
public:
    Verdict verdict() const { return verdict_; }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return true; }
    bool key(string_t&) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& problem) override
    {
        constexpr int numberOverflow = 406;
        verdict_ = problem.id == numberOverflow ? Verdict::numberBeyondDouble : Verdict::notJson;
        return false;
    }

private:
    Verdict verdict_ = Verdict::json;
};

Verdict oracle(const std::string& text)
{
    Listener listener;
    nlohmann::json::sax_parse(text, &listener);
    return listener.verdict();
}

bool isNoJson(const JsonError& error) { return error.reason.starts_with("not valid JSON"); }

/// Where both readers are known to differ, by the name of the difference; empty everywhere else.
std::string_view knownDifference(const std::string& text, Verdict verdict,
                                 const std::expected<RoostSnapshot, JsonError>& ours)
{
    if (text.starts_with("\xEF\xBB\xBF")) {
        return "the other skips a byte-order mark";
    }
    if (text.contains('\0') && verdict == Verdict::json) {
        return "the other takes a zero byte for the end";
    }
    if (verdict == Verdict::numberBeyondDouble) {
        return "the other refuses numbers beyond the range of double";
    }
    if (!ours && ours.error().reason == "expected an object, found something else") {
        return "ours looks no further into a document that is no object";
    }
    if (!ours && ours.error().reason == "not valid JSON: nested too deeply" &&
        std::ranges::count_if(text, [](char c) { return c == '[' || c == '{'; }) > 256) {
        return "ours bounds the depth";
    }
    return {};
}

std::vector<std::string> seeds()
{
    std::vector<std::string> all{
        "{}",
        R"({"a":[1,-2.5e-3,0.0,true,false,null,"x\u00e9\ud83d\ude00\n",{"b":{}},[]]})",
        R"({"version":1,"version":"2","views":{"total":5.0,"basis":"growth","series":[{"day":"d","views":1}]}})",
        R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"\u0041\ud83d\ude00"},"views":{}})",
        R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"n"},"views":{"total":12},"networks":[)"
        R"({"platform":"x","label":"X","posts":1,"reporting":"ok"}],"roostUrl":"https://a/"})",
        "{ \"k\" :\t[ 1 ,\n2 ] ,\r\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\" : \"\\\"\\\\\\/\" }",
        test::fixture("snapshot-unknown-keys.json"),
        test::fixture("snapshot-minimal.json"),
    };
    test::RandomSnapshot random{77};
    for (int i = 0; i < 4; ++i) {
        all.push_back(RoostJSON::encoder().encode(random.snapshot()));
    }
    return all;
}

/// Breaks documents in the ways in which documents break.
class Mutator {
public:
    /// Breaks each document in one to `most` places.
    Mutator(std::uint64_t seed, std::uint64_t most) : random_{seed}, most_{most}, seeds_{seeds()} {}

    std::string next()
    {
        std::string text = pick(seeds_);
        for (std::uint64_t count = 1 + random_.below(most_); count > 0; --count) {
            mutate(text);
        }
        return text;
    }

private:
    void mutate(std::string& text)
    {
        static const std::vector<std::string> pieces{"\"",
                                                     "\\",
                                                     "{",
                                                     "}",
                                                     "[",
                                                     "]",
                                                     ",",
                                                     ":",
                                                     " ",
                                                     "\n",
                                                     "\t",
                                                     "\r",
                                                     "0",
                                                     "1",
                                                     "-",
                                                     "+",
                                                     ".",
                                                     "e",
                                                     "E",
                                                     "null",
                                                     "true",
                                                     "false",
                                                     "nul",
                                                     "NaN",
                                                     "Infinity",
                                                     "1e400",
                                                     "-1e-400",
                                                     "5.0",
                                                     "01",
                                                     "0.",
                                                     "-0",
                                                     "9223372036854775808",
                                                     "\\u",
                                                     "\\ud800",
                                                     "\\udc00",
                                                     "\\ud83d\\ude00",
                                                     "\\u0000",
                                                     "\\x",
                                                     "\\\"",
                                                     "\xEF\xBB\xBF",
                                                     "\0"s,
                                                     "\x01",
                                                     "\x1F",
                                                     "\x7F",
                                                     "\x80",
                                                     "\xC3",
                                                     "\xC3\xA9",
                                                     "\xE2\x82",
                                                     "\xED\xA0\x80",
                                                     "\xF0\x9F\x98\x80",
                                                     "\xF4\x90\x80\x80",
                                                     "\xFF",
                                                     "//",
                                                     "/**/",
                                                     "'",
                                                     "\"a\":1",
                                                     ",\"a\":1",
                                                     "[[]]",
                                                     "{}",
                                                     "\"version\":",
                                                     std::string(260, '['),
                                                     "\"a\":" + std::string(255, '[') +
                                                         std::string(255, ']') + ","};
        const std::size_t at = position(text);
        const std::size_t length = std::min<std::size_t>(1 + random_.below(6), text.size() - at);
        switch (random_.below(7)) {
        case 0:
            text.erase(at, length);
            break;
        case 1:
            text.insert(at, pick(pieces));
            break;
        case 2:
            text.replace(at, length, pick(pieces));
            break;
        case 3:
            if (at < text.size()) {
                text[at] = static_cast<char>(random_.below(256));
            }
            break;
        case 4:
            text.insert(position(text), text.substr(at, 1 + random_.below(20)));
            break;
        case 5:
            text.erase(at);
            text += pick(seeds_).substr(0, 40);
            break;
        default:
            if (at < text.size()) {
                text[at] = static_cast<char>(text[at] ^ (1 << random_.below(8)));
            }
            break;
        }
    }

    std::size_t position(const std::string& text) { return random_.below(text.size() + 1); }

    const std::string& pick(const std::vector<std::string>& all) { return all.at(random_.below(all.size())); }

    test::RandomSnapshot random_;
    std::uint64_t most_;
    std::vector<std::string> seeds_;
};

TEST(DecoderBesideAnotherReader, AgreesOnWhatIsJsonForDocumentsBrokenAtRandom)
{
    Mutator mutator{20250301, 3};
    int accepted = 0;
    int refused = 0;
    std::map<std::string_view, int> differences;
    for (int i = 0; i < 60'000; ++i) {
        const std::string text = mutator.next();
        const auto ours = RoostJSON::decoder().decode<RoostSnapshot>(text);
        const Verdict verdict = oracle(text);
        if (const std::string_view name = knownDifference(text, verdict, ours); !name.empty()) {
            ++differences[name];
            continue;
        }
        const bool isJson = ours || !isNoJson(ours.error());
        ASSERT_EQ(isJson, verdict == Verdict::json) << i << ": " << text << "\n"
                                                    << (ours ? "" : ours.error().text());
        ++(isJson ? accepted : refused);
    }
    // Otherwise the mutations say nothing about one of the two answers.
    EXPECT_GT(accepted, 4'000);
    EXPECT_GT(refused, 20'000);
    EXPECT_EQ(differences.size(), 5U);
    for (const auto& [name, count] : differences) {
        EXPECT_LT(count, 6'000) << name;
    }
}

TEST(DecoderBesideAnotherReader, FindsTheSameTextsAndNumbersInWhatBothRead)
{
    Mutator mutator{5, 1};
    int compared = 0;
    for (int i = 0; i < 40'000; ++i) {
        const std::string text = mutator.next();
        const auto ours = RoostJSON::decoder().decode<RoostSnapshot>(text);
        if (!ours || oracle(text) != Verdict::json) {
            continue;
        }
        const auto theirs = nlohmann::json::parse(text);
        const auto& views = theirs.at("views");
        ASSERT_EQ(ours->profile.id, theirs.at("profile").at("id").get<std::string>()) << text;
        ASSERT_EQ(ours->profile.name, theirs.at("profile").at("name").get<std::string>()) << text;
        const auto total = views.find("total");
        ASSERT_EQ(ours->views.total.has_value(), total != views.end() && !total->is_null()) << text;
        if (ours->views.total && total->is_number_integer()) {
            ASSERT_EQ(*ours->views.total, total->get<std::int64_t>()) << text;
        }
        const auto networks = theirs.find("networks");
        const bool hasNetworks = networks != theirs.end() && !networks->is_null();
        ASSERT_EQ(ours->networks.size(), hasNetworks ? networks->size() : 0) << text;
        ++compared;
    }
    EXPECT_GT(compared, 2'000);
}

} // namespace
} // namespace roost
