#include "platform/PrivateFolder.h"

#include "model/RoostLog.h"
#include "platform/EnvironmentPaths.h"

#include <sys/stat.h>
#include <unistd.h>

namespace roost {

namespace {

/// Whether `folder`, itself and not by a link, is this user's and nobody else's.
bool isOfThisUserAlone(const std::filesystem::path& folder)
{
    struct stat found{};
    return ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool make(const std::filesystem::path& folder)
{
    // An existing one counts only when it is what we would have made.
    return (::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) && isOfThisUserAlone(folder);
}

} // namespace

std::optional<std::filesystem::path> privateRuntimeFolder(const QProcessEnvironment& environment)
{
    const auto runtime = folderNamedBy(environment, QStringLiteral("XDG_RUNTIME_DIR"));
    if (runtime && isOfThisUserAlone(*runtime)) {
        const std::filesystem::path folder = *runtime / RoostLog::subsystem;
        return make(folder) ? std::optional{folder} : std::nullopt;
    }
    const std::filesystem::path temporary =
        folderNamedBy(environment, QStringLiteral("TMPDIR")).value_or("/tmp");
    const std::filesystem::path folder =
        temporary / (std::string{RoostLog::subsystem} + "-" + std::to_string(::geteuid()));
    return make(folder) ? std::optional{folder} : std::nullopt;
}

} // namespace roost
