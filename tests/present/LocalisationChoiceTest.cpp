#include "present/LocalisationChoice.h"

#include "tests/present/TranslationFile.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <map>

namespace roost {
namespace {

const LocalisationChoice& choice()
{
    static const LocalisationChoice made{test::translatedLocalisations()};
    return made;
}

void expectChosen(const std::map<std::string, std::string>& wanted)
{
    for (const auto& [identifier, localisation] : wanted) {
        EXPECT_EQ(choice().localisation(identifier), localisation) << identifier;
    }
}

TEST(LocalisationChoice, TakesTheLanguageWhateverTheRegion)
{
    expectChosen({{"de", "de"},
                  {"de_DE", "de"},
                  {"de-AT", "de"},
                  {"de_CH", "de"},
                  {"en_US", "en"},
                  {"en_GB", "en"},
                  {"en-AU", "en"},
                  {"es_419", "es"},
                  {"es_MX", "es"},
                  {"fr_CA", "fr"},
                  {"it_CH", "it"},
                  {"nl_BE", "nl"},
                  {"pl_PL", "pl"},
                  {"uk_UA", "uk"},
                  {"ja_JP", "ja"},
                  {"ar", "ar"},
                  {"ar_EG", "ar"},
                  {"ar_MA", "ar"},
                  {"he_IL", "he"},
                  {"iw_IL", "he"},
                  {"DE_de", "de"},
                  {"de_DE.UTF-8", "de"},
                  {"de-DE-u-nu-deva", "de"},
                  {"ar_EG@numbers=latn", "ar"},
                  {"de-x-private", "de"},
                  {"ja-JP-u-ca-japanese", "ja"}});
}

TEST(LocalisationChoice, GivesPortugueseReadersTheBrazilianTexts)
{
    expectChosen({{"pt_BR", "pt-BR"}, {"pt", "pt-BR"}, {"pt_PT", "pt-BR"}, {"pt-AO", "pt-BR"}});
}

TEST(LocalisationChoice, NeverCrossesLanguages)
{
    // Where ICU's matcher would offer a neighbour's language.
    expectChosen({{"ca", "en"},     {"ca_ES", "en"}, {"gl_ES", "en"}, {"eu_ES", "en"}, {"lb_LU", "en"},
                  {"gsw_CH", "en"}, {"nds", "en"},   {"fy_NL", "en"}, {"br_FR", "en"}, {"co_FR", "en"},
                  {"oc_FR", "en"},  {"sc_IT", "en"}, {"ru", "en"},    {"be_BY", "en"}, {"yue_HK", "en"},
                  {"ii_CN", "en"},  {"yi", "en"},    {"fa_IR", "en"}, {"ur_PK", "en"}, {"ku", "en"},
                  {"arz", "en"},    {"nb_NO", "en"}, {"no", "en"},    {"nn_NO", "en"}, {"csb_PL", "en"},
                  {"af_ZA", "en"},  {"rm_CH", "en"}, {"mt", "en"},    {"wuu", "en"},   {"hi_IN", "en"}});
}

TEST(LocalisationChoice, NeverCrossesScripts)
{
    expectChosen({{"zh", "zh-Hans"},         {"zh_CN", "zh-Hans"},      {"zh_SG", "zh-Hans"},
                  {"zh_Hans_HK", "zh-Hans"}, {"zh_Hans_TW", "zh-Hans"}, {"cmn", "zh-Hans"},
                  {"zh_TW", "en"},           {"zh_HK", "en"},           {"zh_MO", "en"},
                  {"zh_Hant", "en"},         {"zh-Hant-TW", "en"},      {"zh_Hant_CN", "en"},
                  {"zh-Latn", "en"},         {"ar_Latn", "en"},         {"he-Latn", "en"},
                  {"ja_Latn", "en"},         {"uk_Latn", "en"},         {"pl-Cyrl", "en"},
                  {"uk_Cyrl_UA", "uk"},      {"ar-Arab", "ar"},         {"de-Latn-DE", "de"}});
}

TEST(LocalisationChoice, IsEnglishWhereThereIsNoLanguage)
{
    expectChosen({{"", "en"},
                  {"C", "en"},
                  {"C.UTF-8", "en"},
                  {"POSIX", "en"},
                  {"und", "en"},
                  {"und_BR", "en"},
                  {"_BR", "en"},
                  {"root", "en"},
                  {"xx", "en"},
                  {"nonsense!", "en"}});
}

TEST(LocalisationChoice, GivesWordsFromRightToLeftOnlyToLayoutsThatRunSo)
{
    expectChosen({{"ara", "en"}, {"arb", "en"}, {"heb", "en"}});
}

TEST(LocalisationChoice, StaysInTheLanguageOfEveryLocaleThatIcuKnows)
{
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    ASSERT_GT(count, 700);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string chosen = choice().localisation(locales[i].getName());
        const std::string_view language = locales[i].getLanguage();
        if (chosen != "en") {
            EXPECT_EQ(icu::Locale{chosen.substr(0, 2).c_str()}.getLanguage(), language)
                << locales[i].getName();
            continue;
        }
        for (const std::string& available : test::translatedLocalisations()) {
            const bool traditional = language == "zh";
            EXPECT_TRUE(available == "en" || traditional ||
                        available.substr(0, available.find('-')) != language)
                << locales[i].getName();
        }
    }
}

TEST(LocalisationChoice, IsEnglishWhereNothingIsAvailable)
{
    EXPECT_EQ(LocalisationChoice{{}}.localisation("de"), "en");
}

} // namespace
} // namespace roost
