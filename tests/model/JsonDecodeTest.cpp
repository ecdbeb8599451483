#include "model/JsonDecode.h"

#include "model/RoostSnapshotFields.h"
#include "tests/support/Fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace roost {
namespace {

/// A record with what no record of the program has: a switch, and arrays in an array.
struct Board {
    bool isOn = false;
    std::vector<std::vector<std::int64_t>> lamps;

    bool operator==(const Board&) const = default;
};

} // namespace

template <>
struct JsonFields<Board> {
    static constexpr auto fields =
        std::tuple(required("isOn", &Board::isOn), defaulted("lamps", &Board::lamps));
};

namespace {

using testing::StartsWith;
using namespace std::string_literals;

std::expected<RoostSnapshot, JsonError> decoded(std::string text)
{
    return RoostJSON::decoder().decode<RoostSnapshot>(std::move(text));
}

/// "" when `text` decodes, otherwise the error's text.
std::string complaint(std::string text)
{
    const auto result = decoded(std::move(text));
    return result ? "" : result.error().text();
}

/// A document that holds all that is needed and `more` in front of it.
std::string snapshotWith(const std::string& more)
{
    return "{" + more + (more.empty() ? "" : ",") +
           R"("generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"P"},"views":{"total":5}})";
}

std::string times(std::size_t count, std::string_view text)
{
    std::string all;
    all.reserve(count * text.size());
    for (std::size_t i = 0; i < count; ++i) {
        all.append(text);
    }
    return all;
}

/// Texts that are no JSON value.
const std::vector<std::string>& brokenValues()
{
    static const std::vector<std::string> all{
        // nothing, and words
        "", "nul", "nulll", "Null", "NULL", "n", "tru", "truee", "True", "t", "fals", "falsee", "f",
        "true false", "undefined", "NaN", "-NaN", "nan", "Infinity", "-Infinity", "inf", "abc", "u", "@",
        "null\0"s, "true\0"s, "\0"s, "\x7F",
        // numbers
        "01", "-01", "00", "+1", "-", "+", ".5", "-.5", "5.", "5.e1", "1e", "1e+", "1e-", "1e5.5", "0x10",
        "1_0", "1a", "1.5x", "--1", "1-", "1+1", "1 2", "1\0"s, "5f", "1e5e5", "0b1", "\xD9\xA5",
        "9223372036854775807x", "99999999999999999999x", "1.0.0",
        // strings
        "\"", "\"a", "'a'", "a\"", "\"a\"\"b\"", "\"a\" \"b\"", "\"\\\"", R"("\x")", R"("\a")", R"("\U0041")",
        R"("\0")", R"("\ ")", R"("\u")", R"("\u1")", R"("\u12")", R"("\u123")", R"("\u123G")", R"("\u 123")",
        R"("\u+123")", R"("\u-123")", R"("\u0x1")", "\"\n\"", "\"\t\"", "\"\r\"", "\"\0\""s, "\"\x01\"",
        "\"\x1F\"", "\"a\nb\"",
        // lone halves of surrogate pairs
        R"("\ud800")", R"("\uD83D")", R"("\udbff")", R"("\udc00")", R"("\uDE00")", R"("\udfff")",
        R"("a\ud800b")", R"("\ud800\ud800")", R"("\ud800\ud800\udc00")", R"("\udc00\ud800")", R"("\ud800\n")",
        R"("\ud800\u0041")", R"("\ud800\ue000")", R"("\ud83d\ude00\ud83d")", R"("\ud800\\udc00")",
        R"("\ud800\")", R"("\ud800 \udc00")",
        R"("long enough to go through vector code \ud800 and more of it")",
        // bytes that are not UTF-8
        "\"\xFF\"", "\"\xFE\"", "\"\x80\"", "\"\xBF\"", "\"\xC0\x80\"", "\"\xC1\xBF\"", "\"\xE0\x80\x80\"",
        "\"\xE0\x9F\xBF\"", "\"\xED\xA0\x80\"", "\"\xED\xBF\xBF\"", "\"\xF0\x80\x80\x80\"",
        "\"\xF4\x90\x80\x80\"", "\"\xF5\x80\x80\x80\"", "\"\xC3\"", "\"\xE2\x82\"", "\"\xF0\x9F\x98\"",
        "\"\xC3\x28\"", "\"a\xE9z\"", "\xC3\xA9", "\xFF",
        // arrays
        "[", "]", "[1", "[1,", "[1,]", "[,1]", "[,]", "[1,,2]", "[1 2]", "[1;2]", "[1:2]", "[1}", "[}", "[[]",
        "[]]", "[\"a\":1]", "[1]2",
        // objects
        "{", "}", "{]", "{\"a\"}", "{\"a\":}", "{\"a\":1", "{\"a\":1,}", "{,}", "{,\"a\":1}",
        "{\"a\":1,,\"b\":2}", "{\"a\" 1}", "{\"a\",1}", "{\"a\"::1}", "{\"a\":1:2}", "{\"a\":1 \"b\":2}",
        "{\"a\":1;\"b\":2}", "{a:1}", "{'a':1}", "{1:2}", "{null:1}", "{[]:1}", "{\"a\":1]", "{{}}",
        "{\"a\":1}}", "{:1}", "{\"a\n\":1}", "{\"\xFF\":1}", R"({"\ud800":1})", R"({"\udc00":1})",
        R"({"a\udc00b":{}})", R"({"\x":1})", R"({"\u12":1})", "{\"a:1}", "{\"\0\":1}"s,
        // comments and other extensions
        "//", "// a\n1", "/* a */ 1", "1 /* a */", "1 # a", "/1/", "`a`", "(1)", "<a>", "1;", "...",
        // blanks that are none
        "\xC2\xA0"
        "1",
        "\x0B"
        "1",
        "\x0C"
        "1",
        "1\x0C",
        "\xE2\x80\xA8"
        "1",
        "\xEF\xBB\xBF"
        "1"};
    return all;
}

