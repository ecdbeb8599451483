#pragma once

#include "tests/support/GuardedProcess.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/PrivateDisplay.h"

#include <string>
#include <vector>

namespace roost::test {

/// A real notification server, dunst, on a bus and a display of the test. It shows what it gets at the top
/// left, the first one topmost, as long as nobody closes it; a click on one opens and closes it. Main thread.
class Dunst {
public:
    static inline const QString service = QStringLiteral("org.freedesktop.Notifications");

    /// Returns when it is on the bus. Both outlive this.
    Dunst(const PrivateBus& bus, const PrivateDisplay& display);

    /// The lines of what dunst prints about the next notification, without what they begin with; a text of
    /// several lines is several of them. Waits for it, without an event loop; empty when there is none within
    /// the guard time.
    std::vector<std::string> shown();

    /// Clicks on the topmost notification, or on the place where that would be.
    void click() const { display_.click(60, 20); }

    /// How many notifications there are now, seen or waiting for room.
    uint count() const;

    void closeAll() const;

    /// Stops it where it stands, so that nothing answers, and has it go on.
    void freeze() const { process_.freeze(); }
    void thaw() const { process_.thaw(); }

private:
    uint property(const QString& name) const;

    const PrivateBus& bus_;
    const PrivateDisplay& display_;
    GuardedProcess process_;
};

/// What dunst says of one property in the lines of `Dunst::shown`: for "summary" the text between the
/// quotation marks. Empty without it.
std::string saidOf(const std::string& property, const std::vector<std::string>& lines);

} // namespace roost::test
