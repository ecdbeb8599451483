#pragma once

#include "model/JsonFields.h"
#include "model/RoostSnapshot.h"

namespace roost {

template <>
struct JsonNames<RoostSnapshot::Views::Basis> {
    static constexpr std::array<std::string_view, 2> names{"growth", "published"};
    static constexpr std::optional fallback = RoostSnapshot::Views::Basis::published;
};

template <>
struct JsonNames<RoostSnapshot::Network::Reporting> {
    static constexpr std::array<std::string_view, 5> names{"ok", "empty", "failed", "unsupported", "unknown"};
    static constexpr std::optional fallback = RoostSnapshot::Network::Reporting::unknown;
};

template <>
struct JsonFields<RoostSnapshot::Profile> {
    using Record = RoostSnapshot::Profile;
    static constexpr auto fields = std::tuple(link("avatarUrl", &Record::avatarUrl),
                                              required("id", &Record::id), required("name", &Record::name));
};

template <>
struct JsonFields<RoostSnapshot::Views::Day> {
    using Record = RoostSnapshot::Views::Day;
    static constexpr auto fields =
        std::tuple(required("day", &Record::day), required("views", &Record::views));
};

template <>
struct JsonFields<RoostSnapshot::Views> {
    using Record = RoostSnapshot::Views;
    static constexpr auto fields =
        std::tuple(defaulted("basis", &Record::basis), defaulted("days", &Record::days),
                   optional("previous", &Record::previous), defaulted("series", &Record::series),
                   optional("total", &Record::total));
};

template <>
struct JsonFields<RoostSnapshot::Network> {
    using Record = RoostSnapshot::Network;
    static constexpr auto fields =
        std::tuple(required("label", &Record::label), required("platform", &Record::platform),
                   required("posts", &Record::posts), required("reporting", &Record::reporting),
                   optional("username", &Record::username), optional("views", &Record::views));
};

template <>
struct JsonFields<RoostSnapshot::Posts::Next> {
    using Record = RoostSnapshot::Posts::Next;
    static constexpr auto fields =
        std::tuple(required("at", &Record::at), required("id", &Record::id),
                   required("networks", &Record::networks), required("text", &Record::text));
};

template <>
struct JsonFields<RoostSnapshot::Posts> {
    using Record = RoostSnapshot::Posts;
    static constexpr auto fields =
        std::tuple(required("failed", &Record::failed), required("next", &Record::next),
                   required("published7", &Record::published7), required("scheduled", &Record::scheduled));
};

template <>
struct JsonFields<RoostSnapshot::BestPost> {
    using Record = RoostSnapshot::BestPost;
    static constexpr auto fields = std::tuple(
        required("label", &Record::label), required("platform", &Record::platform),
        defaulted("text", &Record::text), link("url", &Record::url), required("views", &Record::views));
};

template <>
struct JsonFields<RoostSnapshot::Followers::Day> {
    using Record = RoostSnapshot::Followers::Day;
    static constexpr auto fields =
        std::tuple(required("day", &Record::day), required("total", &Record::total));
};

template <>
struct JsonFields<RoostSnapshot::Followers::FollowerNetwork> {
    using Record = RoostSnapshot::Followers::FollowerNetwork;
    static constexpr auto fields =
        std::tuple(required("count", &Record::count), optional("delta7", &Record::delta7),
                   required("platform", &Record::platform), optional("username", &Record::username));
};

template <>
struct JsonFields<RoostSnapshot::Followers> {
    using Record = RoostSnapshot::Followers;
    static constexpr auto fields =
        std::tuple(required("networks", &Record::networks), required("series", &Record::series),
                   required("total", &Record::total));
};

template <>
struct JsonFields<RoostSnapshot> {
    using Record = RoostSnapshot;
    static constexpr auto fields =
        std::tuple(optional("best", &Record::best), optional("followers", &Record::followers),
                   required("generatedAt", &Record::generatedAt), defaulted("networks", &Record::networks),
                   defaulted("posts", &Record::posts), required("profile", &Record::profile),
                   link("roostUrl", &Record::roostUrl), optional("sampledAt", &Record::sampledAt),
                   defaulted("version", &Record::version), required("views", &Record::views));
};

} // namespace roost
