#include "model/JsonDecode.h"
#include "model/JsonEncode.h"
#include "tests/support/RandomSnapshot.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace roost {
namespace {

/// A record with what no other record has: entries under keys of their own.
struct Shelf {
    std::map<std::string, std::vector<std::int64_t>> boxes;
    std::map<std::string, Date> labels;

    bool operator==(const Shelf&) const = default;
};

} // namespace

template <>
struct JsonFields<Shelf> {
    static constexpr auto fields =
        std::tuple(defaulted("boxes", &Shelf::boxes), required("labels", &Shelf::labels));
};

namespace {

using testing::ElementsAre;
using testing::Pair;
using namespace std::string_literals;

std::expected<Shelf, JsonError> decoded(std::string text)
{
    return RoostJSON::decoder().decode<Shelf>(std::move(text));
}

/// "" when `text` decodes, otherwise the error's text.
std::string complaint(std::string text)
{
    const auto result = decoded(std::move(text));
    return result ? "" : result.error().text();
}

const Date some = RoostJSON::parseDate("2025-01-02T03:04:05.678Z").value();

TEST(MapInJson, IsReadWhateverItsKeysAre)
{
    const auto shelf = decoded(R"({"boxes":{"b":[2],"":[],"a":[1,1]},"labels":{}})");
    ASSERT_TRUE(shelf);
    EXPECT_THAT(shelf->boxes, ElementsAre(Pair("", ElementsAre()), Pair("a", ElementsAre(1, 1)),
                                          Pair("b", ElementsAre(2))));
    EXPECT_TRUE(shelf->labels.empty());
}

TEST(MapInJson, HasTheKeysThatEscapesStandFor)
{
    const auto shelf =
        decoded(R"({"labels":{},"boxes":{"\u0061\"\\\/\n\u0000\ud83d\ude00":[1],"labels":[2],"ä😀":[3]}})");
    ASSERT_TRUE(shelf);
    EXPECT_THAT(shelf->boxes, ElementsAre(Pair("a\"\\/\n\0😀"s, ElementsAre(1)),
                                          Pair("labels", ElementsAre(2)), Pair("ä😀", ElementsAre(3))));
    EXPECT_TRUE(shelf->labels.empty());
}

TEST(MapInJson, RefusesBrokenKeys)
{
    for (const std::string& key : {R"("\ud800")"s, R"("\x")"s, "\"\xFF\""s, "\"a"s, "a"s, "1"s}) {
        EXPECT_THAT(complaint(R"({"labels":{},"boxes":{)" + key + ":[1]}}"),
                    testing::StartsWith("not valid JSON"))
            << key;
    }
}

TEST(MapInJson, HoldsTheLastOfTwoValuesForOneKey)
{
    EXPECT_THAT(decoded(R"({"labels":{},"boxes":{"a":[1],"b":[2],"\u0061":[3]}})")->boxes,
                ElementsAre(Pair("a", ElementsAre(3)), Pair("b", ElementsAre(2))));
    EXPECT_THAT(decoded(R"({"labels":{},"boxes":{"a":1,"b":[2],"a":[3]}})")->boxes,
                ElementsAre(Pair("a", ElementsAre(3)), Pair("b", ElementsAre(2))));
    EXPECT_EQ(complaint(R"({"labels":{},"boxes":{"a":[1],"b":[2],"a":3}})"),
              "boxes[2]: expected an array, found a number");
}

TEST(MapInJson, HoldsTheLastOfTwoMaps)
{
    EXPECT_THAT(decoded(R"({"labels":{},"boxes":{"a":[1]},"boxes":{"b":[2]}})")->boxes,
                ElementsAre(Pair("b", ElementsAre(2))));
}

TEST(MapInJson, SaysTheFirstThingThatIsWrongByItsPlaceAndNotByItsKey)
{
    EXPECT_EQ(complaint(R"({"labels":{"z":"2025-01-02T03:04:05Z","y":null,"x":1}})"),
              "labels[1]: expected a date, found null");
    EXPECT_EQ(complaint(R"({"labels":{},"boxes":{"z":[],"a":[0,1.5]}})"),
              "boxes[1][1]: expected an integer, found a number with a fraction");
}

TEST(MapInJson, IsAnObjectAndNothingElse)
{
    EXPECT_EQ(complaint(R"({"labels":[]})"), "labels: expected an object, found an array");
    EXPECT_EQ(complaint(R"({"labels":"a"})"), "labels: expected an object, found a string");
    EXPECT_EQ(complaint(R"({"labels":null})"), "labels: expected an object, found null");
    EXPECT_EQ(complaint("{}"), "labels: missing");
    EXPECT_EQ(decoded(R"({"labels":{},"boxes":null})"), Shelf{});
}

