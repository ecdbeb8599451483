#include "model/InfoDictionary.h"

#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace roost {
namespace {

InfoDictionary dictionaryWith(const QJsonValue& value)
{
    return InfoDictionary{QJsonObject{{QStringLiteral("Key"), value}}};
}

TEST(InfoDictionary, KnowsTheVersionOfThisBuildAndItsIdentifier)
{
    const InfoDictionary info = InfoDictionary::builtIn();
    EXPECT_EQ(info.string(u"CFBundleIdentifier"), QStringLiteral("world.brisken.roost.mac"));
    EXPECT_TRUE(info.version().contains(QLatin1Char('.'))) << info.version().toStdString();
}

TEST(InfoDictionary, GivesTextsOnly)
{
    EXPECT_EQ(dictionaryWith(QStringLiteral("a b")).string(u"Key"), QStringLiteral("a b"));
    EXPECT_EQ(dictionaryWith(QString{QLatin1String("")}).string(u"Key"), QString{});
    EXPECT_EQ(dictionaryWith(5).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(true).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QJsonValue::Null).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QJsonObject{}).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QStringLiteral("a")).string(u"key"), std::nullopt);
}

TEST(InfoDictionary, TakesAVariableThatNobodyFilledInForUnset)
{
    EXPECT_EQ(dictionaryWith(QStringLiteral("$(GROUP)")).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QStringLiteral("https://$(HOST)/")).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QStringLiteral("$(")).string(u"Key"), std::nullopt);
    EXPECT_EQ(dictionaryWith(QStringLiteral("$x (y)")).string(u"Key"), QStringLiteral("$x (y)"));
}

TEST(InfoDictionary, GivesWholeNumbersInTheirRange)
{
    EXPECT_EQ(dictionaryWith(1).wholeNumber(u"Key", 1, 300).value(), 1);
    EXPECT_EQ(dictionaryWith(300).wholeNumber(u"Key", 1, 300).value(), 300);
    EXPECT_EQ(dictionaryWith(5).wholeNumber(u"Other", 1, 300).value(), std::nullopt);
    const QString complaint = QStringLiteral("Key must be a whole number from 1 to 300.");
    for (const QJsonValue& value : {QJsonValue{0}, QJsonValue{301}, QJsonValue{-5}, QJsonValue{2.5},
                                    QJsonValue{1e300}, QJsonValue{true}, QJsonValue{QStringLiteral("5")},
                                    QJsonValue{QJsonValue::Null}, QJsonValue{QJsonObject{}}}) {
        EXPECT_EQ(dictionaryWith(value).wholeNumber(u"Key", 1, 300).error(), complaint);
    }
}

TEST(InfoDictionary, CallsAnUnsetVersionZero)
{
    EXPECT_EQ(InfoDictionary{QJsonObject{}}.version(), QStringLiteral("0"));
    const QString key = QStringLiteral("CFBundleShortVersionString");
    EXPECT_EQ((InfoDictionary{QJsonObject{{key, QStringLiteral("$(V)")}}}.version()), QStringLiteral("0"));
    EXPECT_EQ((InfoDictionary{QJsonObject{{key, QStringLiteral("1.2")}}}.version()), QStringLiteral("1.2"));
}

TEST(InfoDictionary, TakesAFileInPlaceOfTheBuiltInValues)
{
    const test::ScratchFolder folder;
    const std::filesystem::path file = folder / "info.json";
    test::putBytes(file, R"({"RoostBaseURL": "http://127.0.0.1:8080", "SUPublicEDKey": "abc"})");
    const auto info = InfoDictionary::fromFile(QString::fromStdString(file.string()));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->string(u"RoostBaseURL"), QStringLiteral("http://127.0.0.1:8080"));
    EXPECT_EQ(info->string(u"SUPublicEDKey"), QStringLiteral("abc"));
    // Nothing of the built-in values is mixed in.
    EXPECT_EQ(info->string(u"CFBundleIdentifier"), std::nullopt);
    EXPECT_EQ(info->version(), QStringLiteral("0"));
}

TEST(InfoDictionary, SaysInOneSentenceWhyAFileIsNoInformationFile)
{
    const test::ScratchFolder folder;
    const auto complaint = [&](const std::filesystem::path& file) {
        const auto info = InfoDictionary::fromFile(QString::fromStdString(file.string()));
        return info ? std::string{} : info.error().toStdString();
    };
    const auto complaintAbout = [&](const std::string& bytes) {
        test::putBytes(folder / "info.json", bytes);
        return complaint(folder / "info.json");
    };
    const std::string named = "The information file " + (folder / "info.json").string();
    EXPECT_THAT(
        complaint(folder / "missing"),
        testing::StartsWith("The information file " + (folder / "missing").string() + " cannot be read: "));
    EXPECT_THAT(complaint(folder.path()),
                testing::StartsWith("The information file " + folder.path().string()));
    EXPECT_THAT(complaintAbout(""), testing::StartsWith(named + " is not JSON: "));
    EXPECT_THAT(complaintAbout("{\"a\":"), testing::StartsWith(named + " is not JSON: "));
    EXPECT_EQ(complaintAbout("[1]"), named + " does not hold a JSON object.");
    EXPECT_EQ(complaintAbout("{}"), "");
}

} // namespace
} // namespace roost
