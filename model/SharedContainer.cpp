#include "model/SharedContainer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace roost::SharedContainer {

namespace {

constexpr const char* defaultGroup = "QK27XRWN5P.world.brisken.roost";
constexpr const char* fallbackFolder = "BriskenRoost";

std::optional<std::filesystem::path> absolutePath(const char* variable)
{
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    if (value == nullptr || !std::filesystem::path{value}.is_absolute()) {
        return std::nullopt;
    }
    return std::filesystem::path{value};
}

bool isWritable(const std::filesystem::path& folder) { return ::access(folder.c_str(), W_OK | X_OK) == 0; }

/// Whether `folder` is this user's, or could be made so.
bool canBeOwn(const std::filesystem::path& folder)
{
    struct stat found{};
    if (::stat(folder.c_str(), &found) == 0) {
        return S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() && isWritable(folder);
    }
    if (errno != ENOENT || ::lstat(folder.c_str(), &found) == 0) {
        return false;
    }
    std::filesystem::path above = folder.parent_path();
    while (::stat(above.c_str(), &found) != 0 && errno == ENOENT && above.has_relative_path()) {
        above = above.parent_path();
    }
    return ::stat(above.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && isWritable(above);
}

} // namespace

UserFolders UserFolders::fromEnvironment()
{
    UserFolders folders;
    folders.data = absolutePath("XDG_DATA_HOME");
    if (!folders.data) {
        if (const auto home = absolutePath("HOME")) {
            folders.data = *home / ".local" / "share";
        }
    }
    folders.temporary = absolutePath("TMPDIR").value_or("/tmp");
    return folders;
}

std::string groupIdentifier(const InfoDictionary& info)
{
    const std::string group = info.string(u"RoostAppGroup").value_or(QString{}).toStdString();
    const bool isName =
        !group.empty() && group != "." && group != ".." && !group.contains('/') && !group.contains('\0');
    return isName ? group : defaultGroup;
}

Location resolve(const UserFolders& folders, const std::string& groupIdentifier)
{
    if (folders.data) {
        const std::filesystem::path shared = *folders.data / groupIdentifier;
        if (canBeOwn(shared)) {
            return {shared, true};
        }
    }
    return {folders.data.value_or(folders.temporary) / fallbackFolder, false};
}

} // namespace roost::SharedContainer
