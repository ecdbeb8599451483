#include "bench/NlohmannPeer.h"

#include "model/RoostJSON.h"

#include <nlohmann/json.hpp>

namespace roost::bench::nlohmannPeer {

namespace {

using Json = nlohmann::json;
using Basis = RoostSnapshot::Views::Basis;
using Reporting = RoostSnapshot::Network::Reporting;

void get(const Json& json, std::int64_t& out) { out = json.get<std::int64_t>(); }
void get(const Json& json, std::string& out) { out = json.get_ref<const std::string&>(); }
void get(const Json& json, Date& out)
{
    out = RoostJSON::parseDate(json.get_ref<const std::string&>()).value();
}

void get(const Json& json, Basis& out)
{
    out = json.get_ref<const std::string&>() == "growth" ? Basis::growth : Basis::published;
}

void get(const Json& json, Reporting& out)
{
    const auto& word = json.get_ref<const std::string&>();
    out = word == "ok"            ? Reporting::ok
          : word == "empty"       ? Reporting::empty
          : word == "failed"      ? Reporting::failed
          : word == "unsupported" ? Reporting::unsupported
                                  : Reporting::unknown;
}

void get(const Json& json, RoostAccountRecord::Status& out)
{
    const auto& word = json.get_ref<const std::string&>();
    if (word != "ok" && word != "signedOut") {
        throw std::runtime_error{"unknown status"};
    }
    out = word == "ok" ? RoostAccountRecord::Status::ok : RoostAccountRecord::Status::signedOut;
}

void get(const Json& json, RoostSnapshot::Profile& out);
void get(const Json& json, RoostSnapshot::Views& out);
void get(const Json& json, RoostSnapshot::Views::Day& out);
void get(const Json& json, RoostSnapshot::Network& out);
void get(const Json& json, RoostSnapshot::Posts& out);
void get(const Json& json, RoostSnapshot::Posts::Next& out);
void get(const Json& json, RoostSnapshot::BestPost& out);
void get(const Json& json, RoostSnapshot::Followers& out);
void get(const Json& json, RoostSnapshot::Followers::Day& out);
void get(const Json& json, RoostSnapshot::Followers::FollowerNetwork& out);
void get(const Json& json, RoostSnapshot& out);
void get(const Json& json, RoostAccountRecord& out);

template <class Element>
void get(const Json& json, std::vector<Element>& out)
{
    out.reserve(json.size());
    for (const Json& element : json) {
        get(element, out.emplace_back());
    }
}

template <class Member>
void maybe(const Json& json, const char* key, Member& out)
{
    if (const auto found = json.find(key); found != json.end() && !found->is_null()) {
        get(*found, out);
    }
}

template <class Member>
void maybe(const Json& json, const char* key, std::optional<Member>& out)
{
    if (const auto found = json.find(key); found != json.end() && !found->is_null()) {
        get(*found, out.emplace());
    }
}

void maybe(const Json& json, const char* key, std::optional<WebURL>& out)
{
    if (const auto found = json.find(key); found != json.end() && found->is_string()) {
        out = WebURL::parse(found->get_ref<const std::string&>());
    }
}

void get(const Json& json, RoostSnapshot::Profile& out)
{
    get(json.at("id"), out.id);
    get(json.at("name"), out.name);
    maybe(json, "avatarUrl", out.avatarUrl);
}

void get(const Json& json, RoostSnapshot::Views::Day& out)
{
    get(json.at("day"), out.day);
    get(json.at("views"), out.views);
}

void get(const Json& json, RoostSnapshot::Views& out)
{
    maybe(json, "days", out.days);
    maybe(json, "total", out.total);
    maybe(json, "previous", out.previous);
    maybe(json, "basis", out.basis);
    maybe(json, "series", out.series);
}

void get(const Json& json, RoostSnapshot::Network& out)
{
    get(json.at("platform"), out.platform);
    get(json.at("label"), out.label);
    maybe(json, "username", out.username);
    maybe(json, "views", out.views);
    get(json.at("posts"), out.posts);
    get(json.at("reporting"), out.reporting);
}

void get(const Json& json, RoostSnapshot::Posts::Next& out)
{
    get(json.at("id"), out.id);
    get(json.at("at"), out.at);
    get(json.at("text"), out.text);
    get(json.at("networks"), out.networks);
}

void get(const Json& json, RoostSnapshot::Posts& out)
{
    get(json.at("published7"), out.published7);
    get(json.at("scheduled"), out.scheduled);
    get(json.at("failed"), out.failed);
    get(json.at("next"), out.next);
}

void get(const Json& json, RoostSnapshot::BestPost& out)
{
    get(json.at("platform"), out.platform);
    get(json.at("label"), out.label);
    get(json.at("views"), out.views);
    maybe(json, "text", out.text);
    maybe(json, "url", out.url);
}

void get(const Json& json, RoostSnapshot::Followers::Day& out)
{
    get(json.at("day"), out.day);
    get(json.at("total"), out.total);
}

void get(const Json& json, RoostSnapshot::Followers::FollowerNetwork& out)
{
    get(json.at("platform"), out.platform);
    maybe(json, "username", out.username);
    get(json.at("count"), out.count);
    maybe(json, "delta7", out.delta7);
}

void get(const Json& json, RoostSnapshot::Followers& out)
{
    get(json.at("total"), out.total);
    get(json.at("series"), out.series);
    get(json.at("networks"), out.networks);
}

void get(const Json& json, RoostSnapshot& out)
{
    maybe(json, "version", out.version);
    get(json.at("generatedAt"), out.generatedAt);
    get(json.at("profile"), out.profile);
    get(json.at("views"), out.views);
    maybe(json, "networks", out.networks);
    maybe(json, "posts", out.posts);
    maybe(json, "best", out.best);
    maybe(json, "followers", out.followers);
    maybe(json, "sampledAt", out.sampledAt);
    maybe(json, "roostUrl", out.roostUrl);
}

void get(const Json& json, RoostAccountRecord& out)
{
    get(json.at("profileId"), out.profileId);
    get(json.at("profileName"), out.profileName);
    get(json.at("status"), out.status);
    maybe(json, "snapshot", out.snapshot);
    maybe(json, "fetchedAt", out.fetchedAt);
    maybe(json, "lastAttemptAt", out.lastAttemptAt);
}

Json put(const RoostAccountRecord& record);

template <class Member>
void putIf(Json& json, const char* key, const std::optional<Member>& member)
{
    if (!member) {
        return;
    }
    if constexpr (std::is_same_v<Member, WebURL>) {
        json[key] = member->text();
    } else if constexpr (std::is_same_v<Member, Date>) {
        json[key] = RoostJSON::formatDate(*member);
    } else {
        json[key] = *member;
    }
}

const char* wordOf(Reporting reporting)
{
    switch (reporting) {
    case Reporting::ok:
        return "ok";
    case Reporting::empty:
        return "empty";
    case Reporting::failed:
        return "failed";
    case Reporting::unsupported:
        return "unsupported";
    case Reporting::unknown:
        break;
    }
    return "unknown";
}

Json put(const RoostSnapshot::Views::Day& day) { return {{"day", day.day}, {"views", day.views}}; }

Json put(const RoostSnapshot::Followers::Day& day) { return {{"day", day.day}, {"total", day.total}}; }

Json put(const RoostSnapshot::Network& network)
{
    Json json = {{"label", network.label},
                 {"platform", network.platform},
                 {"posts", network.posts},
                 {"reporting", wordOf(network.reporting)}};
    putIf(json, "username", network.username);
    putIf(json, "views", network.views);
    return json;
}

Json put(const RoostSnapshot::Followers::FollowerNetwork& network)
{
    Json json = {{"count", network.count}, {"platform", network.platform}};
    putIf(json, "delta7", network.delta7);
    putIf(json, "username", network.username);
    return json;
}

Json put(const RoostSnapshot::Posts::Next& next)
{
    return {{"at", RoostJSON::formatDate(next.at)},
            {"id", next.id},
            {"networks", next.networks},
            {"text", next.text}};
}

template <class Element>
Json put(const std::vector<Element>& elements)
{
    Json json = Json::array();
    for (const Element& element : elements) {
        json.push_back(put(element));
    }
    return json;
}

Json put(const RoostSnapshot& snapshot)
{
    Json profile = {{"id", snapshot.profile.id}, {"name", snapshot.profile.name}};
    putIf(profile, "avatarUrl", snapshot.profile.avatarUrl);

    Json views = {{"basis", snapshot.views.basis == Basis::growth ? "growth" : "published"},
                  {"days", snapshot.views.days},
                  {"series", put(snapshot.views.series)}};
    putIf(views, "previous", snapshot.views.previous);
    putIf(views, "total", snapshot.views.total);

    Json json = {{"generatedAt", RoostJSON::formatDate(snapshot.generatedAt)},
                 {"networks", put(snapshot.networks)},
                 {"posts",
                  {{"failed", snapshot.posts.failed},
                   {"next", put(snapshot.posts.next)},
                   {"published7", snapshot.posts.published7},
                   {"scheduled", snapshot.posts.scheduled}}},
                 {"profile", std::move(profile)},
                 {"version", snapshot.version},
                 {"views", std::move(views)}};
    if (const auto& best = snapshot.best) {
        Json& put = json["best"] = {{"label", best->label},
                                    {"platform", best->platform},
                                    {"text", best->text},
                                    {"views", best->views}};
        putIf(put, "url", best->url);
    }
    if (const auto& followers = snapshot.followers) {
        json["followers"] = {{"networks", put(followers->networks)},
                             {"series", put(followers->series)},
                             {"total", followers->total}};
    }
    putIf(json, "roostUrl", snapshot.roostUrl);
    putIf(json, "sampledAt", snapshot.sampledAt);
    return json;
}

Json put(const RoostAccountRecord& record)
{
    Json json = {{"profileId", record.profileId},
                 {"profileName", record.profileName},
                 {"status", record.status == RoostAccountRecord::Status::ok ? "ok" : "signedOut"}};
    if (record.snapshot) {
        json["snapshot"] = put(*record.snapshot);
    }
    putIf(json, "fetchedAt", record.fetchedAt);
    putIf(json, "lastAttemptAt", record.lastAttemptAt);
    return json;
}

} // namespace

RoostSnapshot decodeSnapshot(std::string_view bytes)
{
    RoostSnapshot snapshot;
    get(Json::parse(bytes), snapshot);
    return snapshot;
}

RoostStoreFile decodeStoreFile(std::string_view bytes)
{
    const Json json = Json::parse(bytes);
    RoostStoreFile file;
    get(json.at("schema"), file.schema);
    get(json.at("writtenAt"), file.writtenAt);
    get(json.at("accounts"), file.accounts);
    return file;
}

std::string encode(const RoostSnapshot& snapshot) { return put(snapshot).dump(); }

std::string encode(const RoostStoreFile& file)
{
    return Json{{"accounts", put(file.accounts)},
                {"schema", file.schema},
                {"writtenAt", RoostJSON::formatDate(file.writtenAt)}}
        .dump();
}

} // namespace roost::bench::nlohmannPeer
