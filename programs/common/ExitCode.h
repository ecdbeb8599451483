#pragma once

namespace roost {

/// What a program tells its caller by its exit code; documented in its manual page.
enum class ExitCode {
    fine = 0,
    failure = 1,
    usage = 2,
    /// No profile, no numbers yet, or signed out.
    nothingToShow = 3,
    /// Numbers, but older than three refresh intervals.
    stale = 4,
    /// There is nobody who shows notifications.
    noNotifications = 5,
    /// The user does not want such a notification.
    switchedOff = 6,
};

} // namespace roost
