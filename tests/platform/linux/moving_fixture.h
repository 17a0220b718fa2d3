// Things to be moved, places to move them to, and what is seen of them there.
#pragma once

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

#include "platform/linux/descriptor.h"
#include "platform/linux/moving.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl::test {

namespace fs = std::filesystem;
inline int moveTo(const FilePlace& from, const FilePlace& to) {
    Whereabouts whereabouts;
    return moveEntry(from, to, whereabouts);
}

inline int moveTo(const std::string& from, const std::string& to) {
    return moveTo(FilePlace{from}, FilePlace{to});
}

inline struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) facts = {};
    return facts;
}

// 0 if there is nothing.
inline ino_t inodeOf(const std::string& path) {
    return factsOf(path).st_ino;
}

inline std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
}

inline void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor made(socket(AF_UNIX, SOCK_STREAM, 0));
    bind(made.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

inline void makeFile(const std::string& path) {
    writeFile(path, "content of " + fs::path(path).filename().string());
}

struct Kind {
    const char* name;
    std::function<void(const std::string&)> make;
};

inline const Kind kKinds[] = {
    {"file", makeFile},
    {"read-only file", [](const auto& path) { makeFile(path), chmod(path.c_str(), 0400); }},
    {"link to a file", [](const auto& path) { fs::create_symlink("/etc/passwd", path); }},
    {"link to a folder", [](const auto& path) { fs::create_symlink("/etc", path); }},
    {"dangling link", [](const auto& path) { fs::create_symlink("no such thing", path); }},
    {"link to itself", [](const auto& path) { fs::create_symlink(fs::path(path).filename(), path); }},
    {"pipe", [](const auto& path) { mkfifo(path.c_str(), 0600); }},
    {"socket", makeSocket},
    {"folder", [](const auto& path) { fs::create_directory(path), makeFile(path + "/inside"); }},
    {"empty folder", [](const auto& path) { fs::create_directory(path); }},
    {"nothing", [](const auto&) {}},
};

inline const Kind& kind(std::string_view name) {
    for (const Kind& each : kKinds)
        if (each.name == name) return each;
    throw std::logic_error("no such kind");
}

inline constexpr uid_t kNobody = 65534;

// What `act` returns in a process of a user without rights.
inline int asNobody(const std::function<int()>& act) {
    const pid_t child = fork();
    if (child == 0) {
        const bool became = setgid(kNobody) == 0 && setuid(kNobody) == 0;
        _exit(became ? act() : 255);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class MovingTest : public testing::Test {
  protected:
    MovingTest() {
        fs::create_directory(at("sub"));
        chmod(dir.path().c_str(), 0755);
    }
    std::string at(const std::string& name) const { return dir.path() + "/" + name; }

    TempDir dir;
};

// A small file system on a folder of its own, or a folder of one that is there.
class OtherMount {
  public:
    explicit OtherMount(const char* options) {
        mounted_ = mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, options) == 0;
        if (mounted_) return;
        shared_ = std::make_unique<TempDir>("/dev/shm");
    }
    ~OtherMount() {
        if (mounted_) umount2(folder_.path().c_str(), MNT_DETACH);
    }
    bool isMounted() const { return mounted_; }
    const std::string& path() const { return mounted_ ? folder_.path() : shared_->path(); }
    std::string at(const std::string& name) const { return path() + "/" + name; }

  private:
    TempDir folder_;
    std::unique_ptr<TempDir> shared_;
    bool mounted_ = false;
};

}  // namespace hl::test
