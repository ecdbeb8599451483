#include "service/HttpResponseParser.h"

#include "tests/support/Gzip.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using Bodies = HttpRequest::Bodies;
using Kind = HttpFailure::Kind;
using testing::ElementsAre;
using testing::Pair;

enum class Then { stays, closes };

constexpr qint64 limit = 100;

std::optional<HttpResult> parsedInPieces(const QByteArray& bytes, qsizetype piece, Then then, Bodies bodies)
{
    HttpResponseParser parser(bodies, limit);
    for (qsizetype i = 0; i < bytes.size(); i += piece) {
        parser.feed(QByteArrayView(bytes).sliced(i, std::min(piece, bytes.size() - i)));
    }
    if (then == Then::closes) {
        parser.close();
    }
    return parser.result();
}

/// What the parser makes of `bytes`, which must not depend on the pieces in which they come.
std::optional<HttpResult> parsed(const QByteArray& bytes, Then then = Then::stays,
                                 Bodies bodies = Bodies::all)
{
    const std::optional<HttpResult> whole = parsedInPieces(bytes, bytes.size(), then, bodies);
    for (const qsizetype piece : {1, 2, 7}) {
        EXPECT_TRUE(whole == parsedInPieces(bytes, piece, then, bodies)) << "in pieces of " << piece;
    }
    return whole;
}

HttpResponse answer(const QByteArray& bytes, Then then = Then::stays, Bodies bodies = Bodies::all)
{
    const std::optional<HttpResult> result = parsed(bytes, then, bodies);
    EXPECT_TRUE(result.has_value());
    EXPECT_TRUE(!result || result->has_value());
    return result && *result ? **result : HttpResponse{};
}

std::optional<HttpFailure> failure(const QByteArray& bytes, Then then = Then::stays,
                                   Bodies bodies = Bodies::all)
{
    const std::optional<HttpResult> result = parsed(bytes, then, bodies);
    return result && !*result ? std::optional(result->error()) : std::nullopt;
}

constexpr HttpFailure lost{Kind::transport, -1005};
constexpr HttpFailure notHttp{Kind::notHttp, 0};
constexpr HttpFailure tooLarge{Kind::bodyTooLarge, -1103};

} // namespace

TEST(HttpResponseParser, ReadsStatusHeadersAndACountedBody)
{
    const HttpResponse response =
        answer("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 5\r\n\r\nhello");

    EXPECT_EQ(response.status, 200);
    EXPECT_THAT(response.headers,
                ElementsAre(Pair("Content-Type", "text/plain"), Pair("Content-Length", "5")));
    EXPECT_EQ(response.body, "hello");
}

TEST(HttpResponseParser, ReadsAStatusLineWithoutAReasonAndLinesThatEndWithALineFeedAlone)
{
    EXPECT_EQ(answer("HTTP/1.0 599\r\nContent-Length: 0\r\n\r\n").status, 599);
    EXPECT_EQ(answer("HTTP/1.1 600 \nContent-Length: 1\n\nx").body, "x");
}

TEST(HttpResponseParser, IgnoresWhatFollowsTheAnswer)
{
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nabHTTP/1.1 500 No\r\n\r\n").body, "ab");
}

TEST(HttpResponseParser, LeavesOutTheWhiteSpaceAroundAValueAndKeepsTheOneInside)
{
    const HttpResponse response =
        answer("HTTP/1.1 200 OK\r\nA:\t 1  2 \t\r\nB:\r\nA: three\r\nContent-Length: 0\r\n\r\n");

    EXPECT_EQ(response.header("a"), "1  2");
    EXPECT_EQ(response.header("B"), "");
    EXPECT_EQ(response.header("C"), std::nullopt);
}

TEST(HttpResponseParser, JoinsAFoldedLineToTheOneBefore)
{
    EXPECT_EQ(answer("HTTP/1.1 204 No\r\nA: one\r\n  two\r\n\t\r\n\r\n").header("A"), "one two");
    EXPECT_EQ(failure("HTTP/1.1 204 No\r\n A: one\r\n\r\n"), notHttp);
}

TEST(HttpResponseParser, PutsABlankInPlaceOfAControlCharacterInAValue)
{
    EXPECT_EQ(answer(QByteArray("HTTP/1.1 204 No\r\nA: 1\0002\r3\x7f\r\n\r\n", 31)).header("A"), "1 2 3 ");
}

TEST(HttpResponseParser, PassesOverInterimAnswers)
{
    const HttpResponse response = answer("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Hints\r\nLink: x\r\n\r\n"
                                         "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\ny");

    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.header("Link"), std::nullopt);
    EXPECT_EQ(response.body, "y");
}

