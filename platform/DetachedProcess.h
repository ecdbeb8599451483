#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace roost {

/// Starts `program` (an absolute path) in a session of its own, with nothing to read and nowhere to print,
/// and leaves it alone: it outlives this program. False when it cannot be started. When it ends, `ended` is
/// told its exit code, -1 for a signal, from the event loop, as long as `context` lives. Main thread.
bool startDetached(const QString& program, const QStringList& arguments,
                   const QProcessEnvironment& environment, QObject* context, std::function<void(int)> ended);

} // namespace roost
