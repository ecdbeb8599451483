#include "tests/programs/roost-service/OAuthUnderTest.h"

#include <gtest/gtest.h>

#include <QJsonArray>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::ask;
using test::member;
using test::RawAnswer;

class ControlOfTheAuthorizationServer : public test::OAuthUnderTest {
protected:
    static QJsonObject oauth(const QJsonObject& state) { return state.value(u"oauth"_s).toObject(); }

    std::string complaintAbout(const QByteArray& target, const QByteArray& body)
    {
        const RawAnswer answer = ask(service_->control(), "POST", target, {}, body);
        EXPECT_EQ(answer.status(), 400) << answer.bytes.toStdString();
        return member(answer, "error").toStdString();
    }
};

TEST_F(ControlOfTheAuthorizationServer, CountsClientsAndGrantsAndTellsNoSecret)
{
    const QByteArray given = code();
    const RawAnswer tokens = exchange(given);
    const QByteArray refreshed = member(refresh(member(tokens, "refresh_token")), "refresh_token");
    signIn();
    registerClient();
    const RawAnswer answer = ask(service_->control(), "GET", "/state");
    const QJsonObject told = test::jsonOf(answer);
    EXPECT_EQ(oauth(told).value(u"clients"_s), 2);
    EXPECT_EQ(oauth(told).value(u"grants"_s), 2);
    const QJsonObject profiles = told.value(u"profiles"_s).toObject();
    EXPECT_EQ(profiles.value(u"harbour-light"_s).toObject().value(u"grants"_s), 1);
    EXPECT_EQ(profiles.value(u"mira-okafor"_s).toObject().value(u"grants"_s), 0);
    for (const QByteArray& secret :
         {given, refreshed, member(tokens, "access_token"), member(tokens, "refresh_token"),
          QByteArray(verifier), QByteArray("s%20t%2Fa%2Bte")}) {
        EXPECT_FALSE(answer.bytes.contains(secret)) << secret.toStdString();
    }
}

TEST_F(ControlOfTheAuthorizationServer, RevokesTheGrantsOfAllOrOfOneProfile)
{
    const RawAnswer first = signIn();
    const RawAnswer second = signIn();
    control("/revoke", R"({"profile":"harbour-light"})");
    EXPECT_EQ(widgetStatus(member(first, "access_token")), 401);
    EXPECT_EQ(member(refresh(member(first, "refresh_token")), "error"), "invalid_grant");
    EXPECT_EQ(widgetStatus(member(second, "access_token")), 200);
    EXPECT_EQ(oauth(control("/revoke", "{}")).value(u"grants"_s), 0);
    EXPECT_EQ(widgetStatus(member(second, "access_token")), 401);
    EXPECT_EQ(widget().status(), 200);
}

TEST_F(ControlOfTheAuthorizationServer, TakesCodesBackToo)
{
    const QByteArray given = code();
    service_->revokeAll();
    EXPECT_EQ(member(exchange(given), "error"), "invalid_grant");
}

TEST_F(ControlOfTheAuthorizationServer, ForgetsClients)
{
    const RawAnswer tokens = signIn();
    EXPECT_EQ(oauth(control("/forget-clients", "{}")).value(u"clients"_s), 0);
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 401);
    EXPECT_EQ(refresh(member(tokens, "refresh_token")).status(), 401);
    client_ = registerClient();
    EXPECT_EQ(signIn().status(), 200);
}

TEST_F(ControlOfTheAuthorizationServer, EndsTheTokensThatAreOutNow)
{
    const RawAnswer tokens = signIn();
    control("/expire", R"({"tokens":"access"})");
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 401);
    const RawAnswer refreshed = refresh(member(tokens, "refresh_token"));
    EXPECT_EQ(widgetStatus(member(refreshed, "access_token")), 200);
    control("/expire", R"({"tokens":"refresh"})");
    EXPECT_EQ(widgetStatus(member(refreshed, "access_token")), 200);
    EXPECT_EQ(member(refresh(member(refreshed, "refresh_token")), "error"), "invalid_grant");
}

