#include "present/RoostL10n.h"

#include "tests/present/TranslationFile.h"

#include <gmock/gmock.h>
#include <unicode/locid.h>

#include <latch>
#include <map>
#include <thread>

namespace roost {
namespace {

using testing::ElementsAre;

std::vector<std::string> scheduledTexts(std::string_view locale)
{
    std::vector<std::string> texts;
    for (const int n : {0, 1, 2, 3, 5, 11, 21, 22, 100, 101, 102}) {
        texts.push_back(RoostL10n::scheduled(n, locale));
    }
    return texts;
}

TEST(RoostL10n, GivesTheCatalogueOfTheLocale)
{
    EXPECT_EQ(RoostL10n::bundle("pt_BR").localisation(), "pt-BR");
    EXPECT_EQ(RoostL10n::bundle("de_AT").text("Tomorrow"), "Morgen");
    EXPECT_EQ(RoostL10n::bundle("iw").text("Today"), "היום");
    EXPECT_EQ(RoostL10n::bundle("ca_ES").text("Today"), "Today");
}

TEST(RoostL10n, FallsBackToTheEnglishKey)
{
    EXPECT_EQ(RoostL10n::bundle("de").text("Not in any catalogue"), "Not in any catalogue");
}

TEST(RoostL10n, GivesTheSameCatalogueForAsLongAsTheProcess)
{
    const RoostL10n::Catalogue* const german = &RoostL10n::bundle("de_DE");
    EXPECT_EQ(german, &RoostL10n::bundle("de_DE"));
    EXPECT_EQ(german, &RoostL10n::bundle("de_AT"));
    EXPECT_NE(german, &RoostL10n::bundle("nl"));
}

TEST(RoostL10n, GivesEveryThreadTheSameCatalogueUnderContention)
{
    std::vector<std::string> identifiers;
    for (const std::string& localisation : test::translatedLocalisations()) {
        // Identifiers that nobody has asked for: every one is chosen here, by whoever comes first.
        for (int i = 0; i < 300; ++i) {
            identifiers.push_back(localisation + "-x-thread" + std::to_string(i));
        }
    }
    constexpr std::size_t threads = 8;
    std::latch start{threads};
    std::vector<std::vector<const RoostL10n::Catalogue*>> seen(threads);
    std::vector<std::vector<std::string>> words(threads);
    {
        std::vector<std::jthread> running;
        for (std::size_t thread = 0; thread < threads; ++thread) {
            running.emplace_back([&, thread] {
                start.arrive_and_wait();
                // Each begins elsewhere, so that they choose at the same time, not one after another.
                const std::size_t first = identifiers.size() / threads * thread;
                seen[thread].resize(identifiers.size());
                words[thread].resize(identifiers.size());
                for (std::size_t step = 0; step < identifiers.size(); ++step) {
                    const std::size_t i = (first + step) % identifiers.size();
                    const RoostL10n::Catalogue& catalogue = RoostL10n::bundle(identifiers[i]);
                    seen[thread][i] = &catalogue;
                    words[thread][i] = catalogue.text("Today") + catalogue.plural("%lld scheduled", 3);
                }
            });
        }
    }
    for (std::size_t thread = 0; thread < threads; ++thread) {
        EXPECT_EQ(seen[thread], seen.front());
        EXPECT_EQ(words[thread], words.front());
    }
    EXPECT_EQ(seen.front().size(), identifiers.size());
    for (std::size_t i = 0; i < identifiers.size(); ++i) {
        EXPECT_TRUE(identifiers[i].starts_with(seen.front()[i]->localisation())) << identifiers[i];
    }
}

TEST(RoostL10n, CountsScheduledPostsInEveryLanguage)
{
    EXPECT_THAT(scheduledTexts("en_US"),
                ElementsAre("0 scheduled", "1 scheduled", "2 scheduled", "3 scheduled", "5 scheduled",
                            "11 scheduled", "21 scheduled", "22 scheduled", "100 scheduled", "101 scheduled",
                            "102 scheduled"));
    EXPECT_THAT(scheduledTexts("de_DE"),
                ElementsAre("0 geplant", "1 geplant", "2 geplant", "3 geplant", "5 geplant", "11 geplant",
                            "21 geplant", "22 geplant", "100 geplant", "101 geplant", "102 geplant"));
    EXPECT_THAT(scheduledTexts("nl_NL"),
                ElementsAre("0 gepland", "1 gepland", "2 gepland", "3 gepland", "5 gepland", "11 gepland",
                            "21 gepland", "22 gepland", "100 gepland", "101 gepland", "102 gepland"));
    EXPECT_THAT(scheduledTexts("fr_FR"),
                ElementsAre("0 programmée", "1 programmée", "2 programmées", "3 programmées", "5 programmées",
                            "11 programmées", "21 programmées", "22 programmées", "100 programmées",
                            "101 programmées", "102 programmées"));
    EXPECT_THAT(scheduledTexts("es_ES"),
                ElementsAre("0 programadas", "1 programada", "2 programadas", "3 programadas",
                            "5 programadas", "11 programadas", "21 programadas", "22 programadas",
                            "100 programadas", "101 programadas", "102 programadas"));
    EXPECT_THAT(scheduledTexts("pt_BR"),
                ElementsAre("0 agendado", "1 agendado", "2 agendados", "3 agendados", "5 agendados",
                            "11 agendados", "21 agendados", "22 agendados", "100 agendados", "101 agendados",
                            "102 agendados"));
    EXPECT_THAT(scheduledTexts("it_IT"),
                ElementsAre("0 programmati", "1 programmato", "2 programmati", "3 programmati",
                            "5 programmati", "11 programmati", "21 programmati", "22 programmati",
                            "100 programmati", "101 programmati", "102 programmati"));
    EXPECT_THAT(scheduledTexts("pl_PL"),
                ElementsAre("0 zaplanowanych", "1 zaplanowany", "2 zaplanowane", "3 zaplanowane",
                            "5 zaplanowanych", "11 zaplanowanych", "21 zaplanowanych", "22 zaplanowane",
                            "100 zaplanowanych", "101 zaplanowanych", "102 zaplanowane"));
    EXPECT_THAT(scheduledTexts("uk_UA"),
                ElementsAre("0 запланованих", "1 запланований", "2 заплановані", "3 заплановані",
                            "5 запланованих", "11 запланованих", "21 запланований", "22 заплановані",
                            "100 запланованих", "101 запланований", "102 заплановані"));
    EXPECT_THAT(scheduledTexts("ja_JP"),
                ElementsAre("予約投稿0件", "予約投稿1件", "予約投稿2件", "予約投稿3件", "予約投稿5件",
                            "予約投稿11件", "予約投稿21件", "予約投稿22件", "予約投稿100件", "予約投稿101件",
                            "予約投稿102件"));
    EXPECT_THAT(scheduledTexts("zh_CN"),
                ElementsAre("0 条定时帖子", "1 条定时帖子", "2 条定时帖子", "3 条定时帖子", "5 条定时帖子",
                            "11 条定时帖子", "21 条定时帖子", "22 条定时帖子", "100 条定时帖子",
                            "101 条定时帖子", "102 条定时帖子"));
    EXPECT_THAT(scheduledTexts("ar_AE@numbers=latn"),
                ElementsAre("لا توجد منشورات مجدولة", "منشور واحد مجدول", "منشوران مجدولان",
                            "3 منشورات مجدولة", "5 منشورات مجدولة", "11 منشورًا مجدولًا", "21 منشورًا مجدولًا",
                            "22 منشورًا مجدولًا", "100 منشور مجدول", "101 منشور مجدول", "102 منشور مجدول"));
    EXPECT_THAT(scheduledTexts("he_IL"),
                ElementsAre("0 פוסטים מתוזמנים", "פוסט אחד מתוזמן", "2 פוסטים מתוזמנים", "3 פוסטים מתוזמנים",
                            "5 פוסטים מתוזמנים", "11 פוסטים מתוזמנים", "21 פוסטים מתוזמנים",
                            "22 פוסטים מתוזמנים", "100 פוסטים מתוזמנים", "101 פוסטים מתוזמנים",
                            "102 פוסטים מתוזמנים"));
}

TEST(RoostL10n, WritesNumbersAsTheLocaleDoes)
{
    EXPECT_EQ(RoostL10n::scheduled(1'234'567, "en_US"), "1,234,567 scheduled");
    EXPECT_EQ(RoostL10n::scheduled(1'234'567, "en_IN"), "12,34,567 scheduled");
    EXPECT_EQ(RoostL10n::scheduled(1234, "de_DE"), "1.234 geplant");
    EXPECT_EQ(RoostL10n::scheduled(1234, "de_CH"), "1’234 geplant");
    EXPECT_EQ(RoostL10n::scheduled(1234, "es_ES"), "1234 programadas");
    EXPECT_EQ(RoostL10n::scheduled(3, "ar_EG"), "٣ منشورات مجدولة");
    EXPECT_EQ(RoostL10n::scheduled(3, "de-u-nu-arab"), "٣ geplant");
    EXPECT_EQ(RoostL10n::scheduled(1234, "ca_ES"), "1.234 scheduled");
    EXPECT_EQ(RoostL10n::scheduled(-1, "en_US"), "-1 scheduled");
    EXPECT_EQ(RoostL10n::counted("Failed: %lld", 1234, "fr_FR"), "Échecs\u202f: 1\u202f234");
    EXPECT_EQ(RoostL10n::counted("Failed: %lld", 1, "fr_FR"), "Échec\u202f: 1");
}

TEST(RoostL10n, DoesNotDependOnTheLocaleOfTheProcess)
{
    const icu::Locale before = icu::Locale::getDefault();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale{"ar_EG"}, status);
    EXPECT_EQ(RoostL10n::scheduled(1234, "tlh"), "1,234 scheduled");
    EXPECT_EQ(RoostL10n::scheduled(1234, ""), "1,234 scheduled");
    EXPECT_EQ(RoostL10n::scheduled(1234, "de-u-nu-foobar"), "1.234 geplant");
    EXPECT_EQ(RoostL10n::bundle("und").localisation(), "en");
    icu::Locale::setDefault(before, status);
}

TEST(RoostL10n, KnowsFiveLanguagesFromRightToLeft)
{
    for (const std::string_view locale : {"ar", "ar_EG", "ar-SA", "he", "he_IL", "iw", "iw_IL", "fa_IR", "ur",
                                          "ur_PK", "AR", "ar@numbers=latn"}) {
        EXPECT_TRUE(RoostL10n::isRightToLeft(locale)) << locale;
    }
    for (const std::string_view locale : {"", "en", "de_DE", "yi", "ps", "ckb", "dv", "sd", "ara", "arz",
                                          "heb", "und-Arab", "a", "_ar", "en_AR"}) {
        EXPECT_FALSE(RoostL10n::isRightToLeft(locale)) << locale;
    }
}

TEST(RoostL10n, FillsPlaceholdersInOrder)
{
    EXPECT_EQ(RoostL10n::filled("Updated %@", {"now"}), "Updated now");
    EXPECT_EQ(RoostL10n::filled("%@ of %@", {"1", "2"}), "1 of 2");
    EXPECT_EQ(RoostL10n::filled("%@%@", {"", "x"}), "x");
    EXPECT_EQ(RoostL10n::filled("Today", {}), "Today");
}

TEST(RoostL10n, DoesNotLookIntoWhatItFillsIn)
{
    EXPECT_EQ(RoostL10n::filled("%@ and %@", {"100 %@", "%1 %lld %n"}), "100 %@ and %1 %lld %n");
    EXPECT_EQ(RoostL10n::filled("%@", {"%@"}), "%@");
    EXPECT_EQ(RoostL10n::filled("%%@@ %@", {"%", "@"}), "%%@ @");
}

TEST(RoostL10n, LeavesAPlaceholderWithoutReplacementAndDropsWhatIsTooMany)
{
    EXPECT_EQ(RoostL10n::filled("%@ and %@", {"one"}), "one and %@");
    EXPECT_EQ(RoostL10n::filled("%@", {"one", "two"}), "one");
}

} // namespace
} // namespace roost
