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

/// The running app: what it publishes and does. Described in bus/world.brisken.roost.mac.Model1.xml.
inline const QString modelPath = QStringLiteral("/world/brisken/roost/mac/Model");
inline const QString modelInterface = QStringLiteral("world.brisken.roost.mac.Model1");
inline const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
/// The error that answers whoever is another user.
inline const QString notAllowed = QStringLiteral("world.brisken.roost.mac.Error.NotAllowed");
/// The error that answers calls about a profile that is not there.
inline const QString noSuchProfile = QStringLiteral("world.brisken.roost.mac.Error.NoSuchProfile");

/// The broadcast that carries notifications from process to process: `Posted`, with the notification's name
/// and a time in milliseconds since 1970.
inline const QString notificationInterface = QStringLiteral("world.brisken.roost.Notification1");

/// The notification by which the app tells widgets to look at the shared file again.
inline const QString timelinesReloaded = QStringLiteral("world.brisken.roost.timelines-reloaded");

} // namespace roost::RoostBus
