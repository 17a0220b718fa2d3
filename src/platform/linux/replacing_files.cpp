#include "platform/linux/replacing_files.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/linux/descriptor.h"

namespace hl {

namespace {

constexpr int kMostLinks = 40;  // As many as the kernel follows.
constexpr int kMostTries = 100;

// With 64 random bits a name that exists already is not to be expected.
std::string uniqueName() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number)) number = 0;
    char name[40];
    snprintf(name, sizeof name, ".harborlantern-%016llx", static_cast<unsigned long long>(number));
    return name;
}

// Calls `make` with fresh names until one is free. System error code.
template <class Make>
int withUniqueName(std::string& name, Make make) {
    for (int i = 0; i < kMostTries; ++i) {
        name = uniqueName();
        if (make() == 0) return 0;
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

// What `path` names once the links at its end are followed, be there a file or not. Links in its folder part
// are left to the system.
std::optional<std::string> followLinks(std::string path, int& error) {
    for (int i = 0; i < kMostLinks; ++i) {
        char link[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), link, sizeof link);
        if (length < 0) return path;
        const std::string target(link, static_cast<std::size_t>(length));
        path = target.starts_with('/') ? target : folderOf(path).append("/").append(target);
    }
    error = ELOOP;
    return std::nullopt;
}

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return status;
}

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Owner first: giving a file away takes some bits of the mode with it. Where the owner may not be kept, the
// bits that lend his rights are not either.
void takeOverModeOf(const struct stat& old, int file) {
    const bool owned = fchown(file, old.st_uid, old.st_gid) == 0;
    const bool grouped = owned || fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
    mode_t mode = old.st_mode & 07777;
    if (!owned) mode &= ~static_cast<mode_t>(S_ISUID);
    if (!grouped) mode &= ~static_cast<mode_t>(S_ISGID);
    fchmod(file, mode);
}

// Written as it is: there is nothing to be replaced.
class DirectFile final : public ReplacingFile {
  public:
    explicit DirectFile(Descriptor file) : file_(std::move(file)) {}

    int write(std::string_view bytes) override {
        if (error_ == 0) error_ = writeAll(file_.number(), bytes);
        return error_;
    }
    int commit() override {
        const int closed = file_.close();
        return error_ != 0 ? error_ : closed;
    }

  private:
    Descriptor file_;
    int error_ = 0;
};

// A file without a name, or with one of its own in `temporary_`, until commit() gives it the target's name.
class RegularFile final : public ReplacingFile {
  public:
    RegularFile(Descriptor folder, std::string name) : folder_(std::move(folder)), name_(std::move(name)) {}
    ~RegularFile() override { dropTemporary(); }
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    // System error code. `old` is the file to be replaced, if there is one.
    int open(const std::optional<struct stat>& old, Unfinished unfinished) {
        if (const int error = openNew(unfinished); error != 0) return error;
        replaces_ = old.has_value();
        if (old) takeOverModeOf(*old, file_.number());
        return 0;
    }

    int write(std::string_view bytes) override {
        if (error_ == 0) error_ = writeAll(file_.number(), bytes);
        return error_;
    }

    int commit() override {
        if (error_ == 0) error_ = place();
        const int result = error_;
        if (error_ == 0) error_ = EBADF;  // There is no second time.
        dropTemporary();
        return result;
    }

  private:
    int openNew(Unfinished unfinished) {
        // A file without a name gets one through /proc.
        if (unfinished == Unfinished::kNameless && access("/proc/self/fd", X_OK) == 0) {
            file_ = openAt(folder_.number(), ".", O_TMPFILE | O_WRONLY, 0666);
            if (file_.isOpen()) return 0;
        }
        return withUniqueName(temporary_, [&] {
            file_ = openAt(folder_.number(), temporary_, O_WRONLY | O_CREAT | O_EXCL, 0666);
            if (file_.isOpen()) return 0;
            temporary_.clear();
            return -1;
        });
    }