TEST(HttpResponseParser, TakesASwitchOfProtocolsAsTheAnswer)
{
    EXPECT_EQ(answer("HTTP/1.1 101 Switching\r\nUpgrade: x\r\n\r\nbinary").status, 101);
}

TEST(HttpResponseParser, ReadsABodyUntilTheConnectionCloses)
{
    EXPECT_FALSE(parsed("HTTP/1.1 200 OK\r\n\r\nhel").has_value());
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\n\r\nhello", Then::closes).body, "hello");
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\n\r\n", Then::closes).body, "");
}

TEST(HttpResponseParser, WaitsForNoBodyWhereThereIsNone)
{
    EXPECT_EQ(answer("HTTP/1.1 204 No\r\n\r\n").status, 204);
    EXPECT_EQ(answer("HTTP/1.1 304 Same\r\nContent-Length: 9\r\n\r\n").status, 304);
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n").status, 200);
}

TEST(HttpResponseParser, ReadsAChunkedBody)
{
    const QByteArray head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n";

    EXPECT_EQ(answer(head + "3\r\nabc\r\n00A ;x=\"y\"\r\n0123456789\r\n0\r\n\r\n").body, "abc0123456789");
    EXPECT_EQ(answer(head + "1\r\na\r\n0\r\nTrailer: x\r\n\r\n").body, "a");
}

TEST(HttpResponseParser, TakesTheChunksWhenALengthIsGivenToo)
{
    EXPECT_EQ(
        answer(
            "HTTP/1.1 200 OK\r\nContent-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n0\r\n\r\n")
            .body,
        "ab");
}

TEST(HttpResponseParser, TellsABrokenChunkFromAWholeOne)
{
    const QByteArray head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

    for (const char* body : {"x\r\n", "\r\n", "-1\r\n", "0x1\r\na", "+1\r\na", "ffffffffffffffff\r\n",
                             "2\r\nabc\r\n", "1 1\r\na"}) {
        EXPECT_EQ(failure(head + body), lost) << body;
    }
    for (const char* body : {"", "3", "3\r\n", "3\r\nab", "3\r\nabc", "3\r\nabc\r\n", "0\r\n"}) {
        EXPECT_EQ(failure(head + body, Then::closes), lost) << body;
    }
}

TEST(HttpResponseParser, LosesAnAnswerThatIsCutOff)
{
    const QByteArray whole = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello";

    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(failure(whole.first(length), Then::closes), lost) << length;
    }
}

TEST(HttpResponseParser, RefusesWhatIsNotHttpAtItsFirstBytes)
{
    for (const char* bytes : {"S", "HTTX", "HTTP/2", "HTTP/1,", " HTTP/1.1", "<html>", "\r\n"}) {
        EXPECT_EQ(failure(bytes), notHttp) << bytes;
    }
}

TEST(HttpResponseParser, RefusesABrokenStatusLine)
{
    for (const char* line :
         {"HTTP/1.1 20", "HTTP/1.1 2000", "HTTP/1.1  200", "HTTP/1.1 099 Low", "HTTP/1.1 2x0 OK",
          "HTTP/1.x 200 OK", "HTTP/1.1200 OK", "HTTP/1.12 200", "HTTP/1.1 -20 OK"}) {
        EXPECT_EQ(failure(QByteArray(line) + "\r\n"), notHttp) << line;
    }
}

TEST(HttpResponseParser, RefusesAHeadThatIsNone)
{
    for (const char* line : {"no colon", ": no name", "A b: blank in the name", "A : blank after it"}) {
        EXPECT_EQ(failure("HTTP/1.1 200 OK\r\n" + QByteArray(line) + "\r\n"), notHttp) << line;
    }
}

TEST(HttpResponseParser, RefusesAHeadWithoutEnd)
{
    const QByteArray kibibyte(1024, 'x');

    EXPECT_EQ(failure("HTTP/1.1 200 " + kibibyte.repeated(64)), notHttp);
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\n" + ("A: " + kibibyte + "\r\n").repeated(64)), notHttp);
    EXPECT_EQ(failure(QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(3000)), notHttp);
    EXPECT_EQ(answer("HTTP/1.1 204 OK\r\n" + ("A: " + kibibyte + "\r\n").repeated(60) + "\r\n").status, 204);
}

