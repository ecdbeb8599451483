#include "app/AppSettings.h"
#include "bus/SessionBus.h"
#include "model/Clock.h"
#include "model/InfoDictionary.h"
#include "model/RoostLog.h"
#include "platform/BrowserLauncher.h"
#include "platform/IniSettings.h"
#include "platform/TerminationSignals.h"
#include "programs/brisken-roost/AccountsCommand.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/FetchCommand.h"
#include "programs/brisken-roost/Machine.h"
#include "programs/brisken-roost/NotifyCommand.h"
#include "programs/brisken-roost/OpenCallbackCommand.h"
#include "programs/brisken-roost/RunCommand.h"
#include "programs/brisken-roost/SignInCommand.h"
#include "programs/brisken-roost/SignOutCommand.h"
#include "programs/brisken-roost/StatusCommand.h"
#include "programs/brisken-roost/SyncCommand.h"
#include "programs/brisken-roost/TerminalBrowser.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <QLoggingCategory>

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
        const auto base = machine.base(command.baseURL);
        if (!base) {
            return failed(ExitCode::usage, base.error());
        }
        auto token = bearerToken();
        if (!token) {
            return failed(ExitCode::usage, token.error());
        }
        return QCoro::waitFor(runFetch(command, *std::move(token), WidgetAPI{*base, machine.session()},
                                       machine.store(), systemClock(), {}));
    }

    CommandResult operator()(const RunCommand& command) const
    {
        const auto base = machine.base(command.baseURL);
        if (!base) {
            return failed(ExitCode::usage, base.error());
        }
        return QCoro::waitFor(runCompanion(machine, *base, QProcessEnvironment::systemEnvironment()));
    }

    CommandResult operator()(const SignInCommand& command) const
    {
        return withServices(command.baseURL, [this](AccountServices services, std::stop_token stop) {
            TerminalBrowser browser{machine.files(),
                                    QCoreApplication::applicationFilePath().toStdString(),
                                    QProcessEnvironment::systemEnvironment(),
                                    {.output = stderr, .isInteractive = ::isatty(STDIN_FILENO) != 0}};
            const SignInFlow flow{services.oauth, services.api, browser};
            return QCoro::waitFor(runSignIn(flow, services, stop));
        });
    }

    CommandResult operator()(const AccountsCommand& command) const
    {
        return withServices(command.baseURL, [](AccountServices services, std::stop_token) {
            return QCoro::waitFor(runAccounts(std::move(services)));
        });
    }

    CommandResult operator()(const SignOutCommand& command) const
    {
        return withServices(command.baseURL, [&](AccountServices services, std::stop_token stop) {
            return QCoro::waitFor(runSignOut(command.profile, std::move(services), stop));
        });
    }

    CommandResult operator()(const SyncCommand& command) const
    {
        return withServices(command.baseURL, [&](AccountServices services, std::stop_token stop) {
            return QCoro::waitFor(runSync(command.profile, std::move(services), stop));
        });
    }

    CommandResult operator()(const NotifyCommand& command) const
    {
        const auto base = machine.base(std::nullopt);
        if (!base) {
            return failed(ExitCode::usage, base.error());
        }
        const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const auto say = [](const std::string& text) { std::fputs(text.c_str(), stderr); };
        const auto sayThatNothingOpened = [say](BrowserOpener::Trouble) {
            say("The page could not be opened: there is no browser to open it in, or none to see it on.\n");
        };
        BrowserLauncher launcher{environment};
        IniSettings settings{IniSettings::location()};
        AppSettings::registerDefaults(settings);
        const NotifyParts parts{
            .busAddresses = sessionBusAddresses(environment),
            .settings = settings,
            .open = [&](WebURL url) { launcher.open(std::move(url), sayThatNothingOpened); },
            .base = *base,
            .format = command.locale ? RoostFormat{{*command.locale, {}, {}}} : RoostFormat::system(),
            .now = systemClock(),
            .say = say};
        return untilStopped(
            [&](std::stop_token stop) { return QCoro::waitFor(runNotify(command, parts, stop)); });
    }

private:
    /// Has the first wish to end the program stop `work`, in its own time.
    template <class Work>
    CommandResult untilStopped(const Work& work) const
    {
        std::stop_source stop;
        const TerminationSignals signals{[&stop] {
            std::fputs("brisken-roost: stopping; once more to stop at once\n", stderr);
            stop.request_stop();
        }};
        return work(stop.get_token());
    }

    template <class Work>
    CommandResult withServices(const std::optional<QString>& baseURL, const Work& work) const
    {
        const auto base = machine.base(baseURL);
        if (!base) {
            return failed(ExitCode::usage, base.error());
        }
        // A refresh that is under way must not be cut off: its token could be lost.
        return untilStopped(
            [&](std::stop_token stop) { return work(machine.services(*base), std::move(stop)); });
    }
};

CommandResult run(const QStringList& arguments)
{
    const InfoDictionary builtIn = InfoDictionary::builtIn();
    const auto line = parseCommandLine(arguments, builtIn.version());
    if (!line) {
        return failed(ExitCode::usage, line.error().toStdString());
    }
    const auto info = line->infoFile ? InfoDictionary::fromFile(*line->infoFile) : builtIn;
    if (!info) {
        return failed(ExitCode::usage, info.error().toStdString());
    }
    Machine machine{*info};
    return std::visit(Run{machine}, line->command);
}

} // namespace

int main(int argc, char* argv[])
{
    RoostLog::install();
    if (::isatty(STDERR_FILENO) != 0) {
        // People who type commands are told what came of them, not each step on the way.
        QLoggingCategory::setFilterRules(QStringLiteral("world.brisken.roost.mac.*.info=false"));
    }
    QCoreApplication application{argc, argv};
    return finished(run(QCoreApplication::arguments().sliced(1)));
}
