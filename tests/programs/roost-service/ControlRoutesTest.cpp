#include "tests/programs/roost-service/ServiceUnderTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::ask;
using test::RawAnswer;
using testing::HasSubstr;

class ControlOfTheService : public test::ServiceUnderTest {
protected:
    std::string complaintAbout(const QByteArray& target, const QByteArray& body)
    {
        const RawAnswer answer = ask(service_->control(), "POST", target, {}, body);
        EXPECT_EQ(answer.status(), 400) << answer.bytes.toStdString();
        return QJsonDocument::fromJson(answer.body()).object().value(u"error"_s).toString().toStdString();
    }
};

TEST_F(ControlOfTheService, TellsWhatWasAskedForAndByWhom)
{
    widget(0);
    widget(0);
    widget(1);
    get("/api/roost/v1/widget", "X-Note: here\r\n");
    const QJsonObject told = state();
    EXPECT_EQ(told.value(u"requests"_s).toObject().value(u"widget"_s).toInt(), 4);
    const QJsonObject profiles = told.value(u"profiles"_s).toObject();
    EXPECT_EQ(profiles.size(), 3);
    const QJsonObject first = profiles.value(u"harbour-light"_s).toObject();
    EXPECT_EQ(first.value(u"name"_s).toString(), u"Harbour Light Studio"_s);
    EXPECT_EQ(first.value(u"requests"_s).toObject().value(u"widget"_s).toInt(), 2);
    const QJsonObject last = told.value(u"last"_s).toObject().value(u"widget"_s).toObject();
    EXPECT_EQ(last.value(u"headers"_s).toObject().value(u"x-note"_s).toString(), u"here"_s);
    EXPECT_EQ(told.value(u"now"_s).toString(), u"2025-06-15T15:06:40.123Z"_s);
}

TEST_F(ControlOfTheService, TellsNoToken)
{
    widget();
    const QByteArray told = QJsonDocument(state()).toJson();
    EXPECT_FALSE(told.contains(QByteArray::fromStdString(service_->standingToken(profileId()))));
    EXPECT_TRUE(told.contains("authorization"));
}

TEST_F(ControlOfTheService, MovesTheTimeOfTheProfiles)
{
    const QJsonObject told = control("/advance", R"({"seconds":3600})");
    EXPECT_EQ(told.value(u"now"_s).toString(), u"2025-06-15T16:06:40.123Z"_s);
    EXPECT_THAT(widget().body().toStdString(), HasSubstr(R"("generatedAt":"2025-06-15T16:06:40.123Z")"));
    control("/advance", R"({"seconds":-7200})");
    EXPECT_EQ(service_->state().now(), now_ - 1h);
}

TEST_F(ControlOfTheService, TellsAndEndsScenarios)
{
    QJsonObject told = control("/scenario", R"({"profile":"mira-okafor","kind":"drop","times":2})");
    EXPECT_EQ(QJsonDocument(told.value(u"scenarios"_s).toObject()).toJson(QJsonDocument::Compact),
              R"({"mira-okafor":{"widget":{"kind":"drop","times":2}}})");
    told = control("/scenario", R"({"profile":"mira-okafor","endpoint":"widget","kind":"none"})");
    EXPECT_TRUE(told.value(u"scenarios"_s).toObject().isEmpty());
}

TEST_F(ControlOfTheService, GoesBackToTheBeginning)
{
    widget();
    control("/advance", R"({"seconds":5})");
    control("/scenario", R"({"kind":"drop"})");
    const QJsonObject told = control("/reset", {});
    EXPECT_TRUE(told.value(u"requests"_s).toObject().isEmpty());
    EXPECT_TRUE(told.value(u"scenarios"_s).toObject().isEmpty());
    EXPECT_EQ(service_->state().now(), now_);
    EXPECT_EQ(widget().status(), 200);
}

TEST_F(ControlOfTheService, RefusesWhatItDoesNotUnderstandWithASentence)
{
    EXPECT_EQ(complaintAbout("/scenario", "nonsense"), "The body must be a JSON object.");
    EXPECT_EQ(complaintAbout("/scenario", "[]"), "The body must be a JSON object.");
    EXPECT_EQ(complaintAbout("/scenario", R"({"kind":"nap"})"), R"("nap" is no kind of scenario.)");
    EXPECT_EQ(complaintAbout("/scenario", R"({"kind":"drop","profile":"x"})"), R"(There is no profile "x".)");
    EXPECT_EQ(complaintAbout("/scenario", R"({"kind":"drop","endpoint":"x"})"), R"("x" is no endpoint.)");
    EXPECT_EQ(complaintAbout("/scenario", R"({"kind":"drop","profile":5})"), R"("profile" must be a text.)");
    EXPECT_EQ(complaintAbout("/scenario", R"({"kind":"none","times":2})"),
              R"("none" is no kind of scenario.)");
    EXPECT_EQ(complaintAbout("/advance", "{}"), R"("seconds" is missing.)");
    EXPECT_EQ(complaintAbout("/advance", R"({"seconds":"5"})"),
              R"("seconds" must be a whole number from -316224000 to 316224000.)");
    EXPECT_EQ(complaintAbout("/advance", R"({"seconds":5,"minutes":1})"), R"("minutes" is not known here.)");
    EXPECT_EQ(complaintAbout("/reset", R"({"all":true})"), R"("all" is not known here.)");
    EXPECT_TRUE(service_->state().scenarios.toJson().isEmpty());
}

TEST_F(ControlOfTheService, KnowsItsPathsAndMethods)
{
    EXPECT_EQ(ask(service_->control(), "GET", "/nothing").status(), 404);
    EXPECT_EQ(ask(service_->control(), "GET", "/scenario").status(), 405);
    EXPECT_EQ(ask(service_->control(), "POST", "/state").status(), 405);
    EXPECT_EQ(ask(service_->base(), "GET", "/state").status(), 404);
}

TEST_F(ControlOfTheService, IsNotForWebPages)
{
    const RawAnswer answer = ask(service_->control(), "POST", "/scenario", "Origin: https://evil.example\r\n",
                                 R"({"kind":"drop"})");
    EXPECT_EQ(answer.status(), 403);
    EXPECT_TRUE(service_->state().scenarios.toJson().isEmpty());
}

} // namespace
} // namespace roost::local
