#include "platform/KeyringSession.h"

#include "bus/SessionBus.h"
#include "platform/QuietSecretService.h"

#include <utility>

namespace roost {

namespace {

constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";

/// Items are searched for without the name of their schema, which a collection that was never opened does not
/// tell.
const SecretSchema schema{"world.brisken.roost.mac.Secret",
                          SECRET_SCHEMA_DONT_MATCH_NAME,
                          {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                           {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                           {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                          0,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr};

std::unexpected<KeyringFailure> failed(const GErrorSlot& error)
{
    return std::unexpected(failureOf(error.get()));
}

GOwnedTable tableOf(const KeyringSession::Attributes& attributes)
{
    GOwnedTable table{g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free)};
    for (const auto& [name, value] : attributes) {
        g_hash_table_insert(table.get(), g_strdup(name.c_str()), g_strdup(value.c_str()));
    }
    return table;
}

/// What a new item is made with; the one place where its label for people is chosen.
GOwnedTable propertiesOf(const KeyringSession::Attributes& attributes)
{
    GVariantBuilder pairs;
    g_variant_builder_init(&pairs, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [name, value] : attributes) {
        g_variant_builder_add(&pairs, "{ss}", name.c_str(), value.c_str());
    }
    g_variant_builder_add(&pairs, "{ss}", "xdg:schema", schema.name);
    GOwnedTable properties{g_hash_table_new_full(g_str_hash, g_str_equal, g_free, [](gpointer value) {
        g_variant_unref(static_cast<GVariant*>(value));
    })};
    const auto insert = [&properties](const char* name, GVariant* value) {
        g_hash_table_insert(properties.get(), g_strdup(name), g_variant_ref_sink(value));
    };
    insert("org.freedesktop.Secret.Item.Label", g_variant_new_string("Brisken Roost"));
    insert("org.freedesktop.Secret.Item.Attributes", g_variant_builder_end(&pairs));
    return properties;
}

std::vector<std::string> textsOf(const GOwnedTexts& texts)
{
    std::vector<std::string> found;
    for (char** text = texts.get(); text != nullptr && *text != nullptr; ++text) {
        found.emplace_back(*text);
    }
    return found;
}

/// Whether `error`, of connecting to `bus`, says that there is no such socket.
bool isMissing(const GErrorSlot& error, const BusSocket& bus)
{
    const auto is = [&error](int code) { return g_error_matches(error.get(), G_IO_ERROR, code) != FALSE; };
    return is(G_IO_ERROR_NOT_FOUND) || is(G_IO_ERROR_NOT_DIRECTORY) ||
           // The name of a socket that is no file stands for nothing when nobody listens.
           (!bus.isPath && is(G_IO_ERROR_CONNECTION_REFUSED));
}

/// Not the connection that the process shares: that one ends the process when the bus goes away.
KeyringResult<GOwned<GDBusConnection>> connectionTo(const QString& addresses, GCancellable* stop)
{
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    KeyringFailure failure = KeyringFailure::noService;
    for (const BusSocket& bus : busSocketsIn(addresses)) {
        GErrorSlot error;
        GOwned<GDBusConnection> connection{g_dbus_connection_new_for_address_sync(
            bus.address.toUtf8().constData(), flags, nullptr, stop, error)};
        if (connection) {
            return connection;
        }
        if (!isMissing(error, bus)) {
            failure = KeyringFailure::notAnswering;
        }
    }
    return std::unexpected(failure);
}

} // namespace

KeyringSession::KeyringSession(GOwned<GDBusConnection> connection, GOwned<SecretService> service)
    : connection_(std::move(connection)),
      service_(std::move(service))
{
}

KeyringResult<std::unique_ptr<KeyringSession>> KeyringSession::open(const QString& addresses,
                                                                    GCancellable* stop)
{
    KeyringResult<GOwned<GDBusConnection>> connection = connectionTo(addresses, stop);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    GErrorSlot error;
    GOwned<SecretService> service = quietSecretService(connection->get(), stop, error);
    if (!service) {
        return failed(error);
    }
    return std::unique_ptr<KeyringSession>{new KeyringSession{*std::move(connection), std::move(service)}};
}

KeyringResult<std::string> KeyringSession::defaultCollection(GCancellable* stop)
{
    GErrorSlot error;
    const GOwnedText path{secret_service_read_alias_dbus_path_sync(service_.get(), "default", stop, error)};
    if (error.get() != nullptr) {
        return failed(error);
    }
    if (!path) {
        return std::unexpected(KeyringFailure::noCollection);
    }
    return std::string{path.get()};
}

KeyringResult<void> KeyringSession::ensureOpen(const std::string& collection, GCancellable* stop)
{
    const KeyringResult<GOwnedVariant> locked =
        property(collection, collectionInterface, "Locked", "b", stop);
    if (!locked) {
        return std::unexpected(locked.error());
    }
    if (g_variant_get_boolean(locked->get()) == FALSE) {
        return {};
    }
    const KeyringResult<std::string> question = unlock(collection, stop);
    if (!question) {
        return std::unexpected(question.error());
    }
    if (*question != noQuestion) {
        return std::unexpected(KeyringFailure::locked);
    }
    return {};
}

KeyringResult<std::string> KeyringSession::unlock(const std::string& collection, GCancellable* stop)
{
    // Not by libsecret, which makes an object of every question and leaks a little each time.
    const char* path = collection.c_str();
    const KeyringResult<GOwnedVariant> reply =
        call("/org/freedesktop/secrets", "org.freedesktop.Secret.Service", "Unlock",
             g_variant_new("(@ao)", g_variant_new_objv(&path, 1)), "(aoo)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const char* question = nullptr;
    g_variant_get_child(reply->get(), 1, "&o", &question);
    return std::string{question};
}

KeyringResult<KeyringSession::Items> KeyringSession::search(const Attributes& attributes, GCancellable* stop)
{
    const GOwnedTable wanted = tableOf(attributes);
    char** unlocked = nullptr;
    char** locked = nullptr;
    GErrorSlot error;
    secret_service_search_for_dbus_paths_sync(service_.get(), &schema, wanted.get(), stop, &unlocked, &locked,
                                              error);
    const GOwnedTexts open{unlocked};
    const GOwnedTexts closed{locked};
    if (error.get() != nullptr) {
        return failed(error);
    }
    return Items{textsOf(open), textsOf(closed)};
}

KeyringResult<KeyringSession::Attributes> KeyringSession::attributes(const std::string& item,
                                                                     GCancellable* stop)
{
    const KeyringResult<GOwnedVariant> pairs = property(item, itemInterface, "Attributes", "a{ss}", stop);
    if (!pairs) {
        return std::unexpected(pairs.error());
    }
    Attributes found;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, pairs->get());
    const char* name = nullptr;
    const char* value = nullptr;
    while (g_variant_iter_next(&iterator, "{&s&s}", &name, &value) != FALSE) {
        found.emplace(name, value);
    }
    return found;
}

KeyringResult<std::string> KeyringSession::secret(const std::string& item, GCancellable* stop)
{
    GErrorSlot error;
    SecretValue* value =
        secret_service_get_secret_for_dbus_path_sync(service_.get(), item.c_str(), stop, error);
    if (value == nullptr) {
        return failed(error);
    }
    gsize length = 0;
    const char* bytes = secret_value_get(value, &length);
    std::string secret{bytes, length};
    secret_value_unref(value);
    return secret;
}

KeyringResult<void> KeyringSession::store(const std::string& collection, const Attributes& attributes,
                                          const std::string& secret, GCancellable* stop)
{
    const GOwnedTable properties = propertiesOf(attributes);
    SecretValue* value =
        secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain; charset=utf8");
    GErrorSlot error;
    const GOwnedText item{secret_service_create_item_dbus_path_sync(service_.get(), collection.c_str(),
                                                                    properties.get(), value,
                                                                    SECRET_ITEM_CREATE_REPLACE, stop, error)};
    secret_value_unref(value);
    if (!item) {
        return failed(error);
    }
    return {};
}

KeyringResult<void> KeyringSession::erase(const std::string& item, GCancellable* stop)
{
    GErrorSlot error;
    if (secret_service_delete_item_dbus_path_sync(service_.get(), item.c_str(), stop, error) == FALSE) {
        return failed(error);
    }
    return {};
}

KeyringResult<GOwnedVariant> KeyringSession::call(const std::string& path, const char* interface,
                                                  const char* method, GVariant* arguments,
                                                  const char* replyType, GCancellable* stop)
{
    GErrorSlot error;
    GOwnedVariant reply{g_dbus_connection_call_sync(
        connection_.get(), "org.freedesktop.secrets", path.c_str(), interface, method, arguments,
        G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, -1, stop, error)};
    if (!reply) {
        return failed(error);
    }
    return reply;
}

KeyringResult<GOwnedVariant> KeyringSession::property(const std::string& path, const char* interface,
                                                      const char* name, const char* type, GCancellable* stop)
{
    const KeyringResult<GOwnedVariant> reply = call(path, "org.freedesktop.DBus.Properties", "Get",
                                                    g_variant_new("(ss)", interface, name), "(v)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    GVariant* boxed = nullptr;
    g_variant_get(reply->get(), "(v)", &boxed);
    GOwnedVariant value{boxed};
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE(type)) == FALSE) {
        return std::unexpected(KeyringFailure::refused);
    }
    return value;
}

} // namespace roost
