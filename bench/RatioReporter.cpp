#include "bench/RatioReporter.h"

#include <iomanip>
#include <ostream>
#include <utility>

namespace roost::bench {

bool RatioReporter::ReportContext(const Context& context)
{
    PrintBasicContext(&GetErrorStream(), context);
    return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.error_occurred) {
            GetErrorStream() << run.run_name.function_name << ": " << run.error_message << '\n';
            failed_ = true;
            continue;
        }
        if (run.run_type == Run::RT_Aggregate) {
            continue;
        }
        const std::string& name = run.run_name.function_name;
        const auto slash = name.rfind('/');
        const std::string deed = name.substr(0, slash);
        const std::string who = name.substr(slash + 1);

        const bool onTheWall = !run.run_name.time_type.empty();
        const double time = onTheWall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        const double perItem = 1e6 / run.counters.at("items_per_second").value;
        const auto bytes = run.counters.find("bytes_per_second");
        const double speed = bytes == run.counters.end() ? 0 : bytes->second.value / 1e6;

        // The runs come in a random order; the families are numbered as they were registered.
        order_[run.family_index] = deed;
        const auto [known, isNew] = deeds_[deed].try_emplace(who, Time{time, perItem, speed});
        if (!isNew && time < known->second.microseconds) {
            known->second = {time, perItem, speed};
        }
    }
}

void RatioReporter::Finalize()
{
    std::ostream& out = GetOutputStream();
    out << std::fixed << std::setprecision(2);
    std::string last;
    for (const auto& [family, deed] : order_) {
        if (deed == std::exchange(last, deed)) {
            continue;
        }
        const auto& times = deeds_.at(deed);
        const auto ours = times.find("roost");
        if (ours == times.end()) {
            continue;
        }
        out << std::left << std::setw(24) << deed << std::right << std::setw(14) << ours->second.microseconds
            << " us" << std::setw(10);
        if (ours->second.megabytesPerSecond > 0) {
            out << ours->second.megabytesPerSecond << " MB/s          ";
        } else {
            out << ours->second.perItem << " us each";
        }
        for (const auto& [who, time] : times) {
            if (who != "roost") {
                out << "  " << std::setw(6) << ours->second.microseconds / time.microseconds << " x " << who;
            }
        }
        out << '\n';
    }
}

} // namespace roost::bench
