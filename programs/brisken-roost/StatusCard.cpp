#include "programs/brisken-roost/StatusCard.h"

#include "present/RoostL10n.h"
#include "present/RoostTexts.h"
#include "programs/brisken-roost/TerminalText.h"

namespace roost {

namespace {

class Card {
public:
    Card(const StatusReport::Entry& entry, Date now, const RoostFormat& format)
        : entry_{entry},
          now_{now},
          format_{format}
    {
    }

    std::vector<StatusLine> lines() const
    {
        std::vector<StatusLine> lines{heading()};
        if (!entry_.ageSeconds) {
            return lines;
        }
        lines.push_back(views());
        if (entry_.followersTotal) {
            lines.push_back(followers());
        }
        lines.push_back(queue());
        if (entry_.failed.value_or(0) > 0) {
            lines.push_back(
                {.label = counted(knownText("Failed: %lld"), *entry_.failed), .labelTone = Tone::bad});
        }
        if (entry_.best) {
            lines.push_back(best());
        }
        return lines;
    }

private:
    StatusLine heading() const
    {
        StatusLine line{.label = onOneLine(entry_.profileName), .labelTone = Tone::heading};
        if (line.label.empty()) {
            line.label = text(knownText("Profile"));
        }
        switch (entry_.state) {
        case StatusReport::State::fresh:
        case StatusReport::State::stale:
            line.detail = filled(knownText("Updated %@"),
                                 format_.ago(static_cast<double>(entry_.ageSeconds.value_or(0))));
            line.detailTone = entry_.state == StatusReport::State::stale ? Tone::warning : Tone::quiet;
            break;
        case StatusReport::State::signedOut:
            line.detail = text(knownText("Signed out"));
            line.detailTone = Tone::bad;
            break;
        case StatusReport::State::waiting:
        case StatusReport::State::empty:
            line.detail = text(knownText("Getting your numbers…"));
            line.detailTone = Tone::quiet;
            break;
        }
        return line;
    }

    StatusLine views() const
    {
        if (!entry_.viewsTotal) {
            return {.label = text(knownText("No numbers yet")), .labelTone = Tone::quiet};
        }
        return {.label = filled(knownText("Views: %@"), format_.full(*entry_.viewsTotal)),
                .detail = change(entry_.viewsDelta)};
    }

    StatusLine followers() const
    {
        return {.label = text(knownText("Followers")) + "  " + format_.full(*entry_.followersTotal),
                .detail = change(entry_.followersDelta)};
    }

    StatusLine queue() const
    {
        StatusLine line;
        if (entry_.scheduled.value_or(0) > 0) {
            line.label = counted(knownText("%lld scheduled"), *entry_.scheduled);
        } else {
            line.label = text(knownText("Nothing scheduled"));
            line.labelTone = Tone::quiet;
        }
        if (entry_.next) {
            const RoostFormat::QueueTime time = format_.queueTime(entry_.next->at, now_);
            line.detail = time.dayLabel + " " + time.timeLabel;
            line.words = onOneLine(entry_.next->text);
            if (line.words.empty()) {
                line.words = text(knownText("Untitled post"));
            }
        }
        return line;
    }

    StatusLine best() const
    {
        const StatusReport::Best& post = *entry_.best;
        return {.label = text(knownText("Best post")) + "  " + format_.compact(post.views),
                .words = onOneLine(post.text.empty() ? post.label : post.text)};
    }

    std::string change(const std::optional<RoostDelta>& delta) const
    {
        return delta ? format_.signedPercent(delta->fraction) : std::string{};
    }

    std::string text(std::string_view key) const { return RoostL10n::bundle(format_.locale()).text(key); }

    std::string filled(std::string_view key, const std::string& filling) const
    {
        return RoostL10n::filled(text(key), {filling});
    }

    std::string counted(std::string_view key, std::int64_t count) const
    {
        return RoostL10n::counted(key, count, format_.locale());
    }

    const StatusReport::Entry& entry_;
    Date now_;
    const RoostFormat& format_;
};

} // namespace

std::vector<StatusLine> statusCard(const StatusReport::Entry& entry, Date now, const RoostFormat& format)
{
    return Card{entry, now, format}.lines();
}

} // namespace roost
