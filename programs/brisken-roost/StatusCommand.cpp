#include "programs/brisken-roost/StatusCommand.h"

#include "programs/brisken-roost/StatusJson.h"

namespace roost {

namespace {

std::string sentenceOf(const StatusReport& report, const StatusCommand& command)
{
    switch (report.state) {
    case StatusReport::State::empty:
        return command.profile ? "There is no profile \"" + *command.profile + "\" here."
                               : "There are no profiles here yet.";
    case StatusReport::State::waiting:
        return "The first numbers are still awaited.";
    case StatusReport::State::signedOut:
        return "Signed out: these are the last numbers.";
    case StatusReport::State::stale:
        return "These numbers are older than 15 minutes.";
    case StatusReport::State::fresh:
        break;
    }
    return {};
}

} // namespace

CommandResult runStatus(const StatusCommand& command, const WidgetStore& store, const Clock& now,
                        TableStyle style)
{
    const StatusReport report = statusReport(store.read(), command.profile, now());
    const RoostFormat format =
        command.locale ? RoostFormat{{.locale = *command.locale}} : RoostFormat::system();
    if (command.format == StatusFormat::waybar) {
        return {ExitCode::fine, statusWaybar(report, format), {}};
    }
    CommandResult result;
    if (const std::string sentence = sentenceOf(report, command); !sentence.empty()) {
        result = failed(report.exitCode(), sentence);
    }
    result.output =
        command.format == StatusFormat::json ? statusJson(report) : statusText(report, format, style);
    return result;
}

} // namespace roost
