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
}

InstanceLock::~InstanceLock()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

bool InstanceLock::take(Kind kind)
{
    const int operation = kind == Kind::shared ? LOCK_SH : LOCK_EX;
    if (descriptor_ < 0 || ::flock(descriptor_, operation | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
        return true;
    }
    // A change of kind that fails may have lost what was held, or not.
    release();
    return false;
}

void InstanceLock::release()
{
    if (descriptor_ >= 0) {
        ::flock(descriptor_, LOCK_UN);
    }
}

} // namespace roost
