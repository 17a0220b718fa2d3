#include "platform/desktop/desktop_programs.h"

#include <gio/gdesktopappinfo.h>
#include "platform/desktop/file_manager.h"
#include "platform/desktop/gio_owned.h"
#include "platform/desktop/launcher_entry.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <string_view>

#include "base/path.h"

namespace hl {

namespace {

using Programs = std::vector<DesktopProgram>;

/// With more files than this their types come from their names alone; none is opened.
constexpr std::size_t kMostLookedInto = 200;

/// What opening a file depends on; for a link, the facts of its target.
struct FileKind {
    std::string type;  ///< "text/plain", "inode/directory"
    bool regular = false;
    bool mayRun = false;  ///< Its permissions and its file system allow running it.
};

/// Uses the machine's own file system: what the desktop itself mounts has a path there too, and asking for
/// more would start services of the desktop.
Owned<GFile> fileAt(const std::string& path) {
    return Owned<GFile>(g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()));
}

/// Returns nothing if there is no such file, or for a dangling link. Only a regular file is opened.
std::optional<FileKind> lookAt(const std::string& path, bool lookInto) {
    const char* type =
        lookInto ? G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE : G_FILE_ATTRIBUTE_STANDARD_FAST_CONTENT_TYPE;
    const std::string wanted =
        std::string(type) + "," G_FILE_ATTRIBUTE_STANDARD_TYPE "," G_FILE_ATTRIBUTE_ACCESS_CAN_EXECUTE;
    const auto file = fileAt(path);
    const Owned<GFileInfo> info(
        g_file_query_info(file.get(), wanted.c_str(), G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    if (!info || g_file_info_get_file_type(info.get()) == G_FILE_TYPE_SYMBOLIC_LINK) return std::nullopt;
    return FileKind{
        gioText(g_file_info_get_attribute_string(info.get(), type)),
        g_file_info_get_file_type(info.get()) == G_FILE_TYPE_REGULAR,
        g_file_info_get_attribute_boolean(info.get(), G_FILE_ATTRIBUTE_ACCESS_CAN_EXECUTE) != FALSE};
}

/// Looks as lookAt does; returns nothing, too, if the disk does not answer.
std::optional<FileKind> kindOf(Patience* patience, const std::string& path, bool lookInto = true) {
    return ask<std::optional<FileKind>>(patience, path, std::nullopt,
                                        [path, lookInto] { return lookAt(path, lookInto); });
}

/// Makes the user's own environment: changes in it that are meant for our libraries are undone.
Owned<GAppLaunchContext> usersEnvironment() {
    constexpr const char* kBus = "DBUS_SESSION_BUS_ADDRESS";
    Owned<GAppLaunchContext> context(g_app_launch_context_new());
    if (gioText(g_getenv(kBus)) == "disabled:") g_app_launch_context_unsetenv(context.get(), kBus);
    return context;
}

bool start(GAppInfo* program, const std::vector<std::string>& paths) {
    // GIO tells the bus what was started, and asks it to start some programs.
    const SessionBus bus;
    if (bus.silent()) return false;
    std::vector<std::string> urls;
    urls.reserve(paths.size());
    for (const std::string& path : paths) urls.push_back(fileUrl(path));
    GList* list = nullptr;
    for (auto url = urls.rbegin(); url != urls.rend(); ++url) list = g_list_prepend(list, url->data());
    const auto environment = usersEnvironment();
    const bool started = g_app_info_launch_uris(program, list, environment.get(), nullptr) != FALSE;
    g_list_free(list);
    return started;
}

void addProgram(GAppInfo* program, Programs& programs) {
    if (program == nullptr || g_app_info_should_show(program) == FALSE) return;
    std::string id = gioText(g_app_info_get_id(program));
    const auto same = [&](const DesktopProgram& each) { return each.id == id; };
    if (id.empty() || std::any_of(programs.begin(), programs.end(), same)) return;
    programs.push_back({std::move(id), gioText(g_app_info_get_display_name(program))});
}

/// Returns first the desktop's own choice, then the programs for exactly this type, then those for more
/// general types.
Programs programsForType(const std::string& type) {
    Programs programs;
    addProgram(Owned<GAppInfo>(g_app_info_get_default_for_type(type.c_str(), FALSE)).get(), programs);
    const Owned<GList> all(g_app_info_get_all_for_type(type.c_str()));
    for (const GList* each = all.get(); each != nullptr; each = each->next)
        addProgram(static_cast<GAppInfo*>(each->data), programs);
    return programs;
}

void keepCommon(Programs& programs, const Programs& others) {
    std::erase_if(programs, [&](const DesktopProgram& program) {
        return std::none_of(others.begin(), others.end(),
                            [&](const DesktopProgram& other) { return other.id == program.id; });
    });
}

bool isOneOf(const std::string& type, std::initializer_list<const char*> kinds) {
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const char* kind) { return g_content_type_is_a(type.c_str(), kind) != FALSE; });
}

/// Tells whether the program set for the file runs what is in it, whatever the file's permissions.
bool runsByItsProgram(const std::string& path, const std::string& type) {
    return path.ends_with(".desktop") ||
           isOneOf(type, {"application/x-desktop", "application/x-ms-dos-executable",
                          "application/x-msdownload", "application/x-msi", "application/x-ms-shortcut",
                          "application/vnd.microsoft.portable-executable"});
}

/// If every file may be run (as on a stick with FAT), a text is a script only by its first characters.
bool namesItsInterpreter(const std::string& path) {
    const auto file = fileAt(path);
    const Owned<GFileInputStream> stream(g_file_read(file.get(), nullptr, nullptr));
    if (!stream) return false;
    std::array<char, 2> mark{};
    gsize read = 0;
    g_input_stream_read_all(G_INPUT_STREAM(stream.get()), mark.data(), mark.size(), &read, nullptr, nullptr);
    return std::string_view(mark.data(), read) == "#!";
}

/// Returns the terminals to try: the desktop's choice, the user's, the system's, and some well-known ones.
std::vector<std::string> terminals() {
    std::vector<std::string> names = {"xdg-terminal-exec"};
    if (std::string own = gioText(g_getenv("TERMINAL")); !own.empty()) names.push_back(std::move(own));
    for (const char* known : {"x-terminal-emulator", "gnome-terminal", "konsole", "kgx", "ptyxis",
                              "xfce4-terminal", "mate-terminal", "lxterminal", "qterminal", "tilix",
                              "alacritty", "kitty", "foot", "urxvt", "xterm"})
        names.emplace_back(known);
    return names;
}

/// Starts the first terminal that is there; the folder's name is no part of the command.
bool startTerminal(const std::string& folder) {
    const auto user = usersEnvironment();
    const std::unique_ptr<char*, decltype(&g_strfreev)> environment(
        g_app_launch_context_get_environment(user.get()), g_strfreev);
    constexpr auto kFlags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                     G_SPAWN_STDERR_TO_DEV_NULL);
    for (std::string& name : terminals()) {
        char* words[] = {name.data(), nullptr};
        GError* failure = nullptr;
        const bool started = g_spawn_async(folder.c_str(), words, environment.get(), kFlags, nullptr, nullptr,
                                           nullptr, &failure) != FALSE;
        const Owned<GError> error(failure);
        if (started) return true;
        if (error && g_error_matches(error.get(), G_SPAWN_ERROR, G_SPAWN_ERROR_CHDIR) != FALSE) return false;
    }
    return false;
}

