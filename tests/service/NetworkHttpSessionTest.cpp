#include "service/NetworkHttpSession.h"

#include "tests/support/Await.h"
#include "tests/support/Gzip.h"
#include "tests/support/LoopbackServer.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

using Close = LoopbackServer::Close;
using Flood = LoopbackServer::Flood;
using Hang = LoopbackServer::Hang;
using Send = LoopbackServer::Send;

constexpr HttpFailure tooLarge{HttpFailure::Kind::bodyTooLarge, -1103};
constexpr HttpFailure notHttp{HttpFailure::Kind::notHttp, 0};

HttpRequest get(const QUrl& url)
{
    HttpRequest request;
    request.url = url;
    return request;
}

HttpRequest post(const QUrl& url, const QByteArray& body)
{
    HttpRequest request = get(url);
    request.method = HttpRequest::Method::post;
    request.headers = {{"Content-Type", "application/x-www-form-urlencoded"}};
    request.body = body;
    return request;
}

class NetworkHttpSessionAnswers : public testing::Test {
protected:
    HttpResult send(HttpRequest request) { return await(session.send(std::move(request), {})); }

    std::string lastRequest() const { return server.requests().back().toStdString(); }

    LoopbackServer server;
    NetworkHttpSession session;
};

} // namespace

TEST_F(NetworkHttpSessionAnswers, GivesStatusHeadersAndBody)
{
    server.answer({Send{httpAnswer(203, "hello", "X-Kind: test\r\n")}});

    const HttpResult result = send(get(server.url()));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 203);
    EXPECT_THAT(result->headers, Contains(Pair("X-Kind", "test")));
    EXPECT_EQ(result->body, "hello");
}

TEST_F(NetworkHttpSessionAnswers, SendsAGetWithTheAddressAsItStandsAndNoBody)
{
    server.answer({Send{httpAnswer(200, "")}});
    HttpRequest request = get(server.url(QStringLiteral("/a%2Fb/c%20d?x=%2B+%7e&y=ü#fragment")));
    request.headers = {{"Accept", "application/json"}};
    request.body = "not with GET";

    ASSERT_TRUE(send(request));

    EXPECT_THAT(lastRequest(),
                AllOf(StartsWith("GET /a%2Fb/c%20d?x=%2B+~&y=%C3%BC HTTP/1.1\r\n"),
                      HasSubstr("\r\nHost: 127.0.0.1:" + std::to_string(server.port()) + "\r\n"),
                      HasSubstr("\r\nAccept: application/json\r\n"), Not(HasSubstr("Content-Length")),
                      EndsWith("\r\n\r\n")));
}

TEST_F(NetworkHttpSessionAnswers, SendsAPostWithItsBodyAndLength)
{
    server.answer({Send{httpAnswer(200, "")}});

    ASSERT_TRUE(send(post(server.url(QStringLiteral("/token")), "a=1&b=2")));
    EXPECT_THAT(lastRequest(),
                AllOf(StartsWith("POST /token HTTP/1.1\r\n"), HasSubstr("\r\nContent-Length: 7\r\n"),
                      HasSubstr("\r\nContent-Type: application/x-www-form-urlencoded\r\n"),
                      EndsWith("\r\n\r\na=1&b=2")));

    ASSERT_TRUE(send(post(server.url(), "")));
    EXPECT_THAT(lastRequest(), HasSubstr("\r\nContent-Length: 0\r\n"));
}

TEST_F(NetworkHttpSessionAnswers, GivesAnErrorStatusWithItsBodyAsAnAnswer)
{
    server.answer({Send{httpAnswer(400, R"({"error":"invalid_grant"})")}});

    const HttpResult result = send(post(server.url(), "x"));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);
    EXPECT_EQ(result->body, R"({"error":"invalid_grant"})");
}

TEST_F(NetworkHttpSessionAnswers, FollowsNoRedirect)
{
    LoopbackServer other;
    const QByteArray location = "Location: " + other.url(QStringLiteral("/stolen")).toEncoded() + "\r\n";
    for (const int status : {301, 302, 303, 307, 308}) {
        LoopbackServer redirecting;
        redirecting.answer({Send{httpAnswer(status, "", location)}});

        const HttpResult got = send(get(redirecting.url()));
        const HttpResult posted = send(post(redirecting.url(), "refresh_token=canary"));

        EXPECT_TRUE(got && got->status == status) << status;
        EXPECT_TRUE(posted && posted->status == status) << status;
        EXPECT_THAT(redirecting.requests(), SizeIs(2)) << status;
    }
    EXPECT_EQ(other.connections(), 0);
}

