#pragma once

#include "model/InfoDictionary.h"

#include <filesystem>
#include <optional>
#include <string>

/// Where the files that the app and its widgets share lie. Resolving makes nothing; folders are made when a
/// file is written.
namespace roost::SharedContainer {

/// The user's folders, as the environment names them.
struct UserFolders {
    /// $XDG_DATA_HOME, by default ~/.local/share; absent when neither is an absolute path.
    std::optional<std::filesystem::path> data;
    std::filesystem::path temporary;

    static UserFolders fromEnvironment();
};

struct Location {
    /// Holds "widget-state.json" and the refresh marker.
    std::filesystem::path directory;
    /// Whether `directory` is the one that widgets read too; false for the private fallback.
    bool isShared = false;

    bool operator==(const Location&) const = default;
};

/// "RoostAppGroup", or the built-in group when that is unset, empty, or no name of a folder.
std::string groupIdentifier(const InfoDictionary& info);

/// The group's folder under the data folder when it can be this user's own: it exists, belongs to the user
/// and can be written, or it can be made. Otherwise "BriskenRoost" under the data folder, and without one
/// under the temporary folder.
Location resolve(const UserFolders& folders, const std::string& groupIdentifier);

} // namespace roost::SharedContainer