TEST(Decoder, RefusesABrokenValueOfAKeyThatNobodyAsksFor)
{
    for (const std::string& broken : brokenValues()) {
        EXPECT_THAT(complaint(snapshotWith("\"x\":" + broken)), StartsWith("not valid JSON")) << broken;
        EXPECT_THAT(complaint(snapshotWith("\"x\":[{\"y\":[0," + broken + "]}]")),
                    StartsWith("not valid JSON"))
            << broken;
        EXPECT_THAT(complaint(R"({"x":)" + broken + "}"), StartsWith("not valid JSON")) << broken;
    }
}

TEST(Decoder, RefusesABrokenValueOfEveryKindOfField)
{
    for (const std::string& broken : brokenValues()) {
        for (const char* key :
             {"version", "generatedAt", "profile", "networks", "posts", "best", "sampledAt", "roostUrl"}) {
            EXPECT_THAT(complaint(snapshotWith("\"" + std::string{key} + "\":" + broken)),
                        StartsWith("not valid JSON"))
                << key << " " << broken;
        }
        EXPECT_THAT(complaint(R"({"views":{"basis":)" + broken + "}}"), StartsWith("not valid JSON"))
            << broken;
        EXPECT_THAT(complaint(R"({"views":{"series":[)" + broken + ",1]}}"), StartsWith("not valid JSON"))
            << broken;
        EXPECT_THAT(complaint(R"({"profile":{"name":)" + broken + "}}"), StartsWith("not valid JSON"))
            << broken;
    }
}

TEST(Decoder, RefusesEverythingThatFollowsTheValue)
{
    const std::string good = snapshotWith("");
    ASSERT_EQ(complaint(good), "");
    for (const std::string& more :
         {"{}"s, "}"s, "]"s, ","s, ":"s, "1"s, "null"s, "\"\""s, "x"s, "\0"s, "\xFF"s, " {}"s, "\n\n1"s,
          "//"s, "\x1A"s, good, "\xEF\xBB\xBF"s, "\xC2\xA0"s}) {
        EXPECT_THAT(complaint(good + more), StartsWith("not valid JSON")) << more;
    }
    EXPECT_EQ(complaint(good + " \t\r\n\n "), "");
    EXPECT_EQ(complaint(" \t\r\n\n " + good), "");
}

TEST(Decoder, SaysThatTheDocumentIsBrokenBeforeItSaysWhatIsWrongInIt)
{
    EXPECT_THAT(complaint("{} x"), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint(R"({"version":"1","x":NaN})"), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint(R"({"networks":[1,2,NaN]})"), StartsWith("not valid JSON"));
}

