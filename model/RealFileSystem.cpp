#include "model/RealFileSystem.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

namespace roost {

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

/// `call` again as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// An open file descriptor; none when opening failed.
class Descriptor {
public:
    Descriptor(const std::filesystem::path& path, int flags, mode_t mode = 0)
        : fd_{uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); })}
    {
    }
    Descriptor(Descriptor&& other) noexcept : fd_{std::exchange(other.fd_, -1)} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor()
    {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }

    explicit operator bool() const { return fd_ >= 0; }
    int get() const { return fd_; }

private:
    int fd_;
};

class RealTemporaryFile final : public TemporaryFile {
public:
    explicit RealTemporaryFile(Descriptor descriptor) : descriptor_{std::move(descriptor)} {}

    std::error_code write(std::string_view bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t written =
                uninterrupted([&] { return ::write(descriptor_.get(), bytes.data(), bytes.size()); });
            if (written < 0) {
                return lastError();
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return {};
    }

    std::error_code sync() override
    {
        return uninterrupted([&] { return ::fsync(descriptor_.get()); }) < 0 ? lastError()
                                                                             : std::error_code{};
    }

private:
    Descriptor descriptor_;
};

bool isSameFile(int descriptor, const std::filesystem::path& path)
{
    struct stat open{};
    struct stat named{};
    return ::fstat(descriptor, &open) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// Takes the lock of `descriptor` for this writer. File systems without locks count as locked: there the app,
/// which is the only writer, is on its own.
std::error_code lock(int descriptor)
{
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 100ms;
    while (uninterrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) < 0) {
        if (errno != EWOULDBLOCK) {
            return errno == ENOLCK || errno == EOPNOTSUPP ? std::error_code{} : lastError();
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::make_error_code(std::errc::device_or_resource_busy);
        }
        std::this_thread::sleep_for(1ms);
    }
    return {};
}

} // namespace

std::error_code RealFileSystem::makeFolders(const std::filesystem::path& folder)
{
    struct stat found{};
    if (::stat(folder.c_str(), &found) != 0) {
        if (errno != ENOENT) {
            return lastError();
        }
        for (std::filesystem::path above; const std::filesystem::path& part : folder) {
            above /= part;
            if (::mkdir(above.c_str(), S_IRWXU) < 0 && errno != EEXIST) {
                return lastError();
            }
        }
        // What has the name now need not be ours: somebody may have been quicker, and a link to nowhere
        // counts as existing.
        if (::stat(folder.c_str(), &found) != 0) {
            return lastError();
        }
    }
    if (!S_ISDIR(found.st_mode)) {
        return std::make_error_code(std::errc::not_a_directory);
    }
    return found.st_uid == ::geteuid() ? std::error_code{}
                                       : std::make_error_code(std::errc::permission_denied);
}

std::expected<std::string, std::error_code> RealFileSystem::read(const std::filesystem::path& file,
                                                                 std::size_t limit)
{
    // Not blocking: a pipe in the file's place must not hang the program.
    const Descriptor descriptor{file, O_RDONLY | O_NONBLOCK};
    struct stat found{};
    if (!descriptor || ::fstat(descriptor.get(), &found) < 0) {
        return std::unexpected(lastError());
    }
    if (!S_ISREG(found.st_mode)) {
        return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    }
    std::string bytes;
    // Room for what a decoder wants behind the text, and one byte more than the limit to notice a larger
    // file.
    constexpr std::size_t behind = 64;
    bytes.reserve(std::min(static_cast<std::size_t>(found.st_size), limit) + behind);
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return ::read(descriptor.get(), block.data(), block.size()); });
        if (count < 0) {
            return std::unexpected(lastError());
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(block.data(), static_cast<std::size_t>(count));
        if (bytes.size() > limit) {
            return std::unexpected(std::make_error_code(std::errc::file_too_large));
        }
    }
}

std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
RealFileSystem::openTemporary(const std::filesystem::path& file)
{
    // Another writer may put its file in place between our opening and our locking: then ours is no longer
    // the one that the name stands for, and the next try makes a new one.
    constexpr int tries = 100;
    for (int i = 0; i < tries; ++i) {
        // Not blocking: a pipe that has the name must not hang the program.
        Descriptor descriptor{file, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR};
        if (!descriptor) {
            return std::unexpected(lastError());
        }
        if (const std::error_code failed = lock(descriptor.get())) {
            return std::unexpected(failed);
        }
        if (!isSameFile(descriptor.get(), file)) {
            continue;
        }
        if (::fchmod(descriptor.get(), S_IRUSR | S_IWUSR) < 0 || ::ftruncate(descriptor.get(), 0) < 0) {
            return std::unexpected(lastError());
        }
        return std::make_unique<RealTemporaryFile>(std::move(descriptor));
    }
    return std::unexpected(std::make_error_code(std::errc::device_or_resource_busy));
}

std::error_code RealFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    return std::rename(from.c_str(), to.c_str()) < 0 ? lastError() : std::error_code{};
}

std::error_code RealFileSystem::syncFolder(const std::filesystem::path& folder)
{
    const Descriptor descriptor{folder, O_RDONLY | O_DIRECTORY};
    if (!descriptor || uninterrupted([&] { return ::fsync(descriptor.get()); }) < 0) {
        return lastError();
    }
    return {};
}

std::error_code RealFileSystem::remove(const std::filesystem::path& file)
{
    return ::unlink(file.c_str()) < 0 && errno != ENOENT ? lastError() : std::error_code{};
}

} // namespace roost
