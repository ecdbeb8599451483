#pragma once

#include <QHostInfo>
#include <QObject>

#include <functional>

namespace roost {

/// Looks up the addresses of `host` on a thread that ends with the answer. Those of Qt's own look-ups stay
/// for half a minute, which wakes an idle program up once more, and hold up its end. `done` is called at most
/// once, on a later turn of the event loop of this thread, and not after `context`, which lives on this
/// thread, has gone. No cache: the system has its own.
void lookUpHost(const QString& host, QObject* context, std::function<void(const QHostInfo&)> done);

} // namespace roost
