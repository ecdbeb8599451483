#include "tests/support/LogCatcher.h"

#include <algorithm>
#include <mutex>
#include <ostream>

namespace roost::test {

namespace {

std::mutex mutex;
QList<LogCatcher::Line> caught;

void take(QtMsgType level, const QMessageLogContext& context, const QString& message)
{
    const std::scoped_lock lock(mutex);
    caught.append({level, QByteArray(context.category), message});
}

} // namespace

LogCatcher::LogCatcher()
{
    const std::scoped_lock lock(mutex);
    caught.clear();
    previous_ = qInstallMessageHandler(take);
}

LogCatcher::~LogCatcher() { qInstallMessageHandler(previous_); }

QList<LogCatcher::Line> LogCatcher::lines() const
{
    const std::scoped_lock lock(mutex);
    return caught;
}

QList<QString> LogCatcher::messages(QByteArrayView category) const
{
    QList<QString> messages;
    for (const Line& line : lines()) {
        if (line.category == category) {
            messages.append(line.message);
        }
    }
    return messages;
}

bool LogCatcher::saw(QStringView text) const
{
    return std::ranges::any_of(lines(), [text](const Line& line) { return line.message.contains(text); });
}

void PrintTo(const LogCatcher::Line& line, std::ostream* out)
{
    *out << line.level << ' ' << line.category.toStdString() << ": " << line.message.toStdString();
}

} // namespace roost::test
