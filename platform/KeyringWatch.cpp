#include "platform/KeyringWatch.h"

#include <utility>

namespace roost {

namespace {

const QString keyring = QStringLiteral("org.freedesktop.secrets");
const QString path = QStringLiteral("/org/freedesktop/secrets");
const QString interface = QStringLiteral("org.freedesktop.Secret.Service");
const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");
const QString ownerChanged = QStringLiteral("NameOwnerChanged");

/// Secret Service API 0.2, "Service". gnome-keyring says that a collection has changed when it was opened.
const QString collectionSignals[] = {QStringLiteral("CollectionChanged"),
                                     QStringLiteral("CollectionCreated")};

} // namespace

KeyringWatch::KeyringWatch(QDBusConnection connection, std::function<void()> changed)
    : connection_(std::move(connection)),
      changed_(std::move(changed))
{
    connection_.connect(busService, busPath, busService, ownerChanged, {keyring}, QStringLiteral("sss"), this,
                        SLOT(changeOwner(QString, QString, QString)));
    // By the name of the interface alone: for the name of a service the bus library asks its owner and waits.
    // The slot takes the message: one for the path hears nothing in a process that has met no path before.
    for (const QString& signal : collectionSignals) {
        connection_.connect({}, path, interface, signal, this, SLOT(changeCollection(QDBusMessage)));
    }
}

KeyringWatch::~KeyringWatch()
{
    connection_.disconnect(busService, busPath, busService, ownerChanged, {keyring}, QStringLiteral("sss"),
                           this, SLOT(changeOwner(QString, QString, QString)));
    for (const QString& signal : collectionSignals) {
        connection_.disconnect({}, path, interface, signal, this, SLOT(changeCollection(QDBusMessage)));
    }
}

void KeyringWatch::changeOwner(const QString& /*name*/, const QString& /*before*/, const QString& now)
{
    if (!now.isEmpty()) {
        tell();
    }
}

void KeyringWatch::changeCollection(const QDBusMessage& /*message*/) { tell(); }

void KeyringWatch::tell() const
{
    // A copy: whoever hears it may let this go.
    const auto changed = changed_;
    changed();
}

} // namespace roost