TEST_F(ControlOfTheAuthorizationServer, SetsTheLifetimesOfWhatComes)
{
    const RawAnswer before = signIn();
    control("/lifetimes", R"({"access":5,"code":2})");
    const RawAnswer after = signIn();
    EXPECT_EQ(test::jsonOf(after).value(u"expires_in"_s), 5);
    now_ += 5s;
    EXPECT_EQ(widgetStatus(member(before, "access_token")), 200);
    EXPECT_EQ(widgetStatus(member(after, "access_token")), 401);
    EXPECT_EQ(oauth(state()).value(u"lifetimes"_s).toObject(),
              (QJsonObject{{u"access"_s, 5}, {u"refresh"_s, 2'592'000}, {u"code"_s, 2}}));
}

TEST_F(ControlOfTheAuthorizationServer, TellsAndEndsFaults)
{
    control("/fault", R"({"kind":"wrong-iss"})");
    const QJsonObject told = control("/fault", R"({"kind":"invalid-grant","times":3})");
    EXPECT_EQ(oauth(told).value(u"faults"_s),
              (QJsonArray{QJsonObject{{u"kind"_s, u"wrong-iss"_s}},
                          QJsonObject{{u"kind"_s, u"invalid-grant"_s}, {u"times"_s, 3}}}));
    EXPECT_EQ(oauth(control("/fault", R"({"kind":"none"})")).value(u"faults"_s), QJsonArray());
}

TEST_F(ControlOfTheAuthorizationServer, KnowsEveryFaultByName)
{
    for (const std::string_view name : oauthFaultNames) {
        fault(QByteArray(name.data(), static_cast<qsizetype>(name.size())));
    }
    EXPECT_EQ(oauth(state()).value(u"faults"_s).toArray().size(), 25);
}

TEST_F(ControlOfTheAuthorizationServer, GoesBackToTheBeginningButKeepsWhoIsSignedIn)
{
    const RawAnswer tokens = signIn();
    control("/fault", R"({"kind":"wrong-iss"})");
    control("/consent", R"({"auto":"deny"})");
    control("/lifetimes", R"({"access":5})");
    const QJsonObject told = oauth(control("/reset", {}));
    EXPECT_EQ(told.value(u"faults"_s), QJsonArray());
    EXPECT_EQ(told.value(u"consent"_s), (QJsonObject{{u"auto"_s, u"allow"_s}}));
    EXPECT_EQ(told.value(u"lifetimes"_s).toObject().value(u"access"_s), 3600);
    EXPECT_EQ(widgetStatus(member(tokens, "access_token")), 200);
}

TEST_F(ControlOfTheAuthorizationServer, RefusesWhatItDoesNotUnderstandWithASentence)
{
    EXPECT_EQ(complaintAbout("/fault", R"({"kind":"nap"})"), R"("nap" is no kind of fault.)");
    EXPECT_EQ(complaintAbout("/fault", R"({"kind":"none","times":2})"), R"("none" is no kind of fault.)");
    EXPECT_EQ(complaintAbout("/fault", R"({"kind":"wrong-iss","times":0})"),
              R"("times" must be a whole number from 1 to 1000000.)");
    EXPECT_EQ(complaintAbout("/consent", "{}"), R"("auto" must be "allow", "deny" or "off".)");
    EXPECT_EQ(complaintAbout("/consent", R"({"auto":"allow","profile":"x"})"), R"(There is no profile "x".)");
    EXPECT_EQ(complaintAbout("/lifetimes", R"({"access":-1})"),
              R"("access" must be a whole number from 0 to 316224000.)");
    EXPECT_EQ(complaintAbout("/lifetimes", R"({"token":1})"), R"("token" is not known here.)");
    EXPECT_EQ(complaintAbout("/revoke", R"({"profile":"x"})"), R"(There is no profile "x".)");
    EXPECT_EQ(complaintAbout("/expire", "{}"), R"("tokens" must be "access" or "refresh".)");
    EXPECT_EQ(complaintAbout("/forget-clients", R"({"all":true})"), R"("all" is not known here.)");
}

TEST_F(ControlOfTheAuthorizationServer, RefusesToStartWithAProfileThatIsNotThere)
{
    ServiceOptions options;
    options.autoConsent = true;
    options.autoConsentProfile = "nobody";
    LocalService service(options, [this] { return now_; }, seededRandomBytes(1));
    const auto started = service.start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), u"there is no profile \"nobody\""_s);
}

} // namespace
} // namespace roost::local
