#pragma once

namespace roost {

/// What the user can ask of the updater. Main thread.
class UpdateControl {
public:
    virtual ~UpdateControl() = default;

    /// Looks for an update, because the user wants to know.
    virtual void checkNow() = 0;

    /// Installs the update that is ready, and starts the program again; without one, as `checkNow`.
    virtual void installAndRestart() = 0;
};

/// The updater of a program that does not update itself: does nothing.
class NoUpdates final : public UpdateControl {
public:
    void checkNow() override {}
    void installAndRestart() override {}
};

} // namespace roost
