#include "bench/SimdjsonPeer.h"

#include "model/RoostJSON.h"

#include <stdexcept>

namespace roost::bench::simdjsonPeer {

namespace {

using simdjson::ondemand::object;
using simdjson::ondemand::value;
using Basis = RoostSnapshot::Views::Basis;
using Reporting = RoostSnapshot::Network::Reporting;

void get(value json, std::int64_t& out) { out = json.get_int64(); }
void get(value json, std::string& out) { out = std::string_view{json.get_string()}; }
void get(value json, Date& out) { out = RoostJSON::parseDate(json.get_string()).value(); }

void get(value json, std::optional<WebURL>& out)
{
    std::string_view text;
    if (json.get_string().get(text) == simdjson::SUCCESS) {
        out = WebURL::parse(text);
    }
}

void get(value json, Basis& out)
{
    out = std::string_view{json.get_string()} == "growth" ? Basis::growth : Basis::published;
}

void get(value json, Reporting& out)
{
    const std::string_view word = json.get_string();
    out = word == "ok"            ? Reporting::ok
          : word == "empty"       ? Reporting::empty
          : word == "failed"      ? Reporting::failed
          : word == "unsupported" ? Reporting::unsupported
                                  : Reporting::unknown;
}

void get(value json, RoostAccountRecord::Status& out)
{
    const std::string_view word = json.get_string();
    if (word != "ok" && word != "signedOut") {
        throw std::runtime_error{"unknown status"};
    }
    out = word == "ok" ? RoostAccountRecord::Status::ok : RoostAccountRecord::Status::signedOut;
}

void get(value json, RoostSnapshot::Profile& out);
void get(value json, RoostSnapshot::Views& out);
void get(value json, RoostSnapshot::Views::Day& out);
void get(value json, RoostSnapshot::Network& out);
void get(value json, RoostSnapshot::Posts& out);
void get(value json, RoostSnapshot::Posts::Next& out);
void get(value json, RoostSnapshot::BestPost& out);
void get(value json, RoostSnapshot::Followers& out);
void get(value json, RoostSnapshot::Followers::Day& out);
void get(value json, RoostSnapshot::Followers::FollowerNetwork& out);
void get(value json, RoostSnapshot& out);
void get(value json, RoostAccountRecord& out);

template <class Element>
void get(value json, std::vector<Element>& out)
{
    for (value element : json.get_array()) {
        get(element, out.emplace_back());
    }
}

template <class Member>
void get(value json, std::optional<Member>& out)
{
    if (!json.is_null()) {
        get(json, out.emplace());
    }
}

/// Hands each key of `json` and its value to `each`, which says whether it knew the key.
template <class Each>
void forEach(value json, Each each)
{
    for (auto field : json.get_object()) {
        each(field.key(), field.value());
    }
}

using Key = simdjson::ondemand::raw_json_string;

void get(value json, RoostSnapshot::Profile& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "id") {
            get(found, out.id);
        } else if (key == "name") {
            get(found, out.name);
        } else if (key == "avatarUrl") {
            get(found, out.avatarUrl);
        }
    });
}

void get(value json, RoostSnapshot::Views::Day& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "day") {
            get(found, out.day);
        } else if (key == "views") {
            get(found, out.views);
        }
    });
}

void get(value json, RoostSnapshot::Views& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "basis") {
            get(found, out.basis);
        } else if (key == "days") {
            get(found, out.days);
        } else if (key == "previous") {
            get(found, out.previous);
        } else if (key == "series") {
            get(found, out.series);
        } else if (key == "total") {
            get(found, out.total);
        }
    });
}

void get(value json, RoostSnapshot::Network& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "label") {
            get(found, out.label);
        } else if (key == "platform") {
            get(found, out.platform);
        } else if (key == "posts") {
            get(found, out.posts);
        } else if (key == "reporting") {
            get(found, out.reporting);
        } else if (key == "username") {
            get(found, out.username);
        } else if (key == "views") {
            get(found, out.views);
        }
    });
}

void get(value json, RoostSnapshot::Posts::Next& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "at") {
            get(found, out.at);
        } else if (key == "id") {
            get(found, out.id);
        } else if (key == "networks") {
            get(found, out.networks);
        } else if (key == "text") {
            get(found, out.text);
        }
    });
}

void get(value json, RoostSnapshot::Posts& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "failed") {
            get(found, out.failed);
        } else if (key == "next") {
            get(found, out.next);
        } else if (key == "published7") {
            get(found, out.published7);
        } else if (key == "scheduled") {
            get(found, out.scheduled);
        }
    });
}

void get(value json, RoostSnapshot::BestPost& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "label") {
            get(found, out.label);
        } else if (key == "platform") {
            get(found, out.platform);
        } else if (key == "text") {
            get(found, out.text);
        } else if (key == "url") {
            get(found, out.url);
        } else if (key == "views") {
            get(found, out.views);
        }
    });
}

void get(value json, RoostSnapshot::Followers::Day& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "day") {
            get(found, out.day);
        } else if (key == "total") {
            get(found, out.total);
        }
    });
}

void get(value json, RoostSnapshot::Followers::FollowerNetwork& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "count") {
            get(found, out.count);
        } else if (key == "delta7") {
            get(found, out.delta7);
        } else if (key == "platform") {
            get(found, out.platform);
        } else if (key == "username") {
            get(found, out.username);
        }
    });
}

void get(value json, RoostSnapshot::Followers& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "networks") {
            get(found, out.networks);
        } else if (key == "series") {
            get(found, out.series);
        } else if (key == "total") {
            get(found, out.total);
        }
    });
}

void get(value json, RoostSnapshot& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "best") {
            get(found, out.best);
        } else if (key == "followers") {
            get(found, out.followers);
        } else if (key == "generatedAt") {
            get(found, out.generatedAt);
        } else if (key == "networks") {
            get(found, out.networks);
        } else if (key == "posts") {
            get(found, out.posts);
        } else if (key == "profile") {
            get(found, out.profile);
        } else if (key == "roostUrl") {
            get(found, out.roostUrl);
        } else if (key == "sampledAt") {
            get(found, out.sampledAt);
        } else if (key == "version") {
            get(found, out.version);
        } else if (key == "views") {
            get(found, out.views);
        }
    });
}

void get(value json, RoostAccountRecord& out)
{
    forEach(json, [&](Key key, value found) {
        if (key == "fetchedAt") {
            get(found, out.fetchedAt);
        } else if (key == "lastAttemptAt") {
            get(found, out.lastAttemptAt);
        } else if (key == "profileId") {
            get(found, out.profileId);
        } else if (key == "profileName") {
            get(found, out.profileName);
        } else if (key == "snapshot") {
            get(found, out.snapshot);
        } else if (key == "status") {
            get(found, out.status);
        }
    });
}

} // namespace

RoostSnapshot decodeSnapshot(simdjson::ondemand::parser& parser, const simdjson::padded_string& bytes)
{
    auto document = parser.iterate(bytes);
    RoostSnapshot snapshot;
    get(document.get_value(), snapshot);
    return snapshot;
}

RoostStoreFile decodeStoreFile(simdjson::ondemand::parser& parser, const simdjson::padded_string& bytes)
{
    auto document = parser.iterate(bytes);
    RoostStoreFile file;
    forEach(document.get_value(), [&](Key key, value found) {
        if (key == "accounts") {
            get(found, file.accounts);
        } else if (key == "schema") {
            get(found, file.schema);
        } else if (key == "writtenAt") {
            get(found, file.writtenAt);
        }
    });
    return file;
}

} // namespace roost::bench::simdjsonPeer
