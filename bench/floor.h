// What the floors of one thread and of several have in common: the totals of a walk, and the look at one
// entry.
//
// A floor prints "FILES FOLDERS BYTES ERRORS": entries that are no folders, folders below the source,
// apparent sizes. It crosses into other file systems and follows no link.
#pragma once

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include <cstdint>

struct Totals {
    std::uint64_t files = 0, folders = 0, bytes = 0, errors = 0;
};

/// One buffer serves all folders of a thread; it is as large as the largest of the C library's readers.
constexpr std::size_t kBufferBytes = 64 * 1024;

inline bool isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Adds the entry to the totals unless it is a folder. Returns true for a folder.
inline bool look(int folder, const dirent64& entry, Totals& totals) {
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

/// Looks at the entries that one call has read into the buffer. Calls found(name) for each subfolder.
template <class Found>
void lookAtAll(int folder, const char* buffer, ssize_t bytes, Totals& totals, Found&& found) {
    for (ssize_t at = 0; at < bytes;) {
        const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
        at += entry->d_reclen;
        if (isDots(entry->d_name) || !look(folder, *entry, totals)) continue;
        ++totals.folders;
        found(entry->d_name);
    }
}

inline int openFolder(int above, const char* name) {
    return openat(above, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Returns the open source, or -1 after a message.
inline int openSource(const char* path) {
    const int source = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (source < 0) fprintf(stderr, "%s: %s\n", path, strerror(errno));
    return source;
}

/// Returns the exit status.
inline int printTotals(const Totals& totals) {
    printf("%llu %llu %llu %llu\n", static_cast<unsigned long long>(totals.files),
           static_cast<unsigned long long>(totals.folders), static_cast<unsigned long long>(totals.bytes),
           static_cast<unsigned long long>(totals.errors));
    return totals.errors == 0 ? 0 : 1;
}
