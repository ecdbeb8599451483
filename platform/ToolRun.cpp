#include "platform/ToolRun.h"

#include "model/Arrival.h"
#include "platform/EnvironmentPaths.h"

#include <QProcess>
#include <QTimer>

namespace roost {

namespace {

constexpr qint64 mostOutput = 64 * 1024;

} // namespace

QCoro::Task<std::optional<ToolResult>> runTool(QString program, QStringList arguments,
                                               QProcessEnvironment environment,
                                               std::chrono::milliseconds timeout, std::stop_token stop)
{
    const QString found = programNamed(program, environment);
    if (found.isEmpty() || stop.stop_requested()) {
        co_return std::nullopt;
    }
    using Result = std::optional<ToolResult>;
    const Arrival<Result> end;
    auto* process = new QProcess(QCoreApplication::instance());
    process->setProcessEnvironment(environment);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(
        process, &QProcess::finished, process, [process, end](int exitCode, QProcess::ExitStatus status) {
            end.set(status == QProcess::NormalExit ? Result{ToolResult{exitCode, process->read(mostOutput)}}
                                                   : Result{});
        });
    QObject::connect(process, &QProcess::errorOccurred, process, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end.set(std::nullopt);
        }
    });
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [end] { end.set(std::nullopt); });
    timer.start(timeout);
    process->start(found, arguments, QIODevice::ReadOnly);
    const std::stop_callback onStop(stop, [end] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [end] { end.set(std::nullopt); }, Qt::QueuedConnection);
    });
    const auto coming = end.coming();
    Result result = co_await coming;
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
    } else {
        QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
        process->kill();
    }
    co_return result;
}

} // namespace roost
