#include "tests/end-to-end/ArgumentWatch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include <condition_variable>
#include <filesystem>
#include <stop_token>

namespace roost::test {

namespace {

constexpr std::chrono::milliseconds interval{10};

bool isProcessOfThisUser(const std::filesystem::path& entry)
{
    const std::string name = entry.filename().string();
    struct stat found{};
    return name.find_first_not_of("0123456789") == std::string::npos && ::stat(entry.c_str(), &found) == 0 &&
           found.st_uid == ::geteuid();
}

} // namespace

ArgumentWatch::ArgumentWatch()
    : thread_([this](const std::stop_token& stop) {
          std::mutex pausing;
          std::condition_variable_any pause;
          std::unique_lock lock{pausing};
          while (!stop.stop_requested()) {
              look();
              pause.wait_for(lock, stop, interval, [] { return false; });
          }
      })
{
}

void ArgumentWatch::look()
{
    std::error_code ignored; // processes come and go while they are looked at
    for (auto entry = std::filesystem::directory_iterator{"/proc", ignored};
         entry != std::filesystem::directory_iterator{}; entry.increment(ignored)) {
        if (!isProcessOfThisUser(entry->path())) {
            continue;
        }
        // Not by a stream: the library's throw when a process ends while its file is read.
        QFile file{QString::fromStdString((entry->path() / "cmdline").string())};
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            continue;
        }
        const QByteArray line = file.readAll();
        const std::lock_guard lock{mutex_};
        lines_.insert(line);
    }
}

QByteArrayList ArgumentWatch::wordsWith(const QByteArray& text) const
{
    const std::lock_guard lock{mutex_};
    QByteArrayList found;
    for (const QByteArray& line : lines_) {
        for (const QByteArray& word : line.contains(text) ? line.split('\0') : QByteArrayList{}) {
            if (word.contains(text)) {
                found.append(word);
            }
        }
    }
    return found;
}

} // namespace roost::test
