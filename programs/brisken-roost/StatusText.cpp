#include "programs/brisken-roost/StatusText.h"

#include <QString>

#include <algorithm>
#include <array>
#include <clocale>
#include <cwchar>
#include <numeric>

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

/// The columns that `c` takes. The C locale knows ASCII alone, so a UTF-8 one is asked, whatever the process
/// uses.
int widthOf(char32_t c)
{
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = uselocale(utf8);
    const int width = wcwidth(static_cast<wchar_t>(c));
    uselocale(before);
    return std::max(width, 0);
}

/// `text` on one line, without anything that a terminal would act upon.
std::string harmless(const std::string& text)
{
    QString clean;
    for (const char32_t c : QString::fromStdString(text).toUcs4()) {
        const QChar::Category category = QChar::category(c);
        const bool breaks = category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        if (c == U'\n' || c == U'\t' || breaks) {
            clean.append(QLatin1Char(' '));
        } else if (category == QChar::Other_Control) {
            clean.append(QChar{u'·'});
        } else {
            clean.append(QString::fromUcs4(&c, 1));
        }
    }
    return clean.toStdString();
}

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
    return std::to_string(entry.best->views) + "  " + harmless(what);
}

Row rowOf(const StatusReport::Entry& entry)
{
    Row row;
    row[name] = {harmless(entry.profileName)};
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

int displayWidth(const std::string& text)
{
    const QList<uint> characters = QString::fromStdString(text).toUcs4();
    return std::accumulate(characters.begin(), characters.end(), 0,
                           [](int sum, char32_t c) { return sum + widthOf(c); });
}

std::string elided(const std::string& text, int width)
{
    if (displayWidth(text) <= width) {
        return text;
    }
    QString kept;
    int taken = 0;
    for (const char32_t c : QString::fromStdString(text).toUcs4()) {
        taken += widthOf(c);
        if (taken > width - 1) {
            break;
        }
        kept.append(QString::fromUcs4(&c, 1));
    }
    return kept.toStdString() + "…";
}

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
