#include "platform/InotifyFolderWatcher.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace roost {

namespace {

constexpr std::uint32_t changes = IN_CREATE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE;
constexpr std::uint32_t ends = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

} // namespace

InotifyFolderWatcher::InotifyFolderWatcher(std::filesystem::path folder, std::function<void()> onChange)
    : folder_{std::move(folder)},
      onChange_{std::move(onChange)},
      inotify_{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)}
{
    if (inotify_ < 0) {
        return;
    }
    debounce_.setSingleShot(true);
    debounce_.setInterval(quiet);
    connect(&debounce_, &QTimer::timeout, this, [this] { onChange_(); });
    notifier_ = std::make_unique<QSocketNotifier>(inotify_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    arm();
}

InotifyFolderWatcher::~InotifyFolderWatcher()
{
    notifier_.reset();
    if (inotify_ >= 0) {
        ::close(inotify_);
    }
}

void InotifyFolderWatcher::read()
{
    bool isToArm = false;
    bool isChanged = false;
    alignas(inotify_event) std::array<char, 16 * 1024> buffer;
    ssize_t size = 0;
    while ((size = ::read(inotify_, buffer.data(), buffer.size())) > 0) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            at += sizeof event + event.len;
            if ((event.mask & IN_Q_OVERFLOW) != 0) {
                isChanged = true;
            } else if (event.wd == watch_) {
                isToArm = isToArm || !isOnFolder_ || (event.mask & ends) != 0;
                isChanged = isChanged || isOnFolder_;
            }
        }
    }
    if (isToArm) {
        const bool wasOnFolder = isOnFolder_;
        arm();
        isChanged = isChanged || wasOnFolder || isOnFolder_;
    }
    if (isChanged && !debounce_.isActive()) {
        debounce_.start();
    }
}

/// Watches the folder, or what has to change for it to come.
void InotifyFolderWatcher::arm()
{
    std::filesystem::path missing;
    std::error_code ignored;
    do {
        if (watch_ >= 0) {
            // Fails, rightly, for a folder that is gone.
            static_cast<void>(::inotify_rm_watch(inotify_, watch_));
        }
        missing.clear();
        std::filesystem::path watched = folder_;
        while ((watch_ = ::inotify_add_watch(inotify_, watched.c_str(), changes | ends | IN_ONLYDIR)) < 0 &&
               (errno == ENOENT || errno == ENOTDIR) && watched.has_relative_path()) {
            missing = watched;
            watched = watched.parent_path();
        }
        isOnFolder_ = watch_ >= 0 && missing.empty();
        // What came before the watch was there is not told.
    } while (watch_ >= 0 && !isOnFolder_ && std::filesystem::is_directory(missing, ignored));
}

} // namespace roost