/// Returns nothing for a path that is gone. A link is not followed.
std::optional<FileFacts> readFacts(const std::string& path) {
    const auto file = fileAt(path);
    const Owned<GFileInfo> info(g_file_query_info(file.get(), "standard::*,time::*,unix::*,owner::*",
                                                  G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, nullptr));
    if (!info) return std::nullopt;
    const auto number = [&](const char* name) { return g_file_info_get_attribute_uint64(info.get(), name); };
    const auto small = [&](const char* name) { return g_file_info_get_attribute_uint32(info.get(), name); };
    const auto text = [&](const char* name) {
        return gioText(g_file_info_get_attribute_string(info.get(), name));
    };
    const auto time = [&](const char* name) { return static_cast<std::int64_t>(number(name)); };
    const std::unique_ptr<char, decltype(&g_free)> type(
        g_content_type_get_description(text(G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE).c_str()), g_free);
    return FileFacts{.type = gioText(type.get()),
                     .size = number(G_FILE_ATTRIBUTE_STANDARD_SIZE),
                     .space = number(G_FILE_ATTRIBUTE_STANDARD_ALLOCATED_SIZE),
                     .modified = time(G_FILE_ATTRIBUTE_TIME_MODIFIED),
                     .created = time(G_FILE_ATTRIBUTE_TIME_CREATED),
                     .accessed = time(G_FILE_ATTRIBUTE_TIME_ACCESS),
                     .owner = text(G_FILE_ATTRIBUTE_OWNER_USER),
                     .group = text(G_FILE_ATTRIBUTE_OWNER_GROUP),
                     .mode = small(G_FILE_ATTRIBUTE_UNIX_MODE),
                     .links = small(G_FILE_ATTRIBUTE_UNIX_NLINK)};
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/', path.size() - 2);
    return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

// For files elsewhere, the desktop's extension of GIO waits for the session bus without end, and GIO asks it
// even if a file is known to be here. GIO chooses the extension once, at the first question.
DesktopPrograms::DesktopPrograms(Patience* patience)
    : patience_(patience), entry_(std::make_unique<LauncherEntry>()) {
    constexpr const char* kChoice = "GIO_USE_VFS";
    const char* before = g_getenv(kChoice);
    const std::optional<std::string> own =
        before == nullptr ? std::nullopt : std::optional<std::string>(before);
    g_setenv(kChoice, "local", TRUE);
    g_vfs_get_default();
    if (own) {
        g_setenv(kChoice, own->c_str(), TRUE);
    } else {
        g_unsetenv(kChoice);
    }
}

DesktopPrograms::~DesktopPrograms() = default;

OpenResult DesktopPrograms::open(const std::string& path) {
    const auto kind = kindOf(patience_, path);
    if (!kind) return OpenResult::kFailed;
    const Owned<GAppInfo> program(g_app_info_get_default_for_type(kind->type.c_str(), FALSE));
    if (!program) return OpenResult::kNoProgram;
    return start(program.get(), {path}) ? OpenResult::kStarted : OpenResult::kFailed;
}

Programs DesktopPrograms::programsFor(const std::vector<std::string>& paths, std::size_t most) {
    Programs programs;
    std::set<std::string> types;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto kind = kindOf(patience_, paths[i], i < kMostLookedInto);
        if (!kind) return {};
        if (!types.insert(kind->type).second) continue;
        if (types.size() == 1) {
            programs = programsForType(kind->type);
        } else {
            keepCommon(programs, programsForType(kind->type));
        }
        if (programs.empty()) return {};
    }
    if (programs.size() > most) programs.resize(most);
    return programs;
}

