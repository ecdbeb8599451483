#pragma once

#include "model/Date.h"
#include "model/WebURL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace roost {

/// One profile's numbers as the service sends them. A plain value; equality is member-wise. Texts are UTF-8.
/// How the fields stand in JSON, which may be absent and what then holds: RoostSnapshotFields.h.
struct RoostSnapshot {
    struct Profile {
        std::string id;
        std::string name;
        std::optional<WebURL> avatarUrl;

        bool operator==(const Profile&) const = default;
    };

    struct Views {
        /// What the numbers count. A text that is not known decodes as `published`.
        enum class Basis { growth, published };

        struct Day {
            /// In the form of `dayString`.
            std::string day;
            std::int64_t views = 0;

            bool operator==(const Day&) const = default;
        };

        std::int64_t days = 7;
        std::optional<std::int64_t> total;
        std::optional<std::int64_t> previous;
        Basis basis = Basis::published;
        /// Oldest day first.
        std::vector<Day> series;

        bool operator==(const Views&) const = default;
    };

    struct Network {
        /// How the network answered the service. A text that is not known decodes as `unknown`.
        enum class Reporting { ok, empty, failed, unsupported, unknown };

        std::string platform;
        std::string label;
        std::optional<std::string> username;
        std::optional<std::int64_t> views;
        std::int64_t posts = 0;
        Reporting reporting = Reporting::unknown;

        bool operator==(const Network&) const = default;
    };

    /// The default value is the one of a snapshot that has no posts.
    struct Posts {
        struct Next {
            std::string id;
            /// When the post goes out.
            Date at;
            std::string text;
            /// Platform identifiers.
            std::vector<std::string> networks;

            bool operator==(const Next&) const = default;
        };

        /// Posts published in the last seven days.
        std::int64_t published7 = 0;
        std::int64_t scheduled = 0;
        std::int64_t failed = 0;
        std::vector<Next> next;

        bool operator==(const Posts&) const = default;
    };

    struct BestPost {
        std::string platform;
        std::string label;
        std::int64_t views = 0;
        std::string text;
        std::optional<WebURL> url;

        /// A stable identity of the post: its address as received, otherwise "platform|text".
        std::string key() const;

        bool operator==(const BestPost&) const = default;
    };

    struct Followers {
        struct Day {
            /// In the form of `dayString`.
            std::string day;
            std::int64_t total = 0;

            bool operator==(const Day&) const = default;
        };

        struct FollowerNetwork {
            std::string platform;
            std::optional<std::string> username;
            std::int64_t count = 0;
            /// Change over seven days.
            std::optional<std::int64_t> delta7;

            bool operator==(const FollowerNetwork&) const = default;
        };

        std::int64_t total = 0;
        /// Oldest day first.
        std::vector<Day> series;
        std::vector<FollowerNetwork> networks;

        bool operator==(const Followers&) const = default;
    };

    std::int64_t version = 1;
    Date generatedAt;
    Profile profile;
    Views views;
    std::vector<Network> networks;
    Posts posts;
    std::optional<BestPost> best;
    std::optional<Followers> followers;
    std::optional<Date> sampledAt;
    std::optional<WebURL> roostUrl;

    bool operator==(const RoostSnapshot&) const = default;

    /// Whether there is any view number to show: a total, or a network that carries one and is not
    /// `unsupported`.
    bool hasNumbers() const;

    /// This snapshot moved in time so that it reads as produced at `now`, every number kept: `generatedAt` is
    /// `now`, each post goes out as long after it as before, both series end on the UTC day of `now`, and
    /// `sampledAt`, where present, is one minute before it.
    RoostSnapshot rebased(Date now) const;
};

} // namespace roost
