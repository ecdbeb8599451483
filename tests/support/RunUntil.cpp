#include "tests/support/RunUntil.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTimer>

namespace roost::test {

bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds guard)
{
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop,
                     [&] {
                         if (condition()) {
                             loop.quit();
                         }
                     });
    QTimer::singleShot(guard, &loop, &QEventLoop::quit);
    if (!condition()) {
        loop.exec();
    }
    return condition();
}

} // namespace roost::test
