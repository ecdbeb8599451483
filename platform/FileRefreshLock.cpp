#include "platform/FileRefreshLock.h"

#include "model/RealFileSystem.h"
#include "model/RoostLog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoroTimer>
#include <QCryptographicHash>

#include <cerrno>
#include <expected>
#include <system_error>
#include <utility>

namespace roost {

namespace {

constexpr std::chrono::milliseconds pollInterval{50};

/// A lock file, open and locked.
class HeldFile final : public RefreshLock::Held {
public:
    explicit HeldFile(int descriptor) : descriptor_(descriptor) {}
    ~HeldFile() override
    {
        // Said aloud, since a child that was just forked may have the file open as well.
        ::flock(descriptor_, LOCK_UN);
        ::close(descriptor_);
    }

    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

private:
    int descriptor_;
};

std::error_code lastError() { return {errno, std::generic_category()}; }

std::filesystem::path fileFor(const std::filesystem::path& folder, const std::string& profileId)
{
    const QByteArray id = QByteArray::fromStdString(profileId);
    return folder /
           (QCryptographicHash::hash(id, QCryptographicHash::Sha256).toHex() + ".lock").toStdString();
}

/// Whether `file` leads to what is open there. It does not when somebody has deleted it since: then another
/// process may lock a file of the same name at the same time.
bool isStillThere(int descriptor, const std::filesystem::path& file)
{
    struct stat open{};
    struct stat named{};
    return ::fstat(descriptor, &open) == 0 && ::lstat(file.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// The lock; null while somebody else holds it, and when it is to be tried again.
std::expected<std::unique_ptr<RefreshLock::Held>, std::error_code>
tryToLock(const std::filesystem::path& folder, const std::filesystem::path& file)
{
    if (const std::error_code error = RealFileSystem{}.makeFolders(folder)) {
        return std::unexpected(error);
    }
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) {
        return std::unexpected(lastError());
    }
    auto held = std::make_unique<HeldFile>(descriptor);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return std::unexpected(lastError());
        }
        return nullptr;
    }
    if (!isStillThere(descriptor, file)) {
        return nullptr;
    }
    return held;
}

QCoro::Task<std::unique_ptr<RefreshLock::Held>> acquired(std::filesystem::path folder,
                                                         std::filesystem::path file,
                                                         std::chrono::milliseconds patience,
                                                         std::stop_token stop)
{
    const auto begun = std::chrono::steady_clock::now();
    while (!stop.stop_requested()) {
        auto tried = tryToLock(folder, file);
        if (!tried) {
            qCCritical(RoostLog::auth, "refreshes cannot be locked: %d", tried.error().value());
            break;
        }
        if (*tried) {
            co_return *std::move(tried);
        }
        if (std::chrono::steady_clock::now() - begun >= patience) {
            qCWarning(RoostLog::auth, "another process has been refreshing for too long");
            break;
        }
        QCoro::Task<> pause = QCoro::sleepFor(pollInterval);
        co_await pause;
    }
    co_return std::unique_ptr<RefreshLock::Held>();
}

} // namespace

FileRefreshLock::FileRefreshLock(std::filesystem::path folder, std::chrono::milliseconds patience)
    : folder_(std::move(folder)),
      patience_(patience)
{
}

QCoro::Task<std::unique_ptr<RefreshLock::Held>> FileRefreshLock::acquire(std::string profileId,
                                                                         std::stop_token stop)
{
    return acquired(folder_, fileFor(folder_, profileId), patience_, std::move(stop));
}

} // namespace roost
