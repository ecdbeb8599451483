#pragma once

#include "model/RoostSnapshot.h"
#include "service/HttpSession.h"
#include "service/InProcessHttpSession.h"
#include "service/WebAuthenticating.h"
#include "tests/support/VirtualTime.h"

#include <QUrl>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// A whole Roost in memory, with its authorization server and its profiles: careful as they come, each
/// refresh token serves once, and one that comes a second time ends its grant. Every answer takes as long as
/// a test says.
class ModelRoost {
public:
    static constexpr std::chrono::seconds tokenLifetime{3600};

    explicit ModelRoost(VirtualTime& time);

    static QUrl baseURL() { return QUrl{QStringLiteral("https://roost.test")}; }

    HttpSession& session() { return session_; }

    /// The numbers of each profile. A profile that is not here cannot be read.
    std::map<std::string, RoostSnapshot> profiles;
    /// Called when an answer of the widget endpoint is made, to let the numbers live on.
    std::function<void(RoostSnapshot&)> onRead = [](RoostSnapshot&) {};

    /// What every request meets from now on; nothing for a service that works. The token endpoint too.
    std::function<std::optional<HttpResult>(const HttpRequest&)> trouble;
    /// Called with every answer when it is made; what comes of it on its way back.
    std::function<HttpResult(const HttpRequest&, HttpResult)> onAnswer =
        [](const HttpRequest&, HttpResult result) { return result; };
    /// How long the next answer takes.
    std::function<std::chrono::milliseconds()> latency = [] { return std::chrono::milliseconds{0}; };

    /// Ends every grant of the profile: the user did so in the web app.
    void revoke(const std::string& profileId);
    /// The access tokens of the profile are worth nothing from now on; its refresh tokens are.
    void expire(const std::string& profileId);
    /// Whether a grant of the profile is alive whose refresh token is `token`.
    bool isAlive(const std::string& token) const;
    /// Whether `token` was good once and has been replaced by another one since, whose grant is alive.
    bool isUsedUp(const std::string& token) const;
    /// Whose tokens a request carries, good ones or not; nothing when it carries none.
    std::optional<std::string> profileOf(const HttpRequest& request) const;

    /// A fresh pair of tokens for the profile, as from a sign-in; the refresh token.
    std::string grant(const std::string& profileId);

    /// The paths of the requests so far, those for numbers with the profile: "widget p1".
    const std::vector<std::string>& requests() const { return requests_; }
    std::size_t count(const std::string& request) const;
    void forgetRequests() { requests_.clear(); }
    /// The refresh tokens that came a second time, and so ended their grants.
    const std::vector<std::string>& reused() const { return reused_; }
    std::size_t reuses() const { return reused_.size(); }

    /// A browser whose user signs in to `profileOfNextSignIn`, or says no.
    class Browser final : public WebAuthenticating {
    public:
        explicit Browser(ModelRoost& roost) : roost_(&roost) {}

        QCoro::Task<std::expected<std::string, RoostAuthError>>
        authenticate(WebURL url, QString callbackScheme, std::stop_token stop) override;

        /// Nothing: the user closes the browser.
        std::optional<std::string> profileOfNextSignIn;
        /// Added to the state that comes back.
        std::string wrongState;
        /// How long the user takes.
        std::chrono::milliseconds hesitation{0};
        int opened = 0;

    private:
        ModelRoost* roost_;
    };

private:
    struct Grant {
        std::string profileId;
        int serial = 0;
        bool isRevoked = false;
    };

    QCoro::Task<HttpResult> answer(HttpRequest request, std::stop_token stop);
    HttpResult answerNow(const HttpRequest& request);
    HttpResult token(const HttpRequest& request);
    HttpResult widget(const HttpRequest& request);
    HttpResult tokensOf(std::size_t grant);

    VirtualTime* time_;
    std::vector<Grant> grants_;
    /// By access token, and until when: the service has a clock of its own, which nobody sets.
    std::map<std::string, std::pair<std::size_t, std::chrono::milliseconds>> accessTokens_;
    std::vector<std::string> requests_;
    std::vector<std::string> reused_;
    InProcessHttpSession session_;
};

/// An answer.
HttpResult response(int status, const std::string& body = {});

/// No answer: the network is gone.
HttpResult noNetwork();

/// Plausible numbers of a profile at `now`: a best post, a queue, followers.
RoostSnapshot numbersOf(const std::string& profileId, Date now);

} // namespace roost::test
