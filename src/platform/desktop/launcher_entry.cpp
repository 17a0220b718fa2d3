#include "platform/desktop/launcher_entry.h"

#include <string>

#include "platform/desktop/gio_owned.h"

namespace hl {

namespace {

constexpr const char* kProgram = "application://harborlantern.desktop";
constexpr const char* kEntryInterface = "com.canonical.Unity.LauncherEntry";
constexpr const char* kEntryObject = "/com/canonical/unity/launcherentry/harborlantern";

/// Returns an empty text if there is no session bus. No bus is started.
std::string busAddress() {
    if (const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS"))
        return g_str_has_prefix(address, "autolaunch:") != FALSE ? "" : address;
    const char* runtime = g_getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr) return {};
    const std::string socket = std::string(runtime) + "/bus";
    return g_file_test(socket.c_str(), G_FILE_TEST_EXISTS) != FALSE ? "unix:path=" + socket : "";
}

}  // namespace

// A connection of its own: GIO ends the program when the shared one is lost.
struct LauncherEntry::Bus {
    Owned<GMainContext> context{g_main_context_new()};
    Owned<GCancellable> cancelled{g_cancellable_new()};
    Owned<GDBusConnection> connection;
    bool waits = false;  ///< An answer will come.

    Bus() {
        const std::string address = busAddress();
        if (address.empty()) return;
        waits = true;
        g_main_context_push_thread_default(context.get());
        constexpr auto kAsClient = static_cast<GDBusConnectionFlags>(
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        g_dbus_connection_new_for_address(address.c_str(), kAsClient, nullptr, cancelled.get(), came, this);
        g_main_context_pop_thread_default(context.get());
    }
    // A bus that has not answered yet is given up at once, and says so.
    ~Bus() {
        g_cancellable_cancel(cancelled.get());
        while (waits) g_main_context_iteration(context.get(), TRUE);
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    bool isThere() {
        while (waits && g_main_context_iteration(context.get(), FALSE) != FALSE) {
        }
        return connection != nullptr;
    }
    static void came(GObject* /*source*/, GAsyncResult* result, gpointer data) {
        auto* bus = static_cast<Bus*>(data);
        bus->connection.reset(g_dbus_connection_new_for_address_finish(result, nullptr));
        bus->waits = false;
    }
};

LauncherEntry::LauncherEntry() = default;
LauncherEntry::~LauncherEntry() = default;

void LauncherEntry::show(std::optional<int> percent) {
    if (percent == shown_) return;
    if (!bus_) bus_ = std::make_unique<Bus>();
    if (!bus_->isThere()) return;
    send(percent);
    shown_ = percent;
}

void LauncherEntry::send(std::optional<int> percent) const {
    constexpr double kWhole = 100;
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&properties, "{sv}", "progress",
                          g_variant_new_double(percent.value_or(0) / kWhole));
    g_variant_builder_add(&properties, "{sv}", "progress-visible",
                          g_variant_new_boolean(percent ? TRUE : FALSE));
    g_dbus_connection_emit_signal(bus_->connection.get(), nullptr, kEntryObject, kEntryInterface, "Update",
                                  g_variant_new("(sa{sv})", kProgram, &properties), nullptr);
}

}  // namespace hl
