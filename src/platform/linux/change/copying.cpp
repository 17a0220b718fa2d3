#include "platform/linux/change/copying.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>
#include <vector>

namespace hl {

namespace {

constexpr off_t kBlock = off_t{1} << 20;  // Bytes.
constexpr const char* kAccessList = "system.posix_acl_access";

// Copies ranges of one file to the same place in another.
class RangeCopier {
  public:
    RangeCopier(int source, int target, const std::function<void()>& between)
        : source_(source), target_(target), between_(between) {}

    int copy(off_t start, off_t end) {
        while (start < end) {
            between_();
            const ssize_t moved = copySome(start, static_cast<std::size_t>(std::min(kBlock, end - start)));
            if (moved < 0) return errno;
            if (moved == 0) return EBUSY;  // The file has become shorter.
            start += moved;
        }
        return 0;
    }

  private:
    // Returns the bytes copied; -1 with errno set.
    ssize_t copySome(off_t at, std::size_t count) {
        if (inKernel_) {
            off_t from = at;
            off_t to = at;
            const ssize_t moved = copy_file_range(source_, &from, target_, &to, count, 0);
            if (moved > 0) return moved;
            // Copying in the kernel fails between many pairs of file systems, and takes some files for empty.
            // If reading and writing fail as well, they tell why.
            inKernel_ = false;
            buffer_ = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(kBlock));
        }
        const ssize_t got = again([&] { return pread(source_, buffer_.get(), count, at); });
        return got > 0 ? writeBuffer(at, static_cast<std::size_t>(got)) : got;
    }

    ssize_t writeBuffer(off_t at, std::size_t count) {
        for (std::size_t done = 0; done < count;) {
            const ssize_t put = again([&] {
                return pwrite(target_, buffer_.get() + done, count - done, at + static_cast<off_t>(done));
            });
            if (put == 0) errno = ENOSPC;
            if (put <= 0) return -1;
            done += static_cast<std::size_t>(put);
        }
        return static_cast<ssize_t>(count);
    }

    template <class Call>
    static ssize_t again(Call call) {
        ssize_t moved = 0;
        do {
            moved = call();
        } while (moved < 0 && errno == EINTR);
        return moved;
    }

