#include "platform/desktop/file_manager.h"

#include "base/path.h"

namespace hl {

namespace {

constexpr int kPatienceMs = 1000;
constexpr const char* kService = "org.freedesktop.FileManager1";
constexpr const char* kObject = "/org/freedesktop/FileManager1";

/// One wait for the bus, in a context of its own, so that nothing else of the program runs meanwhile.
struct BusWait {
    Owned<GCancellable> patience{g_cancellable_new()};
    Owned<GDBusConnection> connection;
    bool over = false;
};

void busCame(GObject* /*source*/, GAsyncResult* result, gpointer data) {
    auto* wait = static_cast<BusWait*>(data);
    wait->connection.reset(g_bus_get_finish(result, nullptr));
    wait->over = true;
}

gboolean patienceEnds(gpointer data) {
    g_cancellable_cancel(static_cast<BusWait*>(data)->patience.get());
    return G_SOURCE_REMOVE;
}

void waitForBus(BusWait& wait) {
    const Owned<GMainContext> context(g_main_context_new());
    g_main_context_push_thread_default(context.get());
    const Owned<GSource> limit(g_timeout_source_new(kPatienceMs));
    g_source_set_callback(limit.get(), patienceEnds, &wait, nullptr);
    g_source_attach(limit.get(), context.get());
    g_bus_get(G_BUS_TYPE_SESSION, wait.patience.get(), busCame, &wait);
    while (!wait.over) g_main_context_iteration(context.get(), TRUE);
    g_source_destroy(limit.get());
    g_main_context_pop_thread_default(context.get());
}

bool ranOutOfTime(const GError& error) {
    return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE ||
           g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE ||
           g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) != FALSE;
}

/// Returns the arguments that both methods take: the URLs of the files, and no id of a started program. The
/// value is floating.
GVariant* argumentsFor(const std::vector<std::string>& paths) {
    std::vector<GVariant*> urls;
    urls.reserve(paths.size());
    for (const std::string& path : paths) urls.push_back(g_variant_new_string(fileUrl(path).c_str()));
    GVariant* both[] = {g_variant_new_array(G_VARIANT_TYPE_STRING, urls.data(), urls.size()),
                        g_variant_new_string("")};
    return g_variant_new_tuple(both, 2);
}

}  // namespace

SessionBus::SessionBus() {
    BusWait wait;
    waitForBus(wait);
    silent_ = wait.connection == nullptr && g_cancellable_is_cancelled(wait.patience.get()) != FALSE;
    connection_ = std::move(wait.connection);
    if (connection_) g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
}

bool askFileManager(const SessionBus& bus, Ask what, const std::vector<std::string>& paths) {
    if (bus.connection() == nullptr || paths.empty()) return false;
    const char* method = what == Ask::kShowItems ? "ShowItems" : "ShowItemProperties";
    GError* failure = nullptr;
    const Owned<GVariant> answer(g_dbus_connection_call_sync(
        bus.connection(), kService, kObject, kService, method, argumentsFor(paths), nullptr,
        G_DBUS_CALL_FLAGS_NONE, kPatienceMs, nullptr, &failure));
    const Owned<GError> error(failure);
    return error == nullptr || ranOutOfTime(*error);
}

}  // namespace hl
