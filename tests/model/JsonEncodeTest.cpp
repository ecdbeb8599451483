#include "model/JsonEncode.h"

#include "model/RoostStoreFileFields.h"
#include "tests/support/Fixture.h"
#include "tests/support/RandomSnapshot.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace roost {
namespace {

/// Whether the keys of every object in `value` stand in ascending order.
bool isSorted(const nlohmann::ordered_json& value)
{
    std::vector<std::string> keys;
    for (const auto& entry : value.items()) {
        if (entry.value().is_structured() && !isSorted(entry.value())) {
            return false;
        }
        if (value.is_object()) {
            keys.push_back(entry.key());
        }
    }
    return std::ranges::is_sorted(keys);
}

TEST(Encoder, WritesEveryFieldUnderItsKeyInTheOrderOfTheKeys)
{
    const auto full = RoostJSON::decoder().decode<RoostSnapshot>(test::fixture("snapshot-full.json"));
    EXPECT_EQ(
        RoostJSON::encoder().encode(full.value()),
        R"({"best":{"label":"YouTube","platform":"youtube","text":"How we roost",)"
        R"("url":"HTTPS://Video.Example/Watch?v=%7Ex","views":12345},)"
        R"("followers":{"networks":[{"count":800,"delta7":-3,"platform":"instagram","username":"brisken"},)"
        R"({"count":15,"platform":"x"}],"series":[{"day":"2025-02-28","total":810},)"
        R"({"day":"2025-03-01","total":815}],"total":815},"generatedAt":"2025-03-01T12:34:56.789Z",)"
        R"("networks":[{"label":"Instagram","platform":"instagram","posts":4,"reporting":"ok",)"
        R"("username":"brisken","views":3100},)"
        R"({"label":"TikTok","platform":"tiktok_business","posts":0,"reporting":"failed"}],)"
        R"("posts":{"failed":1,"next":[{"at":"2025-03-01T18:00:00.000Z","id":"pst_1",)"
        R"("networks":["instagram","x"],"text":"Tea \"at\" five\nand a biscuit"},)"
        R"({"at":"2025-03-02T08:30:00.250Z","id":"pst_2","networks":[],"text":""}],)"
        R"("published7":5,"scheduled":2},"profile":{"avatarUrl":"https://cdn.brisken.world/a/7Qm2.png?v=3",)"
        "\"id\":\"prf_7Qm2\",\"name\":\"Brisken \u00DCbersee \U0001F426\"},"
        R"("roostUrl":"https://roost.brisken.world/p/7Qm2","sampledAt":"2025-03-01T12:30:00.000Z",)"
        R"("version":2,"views":{"basis":"growth","days":7,"previous":3900,)"
        R"("series":[{"day":"2025-02-27","views":100},{"day":"2025-02-28","views":0},)"
        R"({"day":"2025-03-01","views":4700}],"total":9007199254740993}})");
}

TEST(Encoder, LeavesAbsentOptionalsOutAndWritesEverythingElse)
{
    const auto minimal = RoostJSON::decoder().decode<RoostSnapshot>(test::fixture("snapshot-minimal.json"));
    EXPECT_EQ(
        RoostJSON::encoder().encode(minimal.value()),
        R"({"generatedAt":"2025-01-02T03:04:05.000Z","networks":[],)"
        R"("posts":{"failed":0,"next":[],"published7":0,"scheduled":0},"profile":{"id":"p","name":"P"},)"
        R"("version":1,"views":{"basis":"published","days":7,"series":[]}})");
}

TEST(Encoder, WritesTheWordOfEveryEnumerator)
{
    RoostSnapshot snapshot;
    using enum RoostSnapshot::Network::Reporting;
    for (const auto reporting : {ok, empty, failed, unsupported, unknown}) {
        snapshot.networks.push_back({"p", "P", {}, {}, 0, reporting});
    }
    const auto written = nlohmann::json::parse(RoostJSON::encoder().encode(snapshot));
    std::vector<std::string> words;
    for (const auto& network : written.at("networks")) {
        words.push_back(network.at("reporting"));
    }
    EXPECT_EQ(words, (std::vector<std::string>{"ok", "empty", "failed", "unsupported", "unknown"}));
    EXPECT_EQ(written.at("views").at("basis"), "published");
    snapshot.views.basis = RoostSnapshot::Views::Basis::growth;
    EXPECT_EQ(nlohmann::json::parse(RoostJSON::encoder().encode(snapshot)).at("views").at("basis"), "growth");
}

TEST(Encoder, GivesBackEverySnapshotThatItWrites)
{
    test::RandomSnapshot random{20250301};
    for (int i = 0; i < 20'000; ++i) {
        const RoostSnapshot snapshot = random.snapshot();
        const std::string written = RoostJSON::encoder().encode(snapshot);
        const auto read = RoostJSON::decoder().decode<RoostSnapshot>(written);
        ASSERT_TRUE(read) << read.error().text() << "\n" << written;
        ASSERT_EQ(*read, snapshot) << written;
    }
}

TEST(Encoder, GivesBackEveryStoreFileThatItWrites)
{
    test::RandomSnapshot random{11};
    for (int i = 0; i < 2'000; ++i) {
        const RoostStoreFile file = random.storeFile();
        const std::string written = RoostJSON::encoder().encode(file);
        const auto read = RoostJSON::decoder().decode<RoostStoreFile>(written);
        ASSERT_TRUE(read) << read.error().text() << "\n" << written;
        ASSERT_EQ(*read, file) << written;
    }
}

TEST(Encoder, SortsKeysAndWritesNoBlanksForAnotherReader)
{
    test::RandomSnapshot random{12};
    for (int i = 0; i < 500; ++i) {
        const std::string written = RoostJSON::encoder().encode(random.storeFile());
        const auto read = nlohmann::ordered_json::parse(written);
        ASSERT_TRUE(isSorted(read)) << written;
        ASSERT_EQ(read.dump().size(), written.size()) << written;
    }
}

TEST(Encoder, WritesADateBeyondTheYears0To9999AsOneThatCanBeRead)
{
    RoostSnapshot snapshot;
    snapshot.generatedAt = Date::max();
    const auto read = RoostJSON::decoder().decode<RoostSnapshot>(RoostJSON::encoder().encode(snapshot));
    EXPECT_EQ(read.value().generatedAt, RoostJSON::parseDate("9999-12-31T23:59:59.999Z"));
}

TEST(Encoder, WritesBrokenTextsSoThatTheDocumentCanBeRead)
{
    RoostSnapshot snapshot;
    snapshot.profile.name = "a\xFF"
                            "b\xC3";
    snapshot.views.series = {{"\xED\xA0\x80", 1}};
    const auto read = RoostJSON::decoder().decode<RoostSnapshot>(RoostJSON::encoder().encode(snapshot));
    EXPECT_EQ(read.value().profile.name, "a\uFFFDb\uFFFD");
    EXPECT_EQ(read.value().views.series.at(0).views, 1);
}

} // namespace
} // namespace roost
