#include "service/WidgetAPI.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"
#include "service/InProcessHttpSession.h"
#include "service/NetworkHttpSession.h"
#include "tests/support/Await.h"
#include "tests/support/Gzip.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/LoopbackServer.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

using Close = LoopbackServer::Close;
using Do = LoopbackServer::Do;
using Flood = LoopbackServer::Flood;
using Hang = LoopbackServer::Hang;
using Reset = LoopbackServer::Reset;
using Send = LoopbackServer::Send;

using Result = WidgetAPI::Result;
using Unavailable = WidgetAPI::Unavailable;

const Result unauthorized = WidgetAPI::Unauthorized{};
const Result forbidden = WidgetAPI::Forbidden{};
const Result unreachable = WidgetAPI::Unreachable{};
const Result malformed = WidgetAPI::Malformed{};

RoostSnapshot snapshot()
{
    RoostSnapshot made;
    made.generatedAt = Date(std::chrono::milliseconds(1'718'000'000'123));
    made.profile = {.id = "p1", .name = "Brisken", .avatarUrl = std::nullopt};
    made.views.total = 9007199254740993;
    return made;
}

QByteArray snapshotJSON() { return QByteArray::fromStdString(RoostJSON::encoder().encode(snapshot())); }

class WidgetAPIOnLoopback : public testing::Test {
protected:
    /// What `fetch` makes of a server that does as `script` says.
    static Result fetched(LoopbackServer::Script script)
    {
        LoopbackServer server;
        server.answer(std::move(script));
        return fetchedFrom(server);
    }

    static Result fetchedFrom(const LoopbackServer& server, std::stop_token stop = {})
    {
        NetworkHttpSession session;
        const WidgetAPI api(server.url(), session);
        return await(api.fetch(QStringLiteral("canary"), std::move(stop)));
    }

    static Result fetchedStatus(int status, const QByteArray& headers = {}, const QByteArray& body = "{}")
    {
        return fetched({Send{httpAnswer(status, body, headers)}});
    }

    /// The one line that a failed request logs.
    static QString failureLine(int code) { return QStringLiteral("snapshot request failed: %1").arg(code); }

    /// The code in the log lines of this test, all of which are of that kind.
    QList<QString> logged() const { return log.messages("world.brisken.roost.mac.sync"); }

    LogCatcher log;
};

/// What `fetch` makes of an answer that never was on any wire.
Result fetchedInProcess(HttpResult answer, QUrl base = QUrl(QStringLiteral("https://a.example")),
                        HttpRequest* sent = nullptr)
{
    InProcessHttpSession session(
        [answer = std::move(answer), sent](HttpRequest request, std::stop_token) -> QCoro::Task<HttpResult> {
            if (sent != nullptr) {
                *sent = std::move(request);
            }
            co_return answer;
        });
    const WidgetAPI api(std::move(base), session);
    return await(api.fetch(QStringLiteral("canary"), {}));
}

} // namespace

TEST_F(WidgetAPIOnLoopback, GivesTheSnapshotOfA200)
{
    EXPECT_EQ(fetchedStatus(200, "Content-Type: application/json\r\n", snapshotJSON()),
              Result(WidgetAPI::Snapshot{snapshot()}));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, DecodesWhateverTypeTheBodyIsSaidToHave)
{
    for (const char* type : {"Content-Type: text/html\r\n", "Content-Type: image/png\r\n", ""}) {
        EXPECT_EQ(fetchedStatus(200, type, snapshotJSON()), Result(WidgetAPI::Snapshot{snapshot()})) << type;
    }
}

TEST_F(WidgetAPIOnLoopback, DecodesACompressedBody)
{
    EXPECT_EQ(fetchedStatus(200, "Content-Encoding: gzip\r\n", gzip(snapshotJSON())),
              Result(WidgetAPI::Snapshot{snapshot()}));
}

