#include "programs/roost-service/AuthorizationServer.h"

#include <gtest/gtest.h>

#include <random>

namespace roost::local {
namespace {

using namespace std::chrono_literals;

// Of RFC 7636 appendix B.
constexpr const char* verifier = "dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk";
constexpr const char* challenge = "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM";
constexpr const char* redirect = "briskenroost://oauth/callback";
constexpr const char* resource = "http://127.0.0.1:1/mcp";

/// What a grant must be, kept beside the server in the simplest way.
struct ModelGrant {
    std::string profile;
    QByteArray code;
    bool isExchanged = false;
    bool isRevoked = false;
    /// The last one is the live one.
    std::vector<QByteArray> refreshTokens;
    std::vector<QByteArray> accessTokens;
};

/// Does what clients, thieves and the operator do, at random, and holds the server against the model.
class Interleaving {
public:
    explicit Interleaving(std::uint64_t seed)
        : engine_(seed),
          server_([this] { return now_; }, seededRandomBytes(seed), {}),
          client_(server_.registerClient({"client", {redirect}, allScopes(), true}))
    {
    }

    void step()
    {
        switch (engine_() % 10) {
        case 0:
        case 1:
            consent();
            break;
        case 2:
        case 3:
            exchangeSome();
            break;
        case 4:
        case 5:
        case 6:
            refreshSome(Rotation::newToken, false);
            break;
        case 7:
            refreshSome(Rotation::keepOld, false);
            break;
        case 8:
            refreshSome(Rotation::newToken, true);
            break;
        default:
            operate();
            break;
        }
    }

    void expectLawful() const
    {
        int live = 0;
        for (const ModelGrant& grant : grants_) {
            int liveTokens = 0;
            for (const QByteArray& token : grant.refreshTokens) {
                const bool shouldLive = !grant.isRevoked && token == grant.refreshTokens.back();
                ASSERT_EQ(server_.isLive(token), shouldLive);
                liveTokens += shouldLive ? 1 : 0;
            }
            ASSERT_LE(liveTokens, 1);
            for (const QByteArray& token : grant.accessTokens) {
                const auto allowed = server_.allowedBy(token);
                ASSERT_EQ(allowed.has_value(), !grant.isRevoked);
                ASSERT_TRUE(!allowed || allowed->profile == grant.profile);
            }
            live += !grant.isRevoked && grant.isExchanged ? 1 : 0;
        }
        ASSERT_EQ(server_.grantCount(), live);
    }

    int reuses() const { return reuses_; }

private:
    ModelGrant* some() { return grants_.empty() ? nullptr : &grants_[engine_() % grants_.size()]; }

    void consent()
    {
        const std::string profile = "p" + std::to_string(engine_() % 3);
        grants_.push_back(
            {profile,
             server_.issueCode({client_, redirect, challenge, {"metrics:read"}, resource}, profile)});
    }

    void exchangeSome()
    {
        ModelGrant* grant = some();
        if (grant == nullptr) {
            return;
        }
        const auto tokens = server_.exchange({client_, grant->code, redirect, verifier, {resource}});
        ASSERT_EQ(tokens.has_value(), !grant->isExchanged && !grant->isRevoked);
        if (tokens) {
            take(*grant, *tokens);
            grant->isExchanged = true;
        } else {
            grant->isRevoked = grant->isRevoked || grant->isExchanged;
        }
    }

    void refreshSome(Rotation rotation, bool prefersOld)
    {
        ModelGrant* grant = some();
        if (grant == nullptr || grant->refreshTokens.empty()) {
            return;
        }
        const std::vector<QByteArray>& all = grant->refreshTokens;
        const QByteArray token = prefersOld ? all[engine_() % all.size()] : all.back();
        const bool isLast = token == all.back();
        const auto tokens = server_.refresh({client_, token, std::nullopt, {}}, rotation);
        ASSERT_EQ(tokens.has_value(), isLast && !grant->isRevoked);
        if (tokens) {
            ASSERT_EQ(tokens->refreshToken.has_value(), rotation == Rotation::newToken);
            take(*grant, *tokens);
        } else if (!isLast) {
            ASSERT_EQ(tokens.error(), TokenRefusal::refreshTokenReused);
            grant->isRevoked = true;
            ++reuses_;
        }
    }

    void operate()
    {
        if (engine_() % 4 == 0) {
            server_.revokeAll();
            for (ModelGrant& grant : grants_) {
                grant.isRevoked = true;
            }
        } else if (const ModelGrant* chosen = some()) {
            const std::string profile = chosen->profile;
            server_.revoke(profile);
            for (ModelGrant& grant : grants_) {
                grant.isRevoked = grant.isRevoked || grant.profile == profile;
            }
        }
    }

    static void take(ModelGrant& grant, const IssuedTokens& tokens)
    {
        grant.accessTokens.push_back(tokens.accessToken);
        if (tokens.refreshToken) {
            grant.refreshTokens.push_back(*tokens.refreshToken);
        }
    }

    std::mt19937_64 engine_;
    Date now_{1'750'000'000s};
    AuthorizationServer server_;
    QByteArray client_;
    std::vector<ModelGrant> grants_;
    int reuses_ = 0;
};

TEST(AuthorizationServer, KeepsOneLiveRefreshTokenAtMostAndNothingOfARevokedGrant)
{
    int reuses = 0;
    for (std::uint64_t seed = 0; seed < 400; ++seed) {
        Interleaving interleaving(seed);
        for (int step = 0; step < 60; ++step) {
            interleaving.step();
            interleaving.expectLawful();
            if (testing::Test::HasFatalFailure()) {
                FAIL() << "seed " << seed << ", step " << step;
            }
        }
        reuses += interleaving.reuses();
    }
    EXPECT_GT(reuses, 100);
}

TEST(AuthorizationServer, KnowsWhoseACodeOrTokenWas)
{
    AuthorizationServer server([] { return Date{}; }, seededRandomBytes(1), {});
    const QByteArray client = server.registerClient({"client", {redirect}, allScopes(), true});
    const QByteArray code = server.issueCode({client, redirect, challenge, allScopes(), resource}, "a");
    const auto tokens = server.exchange({client, code, redirect, verifier, {}});
    ASSERT_TRUE(tokens && tokens->refreshToken);
    server.revokeAll();
    EXPECT_EQ(server.ownerOf(code)->profile, "a");
    EXPECT_EQ(server.ownerOf(*tokens->refreshToken)->grant, server.ownerOf(code)->grant);
    EXPECT_FALSE(server.ownerOf(tokens->accessToken));
    EXPECT_FALSE(server.ownerOf({}));
}

} // namespace
} // namespace roost::local
