#include "programs/roost-service/ScenarioReply.h"

#include "programs/roost-service/Gzip.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;
using Kind = Scenario::Kind;
using std::chrono::seconds;

Answer withStatus(const Scenario& scenario)
{
    Answer answer = scenario.body.isEmpty() ? jsonAnswer({{u"error"_s, u"scenario"_s}}, scenario.status)
                                            : textAnswer(scenario.body, "application/json", scenario.status);
    if (scenario.retryAfter) {
        answer.headers.emplace_back("Retry-After", *scenario.retryAfter);
    }
    return answer;
}

/// A JSON document of `bytes` bytes, or the smallest one.
QByteArray largeDocument(qint64 bytes)
{
    QByteArray document = R"({"padding":")";
    document += QByteArray(std::max<qint64>(0, bytes - document.size() - 2), 'x');
    return document + R"("})";
}

/// What a scenario says in place of the ordinary answer; nothing when it lets the request through.
std::optional<Answer> substitute(const Scenario& scenario)
{
    switch (scenario.kind) {
    case Kind::status:
        return withStatus(scenario);
    case Kind::malformed:
        return textAnswer(R"({"version":1,"generatedAt":)", "application/json");
    case Kind::empty:
        return textAnswer({}, "application/json");
    case Kind::body:
        return textAnswer(scenario.body, "application/json");
    case Kind::huge:
        return textAnswer(largeDocument(scenario.bytes), "application/json");
    case Kind::gzipBomb: {
        Answer answer = textAnswer(gzipped(QByteArray(scenario.bytes, ' ')), "application/json");
        answer.headers.emplace_back("Content-Encoding", "gzip");
        return answer;
    }
    case Kind::redirect: {
        Answer answer = textAnswer({}, "text/plain", scenario.status);
        answer.headers.emplace_back("Location", scenario.location);
        return answer;
    }
    case Kind::oauthError:
        return jsonAnswer({{u"error"_s, QString::fromLatin1(scenario.error)}}, scenario.status);
    default:
        return std::nullopt;
    }
}

/// Changes the ordinary answer where the scenario asks for it.
Answer adapted(const Scenario& scenario, Answer answer)
{
    if (scenario.kind == Kind::gzip) {
        answer.body = gzipped(answer.body);
        answer.headers.emplace_back("Content-Encoding", "gzip");
    }
    if (scenario.kind == Kind::headers) {
        for (const auto& header : scenario.headers) {
            std::erase_if(answer.headers, [&](const auto& old) {
                return old.first.compare(header.first, Qt::CaseInsensitive) == 0;
            });
        }
        answer.headers.insert(answer.headers.end(), scenario.headers.begin(), scenario.headers.end());
    }
    return answer;
}

Delivery deliveryOf(const Scenario& scenario)
{
    Delivery delivery;
    switch (scenario.kind) {
    case Kind::drop:
        delivery.ending = Delivery::Ending::drop;
        break;
    case Kind::reset:
        delivery.ending = Delivery::Ending::reset;
        break;
    case Kind::hang:
        delivery.ending = Delivery::Ending::hang;
        break;
    case Kind::drip:
    case Kind::dripHead:
        delivery.dripHead = scenario.kind == Kind::dripHead;
        delivery.dripBytes = scenario.bytes;
        delivery.dripPause = scenario.delay;
        return delivery;
    case Kind::truncated:
        delivery.bodyCutAt = scenario.bytes;
        break;
    case Kind::notHttp:
        delivery.verbatim = "SSH-2.0-roost\r\nthis is no HTTP\r\n\r\n";
        break;
    default:
        break;
    }
    (scenario.processed ? delivery.after : delivery.before) = scenario.delay;
    return delivery;
}

bool isCarriedOut(const Scenario& scenario)
{
    switch (scenario.kind) {
    case Kind::drop:
    case Kind::reset:
    case Kind::hang:
    case Kind::notHttp:
        return scenario.processed;
    default:
        return true;
    }
}

} // namespace

Reply scenarioReply(const std::optional<Scenario>& scenario, std::function<Answer(seconds)> ordinary)
{
    if (!scenario) {
        return {[ordinary = std::move(ordinary)] { return ordinary(seconds(0)); }, {}, nullptr};
    }
    Reply reply;
    reply.delivery = deliveryOf(*scenario);
    if (std::optional<Answer> instead = substitute(*scenario)) {
        reply.carryOut = [answer = *std::move(instead)] { return answer; };
    } else if (isCarriedOut(*scenario)) {
        reply.carryOut = [scenario = *scenario, ordinary = std::move(ordinary)] {
            return adapted(scenario, ordinary(scenario.offset));
        };
    }
    return reply;
}

} // namespace roost::local
