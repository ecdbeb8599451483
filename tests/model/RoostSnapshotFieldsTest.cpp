#include "model/RoostSnapshotFields.h"

#include "tests/model/FieldTable.h"
#include "tests/support/Fixture.h"

namespace roost {
namespace {

using S = RoostSnapshot;

std::expected<S, JsonError> decoded(std::string text)
{
    return RoostJSON::decoder().decode<S>(std::move(text));
}

Date at(std::string_view text) { return RoostJSON::parseDate(text).value(); }

/// What snapshot-full.json holds.
S full()
{
    S s;
    s.version = 2;
    s.generatedAt = at("2025-03-01T12:34:56.789Z");
    s.profile = {"prf_7Qm2", "Brisken \u00DCbersee \U0001F426",
                 WebURL::parse("https://cdn.brisken.world/a/7Qm2.png?v=3")};
    s.views = {7,
               9'007'199'254'740'993,
               3900,
               S::Views::Basis::growth,
               {{"2025-02-27", 100}, {"2025-02-28", 0}, {"2025-03-01", 4700}}};
    s.networks = {{"instagram", "Instagram", "brisken", 3100, 4, S::Network::Reporting::ok},
                  {"tiktok_business", "TikTok", {}, {}, 0, S::Network::Reporting::failed}};
    s.posts = {5,
               2,
               1,
               {{"pst_1", at("2025-03-01T18:00:00Z"), "Tea \"at\" five\nand a biscuit", {"instagram", "x"}},
                {"pst_2", at("2025-03-02T08:30:00.250Z"), "", {}}}};
    s.best = {"youtube", "YouTube", 12345, "How we roost",
              WebURL::parse("HTTPS://Video.Example/Watch?v=%7Ex")};
    s.followers = {815,
                   {{"2025-02-28", 810}, {"2025-03-01", 815}},
                   {{"instagram", "brisken", 800, -3}, {"x", {}, 15, {}}}};
    s.sampledAt = at("2025-03-01T12:30:00Z");
    s.roostUrl = WebURL::parse("https://roost.brisken.world/p/7Qm2");
    return s;
}

/// Every field of every record, as the service documents it.
std::vector<FieldRow<S>> everyField()
{
    using enum FieldKind;
    return {
        {"/version", integer, [](S& s) { s.version = 1; }},
        {"/generatedAt", date, {}},
        {"/profile", object, {}},
        {"/views", object, {}},
        {"/networks", array, [](S& s) { s.networks = {}; }},
        {"/posts", object, [](S& s) { s.posts = {0, 0, 0, {}}; }},
        {"/best", object, [](S& s) { s.best.reset(); }},
        {"/followers", object, [](S& s) { s.followers.reset(); }},
        {"/sampledAt", date, [](S& s) { s.sampledAt.reset(); }},
        {"/roostUrl", link, [](S& s) { s.roostUrl.reset(); }},

        {"/profile/id", text, {}},
        {"/profile/name", text, {}},
        {"/profile/avatarUrl", link, [](S& s) { s.profile.avatarUrl.reset(); }},

        // The full document has 8 here, so that the default can be told from it.
        {"/views/days", integer, [](S& s) { s.views.days = 7; }},
        {"/views/total", integer, [](S& s) { s.views.total.reset(); }},
        {"/views/previous", integer, [](S& s) { s.views.previous.reset(); }},
        {"/views/basis", word, [](S& s) { s.views.basis = S::Views::Basis::published; }},
        {"/views/series", array, [](S& s) { s.views.series = {}; }},
        {"/views/series/1/day", text, {}},
        {"/views/series/1/views", integer, {}},

        {"/networks/0/platform", text, {}},
        {"/networks/0/label", text, {}},
        {"/networks/0/username", text, [](S& s) { s.networks[0].username.reset(); }},
        {"/networks/0/views", integer, [](S& s) { s.networks[0].views.reset(); }},
        {"/networks/0/posts", integer, {}},
        {"/networks/0/reporting", word, {}},

        {"/posts/published7", integer, {}},
        {"/posts/scheduled", integer, {}},
        {"/posts/failed", integer, {}},
        {"/posts/next", array, {}},
        {"/posts/next/1/id", text, {}},
        {"/posts/next/1/at", date, {}},
        {"/posts/next/1/text", text, {}},
        {"/posts/next/1/networks", array, {}},

        {"/best/platform", text, {}},
        {"/best/label", text, {}},
        {"/best/views", integer, {}},
        {"/best/text", text, [](S& s) { s.best->text = ""; }},
        {"/best/url", link, [](S& s) { s.best->url.reset(); }},

        {"/followers/total", integer, {}},
        {"/followers/series", array, {}},
        {"/followers/series/0/day", text, {}},
        {"/followers/series/0/total", integer, {}},
        {"/followers/networks", array, {}},
        {"/followers/networks/0/platform", text, {}},
        {"/followers/networks/0/username", text, [](S& s) { s.followers->networks[0].username.reset(); }},
        {"/followers/networks/0/count", integer, {}},
        {"/followers/networks/0/delta7", integer, [](S& s) { s.followers->networks[0].delta7.reset(); }},
    };
}

template <class... Records>
constexpr std::size_t fieldsOf()
{
    return (std::tuple_size_v<std::remove_cvref_t<decltype(JsonFields<Records>::fields)>> + ...);
}

TEST(RoostSnapshotFields, ReadEveryFieldOfAFullDocument)
{
    EXPECT_EQ(decoded(test::fixture("snapshot-full.json")), full());
}

TEST(RoostSnapshotFields, AreEachAbsentNullOrOfAWrongTypeAsDocumented)
{
    auto document = nlohmann::json::parse(test::fixture("snapshot-full.json"));
    document["views"]["days"] = 8;
    S expected = full();
    expected.views.days = 8;
    checkEveryField(document, expected, everyField());
}

TEST(RoostSnapshotFields, AreAllInTheTableOfThisTest)
{
    EXPECT_EQ(everyField().size(),
              (fieldsOf<S, S::Profile, S::Views, S::Views::Day, S::Network, S::Posts, S::Posts::Next,
                        S::BestPost, S::Followers, S::Followers::Day, S::Followers::FollowerNetwork>()));
}

TEST(RoostSnapshotFields, RefuseAnElementOfAWrongTypeInEveryArray)
{
    using enum FieldKind;
    checkEveryField<S>(nlohmann::json::parse(test::fixture("snapshot-full.json")), full(),
                       {{"/views/series/2", object, {}, true},
                        {"/networks/1", object, {}, true},
                        {"/posts/next/0", object, {}, true},
                        {"/posts/next/0/networks/1", text, {}, true},
                        {"/followers/series/1", object, {}, true},
                        {"/followers/networks/1", object, {}, true}});
}

TEST(RoostSnapshotFields, NeedNoMoreThanThreeKeys)
{
    S minimal;
    minimal.generatedAt = at("2025-01-02T03:04:05Z");
    minimal.profile = {"p", "P", {}};
    EXPECT_EQ(decoded(test::fixture("snapshot-minimal.json")), minimal);
    EXPECT_EQ(minimal.version, 1);
    EXPECT_EQ(minimal.views, (S::Views{7, {}, {}, S::Views::Basis::published, {}}));
    EXPECT_EQ(minimal.posts, (S::Posts{0, 0, 0, {}}));
}

TEST(RoostSnapshotFields, FailTheSnapshotWithTheFirstThatIsWrongInTheOrderOfTheKeys)
{
    const auto missing = decoded(test::fixture("snapshot-missing-profile-name.json"));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().text(), "profile.name: missing");
    const auto several = decoded(R"({"views":5,"profile":{"name":5}})");
    ASSERT_FALSE(several);
    EXPECT_EQ(several.error().text(), "generatedAt: missing");
}

TEST(RoostSnapshotFields, SayWhichTextIsNoDate)
{
    const auto result = decoded(test::fixture("snapshot-bad-date.json"));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (JsonError{"generatedAt", "Not an ISO 8601 date: 2025-01-02 03:04:05Z"}));
}

