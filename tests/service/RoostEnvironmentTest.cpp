#include "service/RoostEnvironment.h"

#include <gmock/gmock.h>

#include <QJsonArray>

namespace roost::test {

namespace {

QUrl baseFor(const QJsonValue& value)
{
    return RoostEnvironment::baseURL(InfoDictionary(QJsonObject{{QStringLiteral("RoostBaseURL"), value}}));
}

} // namespace

TEST(RoostEnvironment, HasASecureOriginWithoutAPathInProduction)
{
    const QUrl base = RoostEnvironment::productionBase();

    EXPECT_EQ(base.scheme(), QStringLiteral("https"));
    EXPECT_FALSE(base.host().isEmpty());
    EXPECT_EQ(base.path(), QString());
}

TEST(RoostEnvironment, TakesTheBaseFromTheInformationDictionary)
{
    EXPECT_EQ(baseFor(QStringLiteral("http://127.0.0.1:8080/roost/")),
              QUrl(QStringLiteral("http://127.0.0.1:8080/roost/")));
}

TEST(RoostEnvironment, UsesTheProductionBaseWhenTheDictionaryHasNone)
{
    EXPECT_EQ(RoostEnvironment::baseURL(InfoDictionary(QJsonObject{})), RoostEnvironment::productionBase());
}

TEST(RoostEnvironment, IgnoresABaseThatIsNoText)
{
    for (const QJsonValue& value :
         {QJsonValue(), QJsonValue(5), QJsonValue(true),
          QJsonValue(QJsonArray{QStringLiteral("https://a.example")}), QJsonValue(QJsonObject{})}) {
        EXPECT_EQ(baseFor(value), RoostEnvironment::productionBase());
    }
}

TEST(RoostEnvironment, IgnoresABuildVariableThatNobodyFilledIn)
{
    for (const char16_t* value : {u"$(ROOST_BASE_URL)", u"https://$(HOST)/", u"https://a.example/?x=$("}) {
        EXPECT_EQ(baseFor(QString::fromUtf16(value)), RoostEnvironment::productionBase());
    }
    EXPECT_EQ(baseFor(QStringLiteral("https://a.example/$x)")),
              QUrl(QStringLiteral("https://a.example/$x)")));
}

TEST(RoostEnvironment, IgnoresABaseThatIsNoURL)
{
    for (const char16_t* value : {u"", u"http://a b.example/", u"http://a.example:port/", u"http://[::1/"}) {
        EXPECT_EQ(baseFor(QString::fromUtf16(value)), RoostEnvironment::productionBase())
            << QString::fromUtf16(value).toStdString();
    }
}

} // namespace roost::test