TEST(MapInJson, IsWrittenWithSortedAndEscapedKeys)
{
    Shelf shelf;
    shelf.labels = {{"b", some}, {"a\"\\\n\0"s, some}, {"😀", some}, {"ä/|:", some}, {"", some}};
    EXPECT_EQ(RoostJSON::encoder().encode(shelf),
              R"({"boxes":{},"labels":{"":"2025-01-02T03:04:05.678Z",)"
              R"("a\"\\\n\u0000":"2025-01-02T03:04:05.678Z","b":"2025-01-02T03:04:05.678Z",)"
              R"("ä/|:":"2025-01-02T03:04:05.678Z","😀":"2025-01-02T03:04:05.678Z"}})");
}

TEST(MapInJson, IsWrittenAsValidUtf8)
{
    Shelf shelf;
    shelf.boxes = {{"a\xFF", {1}}};
    EXPECT_EQ(RoostJSON::encoder().encode(shelf), R"({"boxes":{"a)"
                                                  "\uFFFD"
                                                  R"(":[1]},"labels":{}})");
}

TEST(MapInJson, ComesBackAsItWasWritten)
{
    test::RandomSnapshot random{20250301};
    for (int round = 0; round < 500; ++round) {
        Shelf shelf;
        for (std::uint64_t count = random.below(20); count > 0; --count) {
            shelf.labels[random.text()] = random.date();
            shelf.boxes[random.text()] = {static_cast<std::int64_t>(random.below(100))};
        }
        ASSERT_EQ(decoded(RoostJSON::encoder().encode(shelf)), shelf);
    }
}

/// What another library makes of `text`; nothing where that is no shelf.
std::optional<Shelf> readByOthers(const std::string& text)
{
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object() || !json.contains("labels") || !json["labels"].is_object()) {
        return std::nullopt;
    }
    const auto boxes = json.value("boxes", nlohmann::json{});
    if (!boxes.is_null() && !boxes.is_object()) {
        return std::nullopt;
    }
    Shelf shelf;
    for (const auto& [key, box] : boxes.items()) {
        const auto isNumber = [](const auto& each) { return each.is_number_integer(); };
        if (!box.is_array() || !std::ranges::all_of(box, isNumber)) {
            return std::nullopt;
        }
        shelf.boxes[key] = box.template get<std::vector<std::int64_t>>();
    }
    for (const auto& [key, label] : json["labels"].items()) {
        const auto date =
            label.is_string() ? RoostJSON::parseDate(label.template get<std::string>()) : std::nullopt;
        if (!date) {
            return std::nullopt;
        }
        shelf.labels[key] = *date;
    }
    return shelf;
}

TEST(MapInJson, IsReadAsAnotherLibraryReadsItHoweverItIsBroken)
{
    constexpr std::string_view pieces = R"({}[]":,\un09a-.)";
    test::RandomSnapshot random{20251121};
    int good = 0;
    int bad = 0;
    for (int round = 0; round < 20'000; ++round) {
        Shelf shelf;
        for (std::uint64_t count = random.below(4); count > 0; --count) {
            shelf.labels[random.below(2) == 0 ? "a" : random.text()] = random.date();
            shelf.boxes[random.below(2) == 0 ? "a" : "b"] = {static_cast<std::int64_t>(random.below(100))};
        }
        std::string text = RoostJSON::encoder().encode(shelf);
        for (std::uint64_t count = random.below(3); count > 0; --count) {
            const std::size_t place = random.below(text.size());
            const std::string piece{pieces.at(random.below(pieces.size()))};
            switch (random.below(4)) {
            case 0:
                text.erase(place, 1);
                break;
            case 1:
                text.insert(place, piece);
                break;
            case 2:
                text.replace(place, 1, piece);
                break;
            default: // the same key twice
                if (const auto key = text.find(R"("b":)"); key != std::string::npos) {
                    text[key + 1] = 'a';
                }
            }
        }
        const auto ours = decoded(text);
        const auto theirs = readByOthers(text);
        ASSERT_EQ(ours.has_value(), theirs.has_value()) << text;
        if (theirs) {
            ASSERT_EQ(*ours, *theirs) << text;
        }
        ++(theirs ? good : bad);
    }
    EXPECT_GT(good, 5'000);
    EXPECT_GT(bad, 5'000);
}

} // namespace
} // namespace roost
