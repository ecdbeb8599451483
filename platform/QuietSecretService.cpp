#include "platform/QuietSecretService.h"

namespace roost {

namespace {

struct QuietService {
    SecretService parent;
};

struct QuietServiceClass {
    SecretServiceClass parent;
};

// A prompt that was offered is never begun and needs no cancelling: the service forgets it with the
// connection.

GVariant* refusePrompt(SecretService* /*service*/, SecretPrompt* /*prompt*/, GCancellable* /*stop*/,
                       const GVariantType* /*type*/, GError** error)
{
    g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "The user is not asked.");
    return nullptr;
}

void refusePromptLater(SecretService* service, SecretPrompt* /*prompt*/, const GVariantType* /*type*/,
                       GCancellable* stop, GAsyncReadyCallback done, gpointer data)
{
    const GOwned<GTask> task{g_task_new(service, stop, done, data)};
    g_task_return_new_error(task.get(), SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "The user is not asked.");
}

GVariant* endRefusal(SecretService* /*service*/, GAsyncResult* result, GError** error)
{
    return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

/// libsecret's own constructor asks for the shared connection of the process, whatever it was given.
GObject* constructOnItsConnection(GType type, guint count, GObjectConstructParam* properties)
{
    const auto* libsecret = static_cast<GObjectClass*>(g_type_class_peek(SECRET_TYPE_SERVICE));
    GObject* made = libsecret->constructor(type, count, properties);
    constexpr int flags =
        G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES | G_DBUS_PROXY_FLAGS_DO_NOT_CONNECT_SIGNALS;
    g_object_set(made, "g-bus-type", G_BUS_TYPE_NONE, "g-flags", flags, nullptr);
    return made;
}

void initClass(gpointer klass, gpointer /*data*/)
{
    SecretServiceClass& service = static_cast<QuietServiceClass*>(klass)->parent;
    service.prompt_sync = refusePrompt;
    service.prompt_async = refusePromptLater;
    service.prompt_finish = endRefusal;
    static_cast<GObjectClass*>(klass)->constructor = constructOnItsConnection;
}

GType quietServiceType()
{
    static const GType type = g_type_register_static_simple(
        SECRET_TYPE_SERVICE, "RoostQuietSecretService", sizeof(QuietServiceClass), initClass,
        sizeof(QuietService), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

} // namespace

GOwned<SecretService> quietSecretService(GDBusConnection* connection, GCancellable* stop, GError** error)
{
    gpointer made = g_initable_new(quietServiceType(), stop, error, "g-connection", connection, nullptr);
    return GOwned<SecretService>{static_cast<SecretService*>(made)};
}

} // namespace roost
