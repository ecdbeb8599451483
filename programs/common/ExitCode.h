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
};

} // namespace roost
