#include "notify/NotificationContent.h"

#include "model/OverviewPage.h"
#include "present/RoostL10n.h"
#include "present/RoostTexts.h"

#include <initializer_list>
#include <string_view>

namespace roost {

namespace {

std::string quoted(const std::string& text) { return "\u201C" + text + "\u201D"; }

/// Those of `entries` that are not empty, in one line.
std::string listed(std::initializer_list<std::string> entries)
{
    std::string line;
    for (const std::string& entry : entries) {
        if (!entry.empty()) {
            line += (line.empty() ? "" : " · ") + entry;
        }
    }
    return line;
}

/// Finds the words for each kind of event.
class Wording {
public:
    Wording(const RoostSnapshot& snapshot, const RoostFormat& format, const QUrl& baseURL)
        : format_{format},
          texts_{RoostL10n::bundle(format.locale())},
          link_{overviewPage(snapshot.roostUrl, baseURL)}
    {
    }

    NotificationContent operator()(const RoostEvent::Milestone& event) const
    {
        return {filled(knownText("A post passed %@ views"), format_.compact(event.threshold)),
                snippets(event.best), event.best.url ? event.best.url : link_};
    }

    NotificationContent operator()(const RoostEvent::NewBest& event) const
    {
        return {texts_.text(knownText("New best post of the week")), snippets(event.best),
                event.best.url ? event.best.url : link_};
    }

    NotificationContent operator()(const RoostEvent::PostWentOut& event) const
    {
        return {texts_.text(knownText("Post went out")),
                event.post.text.empty() ? texts_.text(knownText("Untitled post")) : event.post.text, link_};
    }

    NotificationContent operator()(const RoostEvent::PostFailed& event) const
    {
        std::string body = texts_.text(knownText("Open Brisken Roost to see why."));
        if (event.post && !event.post->text.empty()) {
            body.insert(0, quoted(event.post->text) + "\n");
        }
        return {texts_.text(knownText("A post did not go out")), body, link_};
    }

    NotificationContent operator()(const RoostEvent::NewFollowers& event) const
    {
        return {filled(knownText("New followers: %@"), format_.signedCount(event.gained)),
                filled(knownText("Total: %@"), format_.compact(event.total)), link_};
    }

private:
    std::string filled(std::string_view key, const std::string& number) const
    {
        return RoostL10n::filled(texts_.text(key), {number});
    }

    std::string snippets(const RoostSnapshot::BestPost& best) const
    {
        return listed({best.text.empty() ? std::string{} : quoted(best.text), best.label,
                       filled(knownText("Views: %@"), format_.compact(best.views))});
    }

    const RoostFormat& format_;
    const RoostL10n::Catalogue& texts_;
    std::optional<WebURL> link_;
};

} // namespace

NotificationContent NotificationContent::make(const RoostEvent::Any& event, const RoostSnapshot& snapshot,
                                              const RoostFormat& format, const QUrl& baseURL)
{
    return std::visit(Wording{snapshot, format, baseURL}, event);
}

} // namespace roost
