#include "notify/NotificationContent.h"

#include "present/RoostL10n.h"
#include "present/SampleData.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

const QUrl base{QStringLiteral("https://roost.example/app/")};
const std::string overview = "https://roost.example/app/roost/overview";

class NotificationContentTest : public testing::Test {
protected:
    NotificationContent make(const RoostEvent::Any& event, const std::string& locale = "en_US") const
    {
        return NotificationContent::make(event, snapshot, RoostFormat{{locale, "UTC", "UTC"}}, base);
    }

    RoostSnapshot snapshot = SampleData::minimal(Date{});
    RoostSnapshot::BestPost best{"bluesky", "Bluesky", 12'345, "Hello",
                                 WebURL::parse("https://Social.example/1")};
    RoostSnapshot::Posts::Next post{"id", Date{}, "Hello", {"bluesky"}};
};

NotificationContent content(const std::string& title, const std::string& body, const std::string& url)
{
    return {title, body, WebURL::parse(url)};
}

TEST_F(NotificationContentTest, SaysThatAPostPassedAMilestone)
{
    EXPECT_EQ(
        make(RoostEvent::Milestone{10'000, best}),
        content("A post passed 10K views", "“Hello” · Bluesky · Views: 12.3K", "https://Social.example/1"));
}

TEST_F(NotificationContentTest, SaysThatAPostIsTheBestOfTheWeek)
{
    EXPECT_EQ(
        make(RoostEvent::NewBest{best, 77}),
        content("New best post of the week", "“Hello” · Bluesky · Views: 12.3K", "https://Social.example/1"));
}

TEST_F(NotificationContentTest, LeavesOutOfABestPostWhatItDoesNotHave)
{
    best.text.clear();
    EXPECT_EQ(make(RoostEvent::Milestone{1'000, best}).body, "Bluesky · Views: 12.3K");
    best.label.clear();
    EXPECT_EQ(make(RoostEvent::Milestone{1'000, best}).body, "Views: 12.3K");
    best.text = "Hello";
    EXPECT_EQ(make(RoostEvent::NewBest{best, 0}).body, "“Hello” · Views: 12.3K");
}

TEST_F(NotificationContentTest, SaysThatAPostWentOut)
{
    EXPECT_EQ(make(RoostEvent::PostWentOut{post}), content("Post went out", "Hello", overview));
    post.text.clear();
    EXPECT_EQ(make(RoostEvent::PostWentOut{post}), content("Post went out", "Untitled post", overview));
}

TEST_F(NotificationContentTest, SaysThatAPostFailed)
{
    EXPECT_EQ(make(RoostEvent::PostFailed{post}),
              content("A post did not go out", "“Hello”\nOpen Brisken Roost to see why.", overview));
    const auto unnamed = content("A post did not go out", "Open Brisken Roost to see why.", overview);
    post.text.clear();
    EXPECT_EQ(make(RoostEvent::PostFailed{post}), unnamed);
    EXPECT_EQ(make(RoostEvent::PostFailed{}), unnamed);
}

TEST_F(NotificationContentTest, SaysHowManyFollowersAreNew)
{
    EXPECT_EQ(make(RoostEvent::NewFollowers{1'234, 45'678}),
              content("New followers: +1,234", "Total: 45.7K", overview));
}

TEST_F(NotificationContentTest, LinksToThePostThenToTheSnapshotsPageThenToTheOverview)
{
    snapshot.roostUrl = WebURL::parse("https://Roost.example/p/1?x=%7e");
    EXPECT_EQ(make(RoostEvent::Milestone{1'000, best}).url, best.url);
    EXPECT_EQ(make(RoostEvent::PostWentOut{post}).url, snapshot.roostUrl);
    best.url.reset();
    EXPECT_EQ(make(RoostEvent::Milestone{1'000, best}).url, snapshot.roostUrl);
    EXPECT_EQ(make(RoostEvent::NewBest{best, 0}).url, snapshot.roostUrl);
    snapshot.roostUrl.reset();
    EXPECT_EQ(make(RoostEvent::NewBest{best, 0}).url, WebURL::parse(overview));
    EXPECT_EQ(make(RoostEvent::PostFailed{}).url, WebURL::parse(overview));
}

TEST_F(NotificationContentTest, TakesWhatPeopleWroteAsItIs)
{
    for (const char* text : {"%@", "100%1 %@ %lld %s", "<b>&amp;</b>", "“quoted” · \n", "مرحبا", "{0}"}) {
        post.text = best.text = best.label = text;
        const std::string written{text};
        EXPECT_EQ(make(RoostEvent::PostWentOut{post}).body, written);
        EXPECT_EQ(make(RoostEvent::PostFailed{post}).body,
                  "“" + written + "”\nOpen Brisken Roost to see why.");
        EXPECT_EQ(make(RoostEvent::NewBest{best, 0}).body,
                  "“" + written + "” · " + written + " · Views: 12.3K");
    }
}

TEST_F(NotificationContentTest, SpeaksEnglishToWhomeverItHasNoWordsFor)
{
    EXPECT_EQ(make(RoostEvent::NewFollowers{1'234, 45'678}, "xx_XX").body, "Total: 45.7K");
}

/// One row of what notifications say: the text that its title or body is made of, and what fills that.
struct Row {
    RoostEvent::Any event;
    std::string_view title;
    std::string titleNumber;
    std::string_view body;
    std::string bodyNumber;
    /// What stands before and after the filled text of the body.
    std::string before;
    std::string after;
};

class NotificationContentIn : public testing::TestWithParam<std::string> {
protected:
    /// The text as the catalogue has it, filled.
    std::string said(std::string_view key, const std::string& number) const
    {
        if (key.empty()) {
            return {};
        }
        std::string text = RoostL10n::bundle(GetParam()).text(key);
        if (const std::size_t gap = text.find("%@"); gap != std::string::npos) {
            text.replace(gap, 2, number);
        }
        return text;
    }

    const RoostFormat format{{GetParam(), "UTC", "UTC"}};
    const std::string views = format.compact(12'345);
    const std::string wild = "%1 %@ <b>&amp;</b> %lld";
    const RoostSnapshot::BestPost best{"bluesky", "Bluesky", 12'345, "Hello", std::nullopt};
    const RoostSnapshot::BestPost unnamed{"bluesky", "", 12'345, "", std::nullopt};
    const RoostSnapshot::BestPost wildBest{"bluesky", wild, 12'345, wild, std::nullopt};
    const RoostSnapshot::Posts::Next post{"id", Date{}, wild, {}};
    const RoostSnapshot::Posts::Next untitled{"id", Date{}, "", {}};
    const std::string milestone = "A post passed %@ views";
    const std::string newBest = "New best post of the week";
    const std::string failed = "A post did not go out";
    const std::string why = "Open Brisken Roost to see why.";

    const std::vector<Row> rows{
        {RoostEvent::Milestone{1'000, best}, milestone, format.compact(1'000), "Views: %@", views,
         "“Hello” · Bluesky · "},
        {RoostEvent::Milestone{100'000, unnamed}, milestone, format.compact(100'000), "Views: %@", views, ""},
        {RoostEvent::NewBest{wildBest, 1}, newBest, "", "Views: %@", views,
         "“" + wild + "” · " + wild + " · "},
        {RoostEvent::PostWentOut{post}, "Post went out", "", "", "", wild},
        {RoostEvent::PostWentOut{untitled}, "Post went out", "", "Untitled post", "", ""},
        {RoostEvent::PostFailed{post}, failed, "", why, "", "“" + wild + "”\n"},
        {RoostEvent::PostFailed{untitled}, failed, "", why, "", ""},
        {RoostEvent::PostFailed{}, failed, "", why, "", ""},
        {RoostEvent::NewFollowers{1'234, 45'678}, "New followers: %@", format.signedCount(1'234), "Total: %@",
         format.compact(45'678), ""},
    };
};

TEST_P(NotificationContentIn, SaysEveryKindInItsWordsAndNumbers)
{
    const RoostSnapshot snapshot = SampleData::minimal(Date{});
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const NotificationContent made = NotificationContent::make(rows[i].event, snapshot, format, base);
        EXPECT_EQ(made.title, said(rows[i].title, rows[i].titleNumber)) << i;
        EXPECT_EQ(made.body, rows[i].before + said(rows[i].body, rows[i].bodyNumber)) << i;
        EXPECT_FALSE(made.title.empty() || made.body.empty()) << i;
        EXPECT_EQ(made.url, WebURL::parse(overview)) << i;
        if (GetParam() != "en") {
            const RoostFormat english{{"en", "UTC", "UTC"}};
            EXPECT_NE(made.title, NotificationContent::make(rows[i].event, snapshot, english, base).title)
                << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, NotificationContentIn,
                         testing::Values("ar", "de", "en", "es", "fr", "he", "it", "ja", "nl", "pl", "pt_BR",
                                         "uk", "zh_Hans"),
                         [](const auto& language) { return language.param; });

} // namespace
} // namespace roost
