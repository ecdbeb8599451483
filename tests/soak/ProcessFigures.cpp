#include "tests/soak/ProcessFigures.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace roost::test {

namespace {

/// The number behind "`name`:" at the beginning of a line.
std::optional<long> numberIn(const std::filesystem::path& file, const std::string& name)
{
    std::ifstream lines{file};
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name + ":")) {
            std::istringstream rest{line.substr(name.size() + 1)};
            long number = 0;
            return rest >> number ? std::optional{number} : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::chrono::milliseconds> cpuOf(const std::filesystem::path& folder)
{
    std::ifstream file{folder / "stat"};
    std::string text;
    std::getline(file, text);
    // The name of the program may hold anything.
    const auto name = text.rfind(") ");
    if (name == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream rest{text.substr(name + 2)};
    constexpr int userTime = 14;
    constexpr int state = 3;
    std::string skipped;
    for (int field = state; field < userTime; ++field) {
        rest >> skipped;
    }
    long user = 0;
    long system = 0;
    if (!(rest >> user >> system)) {
        return std::nullopt;
    }
    return std::chrono::milliseconds{(user + system) * 1000 / ::sysconf(_SC_CLK_TCK)};
}

} // namespace

std::optional<ProcessFigures> figuresOf(pid_t pid)
{
    const std::filesystem::path folder = "/proc/" + std::to_string(pid);
    const auto proportional = numberIn(folder / "smaps_rollup", "Pss");
    const auto resident = numberIn(folder / "smaps_rollup", "Rss");
    const auto dirty = numberIn(folder / "smaps_rollup", "Private_Dirty");
    const auto threads = numberIn(folder / "status", "Threads");
    const auto cpu = cpuOf(folder);
    std::error_code error;
    const std::filesystem::directory_iterator descriptors{folder / "fd", error};
    if (!proportional || !resident || !dirty || !threads || !cpu || error) {
        return std::nullopt;
    }
    return ProcessFigures{*proportional, *resident,
                          *dirty,        std::distance(begin(descriptors), end(descriptors)),
                          *threads,      *cpu};
}

} // namespace roost::test
