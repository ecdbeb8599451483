#pragma once

#include "tests/soak/ProcessFigures.h"
#include "tests/soak/SoakMachine.h"
#include "tests/soak/Trend.h"

#include <QElapsedTimer>
#include <QTimer>

#include <map>
#include <string>
#include <vector>

namespace roost::test {

/// Looks at the app every few seconds, in trouble and in quiet: that it lives, that the shared file is whole,
/// that numbers move, what it takes of the machine. Main thread; ends before the machine.
class SoakWatch {
public:
    explicit SoakWatch(SoakMachine& machine) : machine_{&machine} {}

    /// From now on. The app runs.
    void begin();

    /// Looks now, at an app that has nothing to recover from: this is what trends are made of.
    void lookInQuiet();

    /// What was broken, a line for each kind of breach; empty when nothing was.
    std::string breaches() const;

    /// Profiles whose numbers have never changed.
    std::vector<std::string> unmoved() const;

    /// What grew, beyond what may, since the first third of the time, a line for each; empty when nothing
    /// did.
    std::string growth() const;

    /// The figures and how fast they grew since the first third of the time, for people.
    std::string report() const;

    std::chrono::milliseconds elapsed() const { return std::chrono::milliseconds{clock_.elapsed()}; }

    /// The last figures in quiet, in short.
    std::string now() const;

private:
    /// A figure that is followed, the unit that it is told in, and how much it may grow.
    struct Followed {
        const char* name;
        const char* unit;
        double (*of)(const ProcessFigures&);
    };
    static const std::vector<Followed>& followed();

    std::optional<ProcessFigures> look();
    void lookAtNumbers(const RoostStoreFile& file);
    Trend steady(const std::string& name) const;

    SoakMachine* machine_;
    QElapsedTimer clock_;
    QTimer timer_;
    int looks_ = 0;
    /// How often each was seen.
    std::map<std::string, int> breaches_;
    std::map<std::string, RoostSnapshot::Views> firstViews_;
    std::map<std::string, bool> moved_;
    std::map<std::string, Trend> trends_;
};

} // namespace roost::test
