#include "bench/RapidjsonPeer.h"

#include "model/RoostJSON.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>

namespace roost::bench::rapidjsonPeer {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;
using Reporting = RoostSnapshot::Network::Reporting;

void put(Writer& writer, std::string_view text)
{
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

template <std::size_t Size>
void key(Writer& writer, const char (&text)[Size])
{
    writer.Key(text, Size - 1);
}

void put(Writer& writer, std::int64_t value) { writer.Int64(value); }
void put(Writer& writer, const std::string& text) { put(writer, std::string_view{text}); }
void put(Writer& writer, const WebURL& url) { put(writer, url.text()); }
void put(Writer& writer, Date date) { put(writer, RoostJSON::formatDate(date)); }

void put(Writer& writer, Reporting reporting)
{
    switch (reporting) {
    case Reporting::ok:
        return put(writer, std::string_view{"ok"});
    case Reporting::empty:
        return put(writer, std::string_view{"empty"});
    case Reporting::failed:
        return put(writer, std::string_view{"failed"});
    case Reporting::unsupported:
        return put(writer, std::string_view{"unsupported"});
    case Reporting::unknown:
        return put(writer, std::string_view{"unknown"});
    }
}

void put(Writer& writer, const RoostSnapshot::BestPost& best);
void put(Writer& writer, const RoostSnapshot::Followers& followers);
void put(Writer& writer, const RoostSnapshot& snapshot);
template <class Element>
void put(Writer& writer, const std::vector<Element>& elements);

template <std::size_t Size, class Member>
void putIf(Writer& writer, const char (&name)[Size], const std::optional<Member>& member)
{
    if (member) {
        key(writer, name);
        put(writer, *member);
    }
}

void put(Writer& writer, const RoostSnapshot::Profile& profile)
{
    writer.StartObject();
    putIf(writer, "avatarUrl", profile.avatarUrl);
    key(writer, "id");
    put(writer, profile.id);
    key(writer, "name");
    put(writer, profile.name);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Views::Day& day)
{
    writer.StartObject();
    key(writer, "day");
    put(writer, day.day);
    key(writer, "views");
    put(writer, day.views);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Views& views)
{
    writer.StartObject();
    key(writer, "basis");
    put(writer,
        std::string_view{views.basis == RoostSnapshot::Views::Basis::growth ? "growth" : "published"});
    key(writer, "days");
    put(writer, views.days);
    putIf(writer, "previous", views.previous);
    key(writer, "series");
    put(writer, views.series);
    putIf(writer, "total", views.total);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Network& network)
{
    writer.StartObject();
    key(writer, "label");
    put(writer, network.label);
    key(writer, "platform");
    put(writer, network.platform);
    key(writer, "posts");
    put(writer, network.posts);
    key(writer, "reporting");
    put(writer, network.reporting);
    putIf(writer, "username", network.username);
    putIf(writer, "views", network.views);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Posts::Next& next)
{
    writer.StartObject();
    key(writer, "at");
    put(writer, next.at);
    key(writer, "id");
    put(writer, next.id);
    key(writer, "networks");
    put(writer, next.networks);
    key(writer, "text");
    put(writer, next.text);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Posts& posts)
{
    writer.StartObject();
    key(writer, "failed");
    put(writer, posts.failed);
    key(writer, "next");
    put(writer, posts.next);
    key(writer, "published7");
    put(writer, posts.published7);
    key(writer, "scheduled");
    put(writer, posts.scheduled);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::BestPost& best)
{
    writer.StartObject();
    key(writer, "label");
    put(writer, best.label);
    key(writer, "platform");
    put(writer, best.platform);
    key(writer, "text");
    put(writer, best.text);
    putIf(writer, "url", best.url);
    key(writer, "views");
    put(writer, best.views);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Followers::Day& day)
{
    writer.StartObject();
    key(writer, "day");
    put(writer, day.day);
    key(writer, "total");
    put(writer, day.total);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Followers::FollowerNetwork& network)
{
    writer.StartObject();
    key(writer, "count");
    put(writer, network.count);
    putIf(writer, "delta7", network.delta7);
    key(writer, "platform");
    put(writer, network.platform);
    putIf(writer, "username", network.username);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot::Followers& followers)
{
    writer.StartObject();
    key(writer, "networks");
    put(writer, followers.networks);
    key(writer, "series");
    put(writer, followers.series);
    key(writer, "total");
    put(writer, followers.total);
    writer.EndObject();
}

void put(Writer& writer, const RoostSnapshot& snapshot)
{
    writer.StartObject();
    putIf(writer, "best", snapshot.best);
    putIf(writer, "followers", snapshot.followers);
    key(writer, "generatedAt");
    put(writer, snapshot.generatedAt);
    key(writer, "networks");
    put(writer, snapshot.networks);
    key(writer, "posts");
    put(writer, snapshot.posts);
    key(writer, "profile");
    put(writer, snapshot.profile);
    putIf(writer, "roostUrl", snapshot.roostUrl);
    putIf(writer, "sampledAt", snapshot.sampledAt);
    key(writer, "version");
    put(writer, snapshot.version);
    key(writer, "views");
    put(writer, snapshot.views);
    writer.EndObject();
}

void put(Writer& writer, const RoostAccountRecord& record)
{
    writer.StartObject();
    putIf(writer, "fetchedAt", record.fetchedAt);
    putIf(writer, "lastAttemptAt", record.lastAttemptAt);
    key(writer, "profileId");
    put(writer, record.profileId);
    key(writer, "profileName");
    put(writer, record.profileName);
    putIf(writer, "snapshot", record.snapshot);
    key(writer, "status");
    put(writer, std::string_view{record.status == RoostAccountRecord::Status::ok ? "ok" : "signedOut"});
    writer.EndObject();
}

void put(Writer& writer, const RoostStoreFile& file)
{
    writer.StartObject();
    key(writer, "accounts");
    put(writer, file.accounts);
    key(writer, "schema");
    put(writer, file.schema);
    key(writer, "writtenAt");
    put(writer, file.writtenAt);
    writer.EndObject();
}

template <class Element>
void put(Writer& writer, const std::vector<Element>& elements)
{
    writer.StartArray();
    for (const Element& element : elements) {
        put(writer, element);
    }
    writer.EndArray();
}

template <class Record>
std::string textOf(const Record& record)
{
    rapidjson::StringBuffer buffer;
    Writer writer{buffer};
    put(writer, record);
    return {buffer.GetString(), buffer.GetSize()};
}

} // namespace

std::string encode(const RoostSnapshot& snapshot) { return textOf(snapshot); }

std::string encode(const RoostStoreFile& file) { return textOf(file); }

} // namespace roost::bench::rapidjsonPeer
