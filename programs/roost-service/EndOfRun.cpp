#include "programs/roost-service/EndOfRun.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace roost::local {

EndOfRun::EndOfRun(std::function<void()> ended) : ended_(std::move(ended))
{
    sigset_t wanted;
    sigemptyset(&wanted);
    sigaddset(&wanted, SIGTERM);
    sigaddset(&wanted, SIGINT);
    pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
    signals_ = signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);

    signalled_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
    connect(signalled_.get(), &QSocketNotifier::activated, this, [this] { end(); });
    input_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(input_.get(), &QSocketNotifier::activated, this, [this] { readInput(); });
}

EndOfRun::~EndOfRun() { ::close(signals_); }

void EndOfRun::readInput()
{
    std::array<char, 4096> ignored{};
    const ssize_t count = ::read(STDIN_FILENO, ignored.data(), ignored.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        end();
    }
}

void EndOfRun::end()
{
    input_->setEnabled(false);
    signalled_->setEnabled(false);
    ended_();
}

} // namespace roost::local
