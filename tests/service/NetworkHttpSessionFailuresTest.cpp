#include "service/NetworkHttpSession.h"
#include "tests/support/Await.h"
#include "tests/support/DeafPort.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/LoopbackServer.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>

#include <thread>

namespace roost::test {

namespace {

using testing::SizeIs;

using Close = LoopbackServer::Close;
using Do = LoopbackServer::Do;
using Drip = LoopbackServer::Drip;
using Hang = LoopbackServer::Hang;
using Reset = LoopbackServer::Reset;
using Send = LoopbackServer::Send;

using std::chrono::milliseconds;

HttpResult failed(HttpFailure::Kind kind, int code) { return std::unexpected(HttpFailure{kind, code}); }

const HttpResult cancelled = failed(HttpFailure::Kind::cancelled, -999);
const HttpResult timedOut = failed(HttpFailure::Kind::transport, -1001);
const HttpResult refused = failed(HttpFailure::Kind::transport, -1004);
const HttpResult lost = failed(HttpFailure::Kind::transport, -1005);

HttpRequest get(const QUrl& url, milliseconds timeout = std::chrono::minutes(1))
{
    HttpRequest request;
    request.url = url;
    request.timeout = timeout;
    return request;
}

HttpRequest post(const QUrl& url)
{
    HttpRequest request = get(url);
    request.method = HttpRequest::Method::post;
    request.body = "grant_type=refresh_token&refresh_token=canary";
    return request;
}

QUrl deafUrl(const DeafPort& deaf)
{
    return QUrl(QStringLiteral("http://%1:%2/").arg(DeafPort::address().toString()).arg(deaf.port()));
}

class NetworkHttpSessionFailures : public testing::Test {
protected:
    HttpResult send(HttpRequest request) { return await(session.send(std::move(request), {})); }

