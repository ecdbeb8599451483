#include "tests/programs/roost-service/OAuthUnderTest.h"

#include <gtest/gtest.h>

#include <QJsonArray>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using test::ask;
using test::member;

class RegistrationOfClients : public test::OAuthUnderTest {
protected:
    std::string errorWith(const QString& key, const QJsonValue& value)
    {
        QJsonObject metadata = registration();
        metadata.insert(key, value);
        const test::RawAnswer answer = registerWith(metadata);
        EXPECT_EQ(answer.status(), 400);
        return member(answer, "error").toStdString();
    }
};

TEST_F(RegistrationOfClients, GivesAnIdAndTellsWhatWasRegistered)
{
    const test::RawAnswer answer = registerWith(registration());
    EXPECT_EQ(answer.status(), 201);
    EXPECT_EQ(answer.header("Cache-Control"), "no-store");
    QJsonObject told = test::jsonOf(answer);
    EXPECT_FALSE(told.take(u"client_id"_s).toString().isEmpty());
    EXPECT_EQ(told.take(u"client_id_issued_at"_s), 1'750'000'000);
    EXPECT_EQ(told, registration());
}

TEST_F(RegistrationOfClients, GivesEveryClientAnIdOfItsOwn) { EXPECT_NE(registerClient(), registerClient()); }

TEST_F(RegistrationOfClients, TakesTheDefaultsOfTheStandardForWhatIsLeftOut)
{
    const test::RawAnswer answer =
        registerWith({{u"redirect_uris"_s, QJsonArray{QLatin1StringView(redirect)}},
                      {u"token_endpoint_auth_method"_s, u"none"_s}});
    ASSERT_EQ(answer.status(), 201);
    EXPECT_EQ(test::jsonOf(answer).value(u"grant_types"_s), QJsonArray{u"authorization_code"_s});
    EXPECT_EQ(test::jsonOf(answer).value(u"response_types"_s), QJsonArray{u"code"_s});
    client_ = member(answer, "client_id");
    const test::RawAnswer tokens = signIn();
    EXPECT_EQ(tokens.status(), 200);
    EXPECT_FALSE(test::jsonOf(tokens).contains(u"refresh_token"_s));
    const test::RawAnswer refused = refresh("probe");
    EXPECT_EQ(refused.status(), 400);
    EXPECT_EQ(member(refused, "error"), "unauthorized_client");
}

TEST_F(RegistrationOfClients, RefusesAddressesThatOthersCouldOwn)
{
    for (const char* uri : {"https://roost.example/back", "http://roost.example/back", "javascript:alert(1)",
                            "briskenroost://oauth/callback#x"}) {
        EXPECT_EQ(
            errorWith(u"redirect_uris"_s, QJsonArray{QLatin1StringView(redirect), QLatin1StringView(uri)}),
            "invalid_redirect_uri")
            << uri;
    }
    EXPECT_EQ(errorWith(u"redirect_uris"_s, QJsonArray()), "invalid_redirect_uri");
    EXPECT_EQ(errorWith(u"redirect_uris"_s, QLatin1StringView(redirect)), "invalid_redirect_uri");
    EXPECT_EQ(errorWith(u"redirect_uris"_s, QJsonArray{5}), "invalid_redirect_uri");
    EXPECT_EQ(errorWith(u"redirect_uris"_s, QJsonValue(QJsonValue::Undefined)), "invalid_redirect_uri");
}

TEST_F(RegistrationOfClients, RefusesWhatTheServerCannotDo)
{
    const QString error = u"invalid_client_metadata"_s;
    const auto expectRefused = [&](const QString& key, const QJsonValue& value) {
        EXPECT_EQ(errorWith(key, value), error.toStdString()) << key.toStdString();
    };
    expectRefused(u"token_endpoint_auth_method"_s, u"client_secret_basic"_s);
    expectRefused(u"token_endpoint_auth_method"_s, QJsonValue(QJsonValue::Undefined));
    expectRefused(u"grant_types"_s, QJsonArray{u"authorization_code"_s, u"implicit"_s});
    expectRefused(u"grant_types"_s, QJsonArray{u"refresh_token"_s});
    expectRefused(u"grant_types"_s, u"authorization_code"_s);
    expectRefused(u"response_types"_s, QJsonArray{u"token"_s});
    expectRefused(u"response_types"_s, QJsonArray());
    expectRefused(u"scope"_s, u"metrics:read posts:write"_s);
    expectRefused(u"scope"_s, 5);
    expectRefused(u"client_name"_s, 5);
    expectRefused(u"client_name"_s, QString(101, u'x'));
    expectRefused(u"client_name"_s, u"two\nlines"_s);
    EXPECT_EQ(state().value(u"oauth"_s).toObject().value(u"clients"_s), 1);
}

TEST_F(RegistrationOfClients, WantsAJsonObjectThatIsCalledOne)
{
    const QByteArray body = QJsonDocument(registration()).toJson();
    const auto status = [&](const QByteArray& type, const QByteArray& text) {
        return ask(service_->base(), "POST", "/oauth/register", "Content-Type: " + type + "\r\n", text)
            .status();
    };
    EXPECT_EQ(status("Application/JSON; charset=utf-8", body), 201);
    EXPECT_EQ(status("text/plain", body), 400);
    EXPECT_EQ(status("application/jsonp", body), 400);
    EXPECT_EQ(status("application/json", "[]"), 400);
    EXPECT_EQ(status("application/json", "nonsense"), 400);
    EXPECT_EQ(get("/oauth/register").status(), 405);
}

TEST_F(RegistrationOfClients, CanAnswerInWaysThatClientsMustStand)
{
    fault("registration-200");
    EXPECT_EQ(registerWith(registration()).status(), 200);
    fault("empty-client-id");
    EXPECT_EQ(test::jsonOf(registerWith(registration())).value(u"client_id"_s), u""_s);
}

TEST_F(RegistrationOfClients, MeetsTheScenariosOfItsEndpoint)
{
    control("/scenario", R"({"endpoint":"register","kind":"drop","processed":true,"times":1})");
    EXPECT_EQ(registerWith(registration()).bytes, "");
    EXPECT_EQ(state().value(u"oauth"_s).toObject().value(u"clients"_s), 2);
    EXPECT_EQ(registerWith(registration()).status(), 201);
}

} // namespace
} // namespace roost::local
