#pragma once

#include "app/SystemEvents.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>

namespace roost {

/// A folder watched by the kernel (inotify(7)): files in it that are written, grow, are renamed, made or
/// removed, or change their attributes. A folder that goes, is put aside or is not there yet is waited for,
/// and its coming counts as a change. Main thread; not to be destroyed by its own call.
class InotifyFolderWatcher final : public QObject, public FolderWatcher {
    Q_OBJECT

public:
    /// Changes that come closer together than this are told as one.
    static constexpr std::chrono::milliseconds quiet{50};

    /// `onChange` is called from the event loop. Where the system cannot watch, nothing is ever told.
    InotifyFolderWatcher(std::filesystem::path folder, std::function<void()> onChange);
    ~InotifyFolderWatcher() override;

private:
    void read();
    void arm();

    std::filesystem::path folder_;
    std::function<void()> onChange_;
    int inotify_;
    /// The watch on the folder, or on the nearest one above that exists.
    int watch_ = -1;
    bool isOnFolder_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer debounce_;
};

} // namespace roost
