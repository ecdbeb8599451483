#include "platform/PrivateFolder.h"

#include "model/RoostLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

namespace roost {

namespace {

/// Whether `folder`, itself and not by a link, is this user's and nobody else's.
bool isOfThisUserAlone(const std::filesystem::path& folder)
{
    struct stat found{};
    return ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// The folder that a variable names; empty when it is unset or not absolute.
std::filesystem::path folderNamedBy(const QProcessEnvironment& environment, const char* variable)
{
    const QByteArray value = QFile::encodeName(environment.value(QString::fromLatin1(variable)));
    return value.startsWith('/') ? std::filesystem::path{value.toStdString()} : std::filesystem::path{};
}

bool make(const std::filesystem::path& folder)
{
    // An existing one counts only when it is what we would have made.
    return (::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) && isOfThisUserAlone(folder);
}

} // namespace

std::optional<std::filesystem::path> privateRuntimeFolder(const QProcessEnvironment& environment)
{
    const std::filesystem::path runtime = folderNamedBy(environment, "XDG_RUNTIME_DIR");
    if (!runtime.empty() && isOfThisUserAlone(runtime)) {
        const std::filesystem::path folder = runtime / RoostLog::subsystem;
        return make(folder) ? std::optional{folder} : std::nullopt;
    }
    std::filesystem::path temporary = folderNamedBy(environment, "TMPDIR");
    if (temporary.empty()) {
        temporary = "/tmp";
    }
    const std::filesystem::path folder =
        temporary / (std::string{RoostLog::subsystem} + "-" + std::to_string(::geteuid()));
    return make(folder) ? std::optional{folder} : std::nullopt;
}

} // namespace roost
