#include "tests/platform/SecretServiceStandIn.h"

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace roost::test {

namespace {

using Paths = QList<QDBusObjectPath>;

const QString serviceName = QStringLiteral("org.freedesktop.secrets");
const QString rootPath = QStringLiteral("/org/freedesktop/secrets");
const QString collectionPath = rootPath + QStringLiteral("/collection/only");

/// Qt keeps connections by name, for the whole process.
QString freshName()
{
    static int count = 0;
    return QStringLiteral("secret service stand-in %1").arg(++count);
}

} // namespace

SecretServiceStandIn::SecretServiceStandIn(const PrivateBus& bus, Collection collection, Name name)
    : connection_(QDBusConnection::connectToBus(bus.address(), freshName())),
      collection_(collection)
{
    connection_.registerVirtualObject(rootPath, this, QDBusConnection::SubPath);
    if (name == Name::taken) {
        takeName();
    }
}

SecretServiceStandIn::~SecretServiceStandIn() { leaveBus(); }

void SecretServiceStandIn::takeName() { connection_.registerService(serviceName); }

void SecretServiceStandIn::leaveName() { connection_.unregisterService(serviceName); }

void SecretServiceStandIn::leaveBus()
{
    const QString name = connection_.name();
    connection_ = QDBusConnection{QString{}};
    QDBusConnection::disconnectFromBus(name);
}

void SecretServiceStandIn::onceAfter(const QString& member, std::function<void()> then)
{
    member_ = member;
    then_ = std::move(then);
}

void SecretServiceStandIn::answerWithPassword()
{
    collection_ = Collection::open;
    complete(false);
}

void SecretServiceStandIn::close() { complete(true); }

QString SecretServiceStandIn::introspect(const QString& /*path*/) const { return {}; }

bool SecretServiceStandIn::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (!connection_.isConnected()) {
        return true;
    }
    if (message.member() == QStringLiteral("OpenSession") &&
        message.arguments().constFirst().toString() != QStringLiteral("plain")) {
        return connection.send(
            message.createErrorReply(QDBusError::NotSupported, QStringLiteral("only plain")));
    }
    const bool isSent = connection.send(message.createReply(replyTo(message)));
    if (then_ && message.member() == member_) {
        std::exchange(then_, {})();
    }
    return isSent;
}

QVariantList SecretServiceStandIn::replyTo(const QDBusMessage& message)
{
    const QString member = message.member();
    if (member == QStringLiteral("ReadAlias")) {
        const bool isThere = collection_ != Collection::missing;
        return {QVariant::fromValue(QDBusObjectPath{isThere ? collectionPath : QStringLiteral("/")})};
    }
    if (member == QStringLiteral("Get")) {
        return {QVariant::fromValue(QDBusVariant{collection_ == Collection::locked})};
    }
    if (member == QStringLiteral("OpenSession")) {
        return {QVariant::fromValue(QDBusVariant{QString()}),
                QVariant::fromValue(QDBusObjectPath{rootPath + QStringLiteral("/session/s1")})};
    }
    if (member == QStringLiteral("CreateItem")) {
        return {QVariant::fromValue(QDBusObjectPath{QStringLiteral("/")}),
                QVariant::fromValue(QDBusObjectPath{rootPath + QStringLiteral("/prompt/item")})};
    }
    if (member == QStringLiteral("Unlock") || member == QStringLiteral("CreateCollection")) {
        const QString prompt = rootPath + QStringLiteral("/prompt/p%1").arg(++offeredCount_);
        const QVariant nothingYet = member == QStringLiteral("Unlock")
                                        ? QVariant::fromValue(Paths{})
                                        : QVariant::fromValue(QDBusObjectPath{QStringLiteral("/")});
        return {nothingYet, QVariant::fromValue(QDBusObjectPath{prompt})};
    }
    if (member == QStringLiteral("SearchItems")) {
        return {QVariant::fromValue(Paths{}), QVariant::fromValue(Paths{})};
    }
    if (member == QStringLiteral("Prompt")) {
        ++putCount_;
        questions_.append(message.path());
    }
    if (member == QStringLiteral("Dismiss")) {
        ++dismissCount_;
    }
    return {};
}

void SecretServiceStandIn::complete(bool isDismissed)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        questions_.takeFirst(), QStringLiteral("org.freedesktop.Secret.Prompt"), QStringLiteral("Completed"));
    signal << isDismissed << QVariant::fromValue(QDBusVariant{QString()});
    connection_.send(signal);
}

} // namespace roost::test
