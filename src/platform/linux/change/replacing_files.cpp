#include "platform/linux/change/replacing_files.h"

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

#include "platform/linux/process/descriptor.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

constexpr int kMostLinks = 40;  // The kernel follows as many.
constexpr int kMostTries = 100;
constexpr mode_t kPrivateMode = 0600;

// With 64 random bits, the name is not expected to exist already.
std::string uniqueName() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number)) number = 0;
    char name[40];
    snprintf(name, sizeof name, ".harborlantern-%016llx", static_cast<unsigned long long>(number));
    return name;
}

// Calls `make` with fresh names until one is free. Returns a system error code.
template <class Make>
int withUniqueName(std::string& name, Make make) {
    for (int i = 0; i < kMostTries; ++i) {
        name = uniqueName();
        if (make() == 0) return 0;
        if (errno != EEXIST) return errno;
    }
    return EEXIST;
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// What a path names after the links at its end are followed, whether there is a file or not: an open folder
// and a name in it.
struct Target {
    Descriptor folder;  // Not open if it cannot be reached.
    std::string name;
    int error = 0;  // The reason why it cannot be used.
};

// A link in a folder that others may write to, such as /tmp, may be a trap. The kernel can be told to follow
// only links of the user and of the folder's owner there; the same holds here, whatever the kernel does.
bool mayFollow(int folder, const struct stat& link) {
    struct stat above {};
    if (fstat(folder, &above) != 0) return false;
    const bool isShared = (above.st_mode & S_ISVTX) != 0 && (above.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    return !isShared || link.st_uid == geteuid() || link.st_uid == above.st_uid;
}

// The system follows the links in the folder part of the path.
Target followLinks(const std::string& path) {
    constexpr int kFolderFlags = O_PATH | O_DIRECTORY;
    Target at{openAt(AT_FDCWD, folderOf(path), kFolderFlags), nameOf(path)};
    for (int i = 0; i < kMostLinks && at.folder.isOpen(); ++i) {
        const Descriptor link = openAt(at.folder.number(), at.name, O_PATH | O_NOFOLLOW);
        struct stat status {};
        if (!link.isOpen() || fstat(link.number(), &status) != 0 || !S_ISLNK(status.st_mode)) {
            if (at.name.empty()) at.error = EISDIR;
            return at;
        }
        std::string text(PATH_MAX, '\0');
        const ssize_t length = readlinkat(link.number(), "", text.data(), text.size());
        at.error = length < 0 ? errno : mayFollow(at.folder.number(), status) ? 0 : EACCES;
        if (at.error != 0) return at;
        text.resize(static_cast<std::size_t>(length));
        at.folder = openAt(at.folder.number(), folderOf(text), kFolderFlags);
        at.name = nameOf(text);
    }
    at.error = at.folder.isOpen() ? ELOOP : errno;
    return at;
}

bool names(const Target& target, const struct stat& file) {
    struct stat found {};
    return target.folder.isOpen() &&
           fstatat(target.folder.number(), target.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 &&
           found.st_dev == file.st_dev && found.st_ino == file.st_ino;
}

// Tells whether nothing can be renamed or removed in the folder, as after chattr +a.
bool onlyGrows(int folder) {
    struct statx facts {};
    return statx(folder, "", AT_EMPTY_PATH, 0, &facts) == 0 &&
           (facts.stx_attributes & STATX_ATTR_APPEND) != 0;
}

// The owner comes first, because giving a file away clears some bits of its mode. If the owner cannot be
// kept, the bits that give the owner's rights are cleared as well.
void takeOverModeOf(const struct stat& old, int file) {
    const bool owned = fchown(file, old.st_uid, old.st_gid) == 0;
    const bool grouped = owned || fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
    mode_t mode = old.st_mode & 07777;
    if (!owned) mode &= ~static_cast<mode_t>(S_ISUID);
    if (!grouped) mode &= ~static_cast<mode_t>(S_ISGID);
    fchmod(file, mode);
}

// A target that is written directly, from its beginning if it is a file.
class DirectFile final : public ReplacingFile {
  public:
    explicit DirectFile(Descriptor file, bool isFile = false) : file_(std::move(file)), isFile_(isFile) {}

    Result<> write(std::string_view bytes) override {
        if (error_ == 0) error_ = begin();
        if (error_ == 0) error_ = writeAll(file_.number(), bytes);
        return systemResult(error_);
    }
    Result<> commit() override {
        if (error_ == 0) error_ = begin();
        const int closed = file_.close();
        return systemResult(error_ != 0 ? error_ : closed);
    }
    bool isTerminal() const override { return isatty(file_.number()) == 1; }

  private:
    // The old content stays until the first byte comes.
    int begin() { return std::exchange(isFile_, false) && ftruncate(file_.number(), 0) != 0 ? errno : 0; }

    Descriptor file_;
    bool isFile_;
    int error_ = 0;
};

// A file without a name, or after its first byte with a name of its own in `temporary_`, until commit() gives
// it the target's name.
class RegularFile final : public ReplacingFile {
  public:
    /// `old` is the file to be replaced, if there is one.
    RegularFile(Target target, const std::optional<struct stat>& old)
        : folder_(std::move(target.folder)), name_(std::move(target.name)), old_(old) {}
    ~RegularFile() override { dropTemporary(); }
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    /// Returns a system error code: what can be known before there is anything to write.
    int open(Unfinished unfinished) {
        const bool grows = onlyGrows(folder_.number());
        if (grows && old_) return EPERM;
        // A file without a name gets one through /proc.
        if (unfinished == Unfinished::kNameless && access("/proc/self/fd", X_OK) == 0) {
            file_ = openAt(folder_.number(), ".", O_TMPFILE | O_WRONLY, 0666);
            if (file_.isOpen()) return takeOver(), 0;
            if (errno == ENOSPC || errno == EDQUOT) return errno;
        }
        if (grows) return EPERM;
        return faccessat(folder_.number(), ".", W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
    }

    Result<> write(std::string_view bytes) override {
        if (error_ == 0) error_ = begin();
        if (error_ == 0) error_ = writeAll(file_.number(), bytes);
        return systemResult(error_);
    }

    void makePrivate() override { isPrivate_ = true; }

    Result<> commit() override {
        if (error_ == 0) error_ = begin();
        if (error_ == 0 && isPrivate_ && fchmod(file_.number(), kPrivateMode) != 0) error_ = errno;
        if (error_ == 0) error_ = place();
        Result<> result = systemResult(error_);
        if (error_ == 0) error_ = EBADF;  // It cannot be committed twice.
        dropTemporary();
        return result;
    }

    std::string leftBehind() const override { return leftBehind_; }

  private:
    int begin() {
        if (file_.isOpen()) return 0;
        const int error = withUniqueName(temporary_, [&] {
            file_ = openAt(folder_.number(), temporary_, O_WRONLY | O_CREAT | O_EXCL,
                           isPrivate_ ? kPrivateMode : 0666);
            return file_.isOpen() ? 0 : -1;
        });
        error == 0 ? takeOver() : temporary_.clear();
        return error;
    }

    void takeOver() {
        if (old_ && !isPrivate_) takeOverModeOf(*old_, file_.number());
    }

    int place() {
        if (temporary_.empty()) {
            if (!old_ && giveName(name_) == 0) return 0;
            // In such a folder the next name could not be removed again.
            if (onlyGrows(folder_.number())) return EPERM;
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
        if (temporary_.empty()) return;
        if (unlinkat(folder_.number(), temporary_.c_str(), 0) != 0 && errno != ENOENT)
            leftBehind_ = pathOfFolder(folder_) + "/" + temporary_;
        temporary_.clear();
    }

    Descriptor folder_;
    std::string name_;
    std::optional<struct stat> old_;
    Descriptor file_;
    std::string temporary_;
    std::string leftBehind_;
    bool isPrivate_ = false;
    int error_ = 0;
};

// Opens an existing target so that the kernel can refuse: if it is write-protected, or if another user has
// put it into a shared folder; the kernel checks the latter only if a file might be made. Nothing is changed.
// If waiting is not wanted, a pipe without a reader is refused, too; writing waits all the same.
Descriptor openExisting(const std::string& path, bool waits) {
    Descriptor file = openAt(AT_FDCWD, path, O_WRONLY | O_CREAT | (waits ? 0 : O_NONBLOCK), 0666);
    if (file.isOpen() && !waits) fcntl(file.number(), F_SETFL, 0);
    return file;
}

}  // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Returns the number of the open descriptor that the path ("-", "/dev/stdout" and the like) names.
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

Result<std::unique_ptr<ReplacingFile>> makeReplacingFile(const std::string& path, Unfinished unfinished,
                                                         bool waitsForReaders) {
    if (path.empty()) return systemError(ENOENT);
    // A descriptor that is open already is written to, wherever it leads: a redirection may append, and may
    // have other writers.
    if (const auto open = descriptorNamed(path)) {
        Descriptor copy(fcntl(*open, F_DUPFD_CLOEXEC, 0));
        if (copy.number() < 0) return systemError(errno);
        return {std::make_unique<DirectFile>(std::move(copy))};
    }
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) return systemError(errno);
    if (path.ends_with('/') || (exists && S_ISDIR(status.st_mode))) return systemError(EISDIR);
    Target target = followLinks(path);
    if (target.error != 0 && (target.folder.isOpen() || !exists)) return systemError(target.error);
    std::optional<struct stat> old;
    if (exists) {
        Descriptor there = openExisting(path, waitsForReaders);
        if (!there.isOpen() || fstat(there.number(), &status) != 0) return systemError(errno);
        if (!S_ISREG(status.st_mode)) return {std::make_unique<DirectFile>(std::move(there))};
        // This is a file without a name, reached through /proc: /dev/stdout redirected to a deleted file.
        if (status.st_nlink == 0) return {std::make_unique<DirectFile>(std::move(there), true)};
        if (!names(target, status)) return systemError(EBUSY);  // Somebody has changed the links meanwhile.
        old = status;
    }
    auto file = std::make_unique<RegularFile>(std::move(target), old);
    if (const int error = file->open(unfinished); error != 0) return systemError(error);
    return {std::move(file)};
}

}  // namespace hl
