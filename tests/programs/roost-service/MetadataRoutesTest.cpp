#include "tests/programs/roost-service/OAuthUnderTest.h"

#include <gtest/gtest.h>

#include <QJsonArray>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using test::ask;

class MetadataOfTheService : public test::OAuthUnderTest {
protected:
    QJsonObject ofServer() { return test::jsonOf(get("/.well-known/oauth-authorization-server")); }
    QString base() { return QString::fromLatin1(service_->base()); }
};

TEST_F(MetadataOfTheService, NamesTheOriginAsIssuerAndItsEndpoints)
{
    const QJsonObject document = ofServer();
    EXPECT_EQ(document.value(u"issuer"_s), base());
    EXPECT_EQ(document.value(u"authorization_endpoint"_s), base() + u"/oauth/authorize"_s);
    EXPECT_EQ(document.value(u"token_endpoint"_s), base() + u"/oauth/token"_s);
    EXPECT_EQ(document.value(u"registration_endpoint"_s), base() + u"/oauth/register"_s);
    EXPECT_EQ(get("/.well-known/oauth-authorization-server").header("Content-Type"), "application/json");
}

TEST_F(MetadataOfTheService, TellsWhatTheServerCanDo)
{
    const QJsonObject document = ofServer();
    EXPECT_EQ(document.value(u"code_challenge_methods_supported"_s), QJsonArray{u"S256"_s});
    EXPECT_EQ(document.value(u"authorization_response_iss_parameter_supported"_s), true);
    EXPECT_EQ(document.value(u"grant_types_supported"_s),
              (QJsonArray{u"authorization_code"_s, u"refresh_token"_s}));
    EXPECT_EQ(document.value(u"response_types_supported"_s), QJsonArray{u"code"_s});
    EXPECT_EQ(document.value(u"token_endpoint_auth_methods_supported"_s), QJsonArray{u"none"_s});
    EXPECT_EQ(document.value(u"scopes_supported"_s),
              (QJsonArray{u"metrics:read"_s, u"posts:read"_s, u"channels:read"_s}));
}

TEST_F(MetadataOfTheService, NamesTheResourceAndWhoseTokensItTakes)
{
    const QJsonObject document = test::jsonOf(get("/.well-known/oauth-protected-resource"));
    EXPECT_EQ(document.value(u"resource"_s), base() + u"/mcp"_s);
    EXPECT_EQ(document.value(u"authorization_servers"_s), QJsonArray{base()});
    EXPECT_EQ(document.value(u"scopes_supported"_s).toArray().size(), 3);
}

TEST_F(MetadataOfTheService, IsThereToBeReadAlone)
{
    for (const char* path :
         {"/.well-known/oauth-authorization-server", "/.well-known/oauth-protected-resource"}) {
        const test::RawAnswer answer = ask(service_->base(), "POST", path, {}, "x");
        EXPECT_EQ(answer.status(), 405);
        EXPECT_EQ(answer.header("Allow"), "GET");
    }
}

TEST_F(MetadataOfTheService, CanLackTheProofKeysThatClientsNeed)
{
    const QString key = u"code_challenge_methods_supported"_s;
    fault("no-s256");
    EXPECT_FALSE(ofServer().value(key).toArray().contains(u"S256"_s));
    EXPECT_FALSE(ofServer().value(key).toArray().isEmpty());
    fault("plain-only");
    EXPECT_EQ(ofServer().value(key), QJsonArray{u"plain"_s});
    fault("no-challenge-methods");
    EXPECT_FALSE(ofServer().contains(key));
    fault("none");
    EXPECT_EQ(ofServer().value(key), QJsonArray{u"S256"_s});
}

TEST_F(MetadataOfTheService, CanNameAddressesThatNobodyShouldTrust)
{
    fault("foreign-issuer");
    EXPECT_EQ(ofServer().value(u"issuer"_s), u"https://issuer.example"_s);
    fault("none");
    for (const auto& [kind, key] :
         {std::pair{"insecure-issuer", u"issuer"_s},
          std::pair{"insecure-authorization-endpoint", u"authorization_endpoint"_s},
          std::pair{"insecure-token-endpoint", u"token_endpoint"_s},
          std::pair{"insecure-registration-endpoint", u"registration_endpoint"_s}}) {
        fault(kind);
        const QJsonObject document = ofServer();
        for (const QString& any :
             {u"issuer"_s, u"authorization_endpoint"_s, u"token_endpoint"_s, u"registration_endpoint"_s}) {
            EXPECT_EQ(document.value(any).toString().startsWith(u"http://192.0.2.1"_s), any == key)
                << kind << any.toStdString();
        }
        fault("none");
    }
}

TEST_F(MetadataOfTheService, CanHaveAQueryInItsAuthorizationEndpointThatIsTakenBack)
{
    fault("authorization-endpoint-query");
    const QByteArray endpoint = ofServer().value(u"authorization_endpoint"_s).toString().toLatin1();
    EXPECT_TRUE(endpoint.endsWith("/oauth/authorize?tenant=a%7Eb&audience=x%20y&flag"));
    const test::RawAnswer answer =
        get(endpoint.mid(service_->base().size()) + '&' + test::encoded(authorization()));
    EXPECT_TRUE(returned(answer).value("code"));
}

TEST_F(MetadataOfTheService, CanLackAnEndpointOrAPromise)
{
    fault("no-registration-endpoint");
    fault("iss-not-promised");
    const QJsonObject document = ofServer();
    EXPECT_FALSE(document.contains(u"registration_endpoint"_s));
    EXPECT_FALSE(document.contains(u"authorization_response_iss_parameter_supported"_s));
    EXPECT_EQ(returned(authorize()).value("iss"), service_->base());
}

TEST_F(MetadataOfTheService, CanBeSilentAboutTheResource)
{
    fault("resource-empty");
    const QJsonObject document = test::jsonOf(get("/.well-known/oauth-protected-resource"));
    EXPECT_EQ(document.value(u"resource"_s), u""_s);
    fault("resource-not-found");
    EXPECT_EQ(get("/.well-known/oauth-protected-resource").status(), 404);
}

} // namespace
} // namespace roost::local
