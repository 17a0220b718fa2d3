// Starts the tests' executable as another process, because GIO reads the user's folders only once in each.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "platform/desktop/desktop_programs.h"
#include "platform/desktop/gio_owned.h"
// GLib's headers must come before those of Qt.
#include "platform/qt/window/desktop_settings.h"

namespace hl::test {

int desktopCommand(int count, char** words);
int fileManager(int count, char** words);

namespace {

const char* nameOf(OpenResult result) {
    return result == OpenResult::kStarted ? "started" : result == OpenResult::kNoProgram ? "none" : "failed";
}

std::string idsOf(const std::vector<DesktopProgram>& programs) {
    std::string all;
    for (const auto& [id, name] : programs)
        all.append(all.empty() ? "" : " ").append(id).append("=").append(name);
    return all;
}

/// Records each call, and answers it after a while.
struct Recorder {
    std::string file;
    unsigned long answersAfterMs;
};

void recordCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                GVariant* arguments, GDBusMethodInvocation* call, gpointer data) {
    const auto* recorder = static_cast<Recorder*>(data);
    GVariantIter* urls = nullptr;
    const char* url = nullptr;
    g_variant_get(arguments, "(as&s)", &urls, &url);
    std::ofstream out(recorder->file, std::ios::app);
    out << method << "\n";
    while (g_variant_iter_next(urls, "&s", &url) != FALSE) out << url << "\n";
    g_variant_iter_free(urls);
    out.close();
    g_usleep(recorder->answersAfterMs * 1000);
    g_dbus_method_invocation_return_value(call, nullptr);
}

constexpr const char* kInterface =
    "<node><interface name='org.freedesktop.FileManager1'>"
    "<method name='ShowItems'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>"
    "<method name='ShowItemProperties'><arg type='as' direction='in'/><arg type='s' direction='in'/></method>"
    "</interface></node>";

void offer(GDBusConnection* bus, const char*, gpointer recorder) {
    static const GDBusInterfaceVTable calls{recordCall, nullptr, nullptr, {}};
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kInterface, nullptr);
    g_dbus_connection_register_object(bus, "/org/freedesktop/FileManager1", node->interfaces[0], &calls,
                                      recorder, nullptr, nullptr);
    g_dbus_node_info_unref(node);
}

void printUpdate(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                 gpointer count) {
    char* text = g_variant_print(parameters, FALSE);
    std::cout << text << std::endl;
    g_free(text);
    ++*static_cast<int*>(count);
}

/// Tells a run's progress, "-" for none under way: with `listens` until the bus has passed it on, else once.
void tellProgress(DesktopPrograms& desktop, const std::vector<std::string>& percents, bool listens) {
    int heard = 0, wanted = 0;
    const Owned<GDBusConnection> bus(listens ? g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)
                                             : nullptr);
    if (bus)
        g_dbus_connection_signal_subscribe(bus.get(), nullptr, "com.canonical.Unity.LauncherEntry", "Update",
                                           nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, printUpdate, &heard,
                                           nullptr);
    for (const std::string& percent : percents) {
        ++wanted;
        do {
            desktop.showProgress(percent == "-" ? std::nullopt : std::optional(std::stoi(percent)));
            g_usleep(1000);
            while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
            }
        } while (bus && heard < wanted);
    }
}

}  // namespace

/// Makes one call, VERB ARGUMENT..., as a session of the program with the folder HARBORLANTERN_HOME would,
/// and prints the result.
int desktopCommand(int count, char** words) {
    const char* home = std::getenv("HARBORLANTERN_HOME");
    if (home == nullptr) return 2;
    WritesLedTo writes(home);
    writes.settle();
    DesktopPrograms desktop;
    const std::string verb = words[0];
    const std::vector<std::string> rest(words + 1, words + count);
    const auto tail = [&] { return std::vector(rest.begin() + 1, rest.end()); };
    const auto truth = [](bool is) { return is ? "true" : "false"; };
    if (verb == "open") std::cout << nameOf(desktop.open(rest.at(0)));
    if (verb == "programs") std::cout << idsOf(desktop.programsFor(tail(), std::stoul(rest.at(0))));
    if (verb == "all") std::cout << idsOf(desktop.allPrograms());
    if (verb == "with") std::cout << truth(desktop.openWith(rest.at(0), tail()));
    if (verb == "show") std::cout << truth(desktop.showInFolder(rest));
    if (verb == "terminal") std::cout << truth(desktop.openTerminal(rest.at(0)));
    if (verb == "properties") std::cout << truth(desktop.showProperties(rest));
    if (verb == "progress" || verb == "unheard") tellProgress(desktop, rest, verb == "progress");
    return 0;
}

/// Plays a file manager, with the arguments FILE MILLISECONDS: it records in FILE what it is asked for. It
/// ends with the bus.
int fileManager(int count, char** words) {
    if (count != 2) return 2;
    Recorder recorder{words[0], std::stoul(words[1])};
    g_bus_own_name(G_BUS_TYPE_SESSION, "org.freedesktop.FileManager1", G_BUS_NAME_OWNER_FLAGS_NONE, offer,
                   nullptr, nullptr, &recorder, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    return 0;
}

}  // namespace hl::test
