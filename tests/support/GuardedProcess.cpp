#include "tests/support/GuardedProcess.h"

#include "tests/support/Poll.h"
#include "tests/support/RunUntil.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace roost::test {

namespace {

struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        readEnd = ends[0];
        writeEnd = ends[1];
    }

    int readEnd;
    int writeEnd;
};

// From here to the end of `guard`: the guardian, a copy of a process with threads, which may do only what is
// safe in a signal handler.

/// Kills every process that the guardian has, until none is left. Those whose parents die become its own.
void killAll(pid_t program)
{
    for (;;) {
        ::kill(-program, SIGKILL);
        std::array<char, 4096> children{};
        const int list = ::open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC);
        const ssize_t length = list < 0 ? 0 : ::read(list, children.data(), children.size() - 1);
        ::close(list);
        for (char* at = children.data(); length > 0 && *at != '\0';) {
            char* end = at;
            if (const auto pid = static_cast<pid_t>(std::strtol(at, &end, 10)); pid > 0) {
                ::kill(pid, SIGKILL);
            }
            at = end == at ? at + 1 : end;
        }
        if (::waitpid(-1, nullptr, 0) < 0 && errno == ECHILD) {
            return;
        }
    }
}

[[noreturn]] void become(char** command, int input, int output)
{
    ::setpgid(0, 0);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(input, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    ::execvp(command[0], command);
    ::_exit(127);
}

/// Starts the program, says which process it is, and ends it when told to or when the test process has ended.
[[noreturn]] void guard(pid_t test, char** command, int input, int output, int announcement)
{
    sigset_t awaited;
    ::sigemptyset(&awaited);
    ::sigaddset(&awaited, SIGTERM);
    ::sigaddset(&awaited, SIGCHLD);
    ::sigprocmask(SIG_BLOCK, &awaited, nullptr);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t program = ::getppid() == test ? ::fork() : -1;
    if (program == 0) {
        become(command, input, output);
    }
    ::setpgid(program, program);
    if (::write(announcement, &program, sizeof program) != sizeof program || program < 0) {
        ::_exit(1);
    }
    // Whoever reads what the test process writes is not kept waiting by this one.
    ::close_range(0, ~0U, 0);
    for (;;) {
        if (::sigwaitinfo(&awaited, nullptr) == SIGTERM) {
            killAll(program);
            ::_exit(0);
        }
        while (::waitpid(-1, nullptr, WNOHANG) > 0) {
        }
    }
}

/// The letter of proc(5) for what the process is doing.
char stateOf(pid_t pid)
{
    std::ifstream file{"/proc/" + std::to_string(pid) + "/stat"};
    std::string text;
    std::getline(file, text);
    const auto name = text.rfind(") ");
    return name == std::string::npos ? 'X' : text.at(name + 2);
}

void awaitState(pid_t pid, bool isStopped)
{
    poll("the process obeys", [=] { return (stateOf(pid) == 'T') == isStopped; });
}

} // namespace

GuardedProcess::GuardedProcess(const std::vector<std::string>& command, const std::string& input)
{
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    const Pipe in;
    const Pipe out;
    const Pipe announcement;
    const pid_t test = ::getpid();
    guardian_ = ::fork();
    if (guardian_ == 0) {
        guard(test, arguments.data(), in.readEnd, out.writeEnd, announcement.writeEnd);
    }
    ::close(in.readEnd);
    ::close(out.writeEnd);
    ::close(announcement.writeEnd);
    output_ = out.readEnd;
    const bool isFed = ::write(in.writeEnd, input.data(), input.size()) == static_cast<ssize_t>(input.size());
    ::close(in.writeEnd);
    const bool isAnnounced = ::read(announcement.readEnd, &program_, sizeof program_) == sizeof program_;
    ::close(announcement.readEnd);
    if (!isFed || !isAnnounced || program_ < 0) {
        end();
        throw std::runtime_error("no process for " + command.front());
    }
}

GuardedProcess::~GuardedProcess()
{
    end();
    ::close(output_);
}

std::string GuardedProcess::line()
{
    while (!received_.contains('\n')) {
        pollfd readable{.fd = output_, .events = POLLIN, .revents = 0};
        const auto guard = std::chrono::milliseconds{guardTime}.count();
        std::array<char, 4096> block{};
        const ssize_t count = ::poll(&readable, 1, static_cast<int>(guard)) == 1
                                  ? ::read(output_, block.data(), block.size())
                                  : 0;
        if (count <= 0) {
            return {};
        }
        received_.append(block.data(), static_cast<std::size_t>(count));
    }
    const auto end = received_.find('\n');
    std::string first = received_.substr(0, end);
    received_.erase(0, end + 1);
    return first;
}

void GuardedProcess::freeze() const
{
    ::kill(program_, SIGSTOP);
    awaitState(program_, true);
}

void GuardedProcess::thaw() const
{
    ::kill(program_, SIGCONT);
    awaitState(program_, false);
}

void GuardedProcess::end()
{
    if (guardian_ > 0) {
        ::kill(guardian_, SIGTERM);
        while (::waitpid(guardian_, nullptr, 0) < 0 && errno == EINTR) {
        }
        guardian_ = -1;
    }
}

} // namespace roost::test