TEST(RoostSnapshotFields, ReadAnUnknownBasisAsPublished)
{
    EXPECT_EQ(decoded(test::fixture("snapshot-basis-weekly.json")).value().views.basis,
              S::Views::Basis::published);
    const auto document = nlohmann::json::parse(test::fixture("snapshot-full.json"));
    const auto basisOf = [&](const char* literal) {
        return decoded(withLiteral(document, "/views/basis", literal)).value().views.basis;
    };
    EXPECT_EQ(basisOf(R"("growth")"), S::Views::Basis::growth);
    EXPECT_EQ(basisOf(R"("gro\u0077th")"), S::Views::Basis::growth);
    for (const char* other :
         {R"("published")", R"("Growth")", R"("growth ")", R"("")", R"("growth\u0000")", R"("grow")"}) {
        EXPECT_EQ(basisOf(other), S::Views::Basis::published) << other;
    }
}

TEST(RoostSnapshotFields, ReadAnUnknownReportingAsUnknown)
{
    using enum S::Network::Reporting;
    EXPECT_EQ(decoded(test::fixture("snapshot-unknown-keys.json")).value().networks.at(0).reporting, unknown);
    const auto document = nlohmann::json::parse(test::fixture("snapshot-full.json"));
    const std::pair<const char*, S::Network::Reporting> words[]{
        {R"("ok")", ok},           {R"("empty")", empty},
        {R"("failed")", failed},   {R"("unsupported")", unsupported},
        {R"("unknown")", unknown}, {R"("OK")", unknown},
        {R"("paused")", unknown},  {R"("")", unknown},
        {R"(" ok")", unknown}};
    for (const auto& [literal, reporting] : words) {
        const auto result = decoded(withLiteral(document, "/networks/0/reporting", literal));
        EXPECT_EQ(result.value().networks.at(0).reporting, reporting) << literal;
    }
}

