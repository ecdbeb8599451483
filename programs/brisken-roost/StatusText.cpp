#include "programs/brisken-roost/StatusText.h"

#include "programs/brisken-roost/StatusCard.h"
#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>

namespace roost {

namespace {

using Lines = std::vector<StatusLine>;

constexpr int indent = 2;
constexpr int gap = 2;
constexpr int leastText = 8;

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

std::string blanks(int count) { return std::string(static_cast<std::size_t>(std::max(count, 0)), ' '); }

/// The place where the second column begins: after the longest label. Names are cut where they would leave
/// too little room for it.
int secondColumn(const std::vector<Lines>& cards, int available)
{
    int names = 0;
    int labels = 0;
    int details = leastText;
    for (const Lines& card : cards) {
        names = std::max(names, displayWidth(card.front().label));
        for (const StatusLine& line : card) {
            details = std::max(details, displayWidth(line.detail));
            if (&line != &card.front()) {
                labels = std::max(labels, indent + displayWidth(line.label));
            }
        }
    }
    const int room = available > 0 ? std::min(available - gap - details, available * 2 / 5) : names;
    return std::max(labels, std::min(names, std::max(room, leastText))) + gap;
}

class Table {
public:
    Table(int secondColumn, TableStyle style) : secondColumn_{secondColumn}, style_{style} {}

    void append(const Lines& card)
    {
        text_ += text_.empty() ? "" : "\n";
        for (const StatusLine& line : card) {
            const int start = &line == &card.front() ? 0 : indent;
            append(line, start);
        }
    }

    const std::string& text() const { return text_; }

private:
    void append(const StatusLine& line, int start)
    {
        const std::string label = elided(line.label, secondColumn_ - gap - start);
        text_ += blanks(start) + toned(label, line.labelTone);
        int at = start + displayWidth(label);
        if (!line.detail.empty()) {
            text_ += blanks(secondColumn_ - at) + toned(line.detail, line.detailTone);
            at = secondColumn_ + displayWidth(line.detail) + gap;
        }
        const int wordsStart = std::max(at, secondColumn_);
        const int room = style_.width > 0 ? style_.width - wordsStart : displayWidth(line.words);
        if (!line.words.empty() && room >= std::min(leastText, displayWidth(line.words))) {
            text_ +=
                blanks(line.detail.empty() ? secondColumn_ - at : gap) + isolated(elided(line.words, room));
        }
        text_ += '\n';
    }

    std::string toned(const std::string& text, Tone tone) const
    {
        const bool shown = style_.colour && tone != Tone::plain && !text.empty();
        return shown ? sequence(tone) + isolated(text) + "\033[0m" : isolated(text);
    }

    int secondColumn_;
    TableStyle style_;
    std::string text_;
};

} // namespace

std::string statusText(const StatusReport& report, const RoostFormat& format, TableStyle style)
{
    std::vector<Lines> cards;
    for (const StatusReport::Entry& entry : report.accounts) {
        cards.push_back(statusCard(entry, report.at, format));
    }
    Table table{secondColumn(cards, style.width), style};
    for (const Lines& card : cards) {
        table.append(card);
    }
    return table.text();
}

} // namespace roost
