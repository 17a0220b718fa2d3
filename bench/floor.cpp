// The least that a walk costs: reads every folder below the given one and looks once at each entry that is no
// folder. It has one thread, keeps no names but those of folders still to be read, and makes no report.
// Whatever a disk-usage program takes beyond this is due to the program.
//
// It prints "FILES FOLDERS BYTES ERRORS": entries that are no folders, folders below the source, apparent
// sizes. It crosses into other file systems and follows no link.
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

struct Totals {
    std::uint64_t files = 0, folders = 0, bytes = 0, errors = 0;
};

/// A folder that has been read, with its subfolders that have not; each of their names ends in a NUL.
struct Level {
    int fd;
    std::string names;
    std::size_t next = 0;
    bool done() const { return next == names.size(); }
};

/// One buffer serves all folders; it is as large as the largest of the C library's readers.
constexpr std::size_t kBufferBytes = 64 * 1024;
alignas(dirent64) char buffer[kBufferBytes];

bool isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Adds the entry to the totals unless it is a folder. Returns true for a folder.
bool look(int folder, const dirent64& entry, Totals& totals) {
    if (entry.d_type == DT_DIR) return true;
    struct statx facts;
    if (statx(folder, entry.d_name, AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_SIZE, &facts) != 0) {
        ++totals.errors;
        return false;
    }
    if (S_ISDIR(facts.stx_mode)) return true;  // The listings of some file systems have no types.
    ++totals.files;
    totals.bytes += facts.stx_size;
    return false;
}

/// Reads the open folder to its end.
Level readFolder(int fd, Totals& totals) {
    Level level{fd, {}};
    ssize_t got = 0;
    while ((got = getdents64(fd, buffer, kBufferBytes)) > 0) {
        for (ssize_t at = 0; at < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            if (isDots(entry->d_name) || !look(fd, *entry, totals)) continue;
            ++totals.folders;
            level.names.append(entry->d_name, strlen(entry->d_name) + 1);
        }
    }
    if (got < 0) ++totals.errors;
    return level;
}

int openFolder(int above, const char* name) {
    return openat(above, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// A folder whose last subfolder has been opened is closed before that one is read, so a chain of any length
/// needs two open folders. A bushy tree needs one for each level.
void walk(int source, Totals& totals) {
    std::vector<Level> open;
    open.push_back(readFolder(source, totals));
    while (!open.empty()) {
        Level& top = open.back();
        int fd = -1;
        if (!top.done()) {
            const char* name = top.names.c_str() + top.next;
            top.next += strlen(name) + 1;
            fd = openFolder(top.fd, name);
            if (fd < 0) ++totals.errors;
        }
        if (top.done()) {
            close(top.fd);
            open.pop_back();
        }
        if (fd >= 0) open.push_back(readFolder(fd, totals));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "Usage: floor FOLDER\n");
        return 2;
    }
    const int source = open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (source < 0) {
        fprintf(stderr, "%s: %s\n", argv[1], strerror(errno));
        return 1;
    }
    Totals totals;
    walk(source, totals);
    printf("%llu %llu %llu %llu\n", static_cast<unsigned long long>(totals.files),
           static_cast<unsigned long long>(totals.folders), static_cast<unsigned long long>(totals.bytes),
           static_cast<unsigned long long>(totals.errors));
    return totals.errors == 0 ? 0 : 1;
}
