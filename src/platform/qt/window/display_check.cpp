#include "platform/qt/window/display_check.h"

#include <QDir>
#include <QLibrary>
#include <QLibraryInfo>
#include <QStringList>

namespace hl {

namespace {

/// Calls the connect routine of the X server's library, which need not be installed.
bool xServerAnswers() {
    using Connect = void* (*)(const char*, int*);
    using HasError = int (*)(void*);
    using Disconnect = void (*)(void*);
    QLibrary xcb(QStringLiteral("libxcb.so.1"));
    const auto connect = reinterpret_cast<Connect>(xcb.resolve("xcb_connect"));
    const auto hasError = reinterpret_cast<HasError>(xcb.resolve("xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<Disconnect>(xcb.resolve("xcb_disconnect"));
    if (connect == nullptr || hasError == nullptr || disconnect == nullptr) return false;
    void* connection = connect(nullptr, nullptr);
    const bool answers = hasError(connection) == 0;
    disconnect(connection);
    return answers;
}

/// Tells whether a plugin of that name is installed; a "*" matches anything.
bool pluginInstalled(const QString& name) {
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    return !plugins.entryList({QStringLiteral("libq%1.so").arg(name)}).isEmpty();
}

bool waylandAnswers() {
    using Connect = void* (*)(const char*);
    using Disconnect = void (*)(void*);
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || !pluginInstalled(QStringLiteral("wayland*")))
        return false;
    QLibrary wayland(QStringLiteral("libwayland-client.so.0"));
    const auto connect = reinterpret_cast<Connect>(wayland.resolve("wl_display_connect"));
    const auto disconnect = reinterpret_cast<Disconnect>(wayland.resolve("wl_display_disconnect"));
    if (connect == nullptr || disconnect == nullptr) return false;
    void* connection = connect(nullptr);
    if (connection == nullptr) return false;
    disconnect(connection);
    return true;
}

/// Tells whether a platform plugin, named as in QT_QPA_PLATFORM ("xcb", "offscreen:size=800x600"), can start.
bool platformStarts(const QString& name) {
    const QString plugin = name.section(QLatin1Char(':'), 0, 0);
    if (plugin == QLatin1String("xcb")) return xServerAnswers();
    if (plugin.startsWith(QLatin1String("wayland"))) return waylandAnswers();
    // A folder of the user's may have plugins that the toolkit's folder has not.
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM_PLUGIN_PATH") || pluginInstalled(plugin);
}

}  // namespace

std::optional<std::string> displayPlatform() {
    const QString chosen = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!chosen.isEmpty()) {
        for (const QString& name : chosen.split(QLatin1Char(';')))
            if (platformStarts(name)) return std::string();
        return std::nullopt;
    }
    // In some kinds of sessions Qt by itself tries only one of the two.
    const bool prefersWayland = qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland");
    if (prefersWayland && waylandAnswers()) return "wayland";
    if (xServerAnswers()) return "xcb";
    if (waylandAnswers()) return "wayland";
    return std::nullopt;
}

}  // namespace hl
