#include "platform/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace roost {

namespace {

constexpr ::mode_t ownerOnly = 0600;

} // namespace

InstanceLock::InstanceLock(const std::filesystem::path& file)
    : descriptor_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, ownerOnly))
{
    isTaken_ = descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

InstanceLock::~InstanceLock()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace roost
