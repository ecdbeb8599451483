#include "service/InProcessHttpSession.h"

#include "tests/support/Await.h"

#include <gmock/gmock.h>

#include <QCoroTimer>

namespace roost::test {

namespace {

using Bodies = HttpRequest::Bodies;

const HttpResult cancelled = std::unexpected(HttpFailure{HttpFailure::Kind::cancelled, -999});

HttpResponse response(int status, const QByteArray& body)
{
    return {.status = status, .headers = {{"X-Kind", "test"}}, .body = body};
}

InProcessHttpSession::Handler answering(HttpResult result)
{
    return [result = std::move(result)](HttpRequest, std::stop_token) -> QCoro::Task<HttpResult> {
        co_return result;
    };
}

HttpRequest request(Bodies bodies = Bodies::all, qint64 bodyLimit = 10)
{
    HttpRequest made;
    made.bodies = bodies;
    made.bodyLimit = bodyLimit;
    return made;
}

} // namespace

TEST(InProcessHttpSession, HandsTheRequestToTheHandlerAndGivesItsAnswer)
{
    std::vector<QUrl> asked;
    InProcessHttpSession session([&asked](HttpRequest got, std::stop_token) -> QCoro::Task<HttpResult> {
        asked.push_back(got.url);
        co_return response(200, got.body);
    });
    HttpRequest sent = request();
    sent.url = QUrl(QStringLiteral("https://a.example/x"));
    sent.body = "echo";

    EXPECT_EQ(await(session.send(sent, {})), HttpResult(response(200, "echo")));
    EXPECT_THAT(asked, testing::ElementsAre(sent.url));
}

TEST(InProcessHttpSession, GivesAFailureAsItIs)
{
    const HttpResult refused = std::unexpected(HttpFailure{HttpFailure::Kind::transport, -1004});
    InProcessHttpSession session(answering(refused));

    EXPECT_EQ(await(session.send(request(), {})), refused);
}

TEST(InProcessHttpSession, WaitsForAHandlerThatTakesItsTime)
{
    bool mayAnswer = false;
    InProcessHttpSession session([&mayAnswer](HttpRequest, std::stop_token) -> QCoro::Task<HttpResult> {
        while (!mayAnswer) {
            QCoro::Task<> turn = QCoro::sleepFor(std::chrono::milliseconds(1));
            co_await turn;
        }
        co_return response(200, "");
    });
    Pending pending(session.send(request(), {}));
    EXPECT_FALSE(pending.isDone());
    mayAnswer = true;

    EXPECT_TRUE(pending.get().has_value());
}

TEST(InProcessHttpSession, DoesNotAskTheHandlerAfterAStop)
{
    int asked = 0;
    InProcessHttpSession session([&asked](HttpRequest, std::stop_token) -> QCoro::Task<HttpResult> {
        ++asked;
        co_return response(200, "");
    });
    std::stop_source stop;
    stop.request_stop();

    EXPECT_EQ(await(session.send(request(), stop.get_token())), cancelled);
    EXPECT_EQ(asked, 0);
}

TEST(InProcessHttpSession, IsCancelledWhenItIsStoppedWhileTheHandlerWorks)
{
    std::stop_source stop;
    InProcessHttpSession session([&stop](HttpRequest, std::stop_token given) -> QCoro::Task<HttpResult> {
        stop.request_stop();
        EXPECT_TRUE(given.stop_requested());
        co_return response(200, "");
    });

    EXPECT_EQ(await(session.send(request(), stop.get_token())), cancelled);
}

TEST(InProcessHttpSession, DropsABodyThatWasNotAskedFor)
{
    InProcessHttpSession failing(answering(response(401, "a long, long body")));
    InProcessHttpSession working(answering(response(200, "body")));

    EXPECT_EQ(await(failing.send(request(Bodies::onlyOfStatus200), {})), HttpResult(response(401, "")));
    EXPECT_EQ(await(working.send(request(Bodies::onlyOfStatus200), {})), HttpResult(response(200, "body")));
}

TEST(InProcessHttpSession, TakesABodyOfTheLimitAndNoByteMore)
{
    InProcessHttpSession session(answering(response(400, "0123456789")));

    EXPECT_EQ(await(session.send(request(Bodies::all, 10), {})), HttpResult(response(400, "0123456789")));
    EXPECT_EQ(await(session.send(request(Bodies::all, 9), {})),
              HttpResult(std::unexpected(HttpFailure{HttpFailure::Kind::bodyTooLarge, -1103})));
}

} // namespace roost::test