TEST(Decoder, RefusesWhatIsNoObject)
{
    for (const char* text :
         {"[]", "5", "\"a\"", "true", "null", "[{}]", "1e400", "\"2025-01-02T03:04:05Z\""}) {
        EXPECT_EQ(complaint(text), "expected an object, found something else") << text;
    }
    for (const std::string& text : {""s, " "s, "\n"s, "\0"s, "\xFF"s, "x"s, "}"s, ","s, "\xEF\xBB\xBF"s}) {
        EXPECT_THAT(complaint(text), StartsWith("not valid JSON")) << text;
    }
}

TEST(Decoder, RefusesAByteOrderMark)
{
    EXPECT_EQ(complaint("\xEF\xBB\xBF" + snapshotWith("")), "not valid JSON: byte-order mark");
    EXPECT_THAT(complaint("\xFF\xFE{\0}\0"s), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint("\xFE\xFF\0{\0}"s), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint("{\0}\0"s), StartsWith("not valid JSON"));
}

TEST(Decoder, RefusesAValidDocumentThatEndsTooSoonAtWhateverByte)
{
    for (const char* name : {"snapshot-full.json", "snapshot-unknown-keys.json"}) {
        std::string whole = test::fixture(name);
        whole.erase(whole.find_last_of('}') + 1);
        ASSERT_EQ(complaint(whole), "");
        for (std::size_t size = 0; size < whole.size(); ++size) {
            ASSERT_THAT(complaint(whole.substr(0, size)), StartsWith("not valid JSON"))
                << name << " " << size;
        }
    }
}

TEST(Decoder, IgnoresUnknownKeysWhateverValidValueTheyHold)
{
    const auto plain = decoded(snapshotWith(""));
    ASSERT_TRUE(plain);
    for (const std::string& value : {"null"s,
                                     "true"s,
                                     "false"s,
                                     "0"s,
                                     "-0"s,
                                     "-1.5e-3"s,
                                     "1E+5"s,
                                     "1e400"s,
                                     "-1e-400"s,
                                     "99999999999999999999999999"s,
                                     "0.00000000000000000000000000000001"s,
                                     "\"\""s,
                                     R"("\"\\\/\b\f\n\r\t\u0000\ud83d\ude00\uFFFF")"s,
                                     "\"\xF0\x9F\x98\x80\x7F\xEF\xBF\xBF\xEF\xBB\xBF\""s,
                                     R"("\ud800\udc00\udbff\udfff")"s,
                                     R"("\\ud800")"s,
                                     "[]"s,
                                     "{}"s,
                                     " [ ] "s,
                                     "[\n{\t}\r, [ ] ]"s,
                                     R"({"":{"":[[],{},[{}]]}})"s,
                                     R"({"a":1,"a":2})"s,
                                     R"({"\ud83d\ude00":1,"\u0000":2})"s,
                                     R"("word")"s}) {
        for (const char* key : {"x", "", "Version", "version ", "versio", "versions", "\\u0000", "total"}) {
            EXPECT_EQ(decoded(snapshotWith("\"" + std::string{key} + "\":" + value)), plain) << key << value;
        }
        EXPECT_EQ(decoded(R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"x":)" + value +
                          R"(,"id":"p","name":"P"},"views":{"total":5,"z":)" + value + "}}"),
                  plain)
            << value;
    }
    EXPECT_TRUE(decoded(test::fixture("snapshot-unknown-keys.json")));
}

