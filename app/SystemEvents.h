#pragma once

#include "model/Date.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace roost {

/// Watches one folder as long as it lives.
class FolderWatcher {
public:
    virtual ~FolderWatcher() = default;
};

/// What the system tells the app. Everything is called from the event loop of the main thread, and nothing
/// before `observe`.
class SystemEvents {
public:
    struct Observer {
        /// The machine woke up.
        std::function<void()> woke;
        /// Another process asked for fresh numbers, at that time by its clock.
        std::function<void(Date)> refreshRequested;
        /// What keeps secrets came, or something in it was opened or closed. Some keepers say so, some do
        /// not.
        std::function<void()> secretsChanged;
    };

    virtual ~SystemEvents() = default;

    /// Tells `observer` from now on. Once.
    virtual void observe(Observer observer) = 0;

    /// Calls `onChange` whenever a file in `folder` was written, made longer, renamed or given other
    /// attributes, several changes at once as one. A folder that is not there, or goes, is watched when it
    /// comes. Null where folders cannot be watched.
    virtual std::unique_ptr<FolderWatcher> watch(std::filesystem::path folder,
                                                 std::function<void()> onChange) = 0;
};

} // namespace roost