TEST_F(NetworkHttpSessionAnswers, SendsNoCookieBack)
{
    server.answer({Send{httpAnswer(200, "", "Set-Cookie: session=1; Path=/\r\n")}});

    ASSERT_TRUE(send(get(server.url())));
    ASSERT_TRUE(send(get(server.url())));

    EXPECT_THAT(lastRequest(), Not(HasSubstr("ookie")));
}

TEST_F(NetworkHttpSessionAnswers, AsksAgainForWhatCouldHaveBeenKept)
{
    server.answer({Send{httpAnswer(200, "1", "Cache-Control: max-age=3600\r\nETag: \"a\"\r\n")}});
    server.answer({Send{httpAnswer(200, "2")}});

    ASSERT_TRUE(send(get(server.url())));
    const HttpResult second = send(get(server.url()));

    ASSERT_TRUE(second);
    EXPECT_EQ(second->body, "2");
    EXPECT_THAT(lastRequest(), Not(HasSubstr("If-None-Match")));
}

TEST_F(NetworkHttpSessionAnswers, MeetsNoChallengeToAuthenticate)
{
    for (const char* challenge :
         {"Basic realm=\"x\"", "Digest realm=\"x\", nonce=\"1\"", "Negotiate", "NTLM", "Bearer"}) {
        LoopbackServer challenging;
        challenging.answer(
            {Send{httpAnswer(401, "no", "WWW-Authenticate: " + QByteArray(challenge) + "\r\n")}});
        QUrl url = challenging.url();
        url.setUserInfo(QStringLiteral("user:password"));

        const HttpResult result = send(get(url));

        EXPECT_TRUE(result && result->status == 401 && result->body == "no") << challenge;
        ASSERT_THAT(challenging.requests(), SizeIs(1)) << challenge;
        EXPECT_THAT(challenging.requests().front().toStdString(), Not(HasSubstr("Authorization")))
            << challenge;
    }
}

TEST_F(NetworkHttpSessionAnswers, TakesWholeBodiesOfSomeMebibytesHoweverTheyAreFramed)
{
    QByteArray body;
    for (int i = 0; body.size() < 3'000'000; ++i) {
        body += QByteArray::number(i);
    }
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray size = QByteArray::number(body.size(), 16);
    for (const QByteArray& bytes :
         {httpAnswer(200, body), ok + "\r\n" + body,
          httpAnswer(200, gzip(body), "Content-Encoding: gzip\r\n"),
          ok + "Transfer-Encoding: chunked\r\n\r\n" + size + "\r\n" + body + "\r\n0\r\n\r\n"}) {
        LoopbackServer large;
        large.answer({Send{bytes}, Close{}});
        HttpRequest request = get(large.url());
        request.bodyLimit = body.size();

        const HttpResult result = send(request);

        ASSERT_TRUE(result);
        EXPECT_TRUE(result->body == body);
    }
}

TEST_F(NetworkHttpSessionAnswers, TakesABodyOfTheLimitAndNoByteMore)
{
    HttpRequest request = get(server.url());
    request.bodyLimit = 1000;
    server.answer({Send{httpAnswer(200, QByteArray(1000, 'x'))}});
    server.answer({Send{httpAnswer(200, QByteArray(1001, 'x'))}});

    EXPECT_TRUE(send(request));
    EXPECT_EQ(send(request), HttpResult(std::unexpected(tooLarge)));
}

TEST_F(NetworkHttpSessionAnswers, StopsAGzipBombAtTheLimit)
{
    const QByteArray bomb = gzip(QByteArray(50 * 1024 * 1024, '\0'));
    ASSERT_LT(bomb.size(), 64 * 1024);
    server.answer({Send{httpAnswer(200, bomb, "Content-Encoding: gzip\r\n")}});

    EXPECT_EQ(send(get(server.url())), HttpResult(std::unexpected(tooLarge)));
}

