#include "tests/soak/RealProcess.h"

#include "tests/platform/PollUntil.h"

#include <sys/prctl.h>

#include <csignal>
#include <stdexcept>

namespace roost::test {

RealProcess::RealProcess(const QString& program, const QStringList& arguments,
                         const QProcessEnvironment& environment, const std::filesystem::path& errors)
{
    process_.setProcessEnvironment(environment);
    process_.setStandardErrorFile(QString::fromStdString(errors.string()), QIODevice::Append);
    process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process_.start(program, arguments);
    if (!process_.waitForStarted()) {
        throw std::runtime_error(program.toStdString() + " does not start");
    }
    pid_ = static_cast<pid_t>(process_.processId());
}

RealProcess::~RealProcess()
{
    if (process_.state() != QProcess::NotRunning) {
        process_.kill();
        process_.waitForFinished();
    }
}

QByteArray RealProcess::line()
{
    if (!pollUntil([this] { return process_.canReadLine() || !isRunning(); }) || !process_.canReadLine()) {
        throw std::runtime_error("no line from process " + std::to_string(pid_));
    }
    return process_.readLine();
}

void RealProcess::signal(int number) const { ::kill(pid_, number); }

std::optional<int> RealProcess::ended(std::chrono::milliseconds guard)
{
    if (!pollUntil([this] { return process_.state() == QProcess::NotRunning; }, guard)) {
        return std::nullopt;
    }
    // What Qt gives for the exit code of a process that a signal ended is that signal.
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -process_.exitCode();
}

} // namespace roost::test
