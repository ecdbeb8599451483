#pragma once

#include "programs/roost-service/FormFields.h"
#include "programs/roost-service/ProofKey.h"
#include "tests/programs/roost-service/ServiceUnderTest.h"

#include <QJsonArray>

#include <utility>

namespace roost::local::test {

using Parameters = std::vector<std::pair<QByteArray, QByteArray>>;

/// Every value percent-encoded.
inline QByteArray encoded(const Parameters& parameters)
{
    QByteArray text;
    for (const auto& [name, value] : parameters) {
        text += (text.isEmpty() ? "" : "&") + name + '=' + value.toPercentEncoding();
    }
    return text;
}

/// `parameters` with those of `changes` in their place, or taken out where the new value is empty.
inline Parameters changed(Parameters parameters, const Parameters& changes)
{
    for (const auto& [name, value] : changes) {
        std::erase_if(parameters, [&](const auto& old) { return old.first == name; });
        if (!value.isEmpty()) {
            parameters.emplace_back(name, value);
        }
    }
    return parameters;
}

inline QJsonObject jsonOf(const RawAnswer& answer) { return QJsonDocument::fromJson(answer.body()).object(); }

/// The member of an answer's JSON object, as bytes; empty when it is absent.
inline QByteArray member(const RawAnswer& answer, const char* key)
{
    return jsonOf(answer).value(QLatin1StringView(key)).toString().toUtf8();
}

/// A service that decides at once, and a well-behaved client of it.
class OAuthUnderTest : public ServiceUnderTest {
protected:
    static constexpr const char* redirect = "briskenroost://oauth/callback";
    /// Of RFC 7636 appendix B.
    static constexpr const char* verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk";
    static constexpr const char* challenge = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM";

    void SetUp() override
    {
        start({.autoConsent = true});
        client_ = registerClient();
    }

    static QJsonObject registration()
    {
        return QJsonDocument::fromJson(R"({"client_name":"Test <client>",
            "redirect_uris":["briskenroost://oauth/callback"],"token_endpoint_auth_method":"none",
            "grant_types":["authorization_code","refresh_token"],"response_types":["code"],
            "scope":"metrics:read posts:read channels:read"})")
            .object();
    }

    RawAnswer registerWith(const QJsonObject& metadata)
    {
        return ask(service_->base(), "POST", "/oauth/register", "Content-Type: application/json\r\n",
                   QJsonDocument(metadata).toJson());
    }

    QByteArray registerClient() { return member(registerWith(registration()), "client_id"); }

    QByteArray resource() { return service_->base() + "/mcp"; }

    Parameters authorization()
    {
        return {{"response_type", "code"},         {"client_id", client_},
                {"redirect_uri", redirect},        {"code_challenge", challenge},
                {"code_challenge_method", "S256"}, {"state", "s t/a+te"},
                {"scope", "metrics:read"},         {"resource", resource()}};
    }

    RawAnswer authorize(const Parameters& changes = {})
    {
        return get("/oauth/authorize?" + encoded(changed(authorization(), changes)));
    }

    /// What comes back to the client with a redirect.
    static FormFields returned(const RawAnswer& answer)
    {
        EXPECT_EQ(answer.status(), 303) << answer.bytes.toStdString();
        const QByteArray location = answer.header("Location").value_or(QByteArray());
        return FormFields::parse(location.mid(location.indexOf('?') + 1)).value_or(FormFields());
    }

    QByteArray code(const Parameters& changes = {})
    {
        return returned(authorize(changes)).value("code").value_or(QByteArray());
    }

    RawAnswer post(const QByteArray& target, const QByteArray& body, const QByteArray& lines = {})
    {
        return ask(service_->base(), "POST", target,
                   "Content-Type: application/x-www-form-urlencoded\r\n" + lines, body);
    }

    Parameters exchangeOf(const QByteArray& code)
    {
        return {{"grant_type", "authorization_code"}, {"code", code},
                {"redirect_uri", redirect},           {"client_id", client_},
                {"code_verifier", verifier},          {"resource", resource()}};
    }

    Parameters refreshOf(const QByteArray& token)
    {
        return {{"grant_type", "refresh_token"},
                {"refresh_token", token},
                {"client_id", client_},
                {"resource", resource()}};
    }

    RawAnswer token(const Parameters& form) { return post("/oauth/token", encoded(form)); }
    RawAnswer exchange(const QByteArray& code, const Parameters& changes = {})
    {
        return token(changed(exchangeOf(code), changes));
    }
    RawAnswer refresh(const QByteArray& refreshToken, const Parameters& changes = {})
    {
        return token(changed(refreshOf(refreshToken), changes));
    }

    /// Signs in; the answer with the tokens.
    RawAnswer signIn(const Parameters& changes = {}) { return exchange(code(changes)); }

    /// The status that the widget endpoint answers to an access token.
    int widgetStatus(const QByteArray& accessToken)
    {
        return get("/api/roost/v1/widget", "Authorization: Bearer " + accessToken + "\r\n").status();
    }

    void fault(const QByteArray& kind) { control("/fault", R"({"kind":")" + kind + R"("})"); }

    QByteArray client_;
};

} // namespace roost::local::test