TEST(RoostSnapshotFields, DropALinkThatIsNoWebAddressAndKeepTheSnapshot)
{
    for (const char* name :
         {"snapshot-link-ftp.json", "snapshot-link-number.json", "snapshot-link-no-host.json"}) {
        EXPECT_EQ(decoded(test::fixture(name)), decoded(test::fixture("snapshot-minimal.json"))) << name;
    }
    const auto upper = decoded(test::fixture("snapshot-link-upper-case.json"));
    EXPECT_EQ(upper.value().roostUrl.value().text(), "HTTPS://Roost.Brisken.World/P?a=%7e");
    const auto document = nlohmann::json::parse(test::fixture("snapshot-full.json"));
    for (const char* pointer : {"/roostUrl", "/profile/avatarUrl", "/best/url"}) {
        for (const char* literal :
             {R"("")", R"("word")", R"("//host/p")", R"("mailto:a@b")", R"("https://")", R"("https://a b/")",
              R"("\u0000")", R"("https://host:99999/")", R"("javascript:void")"}) {
            EXPECT_EQ(decoded(withLiteral(document, pointer, literal)),
                      decoded(withoutKey(document, pointer)))
                << pointer << " " << literal;
        }
    }
}

TEST(RoostSnapshotFields, KeepIntegersExactWhereverTheyStand)
{
    const auto document = nlohmann::json::parse(test::fixture("snapshot-full.json"));
    for (const char* literal : {"9223372036854775807", "-9223372036854775808", "9007199254740993", "0"}) {
        const auto result = decoded(withLiteral(document, "/views/total", literal));
        EXPECT_EQ(std::to_string(result.value().views.total.value()), literal);
        const auto series = decoded(withLiteral(document, "/views/series/0/views", literal));
        EXPECT_EQ(std::to_string(series.value().views.series.at(0).views), literal);
    }
    for (const char* literal : {"5", "5.0", "5e0", "50e-1"}) {
        EXPECT_EQ(decoded(withLiteral(document, "/views/total", literal)).value().views.total, 5) << literal;
    }
    EXPECT_EQ(decoded(withLiteral(document, "/views/total", "-0")).value().views.total, 0);
    EXPECT_EQ(decoded(withLiteral(document, "/views/total", "-0.0")).value().views.total, 0);
}

} // namespace
} // namespace roost
