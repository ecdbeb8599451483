#include "programs/brisken-roost/StatusJson.h"

#include "tests/programs/brisken-roost/Records.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace roost {
namespace {

using namespace std::chrono_literals;
using test::fileOf;
using test::fullRecord;
using test::inUtc;
using test::noon;
using test::recordOf;
using test::signedOut;

StatusReport reportOn(std::vector<RoostAccountRecord> accounts)
{
    return statusReport(fileOf(std::move(accounts)), std::nullopt, noon);
}

QJsonObject objectIn(const std::string& line)
{
    EXPECT_EQ(line.find('\n'), line.size() - 1) << "one line";
    return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
}

TEST(StatusJson, HoldsEveryProfileAndTheBestState)
{
    const QJsonObject json = objectIn(
        statusJson(reportOn({signedOut(recordOf("a", 1, 0s)), recordOf("b", 9007199254740993, 60s)})));
    EXPECT_EQ(json[u"state"].toString().toStdString(), "fresh");
    EXPECT_EQ(json[u"accounts"][0][u"state"].toString().toStdString(), "signedOut");
    EXPECT_EQ(json[u"accounts"][1][u"profileId"].toString().toStdString(), "b");
    EXPECT_EQ(json[u"accounts"][1][u"viewsTotal"].toInteger(), 9007199254740993);
    EXPECT_EQ(json[u"accounts"][1][u"ageSeconds"].toInteger(), 60);
    EXPECT_EQ(json[u"accounts"][1][u"fetchedAt"].toString().toStdString(), "2026-03-14T11:59:00.000Z");
}

TEST(StatusJson, OfNothingIsAnEmptyList)
{
    const QJsonObject json = objectIn(statusJson(statusReport(std::nullopt, std::nullopt, noon)));
    EXPECT_EQ(json[u"state"].toString().toStdString(), "empty");
    EXPECT_TRUE(json[u"accounts"].isArray());
}

TEST(StatusWaybar, ShowsTheViewsOfTheBestProfileAndItsStateAsClass)
{
    const QJsonObject module =
        objectIn(statusWaybar(reportOn({recordOf("a", 1, 1h), recordOf("b", 48213, 60s)}), inUtc("en")));
    EXPECT_EQ(module[u"text"].toString().toStdString(), "48.2K");
    EXPECT_EQ(module[u"class"].toString().toStdString(), "fresh");
    EXPECT_TRUE(module[u"tooltip"].toString().contains(QLatin1String("Profile b")));
}

TEST(StatusWaybar, EscapesMarkup)
{
    RoostAccountRecord record = recordOf("a", 1, 0s);
    record.profileName = "<b>&";
    const QJsonObject module = objectIn(statusWaybar(reportOn({record}), inUtc("en")));
    EXPECT_TRUE(module[u"tooltip"].toString().contains(QLatin1String("&lt;b&gt;&amp;")));
}

TEST(StatusWaybar, WritesAsTheLocaleDoes)
{
    const QJsonObject module = objectIn(statusWaybar(reportOn({fullRecord()}), inUtc("he")));
    EXPECT_EQ(module[u"text"].toString().toStdString(), inUtc("he").compact(48213));
    EXPECT_TRUE(module[u"tooltip"].toString().contains(QStringLiteral("\u2068עוקבים  1,310\u2069")));
}

TEST(StatusWaybar, OfNothingSaysSoInItsClass)
{
    const QJsonObject module =
        objectIn(statusWaybar(statusReport(std::nullopt, std::nullopt, noon), inUtc("en")));
    EXPECT_EQ(module[u"class"].toString().toStdString(), "empty");
    EXPECT_EQ(module[u"text"].toString().toStdString(), "");
}

} // namespace
} // namespace roost
