#include "notify/NotificationContent.h"

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

TEST_F(NotificationContentTest, SpeaksTheLanguageOfTheFormatAndWritesItsNumbers)
{
    EXPECT_EQ(make(RoostEvent::NewFollowers{1'234, 45'678}, "xx_XX").body, "Total: 45.7K");
    for (const char* locale :
         {"ar", "de", "es", "fr", "he", "it", "ja", "nl", "pl", "pt_BR", "uk", "zh_Hans"}) {
        const RoostFormat format{{locale, "UTC", "UTC"}};
        for (const RoostEvent::Any& event :
             {RoostEvent::Any{RoostEvent::Milestone{10'000, best}},
              RoostEvent::Any{RoostEvent::NewBest{best, 0}}, RoostEvent::Any{RoostEvent::PostWentOut{post}},
              RoostEvent::Any{RoostEvent::PostFailed{post}}, RoostEvent::Any{RoostEvent::PostFailed{}},
              RoostEvent::Any{RoostEvent::NewFollowers{1'234, 9}}}) {
            const NotificationContent translated = make(event, locale);
            EXPECT_NE(translated.title, make(event).title) << locale << event.index();
            EXPECT_EQ((translated.title + translated.body).find("%@"), std::string::npos) << locale;
            EXPECT_EQ(translated.url, make(event).url);
        }
        EXPECT_NE(make(RoostEvent::Milestone{10'000, best}, locale).title.find(format.compact(10'000)),
                  std::string::npos)
            << locale;
        EXPECT_NE(make(RoostEvent::NewFollowers{1'234, 45'678}, locale).title.find(format.signedCount(1'234)),
                  std::string::npos)
            << locale;
        EXPECT_NE(make(RoostEvent::NewFollowers{1'234, 45'678}, locale).body.find(format.compact(45'678)),
                  std::string::npos)
            << locale;
        EXPECT_TRUE(make(RoostEvent::Milestone{1'000, best}, locale).body.starts_with("“Hello” · Bluesky · "))
            << locale;
    }
}

} // namespace
} // namespace roost
