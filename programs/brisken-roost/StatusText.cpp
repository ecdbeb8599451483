#include "programs/brisken-roost/StatusText.h"

#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>
#include <array>

namespace roost {

namespace {

constexpr const char* nothing = "–";
constexpr int gap = 2;
constexpr int leastText = 8;

enum class Tone { plain, heading, quiet, warning, bad };

const char* sequence(Tone tone)
{
    switch (tone) {
    case Tone::plain:
        return "";
    case Tone::heading:
        return "\033[1m";
    case Tone::quiet:
        return "\033[2m";
    case Tone::warning:
        return "\033[33m";
    case Tone::bad:
        return "\033[31m";
    }
    Q_UNREACHABLE();
}

struct Cell {
    std::string text;
    Tone tone = Tone::plain;
};

enum Column { name, views, previous, followers, scheduled, failed, best, age, columnCount };

constexpr std::array<bool, columnCount> isText{true, false, false, false, false, false, true, false};

using Row = std::array<Cell, columnCount>;

std::string number(const std::optional<std::int64_t>& value)
{
    return value ? std::to_string(*value) : nothing;
}

std::string ageText(const StatusReport::Entry& entry)
{
    if (!entry.ageSeconds) {
        return nothing;
    }
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    constexpr std::int64_t day = 24 * hour;
    const std::int64_t seconds = *entry.ageSeconds;
    if (seconds < minute) {
        return std::to_string(seconds) + " s";
    }
    if (seconds < hour) {
        return std::to_string(seconds / minute) + " min";
    }
    return seconds < day ? std::to_string(seconds / hour) + " h" : std::to_string(seconds / day) + " d";
}

std::string bestText(const StatusReport::Entry& entry)
{
    if (!entry.best) {
        return nothing;
    }
    const std::string what = entry.best->text.empty() ? entry.best->label : entry.best->text;
    return std::to_string(entry.best->views) + "  " + onOneLine(what);
}

Row rowOf(const StatusReport::Entry& entry)
{
    Row row;
    row[name] = {onOneLine(entry.profileName)};
    row[views] = {number(entry.viewsTotal), Tone::heading};
    row[previous] = {number(entry.viewsPrevious), Tone::quiet};
    row[followers] = {number(entry.followersTotal)};
    row[scheduled] = {number(entry.scheduled)};
    row[failed] = {number(entry.failed), entry.failed.value_or(0) > 0 ? Tone::bad : Tone::plain};
    row[best] = {bestText(entry)};
    switch (entry.state) {
    case StatusReport::State::fresh:
        row[age] = {ageText(entry), Tone::quiet};
        break;
    case StatusReport::State::stale:
        row[age] = {ageText(entry), Tone::warning};
        break;
    case StatusReport::State::signedOut:
        row[age] = {"signed out", Tone::bad};
        break;
    case StatusReport::State::waiting:
    case StatusReport::State::empty:
        row[age] = {"waiting", Tone::quiet};
        break;
    }
    return row;
}

std::array<int, columnCount> widthsOf(const std::vector<Row>& rows, int available)
{
    std::array<int, columnCount> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < columnCount; ++i) {
            widths.at(i) = std::max(widths.at(i), displayWidth(row.at(i).text));
        }
    }
    const int excess = std::accumulate(widths.begin(), widths.end(), gap * (columnCount - 1)) - available;
    if (available > 0 && excess > 0) {
        const int fromBest = std::clamp(widths[best] - leastText, 0, excess);
        widths[best] -= fromBest;
        widths[name] -= std::clamp(widths[name] - leastText, 0, excess - fromBest);
    }
    return widths;
}

void append(std::string& line, const Cell& cell, int width, bool alignLeft, bool colour)
{
    const std::string text = elided(cell.text, width);
    const std::string padding(static_cast<std::size_t>(width - displayWidth(text)), ' ');
    const bool toned = colour && cell.tone != Tone::plain;
    line += alignLeft ? "" : padding;
    line += toned ? sequence(cell.tone) : "";
    line += text;
    line += toned ? "\033[0m" : "";
    line += alignLeft ? padding : "";
}

} // namespace

std::string statusText(const StatusReport& report, TableStyle style)
{
    if (report.accounts.empty()) {
        return {};
    }
    std::vector<Row> rows{{Cell{"PROFILE", Tone::quiet}, Cell{"VIEWS", Tone::quiet},
                           Cell{"PREVIOUS", Tone::quiet}, Cell{"FOLLOWERS", Tone::quiet},
                           Cell{"SCHEDULED", Tone::quiet}, Cell{"FAILED", Tone::quiet},
                           Cell{"BEST POST", Tone::quiet}, Cell{"AGE", Tone::quiet}}};
    std::ranges::transform(report.accounts, std::back_inserter(rows), rowOf);
    const auto widths = widthsOf(rows, style.width);

    std::string table;
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < columnCount; ++i) {
            line += i == 0 ? "" : std::string(gap, ' ');
            append(line, row.at(i), widths.at(i), isText.at(i), style.colour);
        }
        table += line + "\n";
    }
    return table;
}

} // namespace roost
