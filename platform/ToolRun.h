#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <stop_token>

namespace roost {

struct ToolResult {
    int exitCode = 0;
    /// What it printed, at most 64 KiB of it.
    QByteArray output;
};

/// Runs a small program of the system, found along the PATH of `environment`, with that environment and
/// nothing to read; its complaints are dropped. Nothing when it is not there, cannot be started, is killed,
/// or takes longer than `timeout` or than `stop` lets it: then it is killed. Main thread.
QCoro::Task<std::optional<ToolResult>> runTool(QString program, QStringList arguments,
                                               QProcessEnvironment environment,
                                               std::chrono::milliseconds timeout, std::stop_token stop);

} // namespace roost
