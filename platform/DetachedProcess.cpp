#include "platform/DetachedProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <vector>

namespace roost {

namespace {

/// Texts in the form that the system calls want them.
class Words {
public:
    explicit Words(const QStringList& words)
    {
        for (const QString& word : words) {
            bytes_.append(QFile::encodeName(word));
        }
        for (QByteArray& word : bytes_) {
            pointers_.push_back(word.data());
        }
        pointers_.push_back(nullptr);
    }

    char* const* get() const { return pointers_.data(); }

private:
    QByteArrayList bytes_;
    std::vector<char*> pointers_;
};

/// The attributes of a process that shares neither terminal nor signals with this one.
class Apart {
public:
    Apart()
    {
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawnattr_setflags(&attributes_,
                                   POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t signals{};
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        for (const int number : {SIGPIPE, SIGCHLD, SIGINT, SIGTERM, SIGHUP}) {
            ::sigaddset(&signals, number);
        }
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawn_file_actions_init(&actions_);
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", O_RDWR, 0);
        }
    }
    ~Apart()
    {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    Apart(const Apart&) = delete;
    Apart& operator=(const Apart&) = delete;

    const posix_spawnattr_t* attributes() const { return &attributes_; }
    const posix_spawn_file_actions_t* actions() const { return &actions_; }

private:
    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
};

/// A descriptor that becomes readable when the process ends.
class ProcessEnd final : public QObject {
public:
    ProcessEnd(pid_t process, int descriptor, std::function<void(int)> ended, QObject* parent)
        : QObject(parent),
          process_(process),
          descriptor_(descriptor),
          ended_(std::move(ended)),
          notifier_(descriptor, QSocketNotifier::Read)
    {
        connect(&notifier_, &QSocketNotifier::activated, this, &ProcessEnd::reap);
    }
    ~ProcessEnd() override { ::close(descriptor_); }

private:
    void reap()
    {
        notifier_.setEnabled(false);
        int status = 0;
        const bool isReaped = ::waitpid(process_, &status, WNOHANG) == process_;
        deleteLater();
        if (isReaped) {
            ended_(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
        }
    }

    pid_t process_;
    int descriptor_;
    std::function<void(int)> ended_;
    QSocketNotifier notifier_;
};

} // namespace

bool startDetached(const QString& program, const QStringList& arguments,
                   const QProcessEnvironment& environment, QObject* context, std::function<void(int)> ended)
{
    const Apart apart;
    const Words words(QStringList{program} + arguments);
    const Words variables(environment.toStringList());
    pid_t process = -1;
    if (::posix_spawn(&process, QFile::encodeName(program).constData(), apart.actions(), apart.attributes(),
                      words.get(), variables.get()) != 0) {
        return false;
    }
    // Without a descriptor for it (a kernel before 5.3) nobody learns how it ends, which is no failure.
    const auto descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    if (descriptor >= 0) {
        new ProcessEnd(process, descriptor, std::move(ended), context);
    }
    return true;
}

} // namespace roost
