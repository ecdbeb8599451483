#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>

namespace roost {

/// Lines that the user types or pastes, read without waiting. Main thread; not to be destroyed by its own
/// calls.
class StandardInputLines final : public QObject {
    Q_OBJECT

public:
    struct Listener {
        /// One line, without its end; the last one may have had none.
        std::function<void(std::string)> line;
        /// A line of more than `longestLine` bytes was left out.
        std::function<void()> tooLong;
        /// No more lines: called once, last of all.
        std::function<void()> ended;
    };

    static constexpr std::size_t longestLine = 16 * 1024;

    /// Reads `descriptor`, which stays open, from now on; nothing is told before the event loop runs.
    explicit StandardInputLines(Listener listener, int descriptor = 0);

private:
    void read();
    void take(char byte);
    void end();

    Listener listener_;
    int descriptor_;
    std::string line_;
    bool isTooLong_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace roost
