#pragma once

#include "model/RoostSnapshotFields.h"
#include "model/RoostStoreFile.h"

namespace roost {

template <>
struct JsonNames<RoostAccountRecord::Status> {
    static constexpr std::array<std::string_view, 2> names{"ok", "signedOut"};
    static constexpr std::optional<RoostAccountRecord::Status> fallback = std::nullopt;
};

template <>
struct JsonFields<RoostAccountRecord> {
    using Record = RoostAccountRecord;
    static constexpr auto fields = std::tuple(
        optional("fetchedAt", &Record::fetchedAt), optional("lastAttemptAt", &Record::lastAttemptAt),
        required("profileId", &Record::profileId), required("profileName", &Record::profileName),
        optional("snapshot", &Record::snapshot), required("status", &Record::status));
};

template <>
struct JsonFields<RoostStoreFile> {
    using Record = RoostStoreFile;
    static constexpr auto fields =
        std::tuple(required("accounts", &Record::accounts), required("schema", &Record::schema),
                   required("writtenAt", &Record::writtenAt));
};

} // namespace roost
