#include "programs/roost-service/AuthorizeRoutes.h"

#include "programs/roost-service/AuthorizePage.h"
#include "programs/roost-service/FormFields.h"
#include "programs/roost-service/OAuthAnswer.h"
#include "programs/roost-service/OAuthPaths.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* foreignIssuer = "https://issuer.example";

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

AuthorizeRoutes::AuthorizeRoutes(ServiceState& state, RandomBytes random, QByteArray issuer)
    : state_(state),
      issuer_(std::move(issuer)),
      tickets_(state.clock, std::move(random))
{
}

Answer AuthorizeRoutes::answer(const Request& request)
{
    if (request.method == "GET") {
        return asked(request);
    }
    return request.method == "POST" ? decided(request) : onlyMethod("GET, POST");
}

Answer AuthorizeRoutes::asked(const Request& request)
{
    const auto ask = [this](const AuthorizeRequest& read) {
        switch (state_.consent.answer) {
        case Consent::Answer::allow:
            return allowed(read, profileToAllow());
        case Consent::Answer::deny:
            return denied(read);
        case Consent::Answer::byUser:
            break;
        }
        std::vector<PageProfile> profiles;
        for (const LivingProfile& profile : state_.profiles) {
            const QString id = QString::fromStdString(profile.id());
            profiles.push_back(
                {id, QString::fromStdString(profile.name()), u"/roost/avatars/%1.svg"_s.arg(id)});
        }
        return consentPage(read, profiles, tickets_.issue(read));
    };
    return std::visit(
        Overloaded{ask, [](const UntrustedRequest& untrusted) { return refusalPage(untrusted.sentence); },
                   [this](const FaultyRequest& faulty) {
                       return sentBack(faulty.back,
                                       {{"error", faulty.error}, {"error_description", faulty.description}});
                   }},
        readAuthorizeRequest(request.query, state_.authorization, issuer_ + protectedResource));
}

Answer AuthorizeRoutes::decided(const Request& request)
{
    const auto form = isContentType(request, "application/x-www-form-urlencoded")
                          ? FormFields::parse(request.body)
                          : std::nullopt;
    if (isFromElsewhere(request) || !form || form->repeatsAny()) {
        return refusalPage(u"The decision did not come from the page that asked for it."_s);
    }
    const QByteArray ticket = form->value("ticket").value_or(QByteArray());
    const std::optional<AuthorizeRequest> pending = tickets_.find(ticket);
    if (!pending) {
        return refusalPage(u"This page has been answered already, or it was open for too long."_s);
    }
    const auto decision = form->value("decision");
    const std::string profile = form->value("profile").value_or(QByteArray()).toStdString();
    if (decision == "deny") {
        tickets_.spend(ticket);
        return denied(*pending);
    }
    if (decision != "allow" || state_.profile(profile) == nullptr) {
        return refusalPage(u"That is no decision about one of the profiles."_s);
    }
    tickets_.spend(ticket);
    if (state_.authorization.client(pending->terms.client) == nullptr) {
        return refusalPage(u"The application that sent you here is not known any more."_s);
    }
    return allowed(*pending, profile);
}

Answer AuthorizeRoutes::allowed(const AuthorizeRequest& request, const std::string& profile)
{
    return sentBack(request.back, {{"code", state_.authorization.issueCode(request.terms, profile)}});
}

Answer AuthorizeRoutes::denied(const AuthorizeRequest& request)
{
    return sentBack(request.back, {{"error", "access_denied"}});
}

Answer AuthorizeRoutes::sentBack(const ReturnAddress& back, HttpHeaders parameters)
{
    if (back.state && !state_.faults.meets(OAuthFault::stateMissing)) {
        const bool isAltered = state_.faults.meets(OAuthFault::stateAltered);
        parameters.emplace_back("state", isAltered ? *back.state + "-altered" : *back.state);
    }
    // RFC 9207 §2: errors carry it too.
    if (!state_.faults.meets(OAuthFault::issNotSent)) {
        parameters.emplace_back("iss", state_.faults.meets(OAuthFault::wrongIss) ? QByteArray(foreignIssuer)
                                                                                 : issuer_);
    }
    QByteArray address = back.redirectUri;
    for (const auto& [name, value] : parameters) {
        address += (address.contains('?') ? '&' : '?') + name + '=' + value.toPercentEncoding();
    }
    // RFC 9700 §4.12: 303 rather than 307, so that the form goes no further.
    Answer answer = textAnswer({}, "text/plain", 303);
    answer.headers.emplace_back("Location", address);
    answer.headers.emplace_back("Referrer-Policy", "no-referrer");
    return answer;
}

bool AuthorizeRoutes::isFromElsewhere(const Request& request) const
{
    const std::vector<QByteArray> origins = request.headerValues("Origin");
    const QByteArray host = "http://" + request.header("Host").value_or(QByteArray());
    return std::ranges::any_of(origins,
                               [&](const QByteArray& origin) { return origin != issuer_ && origin != host; });
}

std::string AuthorizeRoutes::profileToAllow() const
{
    if (state_.consent.profile) {
        return *state_.consent.profile;
    }
    const auto found = std::ranges::find_if(state_.profiles, [this](const LivingProfile& profile) {
        return state_.authorization.grantCount(profile.id()) == 0;
    });
    return (found == state_.profiles.end() ? state_.profiles.front() : *found).id();
}

} // namespace roost::local
