#include "service/NetworkHttpSession.h"
#include "tests/support/Await.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TestCertificate.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::HasSubstr;
using testing::SizeIs;

using Close = LoopbackServer::Close;
using Send = LoopbackServer::Send;

HttpRequest get(const QUrl& url)
{
    HttpRequest request;
    request.url = url;
    request.headers = {{"Authorization", "Bearer canary"}};
    return request;
}

HttpResult transportFailure(int code)
{
    return std::unexpected(HttpFailure{HttpFailure::Kind::transport, code});
}

const TestCertificate& certificate()
{
    static const TestCertificate made = TestCertificate::make(QStringLiteral("IP:127.0.0.1"));
    return made;
}

HttpResult send(HttpRequest request)
{
    NetworkHttpSession session;
    return await(session.send(std::move(request), {}));
}

} // namespace

TEST(NetworkHttpSessionTls, RefusesACertificateThatNobodyVouchesForAndSendsNothing)
{
    LoopbackServer server(certificate().forServer());
    server.answer({Send{httpAnswer(200, "hello")}});

    EXPECT_EQ(send(get(server.url())), transportFailure(-1203));
    EXPECT_THAT(server.requests(), SizeIs(0));
}

TEST(NetworkHttpSessionTls, RefusesACertificateForAnotherName)
{
    const TestCertificate other = TestCertificate::make(QStringLiteral("DNS:elsewhere.invalid"));
    const ScopedTrust trust(other.certificate);
    LoopbackServer server(other.forServer());
    server.answer({Send{httpAnswer(200, "hello")}});

    EXPECT_EQ(send(get(server.url())), transportFailure(-1202));
    EXPECT_THAT(server.requests(), SizeIs(0));
}

TEST(NetworkHttpSessionTls, SpeaksWithAServerThatTheTrustStoreVouchesFor)
{
    const ScopedTrust trust(certificate().certificate);
    LoopbackServer server(certificate().forServer());
    const QByteArray body(3'000'000, 'x');
    server.answer({Send{httpAnswer(200, body)}});
    HttpRequest request = get(server.url());
    request.bodyLimit = body.size();

    const HttpResult result = send(request);

    ASSERT_TRUE(result);
    EXPECT_TRUE(result->body == body);
    ASSERT_THAT(server.requests(), SizeIs(1));
    EXPECT_THAT(server.requests().front().toStdString(), HasSubstr("\r\nAuthorization: Bearer canary\r\n"));
}

TEST(NetworkHttpSessionTls, ReadsABodyUntilTheSecureConnectionCloses)
{
    const ScopedTrust trust(certificate().certificate);
    LoopbackServer server(certificate().forServer());
    server.answer({Send{"HTTP/1.1 200 OK\r\n\r\n" + QByteArray(200'000, 'x')}, Close{}});

    const HttpResult result = send(get(server.url()));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->body.size(), 200'000);
}

TEST(NetworkHttpSessionTls, LosesABodyThatBreaksOff)
{
    const ScopedTrust trust(certificate().certificate);
    LoopbackServer server(certificate().forServer());
    server.answer({Send{"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\npart"}, Close{}});

    EXPECT_EQ(send(get(server.url())), transportFailure(-1005));
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST(NetworkHttpSessionTls, TellsAServerThatDoesNotSpeakTls)
{
    LoopbackServer plain;
    plain.greet("220 ready to serve you in plain text\r\n");
    QUrl url = plain.url();
    url.setScheme(QStringLiteral("https"));

    EXPECT_EQ(send(get(url)), transportFailure(-1200));
    EXPECT_THAT(plain.requests(), SizeIs(0));
}

TEST(NetworkHttpSessionTls, StopsDuringTheHandshake)
{
    LoopbackServer plain;
    QUrl url = plain.url();
    url.setScheme(QStringLiteral("https"));
    NetworkHttpSession session;
    std::stop_source stop;
    Pending pending(session.send(get(url), stop.get_token()));
    ASSERT_TRUE(runUntil([&] { return plain.connections() == 1; }));

    stop.request_stop();

    EXPECT_EQ(pending.get(), HttpResult(std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, -999})));
    EXPECT_TRUE(runUntil([&] { return plain.openConnections() == 0; }));
}

} // namespace roost::test
