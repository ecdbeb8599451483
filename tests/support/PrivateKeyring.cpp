#include "tests/support/PrivateKeyring.h"

#include "tests/support/Poll.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>

#include <stdexcept>

namespace roost::test {

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.secrets");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
/// What the keyring's own tools use.
const QString internalInterface = QStringLiteral("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface");

QDBusMessage ask(const PrivateBus& bus, const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(serviceName, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return bus.connection().call(message);
}

/// The same, which must succeed.
QVariantList call(const PrivateBus& bus, const QString& path, const QString& interface, const QString& method,
                  const QVariantList& arguments)
{
    const QDBusMessage reply = ask(bus, path, interface, method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error(method.toStdString() + ": " + reply.errorMessage().toStdString());
    }
    return reply.arguments();
}

bool isOpen(const PrivateBus& bus, const QString& path)
{
    const QDBusMessage reply = ask(bus, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("Get"), {collectionInterface, QStringLiteral("Locked")});
    return reply.type() == QDBusMessage::ReplyMessage &&
           !reply.arguments().constFirst().value<QDBusVariant>().variant().toBool();
}

QVariant dictionaryOf(const QMap<QString, QString>& pairs)
{
    QDBusArgument dictionary;
    dictionary.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QString>());
    for (auto pair = pairs.begin(); pair != pairs.end(); ++pair) {
        dictionary.beginMapEntry();
        dictionary << pair.key() << pair.value();
        dictionary.endMapEntry();
    }
    dictionary.endMap();
    return QVariant::fromValue(dictionary);
}

/// A secret as it travels in a session without encryption.
QVariant secretOf(const QString& session, const QByteArray& bytes)
{
    QDBusArgument secret;
    secret.beginStructure();
    secret << QDBusObjectPath{session} << QByteArray() << bytes << QStringLiteral("text/plain");
    secret.endStructure();
    return QVariant::fromValue(secret);
}

qsizetype lengthOf(const QVariant& paths) { return qdbus_cast<QList<QDBusObjectPath>>(paths).size(); }

} // namespace

PrivateKeyring::PrivateKeyring(const PrivateBus& bus) : bus_(&bus) {}

void PrivateKeyring::start(const std::vector<std::string>& command, const std::string& input)
{
    // On a busy machine the daemon now and then stands still at its start for good.
    constexpr int attempts = 4;
    for (int attempt = 1; attempt < attempts; ++attempt) {
        daemon_ = std::make_unique<GuardedProcess>(command, input);
        if (holdsWithin(std::chrono::seconds{10}, [this] { return bus_->hasName(serviceName); })) {
            return;
        }
    }
    daemon_ = std::make_unique<GuardedProcess>(command, input);
    bus_->awaitName(serviceName, true);
}

void PrivateKeyring::startUnlocked()
{
    start({"gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"}, "lab");
    poll("the keyring opens", [this] { return isOpen(*bus_, defaultPath()); });
}

void PrivateKeyring::startLocked()
{
    start({"gnome-keyring-daemon", "--foreground", "--components=secrets"}, {});
}

void PrivateKeyring::makeWithoutPassword() const
{
    const std::filesystem::path folder = bus_->dataHome() / "keyrings";
    std::filesystem::create_directory(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    putBytes(folder / "login.keyring", "[keyring]\ndisplay-name=login\nctime=0\nmtime=0\nlock-on-idle=false\n"
                                       "lock-after=false\n");
    putBytes(folder / "default", "login");
}

QString PrivateKeyring::makeAnother(const QString& label)
{
    const QVariantMap properties{{QStringLiteral("org.freedesktop.Secret.Collection.Label"), label}};
    return call(*bus_, servicePath, internalInterface, QStringLiteral("CreateWithMasterPassword"),
                {properties, secretOf(session(), "lab")})
        .constFirst()
        .value<QDBusObjectPath>()
        .path();
}

void PrivateKeyring::lock(const QString& path)
{
    call(*bus_, servicePath, serviceInterface, QStringLiteral("Lock"),
         {QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath{path}})});
    poll("the keyring locks", [&] { return !isOpen(*bus_, path); });
}

void PrivateKeyring::unlock(const QString& path)
{
    call(*bus_, servicePath, internalInterface, QStringLiteral("UnlockWithMasterPassword"),
         {QVariant::fromValue(QDBusObjectPath{path}), secretOf(session(), "lab")});
    poll("the keyring opens", [&] { return isOpen(*bus_, path); });
}

void PrivateKeyring::end()
{
    daemon_.reset();
    bus_->awaitName(serviceName, false);
}

PrivateKeyring::Items PrivateKeyring::itemsWith(const QMap<QString, QString>& attributes) const
{
    const QVariantList found =
        call(*bus_, servicePath, serviceInterface, QStringLiteral("SearchItems"), {dictionaryOf(attributes)});
    return {lengthOf(found.at(0)), lengthOf(found.at(1))};
}

void PrivateKeyring::putItem(const QString& path, const QMap<QString, QString>& attributes,
                             const QByteArray& secret)
{
    const QVariantMap properties{
        {QStringLiteral("org.freedesktop.Secret.Item.Label"), QStringLiteral("another")},
        {QStringLiteral("org.freedesktop.Secret.Item.Attributes"), dictionaryOf(attributes)}};
    call(*bus_, path, collectionInterface, QStringLiteral("CreateItem"),
         {properties, secretOf(session(), secret), true});
}

QString PrivateKeyring::session()
{
    return call(*bus_, servicePath, serviceInterface, QStringLiteral("OpenSession"),
                {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))})
        .at(1)
        .value<QDBusObjectPath>()
        .path();
}

} // namespace roost::test
