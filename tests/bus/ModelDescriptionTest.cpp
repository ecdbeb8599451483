#include "bus/ModelMethods.h"
#include "bus/ModelProperties.h"
#include "tests/bus/ModelOnBus.h"

#include <gmock/gmock.h>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>

namespace roost::test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// What a document says of one interface.
struct Interface {
    struct Property {
        QString type;
        QString access;
        QString emitsChanged;
        bool operator==(const Property&) const = default;
    };

    std::map<QString, Property> properties;
    struct Method {
        /// The types of the arguments, and of what is answered.
        QString in;
        QString out;
        bool operator==(const Method&) const = default;
    };

    std::map<QString, Method> methods;
    bool operator==(const Interface&) const = default;
};

/// The interfaces that a document describes. An error of its form fails the test.
std::map<QString, Interface> interfacesIn(const QByteArray& document)
{
    QXmlStreamReader xml(document);
    std::map<QString, Interface> interfaces;
    Interface* interface = nullptr;
    Interface::Property* property = nullptr;
    Interface::Method* method = nullptr;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const auto attribute = [&](const char* name) {
            return xml.attributes().value(QLatin1String(name)).toString();
        };
        const QString name = attribute("name");
        if (xml.name() == QLatin1String("interface")) {
            interface = &interfaces[name];
        } else if (xml.name() == QLatin1String("property")) {
            property = &interface->properties[name];
            *property = {attribute("type"), attribute("access"), {}};
        } else if (name == QLatin1String("org.freedesktop.DBus.Property.EmitsChangedSignal")) {
            property->emitsChanged = attribute("value");
        } else if (xml.name() == QLatin1String("method")) {
            method = &interface->methods[name];
        } else if (xml.name() == QLatin1String("arg") && method != nullptr) {
            (attribute("direction") == QLatin1String("in") ? method->in : method->out) += attribute("type");
        }
    }
    // The parser lets one document within another pass.
    EXPECT_EQ(document.count("<!DOCTYPE"), 1);
    EXPECT_EQ(document.count("<node>"), 1);
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString() << '\n' << document.toStdString();
    return interfaces;
}

Interface described()
{
    QFile file(QStringLiteral(ROOST_SOURCE_DIR "/bus/world.brisken.roost.mac.Model1.xml"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    auto interfaces = interfacesIn(file.readAll());
    EXPECT_THAT(interfaces, SizeIs(1));
    return interfaces[RoostBus::modelInterface];
}

/// The type that came over the bus.
QString typeOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        return value.value<QDBusArgument>().currentSignature();
    }
    return QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType()));
}

class ModelDescriptionTest : public testing::Test, protected ModelOnBus {
protected:
    ModelDescriptionTest() { startOnBus(); }

    QVariant get(const QString& name) const
    {
        const QDBusMessage answer = peer.callModel(QStringLiteral("Get"), {RoostBus::modelInterface, name},
                                                   RoostBus::propertiesInterface);
        EXPECT_EQ(answer.signature(), QStringLiteral("v")) << answer.errorMessage().toStdString();
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }

    QVariantMap getAll() const
    {
        const QDBusMessage answer = peer.callModel(QStringLiteral("GetAll"), {RoostBus::modelInterface},
                                                   RoostBus::propertiesInterface);
        EXPECT_EQ(answer.signature(), QStringLiteral("a{sv}")) << answer.errorMessage().toStdString();
        return qdbus_cast<QVariantMap>(answer.arguments().value(0));
    }

    BusPeer peer{bus().address()};
    const Interface interface = described();
};

TEST_F(ModelDescriptionTest, IsWhatTheAppSaysOfItself)
{
    const QDBusMessage answer = peer.callModel(QStringLiteral("Introspect"), {},
                                               QStringLiteral("org.freedesktop.DBus.Introspectable"));
    ASSERT_EQ(answer.type(), QDBusMessage::ReplyMessage);
    const auto told = interfacesIn(answer.arguments().at(0).toString().toUtf8());
    EXPECT_THAT(told, Contains(testing::Key(RoostBus::propertiesInterface)));
    ASSERT_THAT(told, Contains(testing::Key(RoostBus::modelInterface)));
    EXPECT_EQ(told.at(RoostBus::modelInterface), interface);
}

TEST_F(ModelDescriptionTest, NamesEveryPropertyThatIsThere)
{
    ASSERT_THAT(interface.properties, SizeIs(ModelProperties::all().size()));
    for (const auto& [name, property] : interface.properties) {
        const ModelProperties::Property* const found = ModelProperties::find(name);
        ASSERT_NE(found, nullptr) << name.toStdString();
        EXPECT_EQ(property.access, QStringLiteral("read"));
        EXPECT_EQ(property.emitsChanged, found->isInvalidatedOnly ? QStringLiteral("invalidates") : QString{})
            << name.toStdString();
    }
    EXPECT_EQ(ModelProperties::find(QStringLiteral("Secrets")), nullptr);
}

TEST_F(ModelDescriptionTest, GivesTheTypeOfEveryPropertyEmptyOrNot)
{
    for (const bool isFull : {false, true}) {
        const QVariantMap all = getAll();
        EXPECT_EQ(static_cast<std::size_t>(all.size()), interface.properties.size());
        for (const auto& [name, property] : interface.properties) {
            EXPECT_EQ(typeOf(get(name)), property.type) << name.toStdString() << isFull;
            EXPECT_EQ(typeOf(all.value(name)), property.type) << name.toStdString() << isFull;
        }
        world.signIn("p1");
        world.app().setUpdateStatus({"2.0", "3.0", true});
    }
}

TEST_F(ModelDescriptionTest, GivesTheTypesOfWhatIsAnnounced)
{
    ChangeListener listener(peer.connection());
    world.signIn("p1");
    world.app().setUpdateStatus({"2.0", "3.0", true});
    ASSERT_TRUE(runUntil([&] {
        return std::ranges::any_of(listener.changes, [](const ChangeListener::Change& change) {
            return change.values.contains(QStringLiteral("UpdateStatus"));
        });
    }));
    for (const ChangeListener::Change& change : listener.changes) {
        for (const QString& name : change.values.keys()) {
            ASSERT_THAT(interface.properties, Contains(testing::Key(name)));
            EXPECT_EQ(typeOf(change.values.value(name)), interface.properties.at(name).type);
        }
    }
}

TEST_F(ModelDescriptionTest, NamesEveryMethodWithItsArguments)
{
    std::map<QString, Interface::Method> methods;
    for (const auto& [name, method] : ModelMethods::all()) {
        methods[name] = {method.signature, method.results};
    }
    EXPECT_EQ(interface.methods, methods);
}

TEST_F(ModelDescriptionTest, NamesWhatCanBeCalled)
{
    for (const auto& [name, method] : interface.methods) {
        const QDBusMessage wrong = peer.callModel(name, {1.5});
        EXPECT_EQ(wrong.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"))
            << name.toStdString();
        QVariantList right;
        if (method.in == QStringLiteral("b")) {
            right.append(false);
        } else if (method.in == QStringLiteral("s")) {
            right.append(QStringLiteral("nobody"));
        }
        const QDBusMessage answer = awaitInTime(peer.startModelCall(name, right));
        EXPECT_EQ(answer.signature(),
                  answer.type() == QDBusMessage::ReplyMessage ? method.out : QStringLiteral("s"));
        EXPECT_THAT((QStringList{{}, RoostBus::noSuchProfile}), Contains(answer.errorName()));
    }
}

} // namespace
} // namespace roost::test
