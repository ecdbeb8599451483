#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace roost::local {

/// Tells once when the program shall end: its standard input was closed, or SIGTERM or SIGINT came. Main
/// thread.
class EndOfRun final : public QObject {
public:
    /// Takes the two signals for itself; made before any thread is started. `ended` is called from the event
    /// loop.
    explicit EndOfRun(std::function<void()> ended);
    ~EndOfRun() override;

private:
    void readInput();
    void end();

    std::function<void()> ended_;
    int signals_;
    std::unique_ptr<QSocketNotifier> input_;
    std::unique_ptr<QSocketNotifier> signalled_;
};

} // namespace roost::local
