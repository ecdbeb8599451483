#include "platform/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace roost {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 5s;
constexpr auto pollInterval = 5ms;

} // namespace

FolderLock::FolderLock(const std::filesystem::path& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (descriptor_ < 0) {
        return;
    }
    const auto begun = std::chrono::steady_clock::now();
    while (true) {
        isHeld_ = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
        if (isHeld_ || std::chrono::steady_clock::now() - begun >= patience) {
            return;
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

FolderLock::~FolderLock()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace roost