TEST(HttpResponseParser, AllowsAnyNumberOfChunksAndOneTrailerOfBoundedLength)
{
    const QByteArray head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const QByteArray extension = ";x=" + QByteArray(1000, 'y');

    EXPECT_EQ(answer(head + ("1" + extension + "\r\na\r\n").repeated(90) + "0\r\n\r\n").body,
              QByteArray(90, 'a'));
    EXPECT_EQ(failure(head + "1;" + QByteArray(65 * 1024, 'y')), notHttp);
    EXPECT_EQ(failure(head + "0\r\n" + QByteArray("T: x\r\n").repeated(12'000)), notHttp);
}

TEST(HttpResponseParser, RefusesAFramingThatIsUnclear)
{
    for (const char* header :
         {"Content-Length: x", "Content-Length: -1", "Content-Length: +1", "Content-Length: 1, 2",
          "Content-Length: 1\r\nContent-Length: 2", "Content-Length:", "Content-Length: 99999999999999999999",
          "Transfer-Encoding: gzip, chunked", "Transfer-Encoding: identity",
          "Transfer-Encoding: chunked, chunked"}) {
        EXPECT_EQ(failure("HTTP/1.1 200 OK\r\n" + QByteArray(header) + "\r\n\r\n"), notHttp) << header;
    }
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\nContent-Length: 1, 1\r\nContent-Length: 1\r\n\r\nx").body, "x");
}

TEST(HttpResponseParser, UndoesTheContentCoding)
{
    const QByteArray plain = "hello, hello, hello";
    for (const auto& [coding, body] :
         {std::pair(QByteArray("gzip"), gzip(plain)), std::pair(QByteArray("X-GZIP"), gzip(plain)),
          std::pair(QByteArray("deflate"), deflate(plain)), std::pair(QByteArray("identity"), plain),
          std::pair(QByteArray(""), plain)}) {
        const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Encoding: " + coding + "\r\n";
        EXPECT_EQ(
            answer(head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body).body,
            plain)
            << coding.constData();
        EXPECT_EQ(answer(head + "\r\n" + body, Then::closes).body, plain) << coding.constData();
    }
}

TEST(HttpResponseParser, TakesAnEmptyBodyForAnEmptyCodedOne)
{
    EXPECT_EQ(answer("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 0\r\n\r\n").body, "");
}

TEST(HttpResponseParser, RefusesACodingThatItCannotUndo)
{
    for (const char* coding : {"br", "gzip, gzip", "compress", "zstd"}) {
        EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nContent-Encoding: " + QByteArray(coding) + "\r\n\r\n"), notHttp)
            << coding;
    }
    EXPECT_EQ(failure("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\nplain text"), notHttp);
}

TEST(HttpResponseParser, TellsACodedBodyThatWasCutOffFromOneThatIsBroken)
{
    const QByteArray half = gzip("hello, hello, hello").chopped(5);
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n";

    EXPECT_EQ(failure(head + "\r\n" + half, Then::closes), lost);
    EXPECT_EQ(failure(head + "Content-Length: " + QByteArray::number(half.size()) + "\r\n\r\n" + half),
              notHttp);
}

TEST(HttpResponseParser, TakesABodyOfTheLimitAndNoByteMore)
{
    for (const qsizetype size : {limit, limit + 1}) {
        const QByteArray body(size, 'x');
        const QByteArray packed = gzip(body);
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const auto length = [](const QByteArray& b) {
            return "Content-Length: " + QByteArray::number(b.size()) + "\r\n\r\n" + b;
        };
        for (const auto& bytes : {ok + length(body), ok + "\r\n" + body,
                                  ok + "Transfer-Encoding: chunked\r\n\r\n" + QByteArray::number(size, 16) +
                                      "\r\n" + body + "\r\n0\r\n\r\n",
                                  ok + "Content-Encoding: gzip\r\n" + length(packed)}) {
            if (size == limit) {
                EXPECT_EQ(answer(bytes, Then::closes).body, body);
            } else {
                EXPECT_EQ(failure(bytes, Then::closes), tooLarge);
            }
        }
    }
}

TEST(HttpResponseParser, IsDoneAtTheHeadWhenTheBodyIsNotAskedFor)
{
    for (const char* header : {"Content-Length: 1000000", "Transfer-Encoding: chunked",
                               "Content-Encoding: br", "Content-Length: nonsense", "A: b"}) {
        const HttpResponse response = answer("HTTP/1.1 401 No\r\n" + QByteArray(header) + "\r\n\r\nbody",
                                             Then::stays, Bodies::onlyOfStatus200);
        EXPECT_EQ(response.status, 401) << header;
        EXPECT_EQ(response.body, "") << header;
    }
    EXPECT_FALSE(
        parsed("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody", Then::stays, Bodies::onlyOfStatus200)
            .has_value());
}

TEST(HttpResponse, FindsTheFirstHeaderOfANameInAnyCase)
{
    const HttpResponse response{
        .status = 200, .headers = {{"Retry-After", "1"}, {"RETRY-AFTER", "2"}}, .body = {}};

    EXPECT_EQ(response.header("retry-after"), "1");
    EXPECT_EQ(response.header("retry"), std::nullopt);
}

} // namespace roost::test