TEST(Decoder, KnowsAKeyThatIsWrittenWithEscapes)
{
    const auto result = decoded(snapshotWith(R"("\u0076ersio\u006e":9)"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->version, 9);
}

TEST(Decoder, TakesTheLastOfAKeyGivenTwice)
{
    EXPECT_EQ(decoded(snapshotWith(R"("version":3,"version":4)")).value().version, 4);
    EXPECT_EQ(decoded(snapshotWith(R"("version":3,"v\u0065rsion":4)")).value().version, 4);
    // What stood there first is gone as a whole, bad or good.
    EXPECT_EQ(decoded(snapshotWith(R"("version":"x","version":4)")).value().version, 4);
    EXPECT_EQ(complaint(snapshotWith(R"("version":4,"version":"x")")),
              "version: expected an integer, found a string");
    EXPECT_EQ(decoded(snapshotWith(R"("version":4,"version":null)")).value().version, 1);
    EXPECT_EQ(decoded(snapshotWith(R"("version":"x","version":null)")).value().version, 1);
    EXPECT_EQ(complaint(snapshotWith("").insert(1, R"("profile":5,)")), "");
    EXPECT_EQ(complaint(R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"P"},"views":{},)"
                        R"("profile":null})"),
              "profile: expected an object, found null");

    const auto views =
        decoded(R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":"P"},)"
                R"("views":{"total":1,"previous":2,"days":9,"series":[{"day":"a","views":1}]},)"
                R"("views":{"previous":3}})");
    EXPECT_EQ(views.value().views,
              (RoostSnapshot::Views{7, {}, 3, RoostSnapshot::Views::Basis::published, {}}));

    const auto networks = decoded(snapshotWith(
        R"("networks":[{"platform":"x","label":"X","posts":1,"reporting":"ok"}],"networks":[])"));
    EXPECT_TRUE(networks.value().networks.empty());
    const auto best = decoded(snapshotWith(
        R"("best":{"platform":"x","label":"X","views":1,"text":"t"},"best":{"platform":"y","label":"Y","views":2})"));
    EXPECT_EQ(best.value().best, (RoostSnapshot::BestPost{"y", "Y", 2, "", {}}));
    EXPECT_EQ(
        decoded(snapshotWith(R"("best":{"platform":"x","label":"X","views":1},"best":null)")).value().best,
        std::nullopt);
    EXPECT_EQ(decoded(snapshotWith(R"("roostUrl":"https://a/","roostUrl":5)")).value().roostUrl,
              std::nullopt);
    EXPECT_EQ(
        decoded(snapshotWith(R"("sampledAt":"2025-01-02T03:04:05Z","sampledAt":null)")).value().sampledAt,
        std::nullopt);
    EXPECT_EQ(
        decoded(snapshotWith(R"("posts":{"published7":1,"scheduled":1,"failed":1,"next":[]},"posts":null)"))
            .value()
            .posts,
        RoostSnapshot::Posts{});
}

TEST(Decoder, ReadsWhateverRecordHasATable)
{
    const auto complaintOf = [](const char* text) {
        const auto result = RoostJSON::decoder().decode<Board>(text);
        return result ? "" : result.error().text();
    };
    EXPECT_EQ(RoostJSON::decoder().decode<Board>(R"({"isOn":true,"lamps":[[1],[],[2,3]]})"),
              (Board{true, {{1}, {}, {2, 3}}}));
    EXPECT_EQ(RoostJSON::decoder().decode<Board>(R"({"isOn":false})"), (Board{false, {}}));
    EXPECT_EQ(complaintOf(R"({})"), "isOn: missing");
    EXPECT_EQ(complaintOf(R"({"isOn":1})"), "isOn: expected a boolean, found a number");
    EXPECT_EQ(complaintOf(R"({"isOn":"true"})"), "isOn: expected a boolean, found a string");
    EXPECT_EQ(complaintOf(R"({"isOn":null})"), "isOn: expected a boolean, found null");
    EXPECT_THAT(complaintOf(R"({"isOn":tru})"), StartsWith("not valid JSON"));
    EXPECT_THAT(complaintOf(R"({"isOn":truefalse})"), StartsWith("not valid JSON"));
    EXPECT_EQ(complaintOf(R"({"isOn":true,"lamps":[[1],[2,"3"]]})"),
              "lamps[1][1]: expected an integer, found a string");
}

TEST(Decoder, NamesThePlaceAndQuotesNothingOfTheDocument)
{
    EXPECT_EQ(complaint(R"({"generatedAt":"SECRET"})"), "generatedAt: Not an ISO 8601 date: SECRET");
    const std::string text = complaint(snapshotWith(
        R"("SECRET":1,"networks":[{"platform":"x","label":"X","posts":1,"reporting":"ok"},{"platform":["SECRET"]}])"));
    EXPECT_EQ(text, "networks[1].label: missing");
    EXPECT_EQ(complaint(snapshotWith(R"("networks":[{"label":"X","platform":["SECRET"]}])")),
              "networks[0].platform: expected a string, found an array");
}

TEST(Decoder, Takes256LevelsAndRefuses257)
{
    // The object of the document is the first level.
    const auto nested = [](std::size_t levels, const std::string& open, const std::string& inner,
                           const std::string& close) {
        return snapshotWith("\"x\":" + times(levels - 1, open) + inner + times(levels - 1, close));
    };
    for (const std::string& inner : {""s, "1"s, "\"a\""s, "null"s}) {
        EXPECT_EQ(complaint(nested(256, "[", inner, "]")), "") << inner;
        EXPECT_EQ(complaint(nested(257, "[", inner, "]")), "not valid JSON: nested too deeply") << inner;
    }
    EXPECT_EQ(complaint(nested(256, R"({"a":)", "1", "}")), "");
    EXPECT_EQ(complaint(nested(257, R"({"a":)", "1", "}")), "not valid JSON: nested too deeply");
    EXPECT_EQ(complaint(nested(255, "[", R"({"a":[1,[]]})", "]")), "not valid JSON: nested too deeply");
    EXPECT_EQ(complaint(nested(254, "[", R"({"a":[1,2]})", "]")), "");

    // In the place of a field, which is deeper in the document: its record and its array count.
    const auto asName = [](std::size_t arrays) {
        return R"({"profile":{"name":)" + times(arrays, "[") + times(arrays, "]") + "}}";
    };
    EXPECT_EQ(complaint(asName(254)), "generatedAt: missing");
    EXPECT_EQ(complaint(asName(255)), "not valid JSON: nested too deeply");
    EXPECT_EQ(complaint(snapshotWith("\"roostUrl\":" + times(255, "[") + times(255, "]"))), "");
    EXPECT_EQ(complaint(snapshotWith("\"roostUrl\":" + times(256, "[") + times(256, "]"))),
              "not valid JSON: nested too deeply");
    EXPECT_EQ(complaint(snapshotWith("\"version\":" + times(255, "[") + times(255, "]"))),
              "version: expected an integer, found an array");
    EXPECT_EQ(complaint(snapshotWith("\"version\":" + times(256, "[") + times(256, "]"))),
              "not valid JSON: nested too deeply");
}

TEST(Decoder, RefusesTenMillionLevelsWithoutACrash)
{
    constexpr std::size_t many = 10'000'000;
    const std::string open = times(many, "[");
    EXPECT_THAT(complaint(open), testing::Not(""));
    EXPECT_THAT(complaint(snapshotWith("\"x\":" + open + times(many, "]"))), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint("{\"x\":" + open), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint("{\"networks\":" + open), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint("{\"roostUrl\":" + open), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint(times(many, "{\"views\":")), StartsWith("not valid JSON"));
}

TEST(Decoder, ReadsADocumentOfAHundredMegabytes)
{
    constexpr std::size_t size = 100'000'000;
    EXPECT_EQ(complaint(snapshotWith("\"x\":\"" + std::string(size, 'a') + "\"")), "");
    EXPECT_THAT(complaint("{\"x\":\"" + std::string(size, 'a')), StartsWith("not valid JSON"));
    EXPECT_THAT(complaint(std::string(size, '\0')), StartsWith("not valid JSON"));

    const auto named = decoded(R"({"generatedAt":"2025-01-02T03:04:05Z","profile":{"id":"p","name":")" +
                               std::string(size, 'a') + R"("},"views":{}})");
    EXPECT_EQ(named.value().profile.name.size(), size);
}

TEST(Decoder, WalksThroughMillionsOfIgnoredNumbers)
{
    constexpr std::size_t many = 4'000'000;
    EXPECT_EQ(complaint(snapshotWith("\"x\":[" + times(many, "-1.5,") + "0]")), "");
    EXPECT_THAT(complaint(snapshotWith("\"x\":[" + times(many, "-1.5,") + "00]")),
                StartsWith("not valid JSON"));
}

TEST(Decoder, RefusesADocumentOfMoreThan512Mebibytes)
{
    const std::string mebibyte(std::size_t{1024} * 1024, ' ');
    EXPECT_EQ(complaint(times(513, mebibyte)), "larger than 512 MiB");
}

} // namespace
} // namespace roost
