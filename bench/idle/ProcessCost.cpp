#include "bench/idle/ProcessCost.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace roost::bench {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(pid_t process) { return fs::path{"/proc"} / std::to_string(process); }

/// The number behind `key` in a file of lines such as "Pss:  1234 kB".
std::optional<std::int64_t> numberIn(const fs::path& file, const std::string& key)
{
    std::ifstream stream{file};
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(key + ':')) {
            return std::stoll(line.substr(key.size() + 1));
        }
    }
    return std::nullopt;
}

int entriesOf(const fs::path& folder)
{
    return static_cast<int>(std::distance(fs::directory_iterator{folder}, fs::directory_iterator{}));
}

} // namespace

std::optional<std::map<pid_t, ThreadWakes>> wakesOf(pid_t process)
{
    std::error_code gone;
    std::map<pid_t, ThreadWakes> threads;
    for (const fs::directory_entry& thread : fs::directory_iterator{folderOf(process) / "task", gone}) {
        // A thread may end between the listing and the look at it.
        if (const auto wakes = numberIn(thread.path() / "status", "voluntary_ctxt_switches")) {
            std::string name;
            std::getline(std::ifstream{thread.path() / "comm"} >> std::ws, name);
            threads[std::stoi(thread.path().filename().string())] = {name, *wakes};
        }
    }
    return threads.empty() ? std::nullopt : std::optional(threads);
}

std::optional<ProcessCost> costOf(pid_t process)
{
    const fs::path folder = folderOf(process);
    const auto proportional = numberIn(folder / "smaps_rollup", "Pss");
    const auto dirty = numberIn(folder / "smaps_rollup", "Private_Dirty");
    clockid_t clock{};
    timespec used{};
    if (!proportional || !dirty || ::clock_getcpuclockid(process, &clock) != 0 ||
        ::clock_gettime(clock, &used) != 0) {
        return std::nullopt;
    }
    return ProcessCost{*proportional, *dirty,
                       std::chrono::seconds{used.tv_sec} + std::chrono::nanoseconds{used.tv_nsec},
                       entriesOf(folder / "task"), entriesOf(folder / "fd")};
}

} // namespace roost::bench
