#include "platform/StandardInputLines.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <span>
#include <utility>

namespace roost {

StandardInputLines::StandardInputLines(Listener listener, int descriptor)
    : listener_(std::move(listener)),
      descriptor_(descriptor)
{
    if (::fcntl(descriptor_, F_GETFD) < 0) {
        // The program was started without a standard input.
        QMetaObject::invokeMethod(this, &StandardInputLines::end, Qt::QueuedConnection);
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &StandardInputLines::read);
}

void StandardInputLines::read()
{
    // One read per signal: it gives what is there and cannot wait. The descriptor may be shared with a
    // terminal's other programs, so it is not made non-blocking.
    std::array<char, 4096> block{};
    const ssize_t count = ::read(descriptor_, block.data(), block.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (count <= 0) {
        notifier_->setEnabled(false);
        if (isTooLong_ || !line_.empty()) {
            take('\n');
        }
        end();
        return;
    }
    for (const char byte : std::span(block).first(static_cast<std::size_t>(count))) {
        take(byte);
    }
}

void StandardInputLines::take(char byte)
{
    if (byte != '\n') {
        isTooLong_ = isTooLong_ || line_.size() == longestLine;
        if (isTooLong_) {
            line_.clear();
        } else {
            line_ += byte;
        }
        return;
    }
    std::string line = std::exchange(line_, {});
    if (std::exchange(isTooLong_, false)) {
        listener_.tooLong();
    } else {
        listener_.line(std::move(line));
    }
}

void StandardInputLines::end() { listener_.ended(); }

} // namespace roost