    LoopbackServer server;
    NetworkHttpSession session;
    std::stop_source stop;
};

} // namespace

TEST_F(NetworkHttpSessionFailures, LimitsTheWholeTimeWhileTheServerDrips)
{
    const QByteArray answer = httpAnswer(200, QByteArray(1000, 'x'));
    server.answer({Drip{answer, milliseconds(20)}});
    QElapsedTimer time;
    time.start();

    EXPECT_EQ(send(get(server.url(), milliseconds(200))), timedOut);

    EXPECT_GE(time.elapsed(), 200);
    // The drip itself would take twenty seconds.
    EXPECT_LT(time.elapsed(), 10'000);
}

TEST_F(NetworkHttpSessionFailures, GivesUpOnAServerThatDoesNotAnswer)
{
    server.answer({Hang{}});

    EXPECT_EQ(send(get(server.url(), milliseconds(100))), timedOut);
    EXPECT_TRUE(runUntil([&] { return server.openConnections() == 0; }));
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(NetworkHttpSessionFailures, GivesUpInTheMiddleOfABody)
{
    server.answer({Send{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\npart"}, Hang{}});

    EXPECT_EQ(send(get(server.url(), milliseconds(100))), timedOut);
}

TEST_F(NetworkHttpSessionFailures, GivesUpOnAConnectionThatIsNeitherTakenNorRefused)
{
    const DeafPort deaf;

    EXPECT_EQ(send(get(deafUrl(deaf), milliseconds(100))), timedOut);
}

TEST_F(NetworkHttpSessionFailures, TakesATimeoutOfNothingAndOneOfAges)
{
    server.answer({Send{httpAnswer(200, "")}});

    EXPECT_EQ(send(get(server.url(), milliseconds(0))), timedOut);
    EXPECT_EQ(send(get(server.url(), milliseconds(-1))), timedOut);
    EXPECT_TRUE(send(get(server.url(), milliseconds::max())).has_value());
}

TEST_F(NetworkHttpSessionFailures, TellsARefusedConnection)
{
    QUrl url;
    {
        const LoopbackServer gone;
        url = gone.url();
    }

    EXPECT_EQ(send(get(url)), refused);
}

TEST_F(NetworkHttpSessionFailures, TellsANameThatCannotBeFound)
{
    const HttpResult result = send(get(QUrl(QStringLiteral("http://roost.invalid/"))));

    // Without any network the resolver cannot say that there is no such name.
    EXPECT_TRUE(result == failed(HttpFailure::Kind::transport, -1003) ||
                result == failed(HttpFailure::Kind::transport, -1009));
}

TEST_F(NetworkHttpSessionFailures, SendsARequestOnceWhenItsAnswerIsDropped)
{
    for (const LoopbackServer::Step& end : {LoopbackServer::Step(Close{}), LoopbackServer::Step(Reset{})}) {
        for (const bool afterAnAnswer : {false, true}) {
            for (const auto& make :
                 {+[](const QUrl& url) { return get(url); }, +[](const QUrl& url) { return post(url); }}) {
                LoopbackServer dropping;
                if (afterAnAnswer) {
                    dropping.answer({Send{httpAnswer(200, "")}});
                }
                dropping.answer({end});
                if (afterAnAnswer) {
                    EXPECT_TRUE(send(make(dropping.url())).has_value());
                }

                EXPECT_EQ(send(make(dropping.url())), lost);
                EXPECT_THAT(dropping.requests(), SizeIs(afterAnAnswer ? 2 : 1));
                EXPECT_EQ(dropping.connections(), afterAnAnswer ? 2 : 1);
            }
        }
    }
}

TEST_F(NetworkHttpSessionFailures, LosesABodyThatBreaksOff)
{
    const QByteArray counted = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"a\":";
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (const QByteArray& bytes :
         {counted, chunked + "5\r\n{\"a\":\r\n", chunked + "5\r\n{\"a", chunked + "zz\r\n{\"a\":"}) {
        for (const LoopbackServer::Step& end :
             {LoopbackServer::Step(Close{}), LoopbackServer::Step(Reset{})}) {
            LoopbackServer breaking;
            breaking.answer({Send{bytes}, end});

            EXPECT_EQ(send(get(breaking.url())), lost) << bytes.constData();
            EXPECT_EQ(breaking.connections(), 1);
        }
    }
}

TEST_F(NetworkHttpSessionFailures, LosesAHeadThatBreaksOff)
{
    for (const char* bytes : {"HTTP/1.", "HTTP/1.1 200 OK\r\n", "HTTP/1.1 401 No\r\nRetry-After: 5\r\n"}) {
        LoopbackServer breaking;
        breaking.answer({Send{bytes}, Close{}});

        EXPECT_EQ(send(get(breaking.url())), lost) << bytes;
    }
}

TEST_F(NetworkHttpSessionFailures, SendsNothingAfterAStop)
{
    stop.request_stop();

    EXPECT_EQ(await(session.send(get(server.url()), stop.get_token())), cancelled);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(NetworkHttpSessionFailures, StopsBeforeTheConnectionIsMade)
{
    Pending pending(session.send(get(server.url()), stop.get_token()));
    stop.request_stop();

    EXPECT_EQ(pending.get(), cancelled);
    EXPECT_THAT(server.requests(), SizeIs(0));
}

TEST_F(NetworkHttpSessionFailures, StopsWhileTheConnectionIsBeingMade)
{
    const DeafPort deaf;
    Pending pending(session.send(get(deafUrl(deaf)), stop.get_token()));
    ASSERT_FALSE(runUntil([&] { return pending.isDone(); }, milliseconds(50)));
    stop.request_stop();

    EXPECT_EQ(pending.get(), cancelled);
}

TEST_F(NetworkHttpSessionFailures, StopsWhileItWaitsForTheAnswer)
{
    server.answer({Do{[&] { stop.request_stop(); }}, Hang{}});

    EXPECT_EQ(await(session.send(get(server.url()), stop.get_token())), cancelled);
    EXPECT_TRUE(runUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(NetworkHttpSessionFailures, StopsWhileItReadsTheAnswer)
{
    const Send part{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\npart"};
    server.answer({part, LoopbackServer::Pause{milliseconds(20)}, Do{[&] { stop.request_stop(); }}, Hang{}});

    EXPECT_EQ(await(session.send(get(server.url()), stop.get_token())), cancelled);
    EXPECT_TRUE(runUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(NetworkHttpSessionFailures, StopsAtTheWordOfAnotherThread)
{
    std::jthread other;
    server.answer({Do{[&] { other = std::jthread([this] { stop.request_stop(); }); }}, Hang{}});

    EXPECT_EQ(await(session.send(get(server.url()), stop.get_token())), cancelled);
}

TEST_F(NetworkHttpSessionFailures, StopsOneRequestAlone)
{
    server.answer({Do{[&] { stop.request_stop(); }}, LoopbackServer::Pause{milliseconds(50)},
                   Send{httpAnswer(200, "hello")}});
    Pending stopped(session.send(get(server.url()), stop.get_token()));
    Pending other(session.send(get(server.url()), {}));

    EXPECT_EQ(stopped.get(), cancelled);
    EXPECT_TRUE(other.get().has_value());
}

TEST_F(NetworkHttpSessionFailures, KeepsAnAnswerThatCameBeforeTheStop)
{
    server.answer({Send{httpAnswer(200, "hello")}});

    const HttpResult result = await(session.send(get(server.url()), stop.get_token()));
    stop.request_stop();

    EXPECT_TRUE(result.has_value());
}

TEST_F(NetworkHttpSessionFailures, EndsWhatIsInFlightWhenTheSessionGoes)
{
    auto going = std::make_unique<NetworkHttpSession>();
    const DeafPort deaf;
    Pending waiting(going->send(get(server.url()), {}));
    Pending connecting(going->send(get(deafUrl(deaf)), stop.get_token()));
    ASSERT_TRUE(runUntil([&] { return server.requests().size() == 1; }));

    going.reset();

    EXPECT_TRUE(waiting.isDone());
    EXPECT_TRUE(connecting.isDone());
    EXPECT_EQ(waiting.get(), cancelled);
    EXPECT_EQ(connecting.get(), cancelled);
    stop.request_stop();
    EXPECT_TRUE(runUntil([&] { return server.openConnections() == 0; }));
}

TEST_F(NetworkHttpSessionFailures, CancelsWhatIsSentWhileTheSessionGoes)
{
    auto going = std::make_unique<NetworkHttpSession>();
    const auto twice = [](HttpSession* over, QUrl url) -> QCoro::Task<HttpResult> {
        QCoro::Task<HttpResult> first = over->send(get(url), {});
        co_await first;
        QCoro::Task<HttpResult> second = over->send(get(url), {});
        HttpResult result = co_await second;
        co_return result;
    };
    Pending pending(twice(going.get(), server.url()));
    ASSERT_TRUE(runUntil([&] { return server.requests().size() == 1; }));

    going.reset();

    EXPECT_EQ(pending.get(), cancelled);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(NetworkHttpSessionFailures, OutlivesATaskThatNobodyWaitsForAnyMore)
{
    server.answer({Send{httpAnswer(200, "hello")}});
    {
        const QCoro::Task<HttpResult> dropped = session.send(get(server.url()), {});
    }

    EXPECT_TRUE(runUntil([&] { return server.connections() == 1 && server.openConnections() == 0; }));
}

TEST_F(NetworkHttpSessionFailures, LogsNothing)
{
    const LogCatcher log;
    const DeafPort deaf;
    server.answer({Close{}});
    server.answer({Reset{}});
    server.answer({Send{"canary"}, Close{}});
    server.answer({Send{"HTTP/1.1 302 X\r\nLocation: http://127.0.0.1:1/?canary\r\n\r\n"}, Close{}});
    server.answer({Hang{}});
    for (int i = 0; i < 5; ++i) {
        HttpRequest request = post(server.url(QStringLiteral("/?canary=canary")));
        request.headers = {{"Authorization", "Bearer canary"}};
        request.timeout = milliseconds(100);
        const HttpResult result = send(request);
        EXPECT_EQ(result.has_value(), i == 3) << i;
    }
    EXPECT_FALSE(send(get(QUrl(QStringLiteral("http://roost.invalid/?canary")))).has_value());
    EXPECT_FALSE(send(get(deafUrl(deaf), milliseconds(50))).has_value());
    EXPECT_FALSE(send(get(QUrl(QStringLiteral("gopher://canary/")))).has_value());

    EXPECT_THAT(log.lines(), SizeIs(0));
}

} // namespace roost::test