    int source_;
    int target_;
    const std::function<void()>& between_;
    bool inKernel_ = true;
    std::unique_ptr<char[]> buffer_;
};

struct Range {
    off_t start = 0;
    off_t end = 0;
};

// Returns the next part of the file that is no hole; if the file system tells nothing of holes, all the rest.
Range nextData(int file, off_t at, off_t size) {
    const off_t start = lseek(file, at, SEEK_DATA);
    if (start < 0) return errno == ENXIO ? Range{size, size} : Range{at, size};
    const off_t end = lseek(file, start, SEEK_HOLE);
    return {std::min(start, size), end > start ? std::min(end, size) : size};
}

// File systems without the facility in question report these.
bool isUnsupported(int error) {
    return error == ENOTSUP || error == ENOSYS;
}

// EINVAL means an owner who has no number here, in a container.
bool isNoOwnerToGive(int error) {
    return error == EPERM || error == EINVAL || isUnsupported(error);
}

// `chownTo(owner, group)` does what chown() does. If owner or group cannot be kept, the bits of `mode` that
// would give their rights are cleared.
template <class Chown>
int giveOwner(Chown chownTo, const struct stat& facts, mode_t& mode) {
    if (chownTo(facts.st_uid, facts.st_gid) == 0) return 0;
    if (!isNoOwnerToGive(errno)) return errno;
    mode &= ~static_cast<mode_t>(S_ISUID);
    if (chownTo(static_cast<uid_t>(-1), facts.st_gid) == 0) return 0;
    if (!isNoOwnerToGive(errno)) return errno;
    mode &= ~static_cast<mode_t>(S_ISGID);
    return 0;
}

// Returns the names of all extended attributes, the user's own first, because copying the others may remove
// the right to write them.
int attributeNames(int file, std::vector<std::string>& names) {
    std::vector<char> list(XATTR_LIST_MAX);
    const ssize_t length = flistxattr(file, list.data(), list.size());
    if (length < 0) return isUnsupported(errno) ? 0 : errno;
    std::string_view rest(list.data(), static_cast<std::size_t>(length));
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        names.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    std::stable_partition(names.begin(), names.end(),
                          [](const auto& name) { return name.starts_with("user."); });
    return 0;
}

bool mayStayBehind(const std::string& name, int error) {
    if (name.starts_with("user.")) return false;
    if (isUnsupported(error)) return true;
    return error == EPERM && (name.starts_with("trusted.") || name.starts_with("security."));
}

// Sets errno on failure.
bool copyAttribute(int source, int target, const std::string& name, std::vector<char>& buffer) {
    const ssize_t length = fgetxattr(source, name.c_str(), buffer.data(), buffer.size());
    if (length < 0) return false;
    return fsetxattr(target, name.c_str(), buffer.data(), static_cast<std::size_t>(length), 0) == 0;
}

int copyAttributes(int source, int target, mode_t& mode) {
    std::vector<std::string> names;
    if (const int error = attributeNames(source, names); error != 0) return error;
    std::vector<char> buffer(names.empty() ? 0 : XATTR_SIZE_MAX);
    for (const std::string& name : names) {
        // The policy of the new place decides about this one.
        if (name == "security.selinux" || copyAttribute(source, target, name, buffer)) continue;
        if (!mayStayBehind(name, errno)) return errno;
        // With an access list, the bits of the group are the most that anybody in the list may do.
        if (name == kAccessList) mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return 0;
}

}  // namespace

int copyContent(int source, int target, off_t size, const std::function<void()>& between) {
    RangeCopier copier(source, target, between);
    for (off_t at = 0; at < size;) {
        const Range data = nextData(source, at, size);
        if (const int error = copier.copy(data.start, data.end); error != 0) return error;
        at = data.end;
    }
    if (ftruncate(target, size) != 0) return errno;  // The file ends in a hole.
    // Some file systems report 0 for a file whose size they do not know.
    char byte = 0;
    const ssize_t more = pread(source, &byte, 1, size);
    return more == 0 ? 0 : more > 0 ? EBUSY : errno;
}

int copyFacts(int source, int target, const struct stat& facts) {
    mode_t mode = facts.st_mode & 07777;
    // A folder may pass a list on to new files; the copy gets its own or none.
    fremovexattr(target, kAccessList);
    int error =
        giveOwner([&](uid_t owner, gid_t group) { return fchown(target, owner, group); }, facts, mode);
    if (error == 0) error = copyAttributes(source, target, mode);
    if (error != 0) return error;
    if (fchmod(target, mode) != 0 && !isUnsupported(errno)) return errno;
    const std::array<timespec, 2> times{facts.st_atim, facts.st_mtim};
    return futimens(target, times.data()) == 0 || isUnsupported(errno) ? 0 : errno;
}

int copyLink(int link, const struct stat& facts, int folder, const std::string& name) {
    std::vector<char> text(PATH_MAX + 1);
    const ssize_t length = readlinkat(link, "", text.data(), text.size());
    if (length < 0) return errno;
    if (static_cast<std::size_t>(length) >= text.size()) return ENAMETOOLONG;
    text[static_cast<std::size_t>(length)] = '\0';
    if (symlinkat(text.data(), folder, name.c_str()) != 0) return errno;
    const auto chownTo = [&](uid_t owner, gid_t group) {
        return fchownat(folder, name.c_str(), owner, group, AT_SYMLINK_NOFOLLOW);
    };
    mode_t unused = 0;
    if (const int error = giveOwner(chownTo, facts, unused); error != 0) return error;
    const std::array<timespec, 2> times{facts.st_atim, facts.st_mtim};
    if (utimensat(folder, name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) == 0) return 0;
    return isUnsupported(errno) ? 0 : errno;
}

}  // namespace hl
