#include "programs/brisken-roost/FetchCommand.h"

#include "programs/brisken-roost/AccountFile.h"
#include "programs/brisken-roost/TerminalText.h"

#include <QByteArray>

#include <algorithm>
#include <utility>

namespace roost {

namespace {

/// The outcome of a fetch with a token that nobody can renew: a refused token is a failure, not the end of a
/// sign-in.
struct OutcomeOf {
    SyncOutcome::Any operator()(WidgetAPI::Snapshot&& result) const
    {
        return SyncOutcome::Updated{std::move(result.snapshot)};
    }
    SyncOutcome::Any operator()(WidgetAPI::Unavailable&& result) const
    {
        return SyncOutcome::Failed{{SyncReason::Kind::unavailable, result.retryAfter}};
    }
    SyncOutcome::Any operator()(WidgetAPI::Unauthorized&&) const
    {
        return SyncOutcome::Failed{{SyncReason::Kind::unreachable, {}}};
    }
    SyncOutcome::Any operator()(WidgetAPI::Forbidden&&) const
    {
        return SyncOutcome::Failed{{SyncReason::Kind::unreachable, {}}};
    }
    SyncOutcome::Any operator()(WidgetAPI::Unreachable&&) const
    {
        return SyncOutcome::Failed{{SyncReason::Kind::unreachable, {}}};
    }
    SyncOutcome::Any operator()(WidgetAPI::Malformed&&) const
    {
        return SyncOutcome::Failed{{SyncReason::Kind::malformed, {}}};
    }
};

/// What to tell of a result that brought no numbers.
struct SentenceOf {
    std::string operator()(const WidgetAPI::Snapshot&) const { return {}; }
    std::string operator()(const WidgetAPI::Unavailable& result) const
    {
        return "The service is busy (" + describe({SyncReason::Kind::unavailable, result.retryAfter}) + ").";
    }
    std::string operator()(const WidgetAPI::Unauthorized&) const { return "The service refused the token."; }
    std::string operator()(const WidgetAPI::Forbidden&) const
    {
        return "The token may not read this profile.";
    }
    std::string operator()(const WidgetAPI::Unreachable&) const
    {
        return "Brisken Roost could not be reached. Check your connection and try again.";
    }
    std::string operator()(const WidgetAPI::Malformed&) const
    {
        return "The service gave an answer that could not be understood.";
    }
};

} // namespace

std::expected<QString, std::string> bearerTokenFrom(std::string_view text)
{
    const std::string_view line = text.substr(0, text.find('\n'));
    const QByteArrayView token = QByteArrayView{line}.trimmed();
    if (token.isEmpty()) {
        return std::unexpected("A token is missing: give it on standard input or in $BRISKEN_ROOST_TOKEN.");
    }
    // RFC 6750 §2.1: visible ASCII. Anything else could end the header that carries the token.
    if (!std::ranges::all_of(token, [](char c) { return c > ' ' && c < '\x7f'; })) {
        return std::unexpected("The token holds characters that no token has.");
    }
    return QString::fromLatin1(token);
}

QCoro::Task<CommandResult> runFetch(FetchCommand command, QString token, WidgetAPI api, WidgetStore store,
                                    Clock now, std::stop_token stop)
{
    auto fetching = api.fetch(token, stop);
    WidgetAPI::Result result = co_await fetching;
    const std::string sentence = std::visit(SentenceOf{}, result);
    std::optional<std::string> profileId = command.profile;
    if (const auto* fetched = std::get_if<WidgetAPI::Snapshot>(&result)) {
        const RoostSnapshot::Profile& profile = fetched->snapshot.profile;
        if (profileId && *profileId != profile.id) {
            co_return failed(ExitCode::failure,
                             "The token belongs to another profile, \"" + onOneLine(profile.id) + "\".");
        }
        profileId = profile.id;
    }
    if (profileId && !AccountFile{store, now}.note(*profileId, std::visit(OutcomeOf{}, std::move(result)))) {
        co_return failed(ExitCode::failure, "The numbers could not be written.");
    }
    co_return sentence.empty() ? CommandResult{} : failed(ExitCode::failure, sentence);
}

} // namespace roost
