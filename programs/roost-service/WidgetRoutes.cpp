#include "programs/roost-service/WidgetRoutes.h"

#include "model/RoostJSON.h"
#include "model/RoostSnapshotFields.h"

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

bool isTokenText(QByteArrayView text)
{
    const auto isTokenCharacter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               QByteArrayView("-._~+/=").contains(c);
    };
    return !text.isEmpty() && std::ranges::all_of(text, isTokenCharacter);
}

} // namespace

std::optional<std::string> bearerToken(const Request& request)
{
    const QByteArray header = request.header("Authorization").value_or(QByteArray());
    constexpr QByteArrayView scheme = "Bearer ";
    const QByteArray token = header.mid(scheme.size());
    if (header.left(scheme.size()).compare(scheme, Qt::CaseInsensitive) != 0 || !isTokenText(token)) {
        return std::nullopt;
    }
    return token.toStdString();
}

WidgetRoutes::WidgetRoutes(ServiceState& state, AccessCheck check, QByteArray resourceMetadata)
    : state_(state),
      check_(std::move(check)),
      resourceMetadata_(std::move(resourceMetadata))
{
}

std::optional<Access> WidgetRoutes::accessOf(const Request& request) const
{
    const std::optional<std::string> token = bearerToken(request);
    return token ? check_(*token) : std::nullopt;
}

std::optional<std::string> WidgetRoutes::profileOf(const Request& request) const
{
    const std::optional<Access> access = accessOf(request);
    return access ? std::optional(access->profile) : std::nullopt;
}

Answer WidgetRoutes::answer(const Request& request, std::chrono::seconds clockOffset) const
{
    if (request.method != "GET") {
        Answer refusal = jsonAnswer({{u"error"_s, u"method_not_allowed"_s}}, 405);
        refusal.headers.emplace_back("Allow", "GET");
        return refusal;
    }
    const QByteArray challenge = "Bearer resource_metadata=\"" + resourceMetadata_ + '"';
    const std::optional<Access> access = accessOf(request);
    const LivingProfile* profile = access ? state_.profile(access->profile) : nullptr;
    if (profile == nullptr) {
        Answer refusal = jsonAnswer({{u"error"_s, u"invalid_token"_s}}, 401);
        // RFC 6750 §3.1: a client that sent nothing is told nothing more.
        const bool sentSomething = !request.headerValues("Authorization").empty();
        refusal.headers.emplace_back("WWW-Authenticate",
                                     sentSomething ? challenge + ", error=\"invalid_token\"" : challenge);
        return refusal;
    }
    if (!access->readsMetrics) {
        Answer refusal = jsonAnswer({{u"error"_s, u"insufficient_scope"_s}}, 403);
        refusal.headers.emplace_back("WWW-Authenticate",
                                     challenge + ", error=\"insufficient_scope\", scope=\"metrics:read\"");
        return refusal;
    }
    const RoostSnapshot snapshot = profile->snapshot(state_.now() + clockOffset);
    return textAnswer(QByteArray::fromStdString(RoostJSON::encoder().encode(snapshot)), "application/json");
}

} // namespace roost::local
