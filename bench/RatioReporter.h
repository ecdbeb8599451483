#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace roost::bench {

/// Prints one line per deed when all is done: our time, our speed in bytes or else our time for each profile
/// or text, and how many times the time of each peer ours is. Of repeated runs the quickest counts, since
/// whatever else the machine does only ever adds.
class RatioReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    /// Whether any benchmark ended with an error.
    bool failed() const { return failed_; }

private:
    struct Time {
        double microseconds = 0;
        double perItem = 0;
        /// Of deeds that are measured by the bytes they go through; else 0.
        double megabytesPerSecond = 0;
    };

    /// The times of each deed, by who did it.
    std::map<std::string, std::map<std::string, Time>> deeds_;
    /// The deed of each family, in the order of registration.
    std::map<std::int64_t, std::string> order_;
    bool failed_ = false;
};

} // namespace roost::bench
