#include "programs/brisken-roost/AccountsCommand.h"

#include "programs/brisken-roost/TerminalText.h"

#include <algorithm>

namespace roost {

std::string table(const std::vector<AccountLine>& lines)
{
    int idWidth = 0;
    int stateWidth = 0;
    for (const AccountLine& line : lines) {
        idWidth = std::max(idWidth, displayWidth(onOneLine(line.id)));
        stateWidth = std::max(stateWidth, displayWidth(line.state));
    }
    const auto padded = [](const std::string& text, int width) {
        return text + std::string(static_cast<std::size_t>(width - displayWidth(text) + 2), ' ');
    };
    std::string text;
    for (const AccountLine& line : lines) {
        text += padded(onOneLine(line.id), idWidth) + padded(line.state, stateWidth) + onOneLine(line.name) +
                "\n";
    }
    return text;
}

QCoro::Task<CommandResult> runAccounts(AccountServices services)
{
    auto listing = services.signedInProfiles();
    auto signedIn = co_await listing;
    std::vector<AccountLine> lines;
    for (const RoostAccountRecord& record : services.file.records()) {
        std::string state = "unknown";
        if (signedIn) {
            // The store, not the file, says who is signed in.
            state = std::erase(*signedIn, record.profileId) > 0 ? "signed in" : "signed out";
        }
        lines.push_back({record.profileId, state, record.profileName});
    }
    if (!signedIn) {
        CommandResult result = failed(ExitCode::failure, sentenceFor(signedIn.error()));
        result.output = table(lines);
        co_return result;
    }
    for (const std::string& id : *signedIn) {
        lines.push_back({id, "signed in", "Profile"});
    }
    if (lines.empty()) {
        co_return nobodySignedIn();
    }
    co_return CommandResult{ExitCode::fine, table(lines), {}};
}

} // namespace roost
