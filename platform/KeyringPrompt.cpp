#include "platform/KeyringPrompt.h"

#include <string>

namespace roost {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* promptInterface = "org.freedesktop.Secret.Prompt";

/// Waits for the end of one question. Made before the question is put, so that no answer is missed.
class PromptWatch {
public:
    PromptWatch(GDBusConnection* connection, const std::string& prompt, GCancellable* stop)
        : connection_(connection),
          context_(g_main_context_ref_thread_default()),
          stop_(g_cancellable_source_new(stop))
    {
        completed_ = g_dbus_connection_signal_subscribe(connection, serviceName, promptInterface, "Completed",
                                                        prompt.c_str(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                        onCompleted, &isOver_, nullptr);
        watch_ = g_bus_watch_name_on_connection(connection, serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                nullptr, onVanished, &isOver_, nullptr);
        g_source_set_callback(stop_.get(), G_SOURCE_FUNC(onStopped), &isOver_, nullptr);
        g_source_attach(stop_.get(), context_.get());
    }

    ~PromptWatch()
    {
        g_source_destroy(stop_.get());
        g_bus_unwatch_name(watch_);
        g_dbus_connection_signal_unsubscribe(connection_, completed_);
    }

    PromptWatch(const PromptWatch&) = delete;
    PromptWatch& operator=(const PromptWatch&) = delete;

    void wait()
    {
        while (!isOver_) {
            g_main_context_iteration(context_.get(), TRUE);
        }
    }

private:
    static void onCompleted(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                            const char* /*interface*/, const char* /*signal*/, GVariant* /*arguments*/,
                            gpointer isOver)
    {
        *static_cast<bool*>(isOver) = true;
    }

    static void onVanished(GDBusConnection* /*connection*/, const char* /*name*/, gpointer isOver)
    {
        *static_cast<bool*>(isOver) = true;
    }

    static gboolean onStopped(GCancellable* /*stop*/, gpointer isOver)
    {
        *static_cast<bool*>(isOver) = true;
        return G_SOURCE_REMOVE;
    }

    GDBusConnection* connection_;
    GOwnedContext context_;
    GOwnedSource stop_;
    guint completed_ = 0;
    guint watch_ = 0;
    bool isOver_ = false;
};

bool isOpen(KeyringSession& session, GCancellable* stop)
{
    const KeyringResult<std::string> collection = session.defaultCollection(stop);
    return collection && session.ensureOpen(*collection, stop);
}

/// The path of the question that opens or makes the default collection; "/" when none is needed.
KeyringResult<std::string> questionFor(KeyringSession& session, GCancellable* stop)
{
    const KeyringResult<std::string> collection = session.defaultCollection(stop);
    if (collection) {
        return session.unlock(*collection, stop);
    }
    if (collection.error() != KeyringFailure::noCollection) {
        return collection;
    }
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                          g_variant_new_string("Default keyring"));
    const KeyringResult<GOwnedVariant> reply =
        session.call(servicePath, serviceInterface, "CreateCollection",
                     g_variant_new("(a{sv}s)", &properties, "default"), "(oo)", stop);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const char* prompt = nullptr;
    g_variant_get_child(reply->get(), 1, "&o", &prompt);
    return std::string{prompt};
}

} // namespace

KeyringResult<bool> openByAsking(KeyringSession& session, GCancellable* stop)
{
    if (isOpen(session, stop)) {
        return true;
    }
    const KeyringResult<std::string> prompt = questionFor(session, stop);
    if (!prompt) {
        return std::unexpected(prompt.error());
    }
    if (*prompt != KeyringSession::noQuestion) {
        PromptWatch watch{session.connection(), *prompt, stop};
        const auto put =
            session.call(*prompt, promptInterface, "Prompt", g_variant_new("(s)", ""), "()", stop);
        if (!put) {
            return std::unexpected(put.error());
        }
        watch.wait();
    }
    return isOpen(session, stop);
}

} // namespace roost