TEST_F(WidgetAPIOnLoopback, GivesMalformedForA200ThatDoesNotDecode)
{
    for (const QByteArray& body : {QByteArray(""), QByteArray("<html>canary</html>"), QByteArray("{}"),
                                   QByteArray("[]"), snapshotJSON().chopped(1), snapshotJSON() + "x"}) {
        EXPECT_EQ(fetchedStatus(200, "", body), malformed) << body.constData();
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, TellsAnAccessTokenThatWasNotAcceptedFromAProfileThatMayNotBeRead)
{
    EXPECT_EQ(fetchedStatus(401, "", snapshotJSON()), unauthorized);
    EXPECT_EQ(fetchedStatus(403, "", snapshotJSON()), forbidden);
    for (const char* challenge : {"Bearer error=\"invalid_token\"", "Basic realm=\"x\"", "Negotiate"}) {
        EXPECT_EQ(fetchedStatus(401, "WWW-Authenticate: " + QByteArray(challenge) + "\r\n"), unauthorized)
            << challenge;
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, GivesUnavailableForAServiceThatIsBusyOrFailing)
{
    for (const int status : {429, 500, 501, 502, 503, 504, 599}) {
        EXPECT_EQ(fetchedStatus(status), Result(Unavailable{})) << status;
        EXPECT_EQ(fetchedStatus(status, "Retry-After: 120\r\n"), Result(Unavailable{120})) << status;
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, GivesMalformedForEveryOtherStatus)
{
    for (const int status :
         {201, 202, 204, 206, 300, 301, 304, 400, 402, 404, 407, 410, 418, 428, 430, 499, 600, 999}) {
        EXPECT_EQ(fetchedStatus(status, "Retry-After: 120\r\n", snapshotJSON()), malformed) << status;
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, ReadsTheSecondsOfRetryAfter)
{
    const auto after = [](const char* header) { return fetchedStatus(429, header); };

    EXPECT_EQ(after("Retry-After: 120\r\n"), Result(Unavailable{120}));
    EXPECT_EQ(after("retry-after: 1.5\r\n"), Result(Unavailable{1.5}));
    EXPECT_EQ(after("Retry-After:-1\r\n"), Result(Unavailable{-1}));
    EXPECT_EQ(after("Retry-After: 0x10\r\n"), Result(Unavailable{16}));
    // The blanks around a value are not part of it (RFC 9110 §5.5).
    EXPECT_EQ(after("Retry-After: \t 120 \r\n"), Result(Unavailable{120}));
    EXPECT_EQ(after("Retry-After: 1\r\nRetry-After: 2\r\n"), Result(Unavailable{1}));

    EXPECT_EQ(after("Retry-After: Wed, 21 Oct 2015 07:28:00 GMT\r\n"), Result(Unavailable{}));
    EXPECT_EQ(after("Retry-After: 120s\r\n"), Result(Unavailable{}));
    EXPECT_EQ(after("Retry-After:\r\n"), Result(Unavailable{}));
    EXPECT_EQ(after("Retry-After: 1 2\r\n"), Result(Unavailable{}));
}

TEST_F(WidgetAPIOnLoopback, ClassifiesEveryStatusBut200AtItsHeadersWhateverTheBodyDoes)
{
    const std::vector<std::pair<int, Result>> expected{{401, unauthorized},   {403, forbidden},
                                                       {404, malformed},      {302, malformed},
                                                       {429, Unavailable{7}}, {503, Unavailable{7}}};
    for (const auto& [status, result] : expected) {
        const QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " X\r\nRetry-After: 7\r\n";
        EXPECT_EQ(fetched({Send{head + "Content-Length: 100\r\n\r\npart"}, Hang{}}), result) << status;
        EXPECT_EQ(fetched({Send{head + "Content-Length: 100\r\n\r\npart"}, Close{}}), result) << status;
        EXPECT_EQ(fetched({Send{head + "Transfer-Encoding: chunked\r\n\r\nbroken"}, Hang{}}), result)
            << status;
        EXPECT_EQ(fetched({Send{head + "\r\n"}, Flood{"x"}}), result) << status;
        EXPECT_EQ(fetched({Send{head + "Content-Encoding: gzip\r\n\r\nno gzip"}, Close{}}), result) << status;
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, GivesUnreachableAndLogsTheCodeWhenTheConnectionIsLost)
{
    const QByteArray head =
        "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(snapshotJSON().size()) + "\r\n\r\n";

    EXPECT_EQ(fetched({Close{}}), unreachable);
    EXPECT_EQ(fetched({Reset{}}), unreachable);
    EXPECT_EQ(fetched({Send{head + snapshotJSON().chopped(1)}, Close{}}), unreachable);
    EXPECT_EQ(fetched({Send{head + snapshotJSON().chopped(1)}, Reset{}}), unreachable);
    EXPECT_EQ(fetched({Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n"}, Close{}}),
              unreachable);

    EXPECT_THAT(log.lines(), SizeIs(5));
    for (const LogCatcher::Line& line : log.lines()) {
        EXPECT_EQ(line,
                  (LogCatcher::Line{QtCriticalMsg, "world.brisken.roost.mac.sync", failureLine(-1005)}));
    }
}

TEST_F(WidgetAPIOnLoopback, GivesUnreachableAndLogsTheCodeWhenTheConnectionIsRefused)
{
    QUrl url;
    {
        const LoopbackServer gone;
        url = gone.url();
    }
    NetworkHttpSession session;
    const WidgetAPI api(url, session);

    EXPECT_EQ(await(api.fetch(QStringLiteral("canary"), {})), unreachable);
    EXPECT_THAT(logged(), ElementsAre(failureLine(-1004)));
}

TEST_F(WidgetAPIOnLoopback, GivesUnreachableWhenItIsStopped)
{
    std::stop_source stop;
    LoopbackServer server;
    server.answer({Do{[&] { stop.request_stop(); }}, Hang{}});

    EXPECT_EQ(fetchedFrom(server, stop.get_token()), unreachable);
    EXPECT_EQ(fetchedFrom(server, stop.get_token()), unreachable);
    EXPECT_THAT(server.requests(), SizeIs(1));
    EXPECT_THAT(logged(), ElementsAre(failureLine(-999), failureLine(-999)));
}

TEST_F(WidgetAPIOnLoopback, GivesMalformedForABodyOverTheLimitAndLogsIt)
{
    const QByteArray padded = snapshotJSON() + QByteArray(WidgetAPI::bodyLimit - snapshotJSON().size(), ' ');

    EXPECT_EQ(fetchedStatus(200, "", padded), Result(WidgetAPI::Snapshot{snapshot()}));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(fetchedStatus(200, "", padded + ' '), malformed);
    EXPECT_EQ(fetchedStatus(200, "Content-Encoding: gzip\r\n", gzip(QByteArray(9 * 1024 * 1024, ' '))),
              malformed);
    EXPECT_EQ(fetched({Send{"HTTP/1.1 200 OK\r\n\r\n"}, Flood{QByteArray(4096, ' ')}}), malformed);
    EXPECT_THAT(logged(), ElementsAre(failureLine(-1103), failureLine(-1103), failureLine(-1103)));
}

TEST_F(WidgetAPIOnLoopback, GivesMalformedForWhatIsNotHttp)
{
    EXPECT_EQ(fetched({Send{"SSH-2.0-OpenSSH_9.2\r\n"}, Close{}}), malformed);
    NetworkHttpSession session;
    const WidgetAPI api(QUrl(QStringLiteral("file:///tmp")), session);
    EXPECT_EQ(await(api.fetch(QStringLiteral("canary"), {})), malformed);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WidgetAPIOnLoopback, LeavesARedirectUnfollowed)
{
    LoopbackServer other;
    const QByteArray location = "Location: " + other.url().toEncoded() + "\r\n";
    for (const int status : {301, 302, 307, 308}) {
        EXPECT_EQ(fetchedStatus(status, location), malformed) << status;
    }
    EXPECT_EQ(other.connections(), 0);
}

TEST_F(WidgetAPIOnLoopback, SendsOneRequestAndNoneAgain)
{
    for (const LoopbackServer::Step& end : {LoopbackServer::Step(Close{}), LoopbackServer::Step(Reset{}),
                                            LoopbackServer::Step(Send{httpAnswer(503, "")})}) {
        LoopbackServer server;
        server.answer({end});
        fetchedFrom(server);
        EXPECT_THAT(server.requests(), SizeIs(1));
        EXPECT_EQ(server.connections(), 1);
    }
}

TEST_F(WidgetAPIOnLoopback, AsksWithTheBearerTokenForJson)
{
    LoopbackServer server;
    server.answer({Send{httpAnswer(200, "", "Set-Cookie: session=1\r\n")}});
    fetchedFrom(server);
    fetchedFrom(server);

    for (const QByteArray& request : server.requests()) {
        EXPECT_THAT(request.toStdString(), AllOf(StartsWith("GET /api/roost/v1/widget HTTP/1.1\r\n"),
                                                 HasSubstr("\r\nAuthorization: Bearer canary\r\n"),
                                                 HasSubstr("\r\nAccept: application/json\r\n"),
                                                 Not(HasSubstr("ookie")), EndsWith("\r\n\r\n")));
    }
}

TEST_F(WidgetAPIOnLoopback, NeverLogsTheTokenOrTheBody)
{
    const QByteArray echo = "canary Bearer canary";
    for (const auto& script :
         {LoopbackServer::Script{Close{}}, LoopbackServer::Script{Send{echo}, Close{}},
          LoopbackServer::Script{Send{httpAnswer(200, echo, "X: " + echo + "\r\n")}},
          LoopbackServer::Script{Send{httpAnswer(401, echo)}},
          LoopbackServer::Script{
              Send{httpAnswer(302, echo, "Location: http://127.0.0.1:1/?token=canary\r\n")}},
          LoopbackServer::Script{Send{"HTTP/1.1 200 " + echo + "\r\nContent-Length: 99\r\n\r\n" + echo},
                                 Reset{}}}) {
        fetched(script);
    }

    EXPECT_THAT(log.lines(), SizeIs(2));
    EXPECT_FALSE(log.saw(u"canary"));
}

TEST_F(WidgetAPIOnLoopback, FetchesForSeveralProfilesAtOnce)
{
    LoopbackServer server;
    server.answer({Send{httpAnswer(200, snapshotJSON())}});
    NetworkHttpSession session;
    std::vector<Pending<Result>> pending;
    for (int i = 0; i < 5; ++i) {
        // The value may go before its tasks end.
        const WidgetAPI api(server.url(), session);
        pending.emplace_back(api.fetch(QString::number(i), {}));
    }

    for (auto& fetch : pending) {
        EXPECT_EQ(fetch.get(), Result(WidgetAPI::Snapshot{snapshot()}));
    }
    EXPECT_THAT(server.requests(), SizeIs(5));
}

TEST(WidgetAPI, AsksUnderTheBaseWithOrWithoutASlash)
{
    for (const auto& [base, asked] :
         {std::pair(u"https://a.example", u"https://a.example/api/roost/v1/widget"),
          std::pair(u"https://a.example/", u"https://a.example/api/roost/v1/widget"),
          std::pair(u"http://a.example:81/x", u"http://a.example:81/x/api/roost/v1/widget"),
          std::pair(u"http://a.example/x/?q", u"http://a.example/x/api/roost/v1/widget")}) {
        HttpRequest sent;
        fetchedInProcess(HttpResponse{.status = 404, .headers = {}, .body = {}},
                         QUrl(QString::fromUtf16(base)), &sent);
        EXPECT_EQ(sent.url, QUrl(QString::fromUtf16(asked)));
    }
}

TEST(WidgetAPI, AllowsThirtySecondsAndFourMebibytes)
{
    HttpRequest sent;
    fetchedInProcess(HttpResponse{.status = 404, .headers = {}, .body = {}},
                     QUrl(QStringLiteral("https://a.example")), &sent);

    EXPECT_EQ(sent.method, HttpRequest::Method::get);
    EXPECT_EQ(sent.timeout, std::chrono::seconds(30));
    EXPECT_EQ(sent.bodyLimit, 4 * 1024 * 1024);
    EXPECT_EQ(sent.bodies, HttpRequest::Bodies::onlyOfStatus200);
}

TEST(WidgetAPI, GivesUnreachableForEveryFailureInTransport)
{
    for (const int code : {-1001, -1003, -1004, -1005, -1009, -1200, -1202, 0}) {
        const LogCatcher log;
        EXPECT_EQ(fetchedInProcess(std::unexpected(HttpFailure{HttpFailure::Kind::transport, code})),
                  unreachable)
            << code;
        EXPECT_THAT(log.lines(),
                    ElementsAre(LogCatcher::Line{QtCriticalMsg, "world.brisken.roost.mac.sync",
                                                 QStringLiteral("snapshot request failed: %1").arg(code)}));
    }
}

TEST(WidgetAPI, ComparesResultsCaseByCase)
{
    EXPECT_EQ(Result(Unavailable{1}), Result(Unavailable{1}));
    EXPECT_NE(Result(Unavailable{1}), Result(Unavailable{2}));
    EXPECT_NE(Result(Unavailable{}), Result(Unavailable{0}));
    EXPECT_NE(unauthorized, forbidden);
    EXPECT_NE(unreachable, malformed);
    RoostSnapshot other = snapshot();
    other.profile.name = "Other";
    EXPECT_NE(Result(WidgetAPI::Snapshot{snapshot()}), Result(WidgetAPI::Snapshot{other}));
}

} // namespace roost::test
