#include "tests/support/ChildProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace roost::test {

void ChildProcess::Voice::say(const std::string& text) const
{
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            ::_exit(3); // nobody listens any more
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

ChildProcess::ChildProcess(const std::function<void(const Voice&)>& work)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    pid_ = ::fork();
    if (pid_ < 0) {
        throw std::runtime_error("no child process");
    }
    if (pid_ == 0) {
        ::close(ends[0]);
        try {
            work(Voice{ends[1]});
        } catch (...) {
            ::_exit(2);
        }
        // Without the parent's destructors and exit handlers.
        ::_exit(0);
    }
    ::close(ends[1]);
    descriptor_ = ends[0];
}

ChildProcess::~ChildProcess()
{
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        reap();
    }
    ::close(descriptor_);
}

bool ChildProcess::receive()
{
    std::array<char, 4096> block{};
    ssize_t count = ::read(descriptor_, block.data(), block.size());
    while (count < 0 && errno == EINTR) {
        count = ::read(descriptor_, block.data(), block.size());
    }
    if (count <= 0) {
        return false;
    }
    received_.append(block.data(), static_cast<std::size_t>(count));
    return true;
}

void ChildProcess::reap()
{
    while (::waitpid(pid_, &status_, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
}

std::string ChildProcess::line()
{
    while (!received_.contains('\n')) {
        if (!receive()) {
            return {};
        }
    }
    const auto end = received_.find('\n');
    std::string first = received_.substr(0, end);
    received_.erase(0, end + 1);
    return first;
}

std::string ChildProcess::wait()
{
    while (receive()) {
    }
    reap();
    return std::exchange(received_, {});
}

int ChildProcess::signal() const { return WIFSIGNALED(status_) ? WTERMSIG(status_) : 0; }

std::string inChildProcess(const std::function<std::string()>& work)
{
    ChildProcess child{[&work](const ChildProcess::Voice& voice) { voice.say(work()); }};
    std::string said = child.wait();
    return child.signal() == 0 ? said : "killed by signal " + std::to_string(child.signal());
}

std::string withoutPrivileges(const std::function<std::string()>& work, const std::filesystem::path& owned)
{
    constexpr uid_t nobody = 65534;
    return inChildProcess([&]() -> std::string {
        if (::geteuid() != 0) {
            return work();
        }
        // A child, since privileges that were given up cannot be taken back.
        const bool isHandedOver = owned.empty() || ::chown(owned.c_str(), nobody, nobody) == 0;
        return isHandedOver && ::setgid(nobody) == 0 && ::setuid(nobody) == 0
                   ? work()
                   : "privileges cannot be given up";
    });
}

} // namespace roost::test
