#include "platform/KeyringSession.h"

#include "bus/SessionBus.h"
#include "platform/QuietSecretService.h"

#include <string_view>
#include <utility>

namespace roost {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";

/// Told with new items; not searched for, since a collection that was never opened does not tell it.
constexpr const char* schemaName = "world.brisken.roost.mac.Secret";

using GOwnedSecret = std::unique_ptr<SecretValue, GReleased<&secret_value_unref>>;

/// What a new item is made with; the one place where its label for people is chosen.
GOwnedTable propertiesOf(const KeyringSession::Attributes& attributes)
{
    GVariantBuilder pairs;
    g_variant_builder_init(&pairs, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [name, value] : attributes) {
        g_variant_builder_add(&pairs, "{ss}", name.c_str(), value.c_str());
    }
    g_variant_builder_add(&pairs, "{ss}", "xdg:schema", schemaName);
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

std::vector<std::string> pathsIn(GVariant* reply, gsize index)
{
    GVariant* paths = g_variant_get_child_value(reply, index);
    const GOwnedVariant owned{paths};
    GVariantIter iterator;
    g_variant_iter_init(&iterator, paths);
    std::vector<std::string> found;
    const char* path = nullptr;
    while (g_variant_iter_next(&iterator, "&o", &path) != FALSE) {
        found.emplace_back(path);
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

std::string ownerOf(SecretService* service)
{
    const GOwnedText owner{g_dbus_proxy_get_name_owner(G_DBUS_PROXY(service))};
    return owner ? owner.get() : "";
}

/// The end of an asynchronous call, waited for on this thread's own context. libsecret's waiting calls make a
/// context for each, which takes what GLib has put off to it along when it goes.
class Ending {
public:
    static void reached(GObject* /*source*/, GAsyncResult* result, gpointer ending)
    {
        static_cast<Ending*>(ending)->result_.reset(static_cast<GAsyncResult*>(g_object_ref(result)));
    }

    /// Valid as long as this.
    GAsyncResult* wait()
    {
        while (!result_) {
            g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
        }
        return result_.get();
    }

private:
    GOwned<GAsyncResult> result_;
};

} // namespace

KeyringSession::KeyringSession(GOwned<GDBusConnection> connection, GOwned<SecretService> service)
    : connection_(std::move(connection)),
      service_(std::move(service)),
      owner_(ownerOf(service_.get()))
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
        return std::unexpected(failureOf(error.get()));
    }
    std::unique_ptr<KeyringSession> session{new KeyringSession{*std::move(connection), std::move(service)}};
    if (session->owner_.empty()) {
        // Any call says why. Where it succeeds, the service came this moment: too late for this session.
        const KeyringResult<GOwnedVariant> ping =
            session->call(servicePath, "org.freedesktop.DBus.Peer", "Ping", nullptr, "()", stop);
        return std::unexpected(ping ? KeyringFailure::notAnswering : ping.error());
    }
    return session;
}

bool KeyringSession::isCurrent() const { return ownerOf(service_.get()) == owner_; }

KeyringResult<std::string> KeyringSession::defaultCollection(GCancellable* stop)
{
    const KeyringResult<GOwnedVariant> reply =
        call(servicePath, serviceInterface, "ReadAlias", g_variant_new("(s)", "default"), "(o)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const char* path = nullptr;
    g_variant_get_child(reply->get(), 0, "&o", &path);
    if (std::string_view{path} == "/") {
        return std::unexpected(KeyringFailure::noCollection);
    }
    return std::string{path};
}

KeyringResult<bool> KeyringSession::isOpen(const std::string& collection, GCancellable* stop)
{
    const KeyringResult<GOwnedVariant> locked =
        property(collection, collectionInterface, "Locked", "b", stop);
    if (!locked) {
        return std::unexpected(locked.error());
    }
    return g_variant_get_boolean(locked->get()) == FALSE;
}

KeyringResult<void> KeyringSession::ensureOpen(const std::string& collection, GCancellable* stop)
{
    const KeyringResult<bool> open = isOpen(collection, stop);
    if (!open) {
        return std::unexpected(open.error());
    }
    if (*open) {
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
        call(servicePath, serviceInterface, "Unlock", g_variant_new("(@ao)", g_variant_new_objv(&path, 1)),
             "(aoo)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const char* question = nullptr;
    g_variant_get_child(reply->get(), 1, "&o", &question);
    return std::string{question};
}

KeyringResult<KeyringSession::Items> KeyringSession::search(const Attributes& attributes, GCancellable* stop)
{
    GVariantBuilder wanted;
    g_variant_builder_init(&wanted, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [name, value] : attributes) {
        g_variant_builder_add(&wanted, "{ss}", name.c_str(), value.c_str());
    }
    const KeyringResult<GOwnedVariant> reply =
        call(servicePath, serviceInterface, "SearchItems", g_variant_new("(a{ss})", &wanted), "(aoao)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    return Items{pathsIn(reply->get(), 0), pathsIn(reply->get(), 1)};
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
    Ending ending;
    secret_service_ensure_session(service_.get(), stop, &Ending::reached, &ending);
    GErrorSlot error;
    if (secret_service_ensure_session_finish(service_.get(), ending.wait(), error) == FALSE) {
        return failed(error);
    }
    // Not by libsecret, whose calls for reading, all three, keep the service's reply for good.
    const char* transfer = secret_service_get_session_dbus_path(service_.get());
    const KeyringResult<GOwnedVariant> reply =
        call(item, itemInterface, "GetSecret", g_variant_new("(o)", transfer), "((oayays))", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const GOwnedVariant encoded{g_variant_get_child_value(reply->get(), 0)};
    const GOwnedSecret value{secret_service_decode_dbus_secret(service_.get(), encoded.get())};
    if (!value) {
        return std::unexpected(KeyringFailure::refused);
    }
    gsize length = 0;
    const char* bytes = secret_value_get(value.get(), &length);
    return std::string{bytes, length};
}

KeyringResult<void> KeyringSession::store(const std::string& collection, const Attributes& attributes,
                                          const std::string& secret, GCancellable* stop)
{
    const GOwnedTable properties = propertiesOf(attributes);
    const GOwnedSecret value{
        secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain; charset=utf8")};
    Ending ending;
    secret_service_create_item_dbus_path(service_.get(), collection.c_str(), properties.get(), value.get(),
                                         SECRET_ITEM_CREATE_REPLACE, stop, &Ending::reached, &ending);
    GErrorSlot error;
    const GOwnedText item{secret_service_create_item_dbus_path_finish(service_.get(), ending.wait(), error)};
    if (!item) {
        return failed(error);
    }
    return {};
}

KeyringResult<void> KeyringSession::erase(const std::string& item, GCancellable* stop)
{
    Ending ending;
    secret_service_delete_item_dbus_path(service_.get(), item.c_str(), stop, &Ending::reached, &ending);
    GErrorSlot error;
    if (secret_service_delete_item_dbus_path_finish(service_.get(), ending.wait(), error) == FALSE) {
        return failed(error);
    }
    return {};
}

KeyringResult<GOwnedVariant> KeyringSession::call(const std::string& path, const char* interface,
                                                  const char* method, GVariant* arguments,
                                                  const char* replyType, GCancellable* stop)
{
    const char* service = owner_.empty() ? serviceName : owner_.c_str();
    GErrorSlot error;
    GOwnedVariant reply{g_dbus_connection_call_sync(connection_.get(), service, path.c_str(), interface,
                                                    method, arguments, G_VARIANT_TYPE(replyType),
                                                    G_DBUS_CALL_FLAGS_NONE, -1, stop, error)};
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

std::unexpected<KeyringFailure> KeyringSession::failed(const GErrorSlot& error) const
{
    const KeyringFailure failure = failureOf(error.get());
    // There was a service, and it has left.
    return std::unexpected(
        failure == KeyringFailure::noService && !owner_.empty() ? KeyringFailure::notAnswering : failure);
}

} // namespace roost
