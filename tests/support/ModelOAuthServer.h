#pragma once

#include "model/Clock.h"
#include "service/HttpSession.h"
#include "service/TokenSet.h"
#include "tests/support/ShuffledTurns.h"

#include <QCoro/QCoroTask>
#include <QUrl>

#include <cstddef>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace roost::test {

/// An authorization server as careful as they come, in memory: each refresh token serves once, and one that
/// comes a second time ends its whole grant. The n-th pair of tokens of grant g is "access-g-n" and
/// "refresh-g-n". Suspends before a request arrives and before its answer does.
class ModelOAuthServer {
public:
    /// What becomes of token requests that arrive from now on; except with `none` they use nothing up.
    enum class Trouble { none, unreachable, status500, malformed, invalidClient };

    static constexpr std::chrono::seconds lifetime{300};

    ModelOAuthServer(ShuffledTurns& turns, Clock now);

    static QUrl baseURL();
    /// The client that every grant is made for. Whoever registers gets another id.
    static constexpr const char* clientID = "client";
    /// Its key in the secret store.
    static std::string clientKey();

    Trouble trouble = Trouble::none;

    /// The first tokens of a new grant.
    TokenSet signIn();

    /// The newest grant ends.
    void revoke();

    bool isRevoked(std::size_t grant) const { return grants_.at(grant).isRevoked; }
    /// The one refresh token of the grant that the server would take.
    std::string liveToken(std::size_t grant) const;
    /// The number of the newest grant.
    std::size_t newestGrant() const { return grants_.size() - 1; }

    /// Every refresh token that arrived, whatever was answered.
    const std::vector<std::string>& tokenRequests() const { return tokenRequests_; }
    std::size_t inFlight() const { return inFlight_; }
    /// How many token requests were in flight at a time.
    std::size_t mostInFlight() const { return mostInFlight_; }
    /// How often a token came a second time.
    std::size_t reuses() const { return reuses_; }

    QCoro::Task<HttpResult> answer(HttpRequest request, std::stop_token stop);

private:
    struct Grant {
        /// How often it was refreshed.
        std::size_t serial = 0;
        bool isRevoked = false;
    };

    TokenSet tokensOf(std::size_t grant) const;
    HttpResult document(const QString& path) const;
    HttpResult refreshed(const QByteArray& form);

    ShuffledTurns* turns_;
    Clock now_;
    std::vector<Grant> grants_;
    std::vector<std::string> tokenRequests_;
    std::size_t inFlight_ = 0;
    std::size_t mostInFlight_ = 0;
    std::size_t reuses_ = 0;
};

} // namespace roost::test
