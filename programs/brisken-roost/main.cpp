#include "app/AppSettings.h"
#include "bus/RefreshRoostIntent.h"
#include "bus/SessionBus.h"
#include "model/Clock.h"
#include "model/InfoDictionary.h"
#include "model/RoostLog.h"
#include "platform/BrowserLauncher.h"
#include "platform/IniSettings.h"
#include "platform/TerminationSignals.h"
#include "programs/brisken-roost/AccountsCommand.h"
#include "programs/brisken-roost/AppCommands.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/FetchCommand.h"
#include "programs/brisken-roost/Machine.h"
#include "programs/brisken-roost/NotifyCommand.h"
#include "programs/brisken-roost/OpenCallbackCommand.h"
#include "programs/brisken-roost/QuitCommand.h"
#include "programs/brisken-roost/RunCommand.h"
#include "programs/brisken-roost/SelectCommand.h"
#include "programs/brisken-roost/SignInCommand.h"
#include "programs/brisken-roost/SignOutCommand.h"
#include "programs/brisken-roost/StatusCommand.h"
#include "programs/brisken-roost/SyncCommand.h"
#include "programs/brisken-roost/TerminalBrowser.h"
#include "programs/brisken-roost/Worker.h"

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
        return QCoro::waitFor(runCompanion(&machine, *base, QProcessEnvironment::systemEnvironment()));
    }

    CommandResult operator()(const SignInCommand& command) const
    {
        const bool isInteractive = ::isatty(STDIN_FILENO) != 0;
        const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        return byAppOrHere(
            command.baseURL,
            [&](AppCommands::App app, std::stop_token stop) {
                return command.cancels ? AppCommands::cancelSignIn(app)
                                       : AppCommands::signIn(app, {stderr, isInteractive, environment}, stop);
            },
            [&](AccountServices services, std::stop_token stop) -> QCoro::Task<CommandResult> {
                if (command.cancels) {
                    co_return notRunning();
                }
                TerminalBrowser browser{machine.files(),
                                        QCoreApplication::applicationFilePath().toStdString(),
                                        environment,
                                        {.output = stderr, .isInteractive = isInteractive}};
                const SignInFlow flow{services.oauth, services.api, browser};
                auto signingIn = runSignIn(flow, services, stop);
                CommandResult result = co_await signingIn;
                co_return result;
            });
    }

    CommandResult operator()(const AccountsCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [](AppCommands::App app, std::stop_token) -> QCoro::Task<CommandResult> {
                co_return AppCommands::accounts(app->state());
            },
            [](AccountServices services, std::stop_token) { return runAccounts(services); });
    }

    CommandResult operator()(const SignOutCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [&](AppCommands::App app, std::stop_token) { return AppCommands::signOut(app, command.profile); },
            [&](AccountServices services, std::stop_token stop) {
                return runSignOut(command.profile, services, stop);
            });
    }

    CommandResult operator()(const SyncCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [&](AppCommands::App app, std::stop_token stop) {
                return AppCommands::refresh(app, command.profile, stop);
            },
            [&](AccountServices services, std::stop_token stop) {
                return runSync(command.profile, services, stop);
            });
    }

    CommandResult operator()(const RefreshCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [&](AppCommands::App app, std::stop_token stop) {
                return command.waits ? AppCommands::refresh(app, std::nullopt, stop) : askForRefresh();
            },
            [](AccountServices services, std::stop_token stop) {
                return runSync(std::nullopt, services, stop);
            });
    }

    CommandResult operator()(const SelectCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [&](AppCommands::App app, std::stop_token) { return AppCommands::select(app, command.profile); },
            [&](AccountServices services, std::stop_token) -> QCoro::Task<CommandResult> {
                IniSettings settings{machine.settingsFile()};
                co_return runSelect(command.profile, services.file, settings);
            });
    }

    CommandResult operator()(const QuitCommand& command) const
    {
        return byAppOrHere(
            command.baseURL,
            [this](AppCommands::App app, std::stop_token stop) {
                return runQuit(app, machine.appLockFile(), std::chrono::minutes(2), stop);
            },
            [](AccountServices, std::stop_token) -> QCoro::Task<CommandResult> { co_return notRunning(); });
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
        IniSettings settings{machine.settingsFile()};
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

    /// Has the running app do a command about profiles, or does it here when there is none.
    template <class ByApp, class Here>
    CommandResult byAppOrHere(const std::optional<QString>& baseURL, const ByApp& byApp,
                              const Here& here) const
    {
        const auto base = machine.base(baseURL);
        if (!base) {
            return failed(ExitCode::usage, base.error());
        }
        // A refresh that is under way must not be cut off: its token could be lost.
        return untilStopped([&](std::stop_token stop) {
            const auto worker =
                QCoro::waitFor(findWorker({machine.appLockFile(), machine.store().directory(), *base,
                                           sessionBusAddresses(QProcessEnvironment::systemEnvironment())},
                                          stop));
            if (!worker) {
                return failed(ExitCode::failure, worker.error());
            }
            return QCoro::waitFor(worker->app ? byApp(worker->app, stop)
                                              : here(machine.services(*base), stop));
        });
    }

    QCoro::Task<CommandResult> askForRefresh() const
    {
        auto asking = RefreshRoostIntent::perform(
            machine.store(), systemClock()(), sessionBusAddresses(QProcessEnvironment::systemEnvironment()),
            std::chrono::seconds(5));
        co_await asking;
        co_return CommandResult{};
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
