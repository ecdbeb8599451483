#include "programs/brisken-roost/StatusCard.h"

#include "tests/programs/brisken-roost/Records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost {

/// For the messages of failures.
void PrintTo(const StatusLine& line, std::ostream* stream)
{
    *stream << line.label << " | " << line.detail << " | " << line.words;
}

namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::fullRecord;
using test::inUtc;
using test::noon;
using test::recordOf;
using test::signedOut;
using testing::ElementsAre;

std::vector<StatusLine> cardOf(const RoostAccountRecord& record, const std::string& locale = "en-GB")
{
    return statusCard(statusReport(fileOf({record}), std::nullopt, noon).accounts.front(), noon,
                      inUtc(locale));
}

/// A card as one text: "label | detail | words" on each line.
std::string textOf(const RoostAccountRecord& record, const std::string& locale = "en-GB")
{
    std::string text = "\n";
    for (const StatusLine& line : cardOf(record, locale)) {
        text += line.label + " | " + line.detail + " | " + line.words + "\n";
    }
    return text;
}

TEST(StatusCard, IsInOneLanguage)
{
    EXPECT_EQ(textOf(fullRecord()), R"(
Ada | Updated 1 min ago | 
Views: 48,213 | +12% | 
Followers  1,310 | +2% | 
12 scheduled | Tomorrow 09:30 | Morning light
Failed: 1 |  | 
Best post  9.2K |  | Hello
)");
    EXPECT_EQ(textOf(fullRecord(), "de_AT"), "\nAda | Stand: vor 1 Min. | \n"
                                             "Aufrufe: 48\u00a0213 | +12\u00a0% | \n"
                                             "Follower  1\u00a0310 | +2\u00a0% | \n"
                                             "12 geplant | Morgen 09:30 | Morning light\n"
                                             "Fehlgeschlagen: 1 |  | \n"
                                             "Bester Beitrag  9200 |  | Hello\n");
    EXPECT_EQ(textOf(fullRecord(), "ja"), "\nAda | 最終更新：1 分前 | \n"
                                          "表示回数：48,213 | +12% | \n"
                                          "フォロワー  1,310 | +2% | \n"
                                          "予約投稿12件 | 明日 9:30 | Morning light\n"
                                          "失敗：1件 |  | \n"
                                          "ベスト投稿  9200 |  | Hello\n");
    EXPECT_EQ(textOf(fullRecord(), "ar_EG"), "\nAda | تم التحديث قبل دقيقة واحدة | \n"
                                             "المشاهدات: ٤٨٬٢١٣ | \u061c+١٢٪\u061c | \n"
                                             "المتابعون  ١٬٣١٠ | \u061c+٢٪\u061c | \n"
                                             "١٢ منشورًا مجدولًا | غدًا ٩:٣٠ ص | Morning light\n"
                                             "فشل النشر: ١ |  | \n"
                                             "أفضل منشور  ٩٫٢\u00a0ألف |  | Hello\n");
    EXPECT_EQ(textOf(fullRecord(), "he"), "\nAda | עודכן לפני דקה | \n"
                                          "צפיות: 48,213 | \u200e+12% | \n"
                                          "עוקבים  1,310 | \u200e+2% | \n"
                                          "12 פוסטים מתוזמנים | מחר 9:30 | Morning light\n"
                                          "נכשל: 1 |  | \n"
                                          "הפוסט הטוב ביותר  9.2K\u200f |  | Hello\n");
}

TEST(StatusCard, SaysHowOldTheNumbersAre)
{
    const auto heading = [](std::chrono::seconds age) { return cardOf(recordOf("a", 1, age), "en").front(); };
    EXPECT_EQ(heading(0s), (StatusLine{"Profile a", Tone::heading, "Updated now", Tone::quiet, {}}));
    EXPECT_EQ(heading(59s).detail, "Updated now");
    EXPECT_EQ(heading(60s).detail, "Updated 1 min. ago");
    EXPECT_EQ(heading(900s),
              (StatusLine{"Profile a", Tone::heading, "Updated 15 min. ago", Tone::quiet, {}}));
    EXPECT_EQ(heading(24h), (StatusLine{"Profile a", Tone::heading, "Updated 1 day ago", Tone::warning, {}}));
}

TEST(StatusCard, ShowsTheLastNumbersOfWhoIsSignedOut)
{
    EXPECT_THAT(cardOf(signedOut(recordOf("a", 7, 60s))),
                ElementsAre(StatusLine{"Profile a", Tone::heading, "Signed out", Tone::bad, {}},
                            StatusLine{.label = "Views: 7"},
                            StatusLine{.label = "Nothing scheduled", .labelTone = Tone::quiet}));
}

TEST(StatusCard, IsOneLineBeforeTheFirstNumbers)
{
    EXPECT_THAT(cardOf({"a", "Ada"}),
                ElementsAre(StatusLine{"Ada", Tone::heading, "Getting your numbers…", Tone::quiet, {}}));
}

TEST(StatusCard, SaysThatThereAreNoNumbersYet)
{
    RoostAccountRecord record = recordOf("a", 1, 60s);
    record.snapshot->views.total.reset();
    record.snapshot->views.previous = 3;
    EXPECT_EQ(cardOf(record).at(1), (StatusLine{.label = "No numbers yet", .labelTone = Tone::quiet}));
}

TEST(StatusCard, NamesWhatHasNoNameOrWords)
{
    RoostAccountRecord record = fullRecord();
    record.profileName = "";
    record.snapshot->best->text = "";
    record.snapshot->posts.next.back().text = " ";
    EXPECT_EQ(cardOf(record, "de").front().label, "Profil");
    EXPECT_EQ(cardOf(record, "de").at(3).words, " ");
    record.snapshot->posts.next.back().text = "";
    EXPECT_EQ(cardOf(record, "de").at(3).words, "Beitrag ohne Titel");
    EXPECT_EQ(cardOf(record, "de").at(5).words, "X") << "the network";
}

TEST(StatusCard, ShowsTheEarliestPostOfTheQueue)
{
    RoostAccountRecord record = fullRecord();
    record.snapshot->posts.next.push_back({"first", noon - 1h, "Late", {}});
    EXPECT_EQ(cardOf(record).at(3),
              (StatusLine{.label = "12 scheduled", .detail = "Today 11:00", .words = "Late"}));
    record.snapshot->posts.next.clear();
    EXPECT_EQ(cardOf(record).at(3), (StatusLine{.label = "12 scheduled"}));
}

TEST(StatusCard, LeavesOutAChangeThatIsNotKnown)
{
    RoostAccountRecord record = fullRecord();
    record.snapshot->views.previous.reset();
    record.snapshot->followers->networks.front().delta7.reset();
    EXPECT_EQ(cardOf(record).at(1), (StatusLine{.label = "Views: 48,213"}));
    EXPECT_EQ(cardOf(record).at(2), (StatusLine{.label = "Followers  1,310"}));
}

} // namespace
} // namespace roost
