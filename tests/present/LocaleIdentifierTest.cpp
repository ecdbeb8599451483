#include "present/LocaleIdentifier.h"

#include <gtest/gtest.h>

namespace roost {
namespace {

std::string tag(std::string_view identifier)
{
    UErrorCode status = U_ZERO_ERROR;
    return localeNamed(identifier).toLanguageTag<std::string>(status);
}

TEST(LocaleIdentifier, IsReadInEverySpelling)
{
    EXPECT_EQ(tag("pt_BR"), "pt-BR");
    EXPECT_EQ(tag("pt-br"), "pt-BR");
    EXPECT_EQ(tag("zh_Hant_TW"), "zh-Hant-TW");
    EXPECT_EQ(tag("de_DE.UTF-8"), "de-DE");
    EXPECT_EQ(tag("ca_ES_VALENCIA"), "ca-ES-valencia");
}

TEST(LocaleIdentifier, KeepsItsExtensions)
{
    EXPECT_EQ(tag("ar-EG-u-nu-latn"), "ar-EG-u-nu-latn");
    EXPECT_EQ(tag("ar_EG@numbers=latn"), "ar-EG-u-nu-latn");
}

TEST(LocaleIdentifier, IsGivenItsSuccessor)
{
    EXPECT_EQ(tag("iw_IL"), "he-IL");
    EXPECT_EQ(tag("cmn-Hans"), "zh-Hans");
}

TEST(LocaleIdentifier, ThatCannotBeReadHasNoLanguage)
{
    for (const std::string& identifier :
         {std::string{}, std::string{"-"}, std::string{"und"}, std::string{"@"}, std::string{"\xff\xfe"},
          std::string(100'000, 'x'), std::string(100'000, '-'), std::string{"../../etc"}}) {
        EXPECT_STREQ(localeNamed(identifier).getLanguage(), "") << identifier.substr(0, 20);
    }
}

} // namespace
} // namespace roost
