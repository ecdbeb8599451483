#include "model/Clock.h"
#include "model/InfoDictionary.h"
#include "model/RealFileSystem.h"
#include "model/RoostLog.h"
#include "model/SharedContainer.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/FetchCommand.h"
#include "programs/brisken-roost/OpenCallbackCommand.h"
#include "programs/brisken-roost/StatusCommand.h"
#include "service/HttpRoute.h"
#include "service/NetworkHttpSession.h"
#include "service/RoostEnvironment.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QCoro/QCoroTask>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

using namespace roost;

namespace {

TableStyle styleOfStandardOutput()
{
    TableStyle style;
    if (::isatty(STDOUT_FILENO) == 0) {
        return style;
    }
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        style.width = size.ws_col;
    }
    // no-color.org: present and not empty.
    style.colour = qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
    return style;
}

/// The first line of standard input, without waiting for more. Bounded: a token is short.
std::string lineOfStandardInput()
{
    std::array<char, 16 * 1024> line{};
    return std::fgets(line.data(), line.size(), stdin) != nullptr ? line.data() : "";
}

std::expected<QString, std::string> bearerToken()
{
    const QByteArray fromEnvironment = qgetenv("BRISKEN_ROOST_TOKEN");
    return bearerTokenFrom(fromEnvironment.isEmpty() ? lineOfStandardInput() : fromEnvironment.toStdString());
}

bool mayCarryTokens(const QUrl& base)
{
    return base.isValid() && !base.host().isEmpty() &&
           (base.scheme() == QLatin1String("https") ||
            (base.scheme() == QLatin1String("http") && isLoopback(base.host())));
}

/// The parts of the machine that the commands work on.
struct Machine {
    InfoDictionary info;
    RealFileSystem files;

    WidgetStore store()
    {
        using namespace SharedContainer;
        const Location location = resolve(UserFolders::fromEnvironment(), groupIdentifier(info));
        return {files, location.directory};
    }
};

struct Run {
    Machine& machine;

    CommandResult operator()(const PrintCommand& command) const
    {
        return {ExitCode::fine, command.text.toStdString(), {}};
    }

    CommandResult operator()(const OpenCallbackCommand& command) const
    {
        return QCoro::waitFor(runOpenCallback(command, QProcessEnvironment::systemEnvironment()));
    }

    CommandResult operator()(const StatusCommand& command) const
    {
        return runStatus(command, machine.store(), systemClock(), styleOfStandardOutput());
    }

    CommandResult operator()(const FetchCommand& command) const
    {
        const QUrl base = command.baseURL ? QUrl{*command.baseURL, QUrl::StrictMode}
                                          : RoostEnvironment::baseURL(machine.info);
        if (!mayCarryTokens(base)) {
            return failed(ExitCode::usage, "The base URL is neither https nor a service on this machine.");
        }
        auto token = bearerToken();
        if (!token) {
            return failed(ExitCode::usage, token.error());
        }
        NetworkHttpSession session;
        return QCoro::waitFor(runFetch(command, *std::move(token), WidgetAPI{base, session}, machine.store(),
                                       systemClock(), {}));
    }
};

CommandResult run(const QStringList& arguments)
{
    const InfoDictionary builtIn = InfoDictionary::builtIn();
    const auto line = parseCommandLine(arguments, builtIn.version());
    if (!line) {
        return failed(ExitCode::usage, line.error().toStdString());
    }
    Machine machine{builtIn, {}};
    if (line->infoFile) {
        auto info = InfoDictionary::fromFile(*line->infoFile);
        if (!info) {
            return failed(ExitCode::usage, info.error().toStdString());
        }
        machine.info = *std::move(info);
    }
    return std::visit(Run{machine}, line->command);
}

} // namespace

int main(int argc, char* argv[])
{
    RoostLog::install();
    QCoreApplication application{argc, argv};
    const CommandResult result = run(QCoreApplication::arguments().sliced(1));
    const bool written = std::fputs(result.output.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    std::fputs(result.error.c_str(), stderr);
    return static_cast<int>(written ? result.code : ExitCode::failure);
}
