#include "model/RoostLog.h"

#include "model/LogRedaction.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>

#include <cstdio>

namespace roost::RoostLog {

namespace {

/// systemd names the device and inode of the journal's stream, so that a program can tell whether it writes
/// there.
bool standardErrorIsJournal()
{
    const QByteArray stream = qgetenv("JOURNAL_STREAM");
    struct stat found{};
    if (stream.isEmpty() || ::fstat(STDERR_FILENO, &found) != 0) {
        return false;
    }
    return stream == QByteArray::number(static_cast<qulonglong>(found.st_dev)) + ':' +
                         QByteArray::number(static_cast<qulonglong>(found.st_ino));
}

/// sd-daemon(3): the syslog priorities.
int priority(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return 7;
    case QtInfoMsg:
        return 6;
    case QtWarningMsg:
        return 4;
    case QtCriticalMsg:
        return 3;
    case QtFatalMsg:
        return 2;
    }
    return 6;
}

void print(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    static const bool toJournal = standardErrorIsJournal();
    const QByteArrayView category{context.category};
    QString line = redacted(message);
    if (!category.isEmpty() && category != "default" && category != console().categoryName()) {
        line.prepend(QLatin1String(category) + QLatin1String(": "));
    }
    const QString head =
        toJournal ? QStringLiteral("<%1>").arg(priority(type))
                  : QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz "));
    const QByteArray text = (head + line).toUtf8() + '\n';
    // One call per line, so that lines of several threads do not mix.
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr);
}

} // namespace

const QLoggingCategory& sync()
{
    static const QLoggingCategory category{"world.brisken.roost.mac.sync", QtInfoMsg};
    return category;
}

const QLoggingCategory& auth()
{
    static const QLoggingCategory category{"world.brisken.roost.mac.auth", QtInfoMsg};
    return category;
}

const QLoggingCategory& console()
{
    static const QLoggingCategory category{"world.brisken.roost.mac", QtInfoMsg};
    return category;
}

void install() { qInstallMessageHandler(print); }

} // namespace roost::RoostLog
