// A file system served by a process, which a test can stop, continue and kill:
//   fuse_server FOLDER MOUNT_POINT
// shows FOLDER at MOUNT_POINT. It never answers for what lies below an entry named "hangs", nor lists such an
// entry; it answers everything else. Nothing is cached in the kernel, so each question comes here.
#define FUSE_USE_VERSION 31
#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <string_view>

namespace {

std::string& root() {
    static std::string path;
    return path;
}

// The option "intr" of main() ends the pause when the asking process is killed.
bool hangs(std::string_view path) {
    if (path.find("/hangs/") == std::string_view::npos) return false;
    ::pause();
    return true;
}

std::string at(const char* path) {
    return root() + path;
}

int resultOf(long value) {
    return value < 0 ? -errno : static_cast<int>(value);
}

/// Makes one call for one path.
template <class Call>
int answer(const char* path, Call&& call) {
    return hangs(path) ? -EINTR : resultOf(call(at(path).c_str()));
}

int list(const char* path, void* buffer, fuse_fill_dir_t fill) {
    if (hangs(std::string(path) + "/")) return -EINTR;
    DIR* folder = ::opendir(at(path).c_str());
    if (folder == nullptr) return -errno;
    while (const dirent* entry = ::readdir(folder)) {
        struct stat kind {};
        kind.st_mode = DTTOIF(entry->d_type);
        kind.st_ino = entry->d_ino;
        fill(buffer, entry->d_name, &kind, 0, fuse_fill_dir_flags{});
    }
    ::closedir(folder);
    return 0;
}

int readLink(const char* path, char* buffer, std::size_t bytes) {
    const long got = hangs(path) ? -1 : ::readlink(at(path).c_str(), buffer, bytes - 1);
    if (got >= 0) buffer[got] = '\0';
    return got < 0 ? -errno : 0;
}

int openFile(const char* path, int flags, mode_t mode, fuse_file_info* file) {
    const int result = answer(path, [&](const char* real) { return ::open(real, flags | O_CLOEXEC, mode); });
    file->fh = static_cast<std::uint64_t>(result);
    return result < 0 ? result : 0;
}

fuse_operations operations() {
    fuse_operations on{};
    on.init = [](fuse_conn_info*, fuse_config* config) -> void* {
        config->entry_timeout = config->attr_timeout = config->negative_timeout = 0;
        config->use_ino = 1;
        config->intr = 1;
        return nullptr;
    };
    on.getattr = [](const char* path, struct stat* facts, fuse_file_info*) {
        return answer(path, [&](const char* real) { return ::lstat(real, facts); });
    };
    on.readdir = [](const char* path, void* buffer, fuse_fill_dir_t fill, off_t, fuse_file_info*,
                    fuse_readdir_flags) { return list(path, buffer, fill); };
    on.readlink = readLink;
    on.statfs = [](const char* path, struct statvfs* facts) {
        return answer(path, [&](const char* real) { return ::statvfs(real, facts); });
    };
    on.open = [](const char* path, fuse_file_info* file) { return openFile(path, file->flags, 0, file); };
    on.create = [](const char* path, mode_t mode, fuse_file_info* file) {
        return openFile(path, file->flags | O_CREAT, mode, file);
    };
    on.read = [](const char*, char* buffer, std::size_t bytes, off_t from, fuse_file_info* file) {
        return resultOf(::pread(static_cast<int>(file->fh), buffer, bytes, from));
    };
    on.write = [](const char*, const char* bytes, std::size_t count, off_t to, fuse_file_info* file) {
        return resultOf(::pwrite(static_cast<int>(file->fh), bytes, count, to));
    };
    on.flush = [](const char*, fuse_file_info*) { return 0; };  // Closing a file asks, too.
    on.release = [](const char*, fuse_file_info* file) { return ::close(static_cast<int>(file->fh)); };
    on.mkdir = [](const char* path, mode_t mode) {
        return answer(path, [&](const char* real) { return ::mkdir(real, mode); });
    };
    on.unlink = [](const char* path) { return answer(path, ::unlink); };
    on.rmdir = [](const char* path) { return answer(path, ::rmdir); };
    on.rename = [](const char* from, const char* to, unsigned flags) {
        return answer(from, [&](const char* real) {
            return ::renameat2(AT_FDCWD, real, AT_FDCWD, at(to).c_str(), flags);
        });
    };
    return on;
}

}  // namespace

int main(int count, char* arguments[]) {
    if (count != 3) return 2;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // If the test is killed, the server must not stay, because calls to
                                         // it could hang.
    root() = arguments[1];
    std::string name = arguments[0], foreground = "-f";
    char* given[] = {name.data(), foreground.data(), arguments[2], nullptr};
    const fuse_operations on = operations();
    return ::fuse_main(3, given, &on, nullptr);
}
