#include "programs/roost-service/Redaction.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

namespace roost::local {
namespace {

TEST(Redaction, KeepsAQueryByteForByteButForSecrets)
{
    EXPECT_EQ(withoutSecrets("tenant=a%7Eb&code=s3cret&x=+&state=abc&&flag&code_challenge=pub"),
              QByteArray("tenant=a%7Eb&code=…&x=+&state=…&&flag&code_challenge=pub"));
    EXPECT_EQ(withoutSecrets(""), "");
}

TEST(Redaction, HidesTheSecretsOfAFormAndOfHeaders)
{
    Request request;
    request.method = "POST";
    request.headers = {{"Authorization", "Bearer canary"},
                       {"Cookie", "canary=1"},
                       {"Content-Type", "application/x-www-form-urlencoded"}};
    request.body = "client_id=c&code_verifier=canary&refresh_token=canary&ticket=canary&token=canary";
    request.query = "access_token=canary";
    const QByteArray told = QJsonDocument(describe(request)).toJson();
    EXPECT_FALSE(told.contains("canary=")) << told.toStdString();
    EXPECT_FALSE(told.contains("canary")) << told.toStdString();
    EXPECT_TRUE(told.contains("client_id=c&code_verifier=…"));
}

TEST(Redaction, HidesASecretInEverySpellingAndPlace)
{
    EXPECT_EQ(withoutSecrets("c%6Fde=canary&x=1"), QByteArray("c%6Fde=…&x=1"));
    Request request;
    request.headers = {{"Referer", "http://127.0.0.1/oauth/authorize?state=canary"},
                       {"Content-Type", "application/json"}};
    request.body = R"({"refresh_token":"canary"})";
    EXPECT_FALSE(QJsonDocument(describe(request)).toJson().contains("canary"));
}

TEST(Redaction, TellsAJsonBodyWhole)
{
    Request request;
    request.headers = {{"content-type", "application/json"}};
    request.body = R"({"client_name":"x"})";
    EXPECT_EQ(describe(request).value(QStringLiteral("body")).toString().toUtf8(), request.body);
}

} // namespace
} // namespace roost::local
