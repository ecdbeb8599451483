#include "tests/present/TranslationFaults.h"

#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The faults of a real catalogue after one replacement, the first that there is to make.
std::vector<std::string> faultsAfter(const std::string& localisation, const std::string& replaced,
                                     const std::string& replacement)
{
    std::string xml = bytesOf(translationsOf(localisation));
    const auto place = xml.find(replaced);
    EXPECT_NE(place, std::string::npos) << replaced;
    if (place != std::string::npos) {
        xml.replace(place, replaced.size(), replacement);
    }
    return faultsOf(localisation, parsedTranslations(QByteArray::fromStdString(xml)));
}

TEST(TranslationFaults, AreNotFoundInACatalogueAsItIs)
{
    EXPECT_THAT(faultsAfter("pl", "Dzisiaj", "Dzisiaj"), IsEmpty());
}

TEST(TranslationFaults, TellOfAMissingText)
{
    EXPECT_THAT(faultsAfter("fr", "<source>Today</source>", "<source>Yesterday</source>"),
                ElementsAre("Yesterday: is not in the table", "Today: is missing"));
}

TEST(TranslationFaults, TellOfATextThatIsThereTwice)
{
    EXPECT_THAT(faultsAfter("fr", "<source>Today</source>", "<source>Tomorrow</source>"),
                Contains("Tomorrow: is there twice"));
}

TEST(TranslationFaults, TellOfAForeignContext)
{
    EXPECT_THAT(faultsAfter("de", "<name>Roost</name>", "<name>Other</name>"),
                Contains("Today: is not in the table"));
}

TEST(TranslationFaults, TellOfAnEmptyTranslation)
{
    EXPECT_THAT(faultsAfter("de", ">Heute<", "><"), Contains("Today: is empty"));
}

TEST(TranslationFaults, TellOfAnUnfinishedOrAVanishedEntry)
{
    EXPECT_THAT(faultsAfter("de", "<translation>Heute", "<translation type=\"unfinished\">Heute"),
                ElementsAre("Today: is unfinished"));
    EXPECT_THAT(faultsAfter("de", "<translation>Heute", "<translation type=\"vanished\">Heute"),
                ElementsAre("Today: is vanished"));
}

TEST(TranslationFaults, TellOfWordsLeftInEnglish)
{
    EXPECT_THAT(faultsAfter("uk", ">Сьогодні<", ">Today<"), ElementsAre("Today: is left in English"));
}

TEST(TranslationFaults, TellOfAnAllowanceThatIsNotNeeded)
{
    EXPECT_THAT(faultsAfter("es", "<translation>Total: %@", "<translation>Suma: %@"),
                ElementsAre("Total: %@: is unlike the English"));
}

TEST(TranslationFaults, TellOfAWrongPlaceholder)
{
    EXPECT_THAT(
        faultsAfter("de", "Stand: %@", "Stand: %1"),
        ElementsAre("Updated %@: has a placeholder that it should not", "Updated %@: has 0 times %@"));
    EXPECT_THAT(
        faultsAfter("de", "Stand: %@", "Stand: %lld"),
        ElementsAre("Updated %@: has a placeholder that it should not", "Updated %@: has 0 times %@"));
}

TEST(TranslationFaults, TellOfAMissingPlaceholder)
{
    EXPECT_THAT(faultsAfter("de", "Stand: %@", "Stand:"), ElementsAre("Updated %@: has 0 times %@"));
    EXPECT_THAT(faultsAfter("pl", "%lld zaplanowanych", "zaplanowanych"),
                ElementsAre("%lld scheduled: has 0 times %lld"));
    EXPECT_THAT(faultsAfter("fr", "%lld programmée<", "programmée<"),
                ElementsAre("%lld scheduled: has 0 times %lld"));
}

TEST(TranslationFaults, LetAFormForOneNumberSayItInWords)
{
    EXPECT_THAT(faultsAfter("pl", "%lld zaplanowany<", "jeden zaplanowany<"), IsEmpty());
}

TEST(TranslationFaults, TellOfAPlaceholderTooMany)
{
    EXPECT_THAT(faultsAfter("de", "Stand: %@", "Stand: %@ %@"), ElementsAre("Updated %@: has 2 times %@"));
    EXPECT_THAT(faultsAfter("de", ">Heute<", ">Heute %@<"),
                ElementsAre("Today: has a placeholder that it should not"));
}

TEST(TranslationFaults, TellOfAMissingPluralForm)
{
    EXPECT_THAT(faultsAfter("uk", "<numerusform>%lld заплановані</numerusform>", ""),
                ElementsAre("%lld scheduled: has 2 forms, not 3"));
    EXPECT_THAT(faultsAfter("uk", "%lld заплановані<", "<"),
                ElementsAre("%lld scheduled: is empty", "%lld scheduled: has 0 times %lld"));
    EXPECT_THAT(faultsAfter("ja", " numerus=\"yes\"", ""), Contains("%lld scheduled: has no plural"));
}

TEST(TranslationFaults, TellOfATranslatedName)
{
    EXPECT_THAT(faultsAfter("uk", "Під’єднати Brisken Roost", "Під’єднати Бріскен Руст"),
                ElementsAre("Connect Brisken Roost: does not name Roost as often",
                            "Connect Brisken Roost: does not name Brisken Roost as often"));
}

TEST(TranslationFaults, TellOfAnotherEnd)
{
    EXPECT_THAT(faultsAfter("ja", "初回は数秒かかります。", "初回は数秒かかります"),
                ElementsAre("This takes a few seconds the first time.: ends otherwise"));
    EXPECT_THAT(faultsAfter("de", ">Heute<", ">Heute.<"), ElementsAre("Today: ends otherwise"));
}

TEST(TranslationFaults, TellOfBlanksTooMany)
{
    EXPECT_THAT(faultsAfter("de", ">Heute<", "> Heute<"), ElementsAre("Today: has blanks too many"));
}

TEST(TranslationFaults, TellOfAnotherLanguageAndOfBrokenXml)
{
    EXPECT_THAT(faultsAfter("de", "language=\"de\"", "language=\"nl\""),
                ElementsAre("the file: is in the language \"nl\""));
    EXPECT_THAT(faultsAfter("de", "</TS>", ""), testing::Not(IsEmpty()));
}

} // namespace
} // namespace roost::test
