#include "programs/roost-service/Scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonDocument>

namespace roost::local {
namespace {

using namespace std::chrono_literals;
using Kind = Scenario::Kind;

std::expected<Scenario, QString> scenarioOf(const QByteArray& json)
{
    return scenarioFromJson(QJsonDocument::fromJson(json).object());
}

std::string complaintAbout(const QByteArray& json)
{
    const auto scenario = scenarioOf(json);
    return scenario ? "none" : scenario.error().toStdString();
}

TEST(Scenario, IsReadFromAControlRequest)
{
    const auto scenario = scenarioOf(
        R"({"kind":"status","status":429,"retryAfter":"1.5","delayMs":20,"times":3,"body":"x","processed":true})");
    ASSERT_TRUE(scenario) << scenario.error().toStdString();
    EXPECT_EQ(scenario->kind, Kind::status);
    EXPECT_EQ(scenario->status, 429);
    EXPECT_EQ(scenario->retryAfter, QByteArray("1.5"));
    EXPECT_EQ(scenario->delay, 20ms);
    EXPECT_EQ(scenario->times, 3);
    EXPECT_EQ(scenario->body, "x");
    EXPECT_TRUE(scenario->processed);
}

TEST(Scenario, HasUsefulValuesForWhatIsLeftOut)
{
    EXPECT_EQ(scenarioOf(R"({"kind":"status"})")->status, 503);
    EXPECT_EQ(scenarioOf(R"({"kind":"status"})")->delay, 0ms);
    EXPECT_EQ(scenarioOf(R"({"kind":"redirect"})")->status, 307);
    EXPECT_EQ(scenarioOf(R"({"kind":"delay"})")->delay, 1s);
    EXPECT_EQ(scenarioOf(R"({"kind":"drip"})")->bytes, 1);
    EXPECT_EQ(scenarioOf(R"({"kind":"drip-head"})")->delay, 100ms);
    EXPECT_EQ(scenarioOf(R"({"kind":"oauth-error"})")->error, "invalid_grant");
    EXPECT_EQ(scenarioOf(R"({"kind":"oauth-error"})")->status, 400);
    EXPECT_FALSE(scenarioOf(R"({"kind":"drop"})")->times);
}

TEST(Scenario, KnowsEachKindByItsName)
{
    for (std::size_t i = 0; i < scenarioKindNames.size(); ++i) {
        const QByteArray name(scenarioKindNames[i].data(),
                              static_cast<qsizetype>(scenarioKindNames[i].size()));
        const auto scenario = scenarioOf(R"({"kind":")" + name + R"("})");
        ASSERT_TRUE(scenario) << name.toStdString();
        EXPECT_EQ(static_cast<std::size_t>(scenario->kind), i);
        EXPECT_EQ(toJson(*scenario).value(QStringLiteral("kind")).toString().toLatin1(), name);
    }
    EXPECT_EQ(scenarioOf(R"({"kind":"clock-offset"})")->kind, Kind::clockOffset);
}

TEST(Scenario, RefusesWhatItDoesNotUnderstandWithASentence)
{
    EXPECT_EQ(complaintAbout(R"({})"), R"("" is no kind of scenario.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"sleep"})"), R"("sleep" is no kind of scenario.)");
    EXPECT_EQ(complaintAbout(R"({"kind":5})"), R"("kind" must be a text.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"status","status":"503"})"),
              R"("status" must be a whole number from 200 to 999.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"status","status":99})"),
              R"("status" must be a whole number from 200 to 999.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"delay","delayMs":1.5})"),
              R"("delayMs" must be a whole number from 0 to 3600000.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"drop","times":0})"),
              R"("times" must be a whole number from 1 to 1000000.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"drip","bytes":0})"), R"("bytes" of a drip must be at least 1.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"drop","processed":1})"), R"("processed" must be true or false.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"drop","retryafter":"1"})"), R"("retryafter" is not known here.)");
}

TEST(Scenario, RefusesTextsThatWouldBreakAHead)
{
    EXPECT_EQ(complaintAbout(R"({"kind":"status","retryAfter":"1\r\nX: y"})"),
              R"("retryAfter" must be printable ASCII.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"redirect","location":"\n"})"),
              R"("location" must be printable ASCII.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"headers","headers":{"A":"é"}})"),
              R"("headers" must hold texts of printable ASCII.)");
    EXPECT_EQ(complaintAbout(R"({"kind":"headers","headers":{"A":1}})"),
              R"("headers" must hold texts of printable ASCII.)");
}

} // namespace
} // namespace roost::local
