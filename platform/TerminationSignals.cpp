#include "platform/TerminationSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>

namespace roost {

namespace {

constexpr int terminating[]{SIGINT, SIGTERM, SIGHUP};

/// What a handler can reach is global.
volatile std::sig_atomic_t told = -1;

void tell(int)
{
    const int interrupted = errno;
    const std::uint64_t one = 1;
    static_cast<void>(!::write(told, &one, sizeof one));
    errno = interrupted;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> wanted)
{
    told = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(told, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [wanted = std::move(wanted)](QSocketDescriptor descriptor) {
                         std::uint64_t count = 0;
                         if (::read(descriptor, &count, sizeof count) == sizeof count) {
                             wanted();
                         }
                     });
    struct sigaction action{};
    action.sa_handler = tell;
    // The next one meets nobody; and handlers, unlike blocked signals, are not handed on to other programs.
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    for (const int signal : terminating) {
        struct sigaction before{};
        ::sigaction(signal, nullptr, &before);
        // nohup(1), and shells for what runs in the background, have some ignored.
        if (before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int signal : terminating) {
        struct sigaction now{};
        ::sigaction(signal, nullptr, &now);
        if (now.sa_handler == tell) {
            ::signal(signal, SIG_DFL);
        }
    }
    notifier_.reset();
    ::close(told);
    told = -1;
}

} // namespace roost
