// Makes trees on the disk for tests, all of them relative to open folders, so that any depth is possible.
#pragma once

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hl::test {

/// Aborts on failure, because a test without its tree shows nothing.
inline int must(int result) {
    if (result < 0) std::abort();
    return result;
}

inline constexpr uid_t kNobody = 65534;

/// Takes all rights from this process that a plain user does not have.
inline void becomeNobody() {
    if (::geteuid() != 0) return;
    must(::setgroups(0, nullptr));
    must(::setgid(kNobody));
    must(::setuid(kNobody));
}

/// Returns what `act` returns in a process of its own; 128 plus the signal if one ended it.
inline int inChild(const std::function<int()>& act) {
    const pid_t child = must(::fork());
    if (child == 0) ::_exit(act());
    int status = 0;
    must(::waitpid(child, &status, 0));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
/// Returns what inChild does, for a user without rights.
inline int asNobody(const std::function<int()>& act) {
    return inChild([&] { return becomeNobody(), act(); });
}

/// Returns the facts of the entry itself, also of a link; they are all 0 if there is none.
inline struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (::lstat(path.c_str(), &facts) != 0) facts = {};
    return facts;
}
inline ino_t inodeOf(const std::string& path) {
    return factsOf(path).st_ino;
}

inline int openFolder(const std::string& path) {
    return must(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Makes a file of `size` bytes that takes no room on the disk.
inline void makeFile(int folder, const std::string& name, off_t size) {
    const int file = must(::openat(folder, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
    must(::ftruncate(file, size));
    ::close(file);
}

inline void makeFile(const std::string& path, off_t size) {
    makeFile(AT_FDCWD, path, size);
}
inline void makeFolder(const std::string& path) {
    must(::mkdir(path.c_str(), 0755));
}

/// Makes, below `root`, a folder for each path that ends in "/" and a file of one byte for any other, with
/// all folders above.
inline void makeTree(const std::string& root, std::initializer_list<std::string_view> paths) {
    for (const std::string_view path : paths) {
        const std::string whole = root + "/" + std::string(path);
        fs::create_directories(whole.substr(0, whole.rfind('/')));
        if (!path.ends_with('/')) makeFile(whole, 1);
    }
}

/// Makes `depth` folders inside one another, all named `name`, each with a file of one byte, and `beside`
/// more empty folders at each level.
inline void makeChain(const std::string& root, int depth, const std::string& name, int beside = 0) {
    int at = openFolder(root);
    for (int level = 0; level < depth; ++level) {
        makeFile(at, "f", 1);
        for (int i = 0; i < beside; ++i) must(::mkdirat(at, ("b" + std::to_string(i)).c_str(), 0755));
        must(::mkdirat(at, name.c_str(), 0755));
        const int next = must(::openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        ::close(at);
        at = next;
    }
    ::close(at);
}

}  // namespace hl::test
