#pragma once

#include <QString>

/// How the program is found on the session bus.
namespace roost::RoostBus {

inline const QString name = QStringLiteral("world.brisken.roost.mac");
inline const QString path = QStringLiteral("/world/brisken/roost/mac");
/// Desktop Entry Specification, "D-Bus Activation".
inline const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
/// The error that answers addresses that nobody waits for.
inline const QString notAwaited = QStringLiteral("world.brisken.roost.mac.Error.NotAwaited");

} // namespace roost::RoostBus
