// All kinds of things that may be in a folder, for tests that move, remove or recycle them.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

namespace hl::test {

inline void makeSocket(const std::string& path) {
    sockaddr_un address{AF_UNIX, {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int made = must(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    must(::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    ::close(made);
}

inline void makeText(const std::string& path) {
    writeFile(path, "content of " + fs::path(path).filename().string());
}

struct Kind {
    const char* name;
    std::function<void(const std::string&)> make;
};

inline const Kind kKinds[] = {
    {"file", makeText},
    {"empty file", [](const auto& path) { makeFile(path, 0); }},
    {"read-only file", [](const auto& path) { makeText(path), must(::chmod(path.c_str(), 0400)); }},
    {"link to a file", [](const auto& path) { fs::create_symlink("/etc/passwd", path); }},
    {"link to a folder", [](const auto& path) { fs::create_symlink("/etc", path); }},
    {"dangling link", [](const auto& path) { fs::create_symlink("no such thing", path); }},
    {"link to itself", [](const auto& path) { fs::create_symlink(fs::path(path).filename(), path); }},
    {"pipe", [](const auto& path) { must(::mkfifo(path.c_str(), 0600)); }},
    {"socket", makeSocket},
    {"folder",
     [](const auto& path) {
         fs::create_directories(path + "/deep/er");
         makeText(path + "/inside"), makeText(path + "/deep/er/file");
         fs::create_symlink("/", path + "/deep/link");
     }},
    {"empty folder", [](const auto& path) { makeFolder(path); }},
    {"nothing", [](const auto&) {}}};

inline const Kind& kind(std::string_view name) {
    for (const Kind& each : kKinds)
        if (each.name == name) return each;
    throw std::logic_error("no such kind");
}

}  // namespace hl::test
