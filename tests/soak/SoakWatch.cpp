#include "tests/soak/SoakWatch.h"

#include <algorithm>

namespace roost::test {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds rhythm{5};
/// In MiB, from the end of the first third on: what the sanitizer keeps for itself still grows then, a
/// little.
constexpr double mayGrow = 3;

const char* const memory = "private dirty";
const char* const descriptors = "descriptors";
const char* const threads = "threads";
const char* const cpu = "cpu";

double mebibytes(long kibibytes) { return static_cast<double>(kibibytes) / 1024; }

} // namespace

const std::vector<SoakWatch::Followed>& SoakWatch::followed()
{
    using Figures = ProcessFigures;
    static const std::vector<Followed> all{
        {"proportional", "MiB", [](const Figures& now) { return mebibytes(now.proportional); }},
        {"resident", "MiB", [](const Figures& now) { return mebibytes(now.resident); }},
        {memory, "MiB", [](const Figures& now) { return mebibytes(now.privateDirty); }},
        {descriptors, "", [](const Figures& now) { return static_cast<double>(now.descriptors); }},
        {threads, "", [](const Figures& now) { return static_cast<double>(now.threads); }},
        {cpu, "s", [](const Figures& now) { return std::chrono::duration<double>(now.cpu).count(); }}};
    return all;
}

void SoakWatch::begin()
{
    clock_.start();
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(rhythm);
}

void SoakWatch::lookInQuiet()
{
    if (const std::optional<ProcessFigures> figures = look()) {
        for (const Followed& figure : followed()) {
            trends_[figure.name].add(elapsed(), figure.of(*figures));
        }
    }
}

std::optional<ProcessFigures> SoakWatch::look()
{
    ++looks_;
    const auto figures = figuresOf(machine_->app().pid());
    if (!machine_->app().isRunning() || !figures) {
        ++breaches_["the app does not run"];
        return std::nullopt;
    }
    const std::optional<RoostStoreFile> file = machine_->store().read();
    if (!file) {
        ++breaches_["the shared file is not whole"];
        return figures;
    }
    lookAtNumbers(*file);
    return figures;
}

void SoakWatch::lookAtNumbers(const RoostStoreFile& file)
{
    for (const std::string& profile : machine_->signedIn()) {
        const auto record = std::ranges::find(file.accounts, profile, &RoostAccountRecord::profileId);
        if (record == file.accounts.end()) {
            // It may be signing in at the moment; that it is there in the end is `recover`'s to see.
            continue;
        }
        if (!record->snapshot) {
            ++breaches_[profile + " is without numbers"];
            continue;
        }
        const auto first = firstViews_.try_emplace(profile, record->snapshot->views).first;
        moved_[profile] = moved_[profile] || record->snapshot->views != first->second;
    }
}

std::string SoakWatch::breaches() const
{
    std::string text;
    for (const auto& [breach, times] : breaches_) {
        text += breach + QString::asprintf(" (%d of %d looks)\n", times, looks_).toStdString();
    }
    return text;
}

std::vector<std::string> SoakWatch::unmoved() const
{
    std::vector<std::string> names;
    for (const std::string& profile : machine_->profiles()) {
        const auto found = moved_.find(profile);
        if (found == moved_.end() || !found->second) {
            names.push_back(profile);
        }
    }
    return names;
}

Trend SoakWatch::steady(const std::string& name) const
{
    const auto found = trends_.find(name);
    return found == trends_.end() ? Trend{} : found->second.since(Trend::Seconds{elapsed()} / 3);
}

std::string SoakWatch::growth() const
{
    std::string text;
    for (const char* name : {descriptors, threads}) {
        if (const double more = steady(name).growthOfLeast(); more > 0) {
            text += QString::asprintf("%.0f more %s\n", more, name).toStdString();
        }
    }
    const Trend trend = steady(memory);
    if (const double more = trend.slopePerHour() * trend.length() / Trend::Seconds{1h}; more > mayGrow) {
        text += QString::asprintf("%.1f MiB more %s memory\n", more, memory).toStdString();
    }
    return text;
}

std::string SoakWatch::report() const
{
    std::string text =
        QString::asprintf("%-16s %10s %10s %12s\n", "in quiet", "first", "last", "per hour").toStdString();
    for (const Followed& figure : followed()) {
        if (const Trend trend = steady(figure.name); !trend.isEmpty()) {
            text += QString::asprintf("%-16s %10.1f %10.1f %+12.2f %s\n", figure.name, trend.first(),
                                      trend.last(), trend.slopePerHour(), figure.unit)
                        .toStdString();
        }
    }
    return text + QString::asprintf(
                      "The first third of %.1f minutes is left out; %zu looks in quiet since, of %d.\n",
                      std::chrono::duration<double>(elapsed()).count() / 60, steady(memory).size(), looks_)
                      .toStdString();
}

std::string SoakWatch::now() const
{
    const auto last = [this](const char* name) { return trends_.at(name).last(); };
    return trends_.empty() ? std::string{}
                           : QString::asprintf("%.1f MiB, %.0f descriptors, %.0f threads", last(memory),
                                               last(descriptors), last(threads))
                                 .toStdString();
}

} // namespace roost::test
