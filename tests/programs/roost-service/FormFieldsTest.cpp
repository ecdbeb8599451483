#include "programs/roost-service/FormFields.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

FormFields parsed(const QByteArray& text)
{
    const auto form = FormFields::parse(text);
    EXPECT_TRUE(form) << text.toStdString();
    return form.value_or(FormFields());
}

TEST(FormFields, ReadPlusAsABlankAndDecodeTheRest)
{
    const FormFields form = parsed("a=x+y%2B%20z&%62=%C3%A9%26%3D");
    EXPECT_EQ(form.value("a"), "x y+ z");
    EXPECT_EQ(form.value("b"), "\u00e9&=");
}

TEST(FormFields, KeepEveryByteOfAnyText)
{
    QByteArray every;
    for (int c = 0; c < 128; ++c) {
        every += static_cast<char>(c);
    }
    EXPECT_EQ(parsed("v=" + every.toPercentEncoding()).value("v"), every);
}

TEST(FormFields, TakeAnEmptyValueForOneThatIsLeftOut)
{
    const FormFields form = parsed("a=&b&&c=1=2");
    EXPECT_EQ(form.value("a"), std::nullopt);
    EXPECT_EQ(form.value("b"), std::nullopt);
    EXPECT_EQ(form.value("c"), "1=2");
    EXPECT_EQ(form.value("d"), std::nullopt);
    EXPECT_TRUE(form.values("a").empty());
}

TEST(FormFields, NoticeANameThatComesTwiceInAnySpelling)
{
    EXPECT_TRUE(parsed("code=1&c%6Fde=2").repeatsAny());
    EXPECT_TRUE(parsed("x=&x=").repeats("x"));
    EXPECT_TRUE(parsed("flag&flag").repeats("flag"));
    EXPECT_FALSE(parsed("flag&other").repeatsAny());
    EXPECT_FALSE(parsed("x=1&X=2").repeatsAny());
    EXPECT_FALSE(parsed("resource=1&resource=2").repeatsAny());
    EXPECT_EQ(parsed("resource=1&resource=2").values("resource"), (std::vector<QByteArray>{"1", "2"}));
}

TEST(FormFields, AreNoneWhenTheTextCannotBeDecoded)
{
    for (const char* text : {"a=%", "a=%2", "a=%G0", "a=%+2", "%zz=1", "a=%FF", "a=%C3", "a=1&b=%C3%28"}) {
        EXPECT_FALSE(FormFields::parse(text)) << text;
    }
}

} // namespace
} // namespace roost::local
