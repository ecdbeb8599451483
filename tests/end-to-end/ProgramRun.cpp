#include "tests/end-to-end/ProgramRun.h"

#include "tests/support/RunUntil.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>

namespace roost::test {

ProgramRun::ProgramRun(const QStringList& arguments, const QProcessEnvironment& environment,
                       std::function<bool()> prepare)
{
    QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_,
                     [this] { finished_.output += process_.readAllStandardOutput().toStdString(); });
    QObject::connect(&process_, &QProcess::readyReadStandardError, &process_,
                     [this] { finished_.error += process_.readAllStandardError().toStdString(); });
    process_.setProcessEnvironment(environment);
    process_.setChildProcessModifier([prepare = std::move(prepare)] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        // A test that runs in the background of a shell has some ignored.
        for (const int number : {SIGHUP, SIGINT, SIGTERM}) {
            ::signal(number, SIG_DFL);
        }
        if (!prepare()) {
            ::_exit(77);
        }
    });
    process_.start(QStringLiteral(BRISKEN_ROOST), arguments);
}

const std::string& ProgramRun::awaitError(const std::string& text)
{
    const bool isThere =
        runUntil([&] { return finished_.error.contains(text) || process_.state() == QProcess::NotRunning; },
                 browserGuard);
    if (!isThere || !finished_.error.contains(text)) {
        throw std::runtime_error("the program did not say \"" + text + "\", but: " + finished_.error);
    }
    return finished_.error;
}

std::string ProgramRun::addressToOpen()
{
    const std::string before = "\n\n  ";
    const std::string after = "\n\nWhere it ";
    const std::string& said = awaitError(after);
    const std::size_t begin = said.find(before) + before.size();
    return said.substr(begin, said.find(after) - begin);
}

void ProgramRun::enter(const std::string& line) { process_.write(QByteArray::fromStdString(line + "\n")); }

void ProgramRun::signal(int number) { ::kill(static_cast<pid_t>(process_.processId()), number); }

Finished ProgramRun::end()
{
    if (!runUntil([this] { return process_.state() == QProcess::NotRunning; }, browserGuard)) {
        throw std::runtime_error("the program did not end; it said: " + finished_.error);
    }
    if (process_.exitStatus() == QProcess::NormalExit) {
        finished_.code = process_.exitCode();
    }
    return finished_;
}

} // namespace roost::test
