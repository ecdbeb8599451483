#pragma once

#include "tests/app/AppSimulationCadence.h"
#include "tests/app/AppSimulationVerdicts.h"

#include <QtGlobal>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace roost::test {

/// What must hold of the app, whatever happens: looked at after every step of a simulation. Catches the log.
class SimulationLaws {
public:
    SimulationLaws(Judge& judge, SimulatedWorld& world);
    ~SimulationLaws();
    SimulationLaws(const SimulationLaws&) = delete;
    SimulationLaws& operator=(const SimulationLaws&) = delete;

    /// A new process begins, or the one that runs is about to end: what a quitting app does is not judged.
    void processBegins(AppModel& app);
    void processEnds();
    /// After every step.
    void look();
    /// The process has finished by itself, and then it is gone.
    void lookAtTheEnd(AppModel& app);
    void lookAtWhatIsLeft();

    /// The service answered.
    void answered(const HttpRequest& request, const HttpResult& result) { verdicts_.hear(request, result); }
    /// The user signs the profile out.
    void userSignsOut(const std::string& profileId);
    std::size_t shownCount() const { return shown_.size(); }
    /// Somebody set the clock.
    void clockIsSet() { cadence_.blur(); }

private:
    static void hear(QtMsgType level, const QMessageLogContext& context, const QString& message);
    void heard(const std::string& line);
    void accountsChanged();
    void recordChanged(const RoostAccountRecord& before, const RoostAccountRecord& after);
    void refreshingChanged();
    void cycleEnded();
    void countRequests();
    void shown(const NotificationCenter::Request& request);

    void lookAtTheFile();
    void lookAtTheKeyring();
    void lookAtTheTokens();

    Date now() { return world_->time.now(); }
    std::chrono::milliseconds bootTime() { return world_->bootTime(); }
    void noteTroubles();

    Judge* judge_;
    SimulatedWorld* world_;
    Verdicts verdicts_;
    CadenceLaw cadence_;
    QtMessageHandler formerHandler_;
    /// The disk as it is, whatever the app is told of it.
    WidgetStore store_;
    AnnouncedLedgerStore ledgerStore_;

    AppModel* app_ = nullptr;
    bool isJudging_ = false;
    /// When it began.
    std::chrono::milliseconds processStart_{0};
    std::vector<RoostAccountRecord> accounts_;
    /// The ids of those that were signed in when the running cycle began.
    std::vector<std::string> askedAtBegin_;
    Date beganAt_;
    std::optional<Date> lastRefreshAt_;
    int reloads_ = 0;

    /// Signed out by the user, and when.
    std::map<std::string, std::chrono::milliseconds> leaving_;
    std::chrono::milliseconds lastKeyringTrouble_{0};
    std::chrono::milliseconds lastDiskTrouble_{0};
    std::size_t diskFailures_ = 0;
    std::size_t filesSeen_ = 0;
    bool accountsAreNew_ = true;
    /// Whether the disk was in trouble, and no cycle has begun and ended without that since.
    bool fileIsExcused_ = false;
    bool ledgerIsExcused_ = false;

    /// From the keys that were shown to whether the app knows of it.
    std::map<std::string, bool> shown_;
    std::chrono::milliseconds hour_{0};
    std::map<std::string, int> asked_;
    int cycles_ = 0;
    int signIns_ = 0;
    std::size_t reusesSeen_ = 0;
};

} // namespace roost::test