    int place() {
        if (temporary_.empty()) {
            if (!replaces_ && giveName(name_) == 0) return 0;
            const int error = withUniqueName(temporary_, [&] { return giveName(temporary_); });
            if (error != 0) temporary_.clear();
            if (error != 0) return error;
        }
        if (const int error = file_.close(); error != 0) return error;
        if (renameat(folder_.number(), temporary_.c_str(), folder_.number(), name_.c_str()) != 0)
            return errno;
        temporary_.clear();
        return 0;
    }

    int giveName(const std::string& name) {
        const std::string self = "/proc/self/fd/" + std::to_string(file_.number());
        return linkat(AT_FDCWD, self.c_str(), folder_.number(), name.c_str(), AT_SYMLINK_FOLLOW);
    }

    void dropTemporary() {
        if (!temporary_.empty()) unlinkat(folder_.number(), temporary_.c_str(), 0);
        temporary_.clear();
    }

    Descriptor folder_;
    std::string name_;
    Descriptor file_;
    std::string temporary_;
    bool replaces_ = false;
    int error_ = 0;
};

// With O_NONBLOCK among the flags the opening does not wait; writing does all the same.
std::unique_ptr<ReplacingFile> openDirect(const std::string& path, int flags, int& error) {
    Descriptor file = openAt(AT_FDCWD, path, O_WRONLY | flags);
    error = file.isOpen() ? 0 : errno;
    if (!file.isOpen()) return nullptr;
    if ((flags & O_NONBLOCK) != 0) fcntl(file.number(), F_SETFL, 0);
    return std::make_unique<DirectFile>(std::move(file));
}

std::unique_ptr<ReplacingFile> openRegular(const std::string& path, const std::optional<struct stat>& old,
                                           Unfinished unfinished, int& error) {
    Descriptor folder = openAt(AT_FDCWD, folderOf(path), O_PATH | O_DIRECTORY);
    if (!folder.isOpen()) {
        error = errno;
        return nullptr;
    }
    auto file = std::make_unique<RegularFile>(std::move(folder), path.substr(path.rfind('/') + 1));
    error = file->open(old, unfinished);
    return error == 0 ? std::move(file) : nullptr;
}

}  // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// "-", "/dev/stdout" and the like: the number of the open descriptor that the path names.
static std::optional<int> descriptorNamed(std::string_view path) {
    if (path == kStandardOutput || path == "/dev/stdout") return STDOUT_FILENO;
    if (path == "/dev/stderr") return STDERR_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (!path.starts_with(folder)) continue;
        path.remove_prefix(folder.size());
        int number = -1;
        const auto [end, error] = std::from_chars(path.data(), path.data() + path.size(), number);
        if (error == std::errc() && end == path.data() + path.size() && number >= 0) return number;
        return std::nullopt;
    }
    return std::nullopt;
}

std::unique_ptr<ReplacingFile> makeReplacingFile(const std::string& path, Unfinished unfinished,
                                                 bool waitsForReaders, int& error) {
    const auto fail = [&error](int code) {
        error = code;
        return nullptr;
    };
    if (path.empty()) return fail(ENOENT);
    // What is open already is written on, wherever it leads: a redirection may append, and has other writers.
    if (const auto open = descriptorNamed(path)) {
        Descriptor copy(fcntl(*open, F_DUPFD_CLOEXEC, 0));
        if (copy.number() < 0) return fail(errno);
        return std::make_unique<DirectFile>(std::move(copy));
    }
    const auto old = statusOf(path);
    if (path.ends_with('/') || (old && S_ISDIR(old->st_mode))) return fail(EISDIR);
    if (old && !S_ISREG(old->st_mode)) return openDirect(path, waitsForReaders ? 0 : O_NONBLOCK, error);
    // Replacing would get round a protection that opening respects.
    if (old && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return fail(errno);
    const auto target = followLinks(path, error);
    if (!target) return nullptr;
    const auto found = statusOf(*target);
    // A file without a name, reached through /proc: /dev/stdout of a redirection to a deleted file.
    if (old && (!found || !sameFile(*old, *found))) return openDirect(path, O_TRUNC, error);
    return openRegular(*target, old, unfinished, error);
}

}  // namespace hl