Programs DesktopPrograms::allPrograms() {
    Programs programs;
    const Owned<GList> all(g_app_info_get_all());
    for (const GList* each = all.get(); each != nullptr; each = each->next) {
        auto* program = static_cast<GAppInfo*>(each->data);
        if (g_app_info_supports_files(program) != FALSE || g_app_info_supports_uris(program) != FALSE)
            addProgram(program, programs);
    }
    std::sort(programs.begin(), programs.end(), [](const DesktopProgram& a, const DesktopProgram& b) {
        const int order = g_utf8_collate(a.name.c_str(), b.name.c_str());
        return order != 0 ? order < 0 : a.id < b.id;
    });
    return programs;
}

bool DesktopPrograms::openWith(const std::string& id, const std::vector<std::string>& paths) {
    if (paths.empty()) return false;
    const Owned<GDesktopAppInfo> program(g_desktop_app_info_new(id.c_str()));
    return program != nullptr && start(G_APP_INFO(program.get()), paths);
}

bool DesktopPrograms::runsWhenOpened(const std::string& path) {
    using Kind = std::optional<FileKind>;
    const auto asked = ask<std::optional<Kind>>(patience_, path, std::nullopt,
                                                [path] { return std::optional<Kind>(lookAt(path, true)); });
    if (!asked) return true;  // Its disk may answer by the time it is opened.
    const Kind& kind = *asked;
    if (!kind || !kind->regular) return false;
    if (runsByItsProgram(path, kind->type)) return true;
    if (!kind->mayRun) return false;
    if (isOneOf(kind->type, {"application/x-executable", "application/x-sharedlib",
                             "application/x-pie-executable", "application/x-java-archive"}))
        return true;
    return isOneOf(kind->type, {"text/plain"}) &&
           ask<bool>(patience_, path, true, [path] { return namesItsInterpreter(path); });
}

bool DesktopPrograms::showInFolder(const std::vector<std::string>& paths) {
    if (paths.empty()) return false;
    const SessionBus bus;
    if (askFileManager(bus, Ask::kShowItems, paths)) return true;
    return !bus.silent() && open(folderOf(paths.front())) == OpenResult::kStarted;
}

bool DesktopPrograms::showProperties(const std::vector<std::string>& paths) {
    return askFileManager(SessionBus(), Ask::kShowItemProperties, paths);
}

bool DesktopPrograms::openTerminal(const std::string& folder) {
    return ask<bool>(patience_, folder, false, [folder] { return startTerminal(folder); });
}

std::optional<FileFacts> DesktopPrograms::facts(const std::string& path) {
    return ask<std::optional<FileFacts>>(
        patience_, path, std::nullopt, [path] { return readFacts(path); }, LastName::kItself);
}

void DesktopPrograms::showProgress(std::optional<int> percent) {
    entry_->show(percent);
}

std::string DesktopPrograms::sha256(std::string_view bytes) {
    const auto* data = reinterpret_cast<const guchar*>(bytes.data());
    char* digits = ::g_compute_checksum_for_data(G_CHECKSUM_SHA256, data, bytes.size());
    std::string text = digits;
    ::g_free(digits);
    return text;
}

}  // namespace hl