TEST_F(NetworkHttpSessionAnswers, StopsAnEndlessBodyAtTheLimitWhateverTheStatus)
{
    for (const char* status : {"200 OK", "401 Unauthorized", "500 Broken"}) {
        LoopbackServer flooding;
        flooding.answer(
            {Send{"HTTP/1.1 " + QByteArray(status) + "\r\n\r\n"}, Flood{QByteArray(16 * 1024, 'x')}});

        EXPECT_EQ(send(get(flooding.url())), HttpResult(std::unexpected(tooLarge))) << status;
        EXPECT_TRUE(runUntil([&] { return flooding.openConnections() == 0; })) << status;
    }
}

TEST_F(NetworkHttpSessionAnswers, StopsAnEndlessHead)
{
    server.answer({Send{"HTTP/1.1 200 OK\r\n"}, Flood{"X-Header: value\r\n"}});

    EXPECT_EQ(send(get(server.url())), HttpResult(std::unexpected(notHttp)));
}

TEST_F(NetworkHttpSessionAnswers, IsDoneAtTheHeadWhenOnlyTheBodyOf200IsWanted)
{
    for (const int status : {201, 204, 301, 400, 401, 403, 404, 407, 429, 499, 500, 503, 599, 600}) {
        LoopbackServer hanging;
        const QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " X\r\nRetry-After: 7\r\n";
        hanging.answer({Send{head + "Content-Length: 100\r\n\r\npart"}, Hang{}});
        HttpRequest request = get(hanging.url());
        request.bodies = HttpRequest::Bodies::onlyOfStatus200;

        const HttpResult result = send(request);

        ASSERT_TRUE(result) << status;
        EXPECT_EQ(result->status, status);
        EXPECT_EQ(result->header("Retry-After"), "7");
        EXPECT_EQ(result->body, "");
        EXPECT_TRUE(runUntil([&] { return hanging.openConnections() == 0; })) << status;
    }
}

TEST_F(NetworkHttpSessionAnswers, TellsWhatIsNotHttp)
{
    for (const char* bytes :
         {"SSH-2.0-OpenSSH_9.2\r\n", "<html>hello</html>", "HTTP/2 200 OK\r\n\r\n", "\r\n\r\n"}) {
        LoopbackServer other;
        other.answer({Send{bytes}, Close{}});

        EXPECT_EQ(send(get(other.url())), HttpResult(std::unexpected(notHttp))) << bytes;
        EXPECT_EQ(other.connections(), 1) << bytes;
    }
}

TEST_F(NetworkHttpSessionAnswers, TakesNoAddressButHttpAndHttps)
{
    for (const char16_t* url :
         {u"ftp://127.0.0.1/", u"file:///etc/hostname", u"data:,x", u"", u"relative", u"http:///x"}) {
        EXPECT_EQ(send(get(QUrl(QString::fromUtf16(url)))), HttpResult(std::unexpected(notHttp)))
            << QString::fromUtf16(url).toStdString();
    }
}

TEST_F(NetworkHttpSessionAnswers, SendsNothingWhenAHeaderWouldBreakOutOfItsLine)
{
    for (const auto& header : {std::pair<QByteArray, QByteArray>("Authorization", "Bearer a\r\nX: y"),
                               {"A", "b\nc"},
                               {"A", QByteArray(1, '\0')},
                               {"A: b\r\nC", "d"},
                               {"", "x"}}) {
        HttpRequest request = get(server.url());
        request.headers = {header};

        EXPECT_EQ(send(request), HttpResult(std::unexpected(HttpFailure{HttpFailure::Kind::transport, 0})));
    }
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(NetworkHttpSessionAnswers, CarriesManyRequestsAtOnce)
{
    server.answer({Send{httpAnswer(200, "hello")}});
    std::vector<Pending<HttpResult>> pending;
    for (int i = 0; i < 50; ++i) {
        pending.emplace_back(session.send(get(server.url()), {}));
    }

    for (auto& answer : pending) {
        const HttpResult result = answer.get();
        ASSERT_TRUE(result);
        EXPECT_EQ(result->body, "hello");
    }
    EXPECT_THAT(server.requests(), SizeIs(50));
}

} // namespace roost::test
